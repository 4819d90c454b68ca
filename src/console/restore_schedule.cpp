// The three schedule rows of page picAutoSRP.
#include "console/fields.h"

namespace {

#define ROW(n, top)                                                                                            \
    {Kind::combo,                                                                                              \
     "comboRPDay(" #n ")",                                                                                     \
     "Daily",                                                                                                  \
     {300, top, 1500, 345},                                                                                    \
     "picAutoSRP",                                                                                             \
     0,                                                                                                        \
     0,                                                                                                        \
     "Daily|Mon|Tue|Wed|Thu|Fri|Sat|Sun"},                                                                     \
        {Kind::textBox, "txtRPTime(" #n ")", "10:00:00", {1980, top, 1500, 345}, "picAutoSRP"},                \
        {Kind::textBox, "txtRPName(" #n ")", "", {3660, top, 4500, 345}, "picAutoSRP"},                        \
        {Kind::checkBox, "chkEnableRP(" #n ")", "Enable Schedule", {8400, top + 30, 2400, 285}, "picAutoSRP"}, \
        {Kind::label, "txtRPTime(" #n ")Note", "", {1980, top + 360, 4500, 210}, "picAutoSRP", note | noPrefix},

constexpr ControlSpec controls[] = {
    {Kind::label, "lblSRPTitle", "Automatic SRP", {300, 240, 10680, 420}, "picAutoSRP", heading | noPrefix},
    {Kind::label, "lblSRPDay", "Day:", {300, 960, 1500, 240}, "picAutoSRP", bold},
    {Kind::label, "lblSRPTime", "Specify Time (hh:mm:ss)", {1980, 690, 1620, 540}, "picAutoSRP", bold | wrap},
    {Kind::label, "lblSRPName", "Restore Point Name:", {3660, 960, 4500, 240}, "picAutoSRP", bold},
    ROW(0, 1260) ROW(1, 1860) ROW(2, 2460){
        Kind::label, "lblSRPFormat", "Must be 24 hour format!", {300, 3090, 6000, 240}, "picAutoSRP", note},
};

#undef ROW

}  // namespace

std::span<const ControlSpec> RestoreScheduleControls() { return controls; }
