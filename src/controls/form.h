// Forms as data: tables of controls, live forms with handlers by control name, and the list of loaded forms.
//
// A form is described by a FormDefinition (a table of ControlSpec and a build routine that attaches handlers).
// Code reaches a control by name through the live Form; a name that the form lacks is skipped. What is drawn, and how
// clicks and typing arrive, is the host's business (form_host.h): controls/win32 in the product, the headless host
// in the tests. All places are in twips (1440 an inch).
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// What a control is.
enum class Kind : uint8_t {
    label,    // text; clickable when a handler is attached (then drawn as a link and reached by Tab)
    textBox,  // one line, or several with multiLine
    button,
    checkBox,  // value 0 or 1
    option,    // value 0 or 1; exclusive among the options of its container with the same group number
    combo,     // editable with a list; dropList makes it a pure choice
    list,      // read-only list of texts
    listView,  // rows with columns, check boxes with checkRows
    image,     // picture file or icon resource
    picture,   // a page: container with a background that covers what lies beneath
    frame,     // titled group
    progress,  // value 0 to maximum
    sideBar,   // groups of items
    timer,     // interval in milliseconds, no window
    browser,   // the platform's web browser control
};

// Bits of ControlSpec::flags.
enum ControlFlag : uint32_t {
    hidden = 1,
    disabled = 2,
    multiLine = 4,
    password = 8,
    readOnly = 16,
    defaultButton = 32,  // Enter
    cancelButton = 64,   // Escape
    bold = 128,
    heading = 256,  // title of a page or form: larger text in the accent colour
    note = 512,     // small, quiet text
    alignCenter = 1024,
    alignRight = 2048,
    checkRows = 4096,
    dropList = 8192,
    growWidth = 16384,   // right edge follows the form's
    growHeight = 32768,  // bottom edge follows the form's
    moveRight = 65536,   // keeps its distance from the right edge
    moveDown = 131072,   // keeps its distance from the bottom edge
    noPrefix = 262144,   // "&" is text and no access key
    wrap = 524288,       // label over several lines
    stretch = 1048576,   // image fills its box (Aspect 1)
};

// A place.
struct Box {
    int left = 0, top = 0, width = 0, height = 0;  // twips, relative to the container
};

// One row of a form's table.
struct ControlSpec {
    Kind kind = Kind::label;
    const char* name = "";     // control arrays: "comboRPDay(0)"
    const char* caption = "";  // UTF-8; "&" marks the access key
    Box box;
    const char* container = "";  // name of the picture or frame it lies in; empty: the form
    uint32_t flags = 0;
    int group = 0;           // options exclude each other within container and group
    const char* items = "";  // combo, list: entries parted by "|"; listView: column titles parted by "|"
};

struct FormDefinition;
class Form;

// System colours as the labels hold them; anything else is 0x00BBGGRR.
inline constexpr uint32_t colourButtonText = 0x80000012;
inline constexpr uint32_t colourHighlight = 0x8000000D;
inline constexpr uint32_t colourWarning = 192;    // red
inline constexpr uint32_t colourLink = 16711680;  // blue

// A row of a sidebar's group, or the text of a detail group.
struct SideBarItem {
    std::string caption;
    std::string detail;  // text of a detail group (lines parted by CR LF), empty for an item
};
// A card of a sidebar: a heading that collapses it, and its rows.
struct SideBarGroup {
    std::string heading, subHeading;
    bool special = false;  // drawn with the accent
    bool expanded = true;
    std::vector<SideBarItem> items;
};

// A row of a list view.
struct ListRow {
    std::vector<std::string> cells;
    bool checked = false;
    bool selected = false;
};

// What of a control has changed; told to the host.
enum class Change : uint8_t {
    text,
    visible,
    enabled,
    value,
    look,
    place,
    items,
    picture,
    timer,
    toolTip,
    focus,
    address,
};

