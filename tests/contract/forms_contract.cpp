// A walk over every form of the program, with this side's fonts: what can be used has a name, a text and its place in
// the order of reading; nothing overlaps, sticks out or is cut.
#include <algorithm>
#include <map>
#include <set>

#include "console/console.h"
#include "contract/contract.h"
#include "controls/form_host.h"
#include "controls/status_window.h"
#include "mail/support_mail.h"
#include "panel/browser.h"
#include "panel/dialogs.h"
#include "panel/panel_forms.h"
#include "panel/password_prompt.h"
#include "repair/browser_addons.h"
#include "system/text.h"
#include "tools/maintenance_check/reminder_form.h"
#include "tools/safe_mode/safe_form.h"
#include "transfer/cloud.h"
#include "transfer/download.h"
#include "transfer/self_update.h"

namespace {

bool IsOneOf(const Control& control, std::initializer_list<Kind> kinds) {
    return std::find(kinds.begin(), kinds.end(), control.GetKind()) != kinds.end();
}

bool HasOwnText(const Control& control) {
    return IsOneOf(control, {Kind::button, Kind::checkBox, Kind::option, Kind::label, Kind::image});
}

bool CanBeUsed(const Control& control) {
    if (IsOneOf(control, {Kind::label, Kind::image})) return control.onClick != nullptr;
    return !IsOneOf(control, {Kind::frame, Kind::picture, Kind::progress, Kind::timer});
}

// Fills what it lies in, and says what it holds by itself.
bool IsWhole(const Control& control) { return IsOneOf(control, {Kind::sideBar, Kind::browser}); }

char AccessKey(const Control& control) {
    if ((control.Flags() & noPrefix) || !HasOwnText(control)) return 0;
    std::string text = ReplaceAll(control.Text(), "&&", "");
    size_t mark = text.find('&');
    return mark != std::string::npos && mark + 1 < text.size() ? LowerCase(text.substr(mark + 1, 1))[0] : 0;
}

class FormWalk {
public:
    FormWalk(Form& walked, int scale) : form(walked), percent(scale) {}

    void Run() {
        std::set<std::string> names;
        for (const auto& control : form.Controls()) {
            if (control->GetKind() == Kind::timer) continue;
            EXPECT_TRUE(!control->Name().empty() && names.insert(LowerCase(control->Name())).second) << Where(*control);
            CheckText(*control);
            CheckPlace(*control);
            CheckRoom(*control);
            CheckOrder(*control);
        }
        CheckAccessKeys();
    }

private:
    std::string Where(const Control& control) const {
        return form.Name() + "." + control.Name() + " \"" + control.Text() + "\" at " + NumberText(percent) + " %";
    }
    int Scaled(int pixels) const { return pixels * percent / 100; }

    // A text of its own; a box has a label right before it, or belongs to the tick above it.
    void CheckText(const Control& control) {
        const Control* said = before;
        before = &control;
        if (!CanBeUsed(control) || IsWhole(control)) return;
        if (HasOwnText(control)) {
            EXPECT_FALSE(control.Text().empty()) << Where(control);
            return;
        }
        // The note below a box belongs to it; of boxes in one row the first is named by the label, or all by the heads
        // of their columns.
        if (control.Name().find('(') != std::string::npos) return;
        EXPECT_TRUE(said && said->Container() == control.Container() && !said->Text().empty() && HasOwnText(*said))
            << Where(control) << " behind " << (said ? said->Name() : "nothing");
    }

    void CheckPlace(const Control& control) {
        PixelBox place = PixelPlace(control), outer{0, 0, Pixels(form.Width()), Pixels(form.Height())};
        if (const Control* container = form.Find(control.Container())) {
            PixelBox box = PixelPlace(*container);
            outer = {0, 0, box.right - box.left, box.bottom - box.top};
        }
        EXPECT_TRUE(place.left >= 0 && place.top >= 0 && place.right <= outer.right && place.bottom <= outer.bottom)
            << Where(control) << " sticks out";
        if (control.GetKind() == Kind::picture) return;  // a page lies upon others
        for (const Control* other : placed[control.Container()]) {
            PixelBox box = PixelPlace(*other);
            EXPECT_FALSE(place.left < box.right && box.left < place.right && place.top < box.bottom &&
                         box.top < place.bottom)
                << Where(control) << " lies on " << other->Name();
        }
        placed[control.Container()].push_back(&control);
    }

