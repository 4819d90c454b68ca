// A small modal question with one line to type.
#pragma once

#include <string>

// The text typed; empty on cancel.
std::string InputBox(const std::string& prompt, const std::string& initialText = "");
