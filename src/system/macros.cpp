#include "system/macros.h"

#include "platform/machine.h"
#include "system/registry.h"
#include "system/text.h"

namespace {

std::function<std::string(const std::string&)>& LabelSource() {
    static std::function<std::string(const std::string&)> source;
    return source;
}

std::string PanelLabel(const std::string& label) { return LabelSource() ? LabelSource()(label) : ""; }

constexpr const char* pathVariables[] = {"windir",       "systemroot",        "systemdrive", "homedrive",
                                         "programfiles", "programfiles(x86)", "userprofile", "allusersprofile"};

}  // namespace

void SetPanelLabelSource(std::function<std::string(const std::string&)> source) { LabelSource() = std::move(source); }

std::string ExpandMacros(const std::string& given) {
    if (given.find('[') == std::string::npos) return given;
    std::string text = ReplaceAllNoCase(given, "[ComputerName]", LowerCase(pc::Environment("computername")));
    text = ReplaceAllNoCase(text, "[UserName]", LowerCase(pc::Environment("username")));
    text = ReplaceAllNoCase(text, "[ExternalIP]", PanelLabel("lblExtIP"));
    text = ReplaceAllNoCase(text, "[InternalIP]", PanelLabel("lblIntIP"));
    return ReplaceAllNoCase(text, "[ClientID]", ReadRegistryText("HKLM", "Software\\Brevanta", "ClientID"));
}

std::string ExpandEnvVars(const std::string& given) {
    std::string text = given;
    for (const char* name : pathVariables)
        text = ReplaceAll(LowerCase(text), std::string("%") + name + "%", pc::Environment(name));
    return text;
}
