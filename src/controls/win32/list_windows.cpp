// Combos, lists and list views.
#include <windowsx.h>

#include <algorithm>

#include "controls/win32/host.h"
#include "platform/win32/lookup.h"
#include "platform/win32/wide.h"

namespace host {

namespace {

constexpr int widestColumn = 720;  // pixels at 96 dots per inch
constexpr UINT uncheckedImage = INDEXTOSTATEIMAGEMASK(1), checkedImage = INDEXTOSTATEIMAGEMASK(2);

void FillCombo(const ControlWindow& view) {
    SendMessageW(view.window, CB_RESETCONTENT, 0, 0);
    for (const std::string& item : view.control.Items())
        SendMessageW(view.window, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(pc::Wide(item).c_str()));
}

void FillList(const ControlWindow& view) {
    SendMessageW(view.window, LB_RESETCONTENT, 0, 0);
    for (const std::string& item : view.control.Items())
        SendMessageW(view.window, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(pc::Wide(item).c_str()));
}

void SetCell(HWND window, UINT message, int row, int column, const std::string& text) {
    std::wstring wide = pc::Wide(text);
    LVITEMW cell = {};
    cell.mask = LVIF_TEXT;
    cell.iItem = row;
    cell.iSubItem = column;
    cell.pszText = wide.data();
    SendMessageW(window, message, 0, reinterpret_cast<LPARAM>(&cell));
}

void FillRows(const ControlWindow& view) {
    SendMessageW(view.window, WM_SETREDRAW, FALSE, 0);
    SendMessageW(view.window, LVM_DELETEALLITEMS, 0, 0);
    int row = 0;
    for (const ListRow& entry : view.control.Rows()) {
        for (size_t column = 0; column < std::max<size_t>(entry.cells.size(), 1); column++)
            SetCell(view.window, column == 0 ? LVM_INSERTITEMW : LVM_SETITEMW, row, static_cast<int>(column),
                    column < entry.cells.size() ? entry.cells[column] : "");
        row++;
    }
    SendMessageW(view.window, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(view.window, nullptr, TRUE);
}

void SetRowState(HWND window, size_t row, UINT state, UINT mask) {
    LVITEMW item = {};
    item.state = state;
    item.stateMask = mask;
    SendMessageW(window, LVM_SETITEMSTATE, row, reinterpret_cast<LPARAM>(&item));
}

void ShowRowStates(const ControlWindow& view) {
    bool checks = (view.control.Flags() & checkRows) != 0;
    auto& rows = view.control.Rows();
    for (size_t row = 0; row < rows.size(); row++) {
        UINT state = rows[row].selected ? LVIS_SELECTED | LVIS_FOCUSED : 0;
        if (checks) state |= rows[row].checked ? checkedImage : uncheckedImage;
        SetRowState(view.window, row, state, LVIS_SELECTED | (checks ? UINT{LVIS_STATEIMAGEMASK} : 0));
    }
}

}  // namespace

void SetUpListView(ControlWindow& view) {
    DWORD extended = LVS_EX_FULLROWSELECT | LVS_EX_LABELTIP | LVS_EX_DOUBLEBUFFER;
    if (view.control.Flags() & checkRows) extended |= LVS_EX_CHECKBOXES;
    SendMessageW(view.window, LVM_SETEXTENDEDLISTVIEWSTYLE, extended, static_cast<LPARAM>(extended));
    static auto* setTheme =
        pc::Lookup<HRESULT WINAPI(HWND, const wchar_t*, const wchar_t*)>(L"uxtheme.dll", "SetWindowTheme");
    if (setTheme && !Colours().highContrast) setTheme(view.window, L"Explorer", nullptr);
    int index = 0;
    for (const std::string& title : view.control.Columns()) {
        std::wstring wide = pc::Wide(title);
        LVCOLUMNW column = {};
        column.mask = LVCF_TEXT | LVCF_SUBITEM;
        column.pszText = wide.data();
        column.iSubItem = index;
        SendMessageW(view.window, LVM_INSERTCOLUMNW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&column));
        index++;
    }
}

void FillItems(ControlWindow& view) {
    switch (view.control.GetKind()) {
        case Kind::combo: FillCombo(view); break;
        case Kind::list: FillList(view); break;
        case Kind::listView: FillRows(view); break;
        default: return;
    }
    ShowSelection(view);
}

void ShowSelection(ControlWindow& view) {
    const Control& control = view.control;
    auto selected = static_cast<WPARAM>(control.Selected());
    switch (control.GetKind()) {
        case Kind::combo:
            SendMessageW(view.window, CB_SETCURSEL, selected, 0);
            if (control.Selected() < 0 && !(control.Flags() & dropList))
                SetWindowTextW(view.window, pc::Wide(control.Text()).c_str());
            break;
        case Kind::list: SendMessageW(view.window, LB_SETCURSEL, selected, 0); break;
        case Kind::listView: ShowRowStates(view); break;
        default: break;
    }
}

void FitListColumns(ControlWindow& view) {
    if (view.control.GetKind() != Kind::listView) return;
    int widest = Scaled(widestColumn, view.form.dpi), count = static_cast<int>(view.control.Columns().size());
    for (int column = 0; column < count; column++) {
        int width = 0;
        for (int rule : {LVSCW_AUTOSIZE, LVSCW_AUTOSIZE_USEHEADER}) {
            SendMessageW(view.window, LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(column), rule);
            LRESULT fitted = SendMessageW(view.window, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0);
            width = std::max(width, static_cast<int>(fitted));
        }
        // With header texts the last one has got what is left.
        bool last = column == count - 1;
        SendMessageW(view.window, LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(column),
                     last ? width : std::min(width + Scaled(8, view.form.dpi), widest));
    }
    WidenLastColumn(view);
}

void WidenLastColumn(ControlWindow& view) {
    auto last = static_cast<WPARAM>(view.control.Columns().size()) - 1;
    if (view.control.GetKind() != Kind::listView || view.control.Columns().empty()) return;
    RECT client;
    GetClientRect(view.window, &client);
    LRESULT others = 0, width = SendMessageW(view.window, LVM_GETCOLUMNWIDTH, last, 0);
    for (WPARAM column = 0; column < last; column++) others += SendMessageW(view.window, LVM_GETCOLUMNWIDTH, column, 0);
    if (others + width < client.right)
        SendMessageW(view.window, LVM_SETCOLUMNWIDTH, last, static_cast<LPARAM>(client.right - others));
}

void ListNotified(ControlWindow& view, const NMHDR& notification) {
    if (view.quiet || notification.code != static_cast<UINT>(LVN_ITEMCHANGED)) return;
    auto& changed = reinterpret_cast<const NMLISTVIEW&>(notification);
    if (!(changed.uChanged & LVIF_STATE) || changed.iItem < 0) return;
    Control& control = view.control;
    UINT before = changed.uOldState & LVIS_STATEIMAGEMASK, now = changed.uNewState & LVIS_STATEIMAGEMASK;
    bool chosen = !(changed.uOldState & LVIS_SELECTED) && (changed.uNewState & LVIS_SELECTED);
    HandlerScope scope;  // the first handler may take the window away
    if (before && now && before != now) control.UserCheckedRow(static_cast<size_t>(changed.iItem), now == checkedImage);
    if (chosen) control.UserSelected(changed.iItem);
}

}  // namespace host
