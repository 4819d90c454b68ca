// The three schedule rows of page picAutoSRP.
#include "console/fields.h"

namespace {

#define ROW(n, top)                                                                                                  \
    {Kind::combo, "comboRPDay(" #n ")", "Daily", {300, top, 1500, 345}, "picAutoSRP", 0, 0,                          \
     "Daily|Mon|Tue|Wed|Thu|Fri|Sat|Sun"},                                                                           \
        {Kind::textBox, "txtRPTime(" #n ")", "10:00:00", {1980, top, 1500, 345}, "picAutoSRP"},                      \
        {Kind::textBox, "txtRPName(" #n ")", "", {3660, top, 4500, 345}, "picAutoSRP"},                              \
        {Kind::checkBox, "chkEnableRP(" #n ")", "Enable Schedule", {8400, top + 30, 2400, 285}, "picAutoSRP"},       \
        {Kind::label, "txtRPTime(" #n ")Note", "", {1980, top + 360, 4500, 210}, "picAutoSRP", note | noPrefix},

constexpr ControlSpec controls[] = {
    {Kind::label, "lblSRPTitle", "Automatic SRP", {300, 240, 10680, 420}, "picAutoSRP", heading | noPrefix},
    {Kind::label, "lblSRPDay", "Day:", {300, 840, 1500, 240}, "picAutoSRP", bold},
    {Kind::label, "lblSRPTime", "Specify Time (hh:mm:ss)", {1980, 600, 1560, 480}, "picAutoSRP", bold | wrap},
    {Kind::label, "lblSRPName", "Restore Point Name:", {3660, 840, 4500, 240}, "picAutoSRP", bold},
    ROW(0, 1140) ROW(1, 1740) ROW(2, 2340)
    {Kind::label, "lblSRPFormat", "Must be 24 hour format!", {300, 2970, 6000, 240}, "picAutoSRP", note},
};

#undef ROW

}  // namespace

std::span<const ControlSpec> RestoreScheduleControls() { return controls; }