    // The text fits into its control with what the control draws beside it.
    void CheckRoom(const Control& control) {
        int across = 0, down = 0;
        switch (control.GetKind()) {
            case Kind::label: down = -3; break;  // below the letters is room to spare
            case Kind::button: across = 10, down = 6; break;
            case Kind::checkBox:
            case Kind::option: across = 18; break;
            case Kind::frame: across = 20; break;
            case Kind::textBox:
            case Kind::combo: down = 5; break;
            default: return;
        }
        PixelBox place = PixelPlace(control);
        int width = place.right - place.left - Scaled(across), height = place.bottom - place.top - Scaled(down);
        bool own = HasOwnText(control) || control.GetKind() == Kind::frame;
        PixelBox room = TextRoom(control, own && !control.Text().empty() ? control.Text() : "g", width);
        EXPECT_LE(room.right, width) << Where(control) << " is cut at its right";
        EXPECT_LE(room.bottom, height) << Where(control) << " is cut at its lower edge";
    }

    // Each next one of a container stands below the one before it, or in a column to the right.
    void CheckOrder(const Control& control) {
        if (!CanBeUsed(control)) return;
        const Control*& last = lastUsed[control.Container()];
        if (last) {
            PixelBox a = PixelPlace(*last), b = PixelPlace(control);
            EXPECT_TRUE(b.top >= a.bottom || b.left >= a.right) << Where(control) << " is read before " << last->Name();
        }
        last = &control;
    }

    // A page stands alone; what lies in a frame shares the form's keys.
    std::string PageOf(const Control& control) const {
        const Control* container = form.Find(control.Container());
        if (!container) return "";
        return container->GetKind() == Kind::picture ? container->Name() : PageOf(*container);
    }

    void CheckAccessKeys() {
        std::map<std::string, std::map<char, std::string>> pages;
        for (const auto& control : form.Controls()) {
            char key = AccessKey(*control);
            if (!key) continue;
            std::string& taken = pages[PageOf(*control)][key];
            EXPECT_TRUE(taken.empty()) << Where(*control) << " has the key of " << taken;
            taken = control->Name();
        }
        for (const auto& [page, keys] : pages)
            for (const auto& [key, name] : keys)
                EXPECT_TRUE(page.empty() || !pages[""].contains(key))
                    << form.Name() << "." << name << " has a key of the form";
    }

    int Pixels(int twips) const { return (twips * percent + 750) / 1500; }

    Form& form;
    int percent;
    const Control* before = nullptr;
    std::map<std::string, std::vector<const Control*>> placed;
    std::map<std::string, const Control*> lastUsed;
};

// The tables with their handlers, without what a form does to the PC when it comes and goes.
void (*buildAll)(Form&);
Form& LoadAsDesigned(const FormDefinition& real) {
    static FormDefinition designed = real;
    buildAll = real.build;
    designed = real;
    designed.build = [](Form& form) {
        if (buildAll) buildAll(form);
        form.onLoad = form.onActivate = form.onUnload = nullptr;
        form.onQueryUnload = nullptr;
    };
    return LoadForm(designed);
}

TEST(FormsContract, EveryFormIsNamedInOrderAndUncut) {
    host::Start();
    for (const FormDefinition* definition :
         {&frmMain, &frmMainNew, &frmConfig(), &frmPW, &frmClientInfoPrompt, &frmSetClientID, &frmStatusWin,
          &frmCleanIE, &frmDownload, &frmEmail, &frmEmailOptions, &frmPanelBrowser, &frmCloudDL, &frmCloudUL, &frmFTPUL,
          &frmCompUpdateBeta, &frmReminder, &frmSafeMode}) {
        Form& form = LoadAsDesigned(*definition);
        for (const auto& control : form.Controls())
            if (control->GetKind() == Kind::picture) control->SetVisible(true);  // a page is made when it is shown
        for (int percent : {100, 150, 200}) {
            ScaleForm(form, percent);
            FormWalk(form, percent).Run();
        }
        UnloadForm(form);
    }
}

}  // namespace
