// The system's own message boxes and pickers.
#pragma once

#include <cstdint>
#include <string>

namespace pc {

// Style bits and answers are the platform's.
inline constexpr uint32_t styleOk = 0;
inline constexpr uint32_t styleOkCancel = 1;
inline constexpr uint32_t styleYesNo = 4;
inline constexpr uint32_t styleStop = 16;
inline constexpr uint32_t styleQuestion = 32;
inline constexpr uint32_t styleExclamation = 48;
inline constexpr uint32_t styleInformation = 64;
inline constexpr int answerOk = 1;
inline constexpr int answerCancel = 2;
inline constexpr int answerYes = 6;
inline constexpr int answerNo = 7;

// Modal to the active form. An empty title shows the program's brand (the system needs one to read out).
int ShowMessage(const std::string& text, const std::string& title = "", uint32_t style = styleOk);

// Empty on cancel. filter is pairs parted by "|": "Programs|*.exe|All files|*.*".
std::string PickFile(const std::string& startFolder, const std::string& title, const std::string& filter);
// Empty on cancel.
std::string PickFolder(const std::string& prompt);

}  // namespace pc