// One live control. Change it through the setters so that the host hears of it.
class Control {
public:
    Control(Form& owner, const ControlSpec& spec);

    const std::string& Name() const { return name; }
    Kind GetKind() const { return kind; }
    Form& Owner() const { return owner; }
    const std::string& Container() const { return container; }
    uint32_t Flags() const { return flags; }
    int Group() const { return group; }

    // Caption of a label, button, frame; text of a text box or combo.
    const std::string& Text() const { return text; }
    void SetText(const std::string& value);
    bool Visible() const { return visible; }
    void SetVisible(bool value);
    // Visible with all its containers.
    bool Shown() const;
    bool Enabled() const { return enabled; }
    void SetEnabled(bool value);
    // Check boxes and options: 0 or 1. Setting an option to 1 clears its neighbours. Progress: position.
    // Sidebar: the item of the first group that is marked as the one shown, from 1; 0 is none.
    int Value() const { return value; }
    void SetValue(int newValue);
    // Both are options of one group in one container.
    bool Excludes(const Control& other) const;
    int Maximum() const { return maximum; }
    void SetMaximum(int value);
    uint32_t Colour() const { return colour; }
    void SetColour(uint32_t value);
    bool Bold() const { return isBold; }
    void SetBold(bool value);
    bool Underline() const { return isUnderlined; }
    void SetUnderline(bool value);
    uint32_t Align() const { return flags & (alignCenter | alignRight); }
    void SetAlign(uint32_t alignFlag);  // 0, alignCenter or alignRight
    const std::string& ToolTip() const { return toolTip; }
    void SetToolTip(const std::string& value);
    const Box& Place() const { return box; }
    void SetPlace(const Box& value);
    // A picture file's full path, or "#name" for an icon resource; empty shows nothing.
    const std::string& Picture() const { return picture; }
    void SetPicture(const std::string& value);
    bool Stretch() const { return (flags & stretch) != 0; }
    void SetStretch(bool value);
    // Timers.
    int Interval() const { return interval; }
    void SetInterval(int milliseconds);  // enable with SetEnabled
    // Combos and lists; index -1 is none.
    const std::vector<std::string>& Items() const { return items; }
    void SetItems(std::vector<std::string> values);
    void AddItem(const std::string& value);
    int Selected() const { return selected; }
    void Select(int index);
    // List views.
    const std::vector<std::string>& Columns() const { return columns; }
    const std::vector<ListRow>& Rows() const { return rows; }
    void SetRows(std::vector<ListRow> values);
    void CheckRow(size_t row, bool checked);
    void FitColumns();  // widths fit the contents
    // Sidebar; groups and items count from 1 in the click event.
    const std::vector<SideBarGroup>& Groups() const { return groups; }
    void SetGroups(std::vector<SideBarGroup> values);
    void Expand(size_t group, bool expanded);
    // Browser.
    void Navigate(const std::string& address);
    const std::string& Address() const { return address; }
    void SetFocus();

    // Handlers. All may be empty.
    std::function<void()> onClick;
    std::function<void()> onChange;  // typed, picked, checked
    std::function<void()> onMouseMove;
    std::function<void()> onTimer;
    std::function<void(int group, int item)> onItemClick;  // sidebar, both from 1

    // Called by the host when the user did something; runs the handlers. A click on a control that is disabled
    // or not shown is passed over.
    void UserClicked();
    void UserTyped(const std::string& newText);
    void UserSelected(int index);
    void UserCheckedRow(size_t row, bool checked);
    void UserClickedItem(int group, int item);
    void TimerTicked();

    intptr_t hostData = 0;  // the host's own (window handle or index)

private:
    void Tell(Change change);

    Form& owner;
    std::string name, container, text, toolTip, picture, address;
    Kind kind;
    uint32_t flags;
    int group;
    Box box;
    bool visible, enabled, isBold, isUnderlined = false, ticking = false;
    int value = 0, maximum = 100, interval = 0, selected = -1;
    uint32_t colour = colourButtonText;
    std::vector<std::string> items, columns;
    std::vector<ListRow> rows;
    std::vector<SideBarGroup> groups;
};

