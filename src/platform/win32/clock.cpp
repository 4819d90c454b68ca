// Local time and its text.
#include <windows.h>

#include "platform/machine.h"
#include "platform/win32/wide.h"

namespace pc {

namespace {

ClockTime FromSystem(const SYSTEMTIME& time) {
    return {time.wYear,   time.wMonth,  time.wDay,          time.wHour,
            time.wMinute, time.wSecond, time.wMilliseconds, time.wDayOfWeek};
}

SYSTEMTIME ToSystem(const ClockTime& time) {
    SYSTEMTIME system = {};
    system.wYear = static_cast<WORD>(time.year);
    system.wMonth = static_cast<WORD>(time.month);
    system.wDay = static_cast<WORD>(time.day);
    system.wHour = static_cast<WORD>(time.hour);
    system.wMinute = static_cast<WORD>(time.minute);
    system.wSecond = static_cast<WORD>(time.second);
    return system;
}

}  // namespace

ClockTime LocalNow() {
    SYSTEMTIME now;
    GetLocalTime(&now);
    return FromSystem(now);
}

ClockTime LocalFromFileTime(uint64_t fileTime) {
    FILETIME utc = {static_cast<DWORD>(fileTime), static_cast<DWORD>(fileTime >> 32)}, local;
    SYSTEMTIME time;
    if (!FileTimeToLocalFileTime(&utc, &local) || !FileTimeToSystemTime(&local, &time)) return {};
    return FromSystem(time);
}

std::string ShortDateText(const ClockTime& time) {
    SYSTEMTIME system = ToSystem(time);
    wchar_t text[128] = L"";
    GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &system, nullptr, text, 128);
    return Utf8(text);
}

std::string LongTimeText(const ClockTime& time) {
    SYSTEMTIME system = ToSystem(time);
    wchar_t text[128] = L"";
    GetTimeFormatW(LOCALE_USER_DEFAULT, 0, &system, nullptr, text, 128);
    return Utf8(text);
}

int ShortDateOrder() {
    wchar_t digit[4] = L"";
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_IDATE, digit, 4);
    return digit[0] == L'1' ? 1 : digit[0] == L'2' ? 2 : 0;
}

}  // namespace pc
