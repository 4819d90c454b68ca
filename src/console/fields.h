// The console's pages as data: what stands on a page, under which settings key it is kept, and how it is placed.
// The same table feeds layout, load, save and the tests.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "controls/form.h"

// What stands on a page.
enum class Item : uint8_t {
    title,   // of the page
    group,   // a heading within the page
    text,    // caption above a box of one line; without caption it belongs to the check box or option above it
    secret,  // the same, typed as dots
    memo,    // several lines
    check,
    option,
    combo,  // editable with a list
    button,
    note,     // quiet text
    label,    // a text that code sets
    list,     // for reading
    picture,  // image preview
};

// How a control's state is kept.
enum class Keep : uint8_t {
    none,
    asText,      // a check box as "0" or "1", a box as its text
    asLines,     // line breaks as "|"
    scrambled,   // Ascii85 of the XORed text
    whenChosen,  // an option: its value is written when it is the chosen one, otherwise nothing
    optionFlag,  // an option with a key of its own: "1" or "0"
};

// One row of a page: a control with its caption and the setting that it keeps.
struct PageItem {
    Item item;
    const char* control = "";
    const char* caption = "";
    const char* section = "";
    const char* key = "";
    int column = 0;             // 0 the whole width, 1 left half, 2 right half
    const char* designed = "";  // state before any setting is read; a box text, or "1" for checked
    Keep keep = Keep::asText;
    const char* value = "";  // what a chosen option writes
    int group = 0;           // options of one number exclude each other
    const char* items = "";  // of a combo or list, parted by "|"
};

// A page of the console and the control it stands in.
struct Page {
    const char* control;      // "picBranding"
    const char* sideBarText;  // "Branding and Logo"
    std::span<const PageItem> items;
    int copy = 0;  // of the custom button page: 0 to 4; behind each control name but the first copy's
};

// All fifteen pages in the order of the sidebar.
std::span<const Page> ConsolePages();

// Pages of fixed layout, of other rooms.
std::span<const ControlSpec> AppEditorControls();        // picCustomAppsMaint
std::span<const ControlSpec> RestoreScheduleControls();  // picAutoSRP

// Name and section on the given page: the custom button pages carry their number.
std::string ControlName(const Page& page, const PageItem& item);
std::string SectionName(const Page& page, const PageItem& item);

// Every control of the console form, placed. The texts live as long as the program.
std::span<const ControlSpec> LayoutConsole();

// One setting with its control, for load and save.
struct Field {
    std::string control, section, key, value;
    Item item = Item::text;
    Keep keep = Keep::asText;
    std::string designed;
};
// In the order in which a save writes them.
const std::vector<Field>& ConsoleFields();

// Twips of the console form.
inline constexpr int consoleWidth = 14700, consoleHeight = 9900, consoleSideBarWidth = 3300;