// How a form's window behaves.
enum class Border : uint8_t { fixed, sizable, dialog, toolWindow };

// A form as data.
struct FormDefinition {
    const char* name;  // "frmMain"
    const char* caption;
    int width, height;  // client area in twips
    Border border;
    std::span<const ControlSpec> controls;
    void (*build)(Form&);  // attaches handlers and sets what the table cannot say
};

// A loaded form. Made by LoadForm, gone after Unload.
class Form {
public:
    explicit Form(const FormDefinition& definition);
    ~Form();
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    const std::string& Name() const { return name; }
    const std::string& Caption() const { return caption; }
    void SetCaption(const std::string& value);
    const FormDefinition& Definition() const { return definition; }
    const std::vector<std::unique_ptr<Control>>& Controls() const { return controls; }
    // Null when the form has no such control; case ignored.
    Control* Find(std::string_view controlName) const;

    // Shorthand that passes over a missing control.
    std::string Text(std::string_view control) const;
    void SetText(std::string_view control, const std::string& value);
    void SetVisible(std::string_view control, bool value);
    void SetEnabled(std::string_view control, bool value);
    bool Checked(std::string_view control) const;
    void SetValue(std::string_view control, int value);
    void OnClick(std::string_view control, std::function<void()> handler);

    bool Visible() const { return visible; }
    void SetVisible(bool value);  // show modeless or hide
    bool Modal() const { return modal; }
    int Width() const { return width; }  // client area now, twips
    int Height() const { return height; }
    // By the host: moves and grows the controls by their flags, then runs onResize.
    void Resized(int newWidth, int newHeight);
    // "a1" or a full path of an .ico file.
    const std::string& Icon() const { return icon; }
    void SetIcon(const std::string& value);

    std::function<void()> onLoad;
    std::function<void()> onActivate;
    std::function<void()> onResize;
    // fromUser: by the close box. False refuses.
    std::function<bool(bool fromUser)> onQueryUnload;
    std::function<void()> onUnload;

    intptr_t hostData = 0;

private:
    friend class Control;
    friend Form& LoadForm(const FormDefinition&);
    friend void ShowFormModal(const FormDefinition&);
    friend bool UnloadForm(Form&, bool);
    void PlaceByFlags(Control& control, int widthGained, int heightGained);

    const FormDefinition& definition;
    std::string name, caption, icon;
    int width, height;
    bool visible = false, modal = false;
    bool hosted = false;     // the host has windows for it
    bool unloading = false;  // onUnload runs
    std::vector<std::unique_ptr<Control>> controls;
};

// The loaded form of this definition, or a new hidden one whose build and onLoad have run.
Form& LoadForm(const FormDefinition& definition);
// Loads if needed and shows modeless.
Form& ShowForm(const FormDefinition& definition);
// Loads if needed, shows and returns when the form is unloaded or hidden.
void ShowFormModal(const FormDefinition& definition);
// Asks onQueryUnload, runs onUnload, closes the window. False when refused. The object itself lives until no handler
// is on the stack.
bool UnloadForm(Form& form, bool fromUser = false);
// Null when no form of that name is loaded; case ignored.
Form* FindForm(std::string_view name);
bool IsFormLoaded(std::string_view name);
// All loaded forms, oldest first.
std::vector<Form*> LoadedForms();
void UnloadAllFormsBut(Form* keep);
// Drops all forms without asking or telling anybody. For hosts whose program ended in the midst of a handler.
void ForgetForms();

// Marks a handler on the stack, so that unloaded forms are freed only outside all handlers. For hosts.
class HandlerScope {
public:
    HandlerScope();
    ~HandlerScope();
    HandlerScope(const HandlerScope&) = delete;
    HandlerScope& operator=(const HandlerScope&) = delete;
};
