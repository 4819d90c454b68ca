// Text macros: bracketed names in web addresses, percent names in file paths.
#pragma once

#include <functional>
#include <string>

// Replaces [ComputerName], [UserName], [ExternalIP], [InternalIP], [ClientID], case ignored. Nothing is URL-encoded.
std::string ExpandMacros(const std::string& text);
// Replaces eight percent names; the result is in lower case but for the last one's value.
std::string ExpandEnvVars(const std::string& text);

// Where the two addresses come from: caption of a label of the loaded panel, "" without one. Set by the panel.
void SetPanelLabelSource(std::function<std::string(const std::string& label)> source);
