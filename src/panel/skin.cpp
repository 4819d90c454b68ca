#include "panel/skin.h"

#include "controls/form_host.h"
#include "platform/library.h"
#include "system/program_state.h"
#include "system/settings.h"
#include "system/trace.h"

namespace {

// Stays mapped while a skin may be drawn, that is until the process ends.
pc::Library& SkinLibrary() {
    static pc::Library library;
    return library;
}

}  // namespace

void LoadConfiguredSkin() {
    std::string skin = Setting("Branding", "Skin");
    if (skin.empty()) return;
    std::string file = GetAppPath() + "Skins\\" + skin;
    if (DoesFileExist(file)) StartSkin(file);
}

void StartSkin(const std::string& skinFile) {
    State().skinActive = true;
    constexpr intptr_t skinFromFile = 2;
    if (SkinLibrary().Load(GetAppPath() + "appface.dll")) SkinLibrary().Call("SkinStart", {skinFile, skinFromFile});
}

void RemoveSkin() {
    if (!State().skinActive) return;
    SkinLibrary().Call("SkinRemove", {});
    State().skinActive = false;
}

void ExemptFromSkin(const Control* control) {
    if (control) SkinLibrary().Call("SkinWindowSet", {host::WindowOf(*control), 0});
}
