#include "controls/branding.h"

#include "system/build_constants.h"
#include "system/settings.h"
#include "system/trace.h"

std::string BrandName() { return SettingOr("Branding", "AppName", build::companyName); }

std::string LogoFile() {
    std::string base = GetAppPath() + "supportlogo.";
    for (const char* extension : {"jpg", "gif", "png"})
        if (DoesFileExist(base + extension)) return base + extension;
    return base + "bmp";
}
