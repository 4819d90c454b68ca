// Places the items of the page tables: two columns with a cursor each; a full-width item moves both below it.
#include <algorithm>
#include <deque>

#include "console/fields.h"
#include "system/text.h"

namespace {

constexpr int pageLeft = consoleSideBarWidth, pageWidth = consoleWidth - consoleSideBarWidth;
constexpr int margin = 300, gap = 300;
constexpr int fullWidth = pageWidth - 2 * margin, halfWidth = (fullWidth - gap) / 2;
constexpr int lineHeight = 270, boxHeight = 345;
// Generous for the system font at 9 points, so that a text that just fits here is not cut there.
constexpr int characterWidth = 92;

// Makes the texts of control names that a table cannot hold itself live as long as the program.
const char* Kept(std::string text) {
    static std::deque<std::string> texts;
    return texts.emplace_back(std::move(text)).c_str();
}

int LinesOf(const char* caption, int width) {
    int perLine = std::max(1, width / characterWidth);
    return std::max(1, (static_cast<int>(CharacterCount(caption)) + perLine - 1) / perLine);
}

class PageLayout {
public:
    PageLayout(const Page& layoutPage, std::vector<ControlSpec>& out) : page(layoutPage), controls(out) {
        controls.push_back({Kind::picture,
                            page.control,
                            page.sideBarText,
                            {pageLeft, 0, pageWidth, consoleHeight},
                            "",
                            hidden | growWidth | growHeight});
    }

    void Skip(int height) { left = right = height; }

    void Place(const PageItem& item) {
        Begin(item.column);
        switch (item.item) {
            case Item::title: PlaceTitle(item); break;
            case Item::group: PlaceGroup(item); break;
            case Item::text:
            case Item::secret:
            case Item::memo:
            case Item::combo:
            case Item::list: PlaceBox(item); break;
            case Item::check:
            case Item::option: PlaceTick(item); break;
            case Item::button: PlaceButton(item); break;
            case Item::note:
            case Item::label: PlaceNote(item); break;
            case Item::picture: Add(Kind::image, ControlName(page, item), "", 1560, 0); break;
        }
        End(item.column);
    }

private:
    void Begin(int column) {
        if (column == 0) left = right = std::max(left, right);
        x = column == 2 ? margin + halfWidth + gap : margin;
        y = column == 2 ? right : left;
        width = column == 0 ? fullWidth : halfWidth;
    }
    void End(int column) {
        if (column != 2) left = y;
        if (column != 1) right = y;
    }
    void Add(Kind kind, std::string name, const char* caption, int height, uint32_t flags, const PageItem* item = {}) {
        // A label without a name of its own is still found, by page and number.
        if (name.empty()) name = std::string(page.control) + ".Label" + NumberText(++labels);
        controls.push_back({kind,
                            Kept(std::move(name)),
                            caption,
                            {x, y, width, height},
                            page.control,
                            flags,
                            item ? item->group + page.copy * 10 : 0,
                            item ? item->items : ""});
        y += height;
    }
    void PlaceTitle(const PageItem& item) {
        y = 240;
        const char* caption = item.caption;
        if (page.items.data() && std::string(page.sideBarText).starts_with("Custom Button"))
            caption = Kept(page.copy ? std::string(page.sideBarText) + " (New Interface Only)" : "Custom Button");
        Add(Kind::label, "", caption, 420, heading | noPrefix);
        y += 120;
        top = y;
    }
    void PlaceGroup(const PageItem& item) {
        if (y > top) y += 120;
        Add(Kind::label, "", item.caption, 270, bold | noPrefix);
        y += 60;
    }
    void PlaceBox(const PageItem& item) {
        if (*item.caption) {
            Add(Kind::label, "", item.caption, lineHeight * LinesOf(item.caption, width), wrap);
            y += 15;
        }
        Kind kind = item.item == Item::combo ? Kind::combo : item.item == Item::list ? Kind::list : Kind::textBox;
        uint32_t flags = item.item == Item::secret ? password : item.item == Item::memo ? multiLine : 0u;
        int height = item.item == Item::memo ? 1200 : item.item == Item::list ? 2520 : boxHeight;
        std::string name = ControlName(page, item);
        Add(kind, name, "", height, flags, &item);
        // What is wrong with the box, or why it is grey.
        Add(Kind::label, name + "Note", "", 210, note | noPrefix);
        y += 45;
    }
    void PlaceTick(const PageItem& item) {
        int lines = LinesOf(item.caption, width - 300);
        Add(item.item == Item::check ? Kind::checkBox : Kind::option, ControlName(page, item), item.caption,
            lineHeight * lines + 30, wrap, &item);
        y += 45;
    }
    void PlaceButton(const PageItem& item) {
        y += 45;
        int all = width;
        width = std::min(width, 3000);
        Add(Kind::button, item.control, item.caption, 420, 0);
        width = all;
        y += 75;
    }
    void PlaceNote(const PageItem& item) {
        bool isNote = item.item == Item::note;
        Add(Kind::label, item.control, item.caption, lineHeight * LinesOf(item.caption, width),
            (isNote ? note : 0u) | wrap | noPrefix);
        y += 45;
    }

    const Page& page;
    std::vector<ControlSpec>& controls;
    int left = 240, right = 240, top = 0, x = 0, y = 0, width = 0, labels = 0;
};

}  // namespace

std::span<const ControlSpec> LayoutConsole() {
    static const std::vector<ControlSpec> all = [] {
        std::vector<ControlSpec> controls;
        controls.push_back({Kind::sideBar, "SideBar", "", {0, 0, consoleSideBarWidth, consoleHeight}, "", growHeight});
        for (const Page& page : ConsolePages()) {
            PageLayout layout(page, controls);
            std::string name = page.control;
            if (name == "picAutoSRP") {
                for (const ControlSpec& spec : RestoreScheduleControls()) controls.push_back(spec);
                layout.Skip(3480);
            }
            if (name == "picCustomAppsMaint")
                for (const ControlSpec& spec : AppEditorControls()) controls.push_back(spec);
            for (const PageItem& item : page.items) layout.Place(item);
        }
        return controls;
    }();
    return all;
}
