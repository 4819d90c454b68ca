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

LogoKind ConfiguredLogoKind() {
    auto isOn = [](const char* key) { return Eq1(Setting("Branding", key)); };
    if (!NumNot1(Setting("Branding", "UseStdLogo"))) return LogoKind::square;
    if (isOn("UseLargeLogo")) return LogoKind::large;  // with both on the later key wins
    if (!isOn("UseRectLogo")) return LogoKind::asDesigned;
    return isOn("UseLargeRectLogo") ? LogoKind::longRectangle : LogoKind::rectangle;
}
