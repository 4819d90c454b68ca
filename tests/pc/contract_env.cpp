// The simulated side of the contract tests: a fresh PC for each of them.
#include <algorithm>

#include "contract/contract.h"
#include "controls/form.h"
#include "pc/simulated_pc.h"
#include "system/text.h"

static int scale = 100;

ContractPlace PrepareContract() {
    SimulatedPc::UseWindows(Windows::sevenX64).AddFolder("C:\\Contract space");
    Pc().Program("ping -n 30", {.runs = 30'000});
    return {"C:\\Contract space", "ping -n 30 127.0.0.1", true};
}

void ScaleForm(Form&, int percent) { scale = percent; }

PixelBox PixelPlace(const Control& control) {
    auto pixels = [](int twips) { return (twips * scale + 750) / 1500; };
    const Box& box = control.Place();
    return {pixels(box.left), pixels(box.top), pixels(box.left + box.width), pixels(box.top + box.height)};
}

// As wide as Segoe UI of 9 points is on the average.
PixelBox TextRoom(const Control& control, const std::string& text, int width) {
    bool large = (control.Flags() & heading) != 0, wraps = (control.Flags() & wrap) != 0;
    int letter = control.Bold() ? 62 : 58, line = 16;  // tenths of a pixel; pixels
    if (large) letter = letter * 3 / 2, line = 24;
    int all = static_cast<int>(CharacterCount(ReplaceAll(text, "&", ""))) * letter * scale / 1000;
    int lines = wraps && width > 0 ? std::max((all + width - 1) / width, 1) : 1;
    return {0, 0, lines > 1 ? width : all, lines * line * scale / 100};
}
