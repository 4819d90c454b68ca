// The message loops, modal forms, and the keys that forms handle.
#include <algorithm>
#include <vector>

#include "controls/win32/host.h"
#include "platform/win32/pump.h"

namespace host {

namespace {

struct ModalLoop {
    const Form* form;
    std::vector<HWND> blocked;  // windows that this loop has disabled
    bool ended = false;
};

std::vector<ModalLoop*> loops;  // innermost last

void BlockOthers(ModalLoop& loop) {
    for (Form* form : LoadedForms()) {
        HWND window = reinterpret_cast<HWND>(WindowOf(*form));
        if (form == loop.form || !IsWindowVisible(window) || !IsWindowEnabled(window)) continue;
        EnableWindow(window, FALSE);
        loop.blocked.push_back(window);
    }
}

void End(ModalLoop& loop) {
    loop.ended = true;
    auto inner = std::find(loops.begin(), loops.end(), &loop) + 1;
    // A loop inside this one still wants them blocked.
    if (inner != loops.end())
        (*inner)->blocked.insert((*inner)->blocked.end(), loop.blocked.begin(), loop.blocked.end());
    else
        for (HWND window : loop.blocked) EnableWindow(window, TRUE);
    loop.blocked.clear();
}

// Tab, access keys, Enter and Escape. The form may be gone when the message has been handled.
bool DialogFilter(MSG* message) {
    HWND root = GetAncestor(message->hwnd, GA_ROOT);
    if (!root || !FormOf(root)) return false;
    bool isKey = message->message >= WM_KEYFIRST && message->message <= WM_KEYLAST;
    if (isKey && BrowserUsesKey(message->hwnd, *message)) return true;
    HWND before = GetFocus();
    if (!IsDialogMessageW(root, message)) return false;
    HWND focus = GetFocus();
    FormWindow* form = FormOf(root);
    if (isKey && form && focus != before && IsChild(root, focus)) ScrollIntoView(*form, focus);
    return true;
}

// False when the program is asked to end.
bool HandleNext() {
    MSG message;
    BOOL got = GetMessageW(&message, nullptr, 0, 0);
    if (got <= 0) {
        PostQuitMessage(static_cast<int>(message.wParam));  // for the loop outside
        return false;
    }
    pc::HandleMessage(message);
    return true;
}

}  // namespace

void EndModal(const Form& form) {
    for (ModalLoop* loop : loops)
        if (loop->form == &form && !loop->ended) return End(*loop);
}

void SetOwnerForModal(FormWindow& form) {
    HWND owner = GetActiveWindow();
    if (!owner || !FormOf(owner) || owner == form.window || !IsWindowVisible(owner)) {
        owner = nullptr;
        for (Form* other : LoadedForms())
            if (other != &form.form && IsWindowVisible(WindowOfForm(*other)->window))
                owner = WindowOfForm(*other)->window;
    }
    SetWindowLongPtrW(form.window, GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(owner));
}

void InstallDialogFilter() { pc::dialogFilter = DialogFilter; }

void RunModal(Form& form) {
    if (!WindowOfForm(form)) return;  // the system had none to give: nobody could end it
    ModalLoop loop = {&form, {}};
    loops.push_back(&loop);
    BlockOthers(loop);
    while (!loop.ended && HandleNext()) {
    }
    if (!loop.ended) End(loop);
    loops.pop_back();
}

void RunUntilNoForms() {
    while (!LoadedForms().empty() && HandleNext()) {
    }
}

}  // namespace host
