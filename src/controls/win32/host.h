// What the host keeps for each form and control, and the calls between its files.
#pragma once

#include <windows.h>
// behind windows.h
#include <commctrl.h>

#include <memory>
#include <string>

#include "controls/form.h"
#include "controls/form_host.h"
#include "controls/win32/look.h"
#include "controls/win32/pictures.h"

namespace host {

// Class of windows that this program paints wholly itself.
inline constexpr const wchar_t* surfaceClass = L"BrevantaSurface";
inline constexpr const wchar_t* formClass = L"BrevantaForm";

struct SideBarView;
struct BrowserView;

// Lives from Create to the end of its window.
struct FormWindow {
    explicit FormWindow(Form& shown) : form(shown) {}

    Form& form;
    HWND window = nullptr, toolTips = nullptr;
    HWND lastFocus = nullptr;  // control to focus when the form becomes active
    int dpi = 96;
    POINT scroll = {};    // pixels that the contents are moved up and left
    bool placed = false;  // has been shown once
    bool sizing = false;
    std::wstring tip;  // text that the tool tip window is showing
};

// Lives as long as its window; control and form outlive it while any handler runs.
struct ControlWindow {
    ControlWindow(Control& shown, FormWindow& owner) : control(shown), form(owner) {}

    Control& control;
    FormWindow& form;
    HWND window = nullptr;
    WNDPROC original = nullptr;
    bool isFinished = false;  // shows all that the model has
    bool hot = false;         // pointer upon it
    bool pressed = false;
    int64_t barShown = -1;  // range and pixel of a progress bar
    bool quiet = false;     // the program changes it: what the window tells is no doing of the user
    std::unique_ptr<Picture> picture;
    std::shared_ptr<SideBarView> sideBar;
    std::shared_ptr<BrowserView> browser;
};

// Events of a control are passed over while this lives.
class Quiet {
public:
    explicit Quiet(ControlWindow& view) : changed(view), before(view.quiet) { changed.quiet = true; }
    ~Quiet() { changed.quiet = before; }
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;

private:
    ControlWindow& changed;
    bool before;
};

// Null for windows of others.
FormWindow* FormOf(HWND window);
ControlWindow* ControlOf(HWND window);
FormWindow* WindowOfForm(const Form& form);
ControlWindow* WindowOfControl(const Control& control);

// The automation name: window property "ControlName" with a global atom.
void SetAutomationName(HWND window, const std::string& name);
void RemoveAutomationName(HWND window);

// --- control_windows.cpp: makes and keeps up the windows of controls
void CreateControls(FormWindow& form);
UINT_PTR TimerId(const Control& control);
// Fonts after a change of resolution or of the system's settings.
void RefreshFonts(FormWindow& form);
void RefreshToolTips(FormWindow& form);
unsigned FontStyle(const Control& control);
HFONT FontFor(const ControlWindow& view);
// Colour behind a child window, and of plain text upon it.
COLORREF BackgroundOf(HWND window);
COLORREF PlainTextOn(HWND window);
bool FocusIsVisible(HWND window);
bool IsLink(const Control& control);
// A link is reached by Tab.
void RefreshTabStops(FormWindow& form);

// --- notifications.cpp
// What containers and the form do alike: notifications and colours of their controls. False: not for them.
bool HandleChildMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);

// --- one handler a kind; false leaves the message to the window's class
using Handler = bool (*)(ControlWindow& view, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
bool LabelMessage(ControlWindow& view, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
bool ImageMessage(ControlWindow& view, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
bool LinkMessage(ControlWindow& view, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
bool EditMessage(ControlWindow& view, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
bool OptionMessage(ControlWindow& view, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
bool ContainerMessage(ControlWindow& view, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
bool SideBarMessage(ControlWindow& view, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
bool BrowserMessage(ControlWindow& view, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
// The label's text does not fit into its box.
bool IsCut(ControlWindow& label);
void LoadPicture(ControlWindow& image);

// --- list_windows.cpp
void SetUpListView(ControlWindow& view);
void FillItems(ControlWindow& view);      // entries, rows
void ShowSelection(ControlWindow& view);  // what is chosen and checked
void FitListColumns(ControlWindow& view);
void WidenLastColumn(ControlWindow& view);  // when the columns leave room
void ListNotified(ControlWindow& view, const NMHDR& notification);

// --- sidebar_window.cpp
void RebuildSideBar(ControlWindow& view);  // groups and items have changed
void LayoutSideBar(ControlWindow& view);   // size, font or what is expanded have changed

// --- browser_win32.cpp
void ShowAddress(ControlWindow& view);
// True when the browser has used up the key.
bool BrowserUsesKey(HWND window, MSG& message);

// --- layout.cpp: twips to pixels, what is seen, scrolling
// Where the model has the control in its parent, in pixels; of a combo with its list.
RECT PixelBox(const Control& control, int dpi);
void PlaceControl(ControlWindow& view);
void PlaceAllControls(FormWindow& form);
// Hides what is hidden, or lies wholly beneath a page.
void RefreshVisibility(FormWindow& form);
RECT WorkArea(HWND window);  // of its monitor, without the task bar
void PlaceFormFirst(FormWindow& form);
SIZE OuterSize(const FormWindow& form, int clientWidth, int clientHeight);
// The smallest contents in pixels; below it the form scrolls.
SIZE SmallestContents(const FormWindow& form);
void FormSized(FormWindow& form);
void Scroll(FormWindow& form, int bar, WPARAM wParam);
void ScrollBy(FormWindow& form, int lines);
void ScrollIntoView(FormWindow& form, HWND control);

// --- modal.cpp
void EndModal(const Form& form);
void SetOwnerForModal(FormWindow& form);
void InstallDialogFilter();

// --- form_window.cpp
void FocusNext(FormWindow& form);
// Everything again for another resolution or other colours and fonts.
void RefreshAll(FormWindow& form);

}  // namespace host
