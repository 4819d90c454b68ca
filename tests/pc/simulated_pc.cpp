// The PC itself: what happened, what time it is, what shall go wrong.
#include "pc/simulated_pc.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>

#include "pc/names.h"
#include "pc/simulated_disk.h"
#include "pc/simulated_hives.h"
#include "pc/simulated_programs.h"

namespace {

std::unique_ptr<SimulatedPc>& Current() {
    static std::unique_ptr<SimulatedPc> current;
    return current;
}
SimulatedPc* beingMade = nullptr;  // the constructor prepares itself through Pc()

}  // namespace

void (*complain)(const std::string& text) = [](const std::string& text) { throw std::logic_error(text); };

SimulatedPc& Pc() {
    if (beingMade) return *beingMade;
    if (!Current()) Current() = std::make_unique<SimulatedPc>();
    return *Current();
}

SimulatedPc::SimulatedPc(Windows windows) {
    beingMade = this;
    SetClock(2026, 3, 14, 9, 30);
    InstallWindows(*this, windows);
    beingMade = nullptr;
}

SimulatedPc::~SimulatedPc() = default;

SimulatedPc& SimulatedPc::UseWindows(Windows windows) {
    Current() = std::make_unique<SimulatedPc>(windows);
    return *Current();
}

void SimulatedPc::RestartProgram() {
    for (auto& [handle, file] : Of<Disk>().open)
        if (file.node) --(file.writes ? file.node->writers : file.node->readers);
    Of<Disk>().open.clear();
    Of<Hives>().open.clear();
    Of<Programs>().handles.clear();
    Of<Programs>().atPump.clear();
    Of<Programs>().later.clear();
    for (auto* list : {&journal, &trace, &shownForms, &contacted, &heldPrivileges}) list->clear();
    interference.clear();
    failAt = stopAt = -1;
    plugIsOut = redirectionOff = false;
    onPump = nullptr;
}

std::vector<std::string> SimulatedPc::Journal(std::string_view head) const {
    std::vector<std::string> lines;
    for (const std::string& line : journal)
        if (line.starts_with(head)) lines.push_back(line);
    return lines;
}

bool SimulatedPc::Traced(std::string_view text) const {
    return std::any_of(trace.begin(), trace.end(),
                       [&](const std::string& line) { return line.find(text) != std::string::npos; });
}

void SimulatedPc::Begin() {
    ++calls;
    CheckPatience();
    if (auto found = interference.find(calls); found != interference.end()) {
        auto action = std::move(found->second);
        interference.erase(found);
        action();
    }
    begun = true;
}

bool SimulatedPc::Fails(uint32_t code, const char* call) {
    if (!begun) Begin();
    begun = false;
    if (notesCalls) {
        called.resize(static_cast<size_t>(calls));
        called.back() = call;
    }
    return (plugIsOut || calls == failAt) && !Refuse(code);
}

bool SimulatedPc::ChangeFails(uint32_t code, const char* call) {
    if (Fails(code, call)) return true;
    if (++changes != stopAt) return false;
    // From here on nothing changes any more, also not in what is cleaned up on the way out.
    plugIsOut = true;
    throw PlugPulled{};
}

void SimulatedPc::CheckPatience() {
    if (elapsed > patience || ++looks > 20'000'000) throw WaitsForever{};
}

// --- time
// -------------------------------------------------------------------------------------------------------------

namespace {

constexpr uint64_t perMillisecond = 10'000, perDay = 864'000'000'000;
constexpr std::chrono::sys_days start = std::chrono::January / 1 / 1601;

pc::ClockTime ClockOf(uint64_t local) {
    std::chrono::sys_days day = start + std::chrono::days(local / perDay);
    std::chrono::year_month_day date = day;
    auto rest = static_cast<int>(local % perDay / perMillisecond);
    return {static_cast<int>(date.year()),
            static_cast<int>(static_cast<unsigned>(date.month())),
            static_cast<int>(static_cast<unsigned>(date.day())),
            rest / 3'600'000,
            rest / 60'000 % 60,
            rest / 1000 % 60,
            rest % 1000,
            static_cast<int>(std::chrono::weekday(day).c_encoding())};
}

std::string Two(int number) { return (number < 10 ? "0" : "") + std::to_string(number); }

}  // namespace

pc::FileTime FileTimeOf(int year, int month, int day, int hour, int minute, int second) {
    auto days = std::chrono::sys_days(std::chrono::year(year) / month / day) - start;
    return static_cast<uint64_t>(days.count()) * perDay +
           static_cast<uint64_t>(hour * 3600 + minute * 60 + second) * 1000 * perMillisecond;
}

void SimulatedPc::SetClock(int year, int month, int day, int hour, int minute, int second) {
    clockBase = FileTimeOf(year, month, day, hour, minute, second) - elapsed * perMillisecond;
}

pc::FileTime SimulatedPc::Now() const { return clockBase + elapsed * perMillisecond; }

namespace pc {

ClockTime LocalNow() { return ClockOf(Pc().Now()); }

ClockTime LocalFromFileTime(uint64_t fileTime) { return fileTime >> 63 ? ClockTime{} : ClockOf(fileTime); }

std::string ShortDateText(const ClockTime& time) {
    std::string month = std::to_string(time.month), day = std::to_string(time.day), year = std::to_string(time.year);
    if (Pc().dateOrder == 1) return Two(time.day) + "/" + Two(time.month) + "/" + year;
    if (Pc().dateOrder == 2) return year + "-" + Two(time.month) + "-" + Two(time.day);
    return month + "/" + day + "/" + year;
}

std::string LongTimeText(const ClockTime& time) {
    std::string tail = ":" + Two(time.minute) + ":" + Two(time.second);
    if (Pc().dateOrder != 0) return Two(time.hour) + tail;
    return std::to_string(time.hour % 12 ? time.hour % 12 : 12) + tail + (time.hour < 12 ? " AM" : " PM");
}

int ShortDateOrder() { return Pc().dateOrder; }

}  // namespace pc
