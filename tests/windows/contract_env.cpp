// The Windows side of the contract tests.
#include "contract/contract.h"
#include "controls/win32/drawing.h"
#include "controls/win32/host.h"
#include "platform/machine.h"
#include "platform/win32/wide.h"

ContractPlace PrepareContract() {
    std::string folder = pc::TempFolder() + "BrevantaContract";
    pc::MakeFolder(folder);
    return {folder, "ping -n 30 127.0.0.1", !pc::Environment("programfiles(x86)").empty()};
}

void ScaleForm(Form& form, int percent) {
    auto window = reinterpret_cast<HWND>(host::WindowOf(form));
    RECT place;
    GetWindowRect(window, &place);
    constexpr UINT messageDpiChanged = 0x02E0;
    auto dpi = static_cast<WORD>(96 * percent / 100);
    SendMessageW(window, messageDpiChanged, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&place));
}

PixelBox PixelPlace(const Control& control) {
    RECT place = host::PixelBox(control, host::WindowOfControl(control)->form.dpi);
    RECT real;
    GetWindowRect(host::WindowOfControl(control)->window, &real);
    if (control.GetKind() == Kind::combo) place.bottom = place.top + real.bottom - real.top;
    return {place.left, place.top, place.right, place.bottom};
}

PixelBox TextRoom(const Control& control, const std::string& text, int width) {
    const host::ControlWindow& view = *host::WindowOfControl(control);
    UINT flags = control.Flags() & noPrefix ? DT_NOPREFIX : 0;
    flags |= control.Flags() & wrap ? DT_WORDBREAK | DT_EDITCONTROL : DT_SINGLELINE;
    SIZE size = host::MeasureString(pc::Wide(text), host::FontFor(view), width, flags);
    return {0, 0, size.cx, size.cy};
}
