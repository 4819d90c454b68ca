// A client who clicks a thousand times, everywhere and in no order, on a PC where now and then something fails.

#include <random>

#include "controls/panel_links.h"
#include "panel/actions.h"
#include "panel_test.h"

namespace {

const char* const counters[] = {"Fix",           "Maintenance",   "RemoteSupport", "Email",
                                "Email2",        "ClickOnMsg",    "CustomButton0", "CustomButton1",
                                "CustomButton2", "CustomButton3", "CustomButton4"};

class SoakTest : public PanelTest {
protected:
    // Up to n - 1.
    int Dice(int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); }
    template <size_t N>
    const char* OneOf(const char* const (&texts)[N]) {
        return texts[Dice(static_cast<int>(N))];
    }

    // A PC with settings by chance that lead to every action.
    void PrepareRound(bool newFace) {
        static const char* const types[] = {"WU", "EXE", "URL", "SR", "CPQ", "SAFE", "Download"};
        static const char* const ways[] = {"EXE", "URL", "Download"};
        static const char* const flags[] = {"0", "1"};
        std::vector<Key> keys = {{"Branding", "LogoToWebsite", "1"},
                                 {"Branding", "LogoWebsite", "http://shop.example/"},
                                 {"Branding", "RemoteUseMSRA", "0"},
                                 {"Branding", "RemoteSupportType", OneOf(ways)},
                                 {"Branding", "RemoteSupportDLName", "s.exe"},
                                 {"Branding", "RemoteSupportApp", "http://shop.example/s.exe"},
                                 {"Branding", "UseLargeCustomTextLink", "1"},
                                 {"Branding", "LargeCustomTextLink", "http://shop.example/"},
                                 {"Branding", "UseIBForEmail", "0"},
                                 {"Branding", "SupportEmail", "help@shop.example"},
                                 {"Branding", "ShowPreRemoteURL", "0"},
                                 {"EmailConfig", "OfferTwoOptions", OneOf(flags)},
                                 {"EmailConfig", "UseInternalSMTP", OneOf(flags)},
                                 {"CustomRP", "ShowOption", OneOf(flags)},
                                 {"Maint", "DelTemps", "1"},
                                 {"Maint", "CloseAppAfterMaint", "0"},
                                 {"Maint", "ShowURLAfterMaint", "0"},
                                 {"Fix", "ClearProxy", "1"},
                                 {"Fix", "ResetNet", "1"},
                                 {"Fix", "ResetHosts", "1"}};
        static const char* const buttons[] = {"CustomButton", "CustomButton1", "CustomButton2", "CustomButton3",
                                              "CustomButton4"};
        for (const char* section : buttons)
            for (const Key& key : {Key{section, "ShowButton", "1"}, Key{section, "Type", OneOf(types)},
                                   Key{section, "ButtonAction", "http://shop.example/"},
                                   Key{section, "DownloadName", "own.exe"}, Key{section, "ShowCustomURLinIB", "0"}})
                keys.push_back(key);
        Prepare(keys);
        Pc().AddFile(keptFile, "kept");
        Pc().AddFile("C:\\Users\\Ann\\AppData\\Local\\Temp\\a.tmp");
        OnModal("frmPanelBrowser", [](Form& form) { UnloadForm(form, true); });
        face = newFace ? &frmMainNew : &frmMain;
    }

    void StartPanel() {
        Pc().RestartProgram();
        State() = {};
        ForgetForms();
        InitPaths(true, true);
        ConnectPanel();
        Pc().choose = [this](size_t buttons) { return static_cast<size_t>(Dice(static_cast<int>(buttons))); };
        Pc().patience = UINT64_MAX;
        ShowForm(*face);
    }

    // The counter of what a control of the panel leads to; null for none.
    static const char* CounterOf(const std::string& control) {
        static const std::pair<const char*, const char*> rows[] = {{"cmdFix", "Fix"},
                                                                   {"cmdMaint", "Maintenance"},
                                                                   {"cmdStartSupport", "RemoteSupport"},
                                                                   {"cmdCustom", "CustomButton0"},
                                                                   {"lblCustomLarge", "ClickOnMsg"}};
        for (const auto& [name, counter] : rows)
            if (control == name) return counter;
        if (control != "cmdEmailSupport" || Pc().Ini(settingsFile, "EmailConfig", "OfferTwoOptions") == "1")
            return nullptr;
        return "Email";
    }
    static const char* CounterOf(PanelAction action) {
        using enum PanelAction;
        static const std::pair<PanelAction, const char*> rows[] = {{fixInternet, "Fix"},
                                                                   {maintenance, "Maintenance"},
                                                                   {remoteSupport, "RemoteSupport"},
                                                                   {chosenEmail, "Email"},
                                                                   {secondEmail, "Email2"},
                                                                   {customButton0, "CustomButton0"},
                                                                   {customButton1, "CustomButton1"},
                                                                   {customButton2, "CustomButton2"},
                                                                   {customButton3, "CustomButton3"},
                                                                   {customButton4, "CustomButton4"}};
        for (const auto& [known, counter] : rows)
            if (action == known) return counter;
        return nullptr;
    }

    // One deed of the client on a visible form; the counter that it should raise, or null.
    const char* ClickSomewhere() {
        std::vector<Form*> shown;
        for (Form* form : LoadedForms())
            if (form->Visible()) shown.push_back(form);
        if (shown.empty()) {
            ADD_FAILURE() << "nothing is left on the screen";
            return nullptr;
        }
        Form& form = *shown[static_cast<size_t>(Dice(static_cast<int>(shown.size())))];
        bool panel = form.Name() == face->name;
        if (!panel && Dice(4) == 0) return UnloadForm(form, true), nullptr;
        std::vector<Control*> usable;
        for (const auto& control : form.Controls())
            if (control->Shown() && control->Enabled() && control->Name() != "cmdClose" &&
                (control->onClick || control->onItemClick || control->GetKind() == Kind::textBox))
                usable.push_back(control.get());
        if (usable.empty()) return nullptr;
        Control& control = *usable[static_cast<size_t>(Dice(static_cast<int>(usable.size())))];
        if (control.GetKind() == Kind::textBox)
            return control.UserTyped(OneOf({"", "10:00:00", "me@home.org", "Zo\xC3\xAB"})), nullptr;
        if (!control.onItemClick) {
            const char* counter = panel ? CounterOf(control.Name()) : nullptr;
            return control.UserClicked(), counter;
        }
        int group = 1 + Dice(2),
            item = 1 + Dice(static_cast<int>(control.Groups()[static_cast<size_t>(group) - 1].items.size()));
        const char* counter = CounterOf(SideBarAction(group, item));
        return control.UserClickedItem(group, item), counter;
    }

    // From now on each so many calls one fails.
    static void FailEach(int calls) {
        Pc().AtCall(calls, [calls] {
            Pc().FailCall(0);
            FailEach(calls);
        });
    }

    std::map<std::string, int> Counted() {
        std::map<std::string, int> counted;
        for (const char* name : counters) counted[name] = std::atoi(Pc().Ini(usageFile, "Usage", name).c_str());
        return counted;
    }

    static constexpr const char* keptFile = "C:\\Users\\Ann\\Documents\\keep.doc";
    std::minstd_rand random{20261122};
    const FormDefinition* face = nullptr;
};

TEST_F(SoakTest, RandomClicksCountRightAndHarmNothingWhateverFails) {
    std::map<std::string, int> all;
    for (int round = 0; round < 20; ++round) {
        PrepareRound(round % 2);
        StartPanel();
        const bool faults = round >= 10;
        std::map<std::string, int> expected;
        for (const char* name : counters) expected[name] = 0;
        for (int click = 0; click < 50; ++click) {
            SCOPED_TRACE("round " + std::to_string(round) + ", click " + std::to_string(click));
            std::map<std::string, int> before = Counted();
            const char* counter = nullptr;
            try {
                if (faults) FailEach(20 + Dice(200));
                counter = ClickSomewhere();
                Pc().Pass(static_cast<uint32_t>(Dice(1500)));
            } catch (const ProgramEnded&) {
                EXPECT_TRUE(faults) << "nobody has closed the panel";
                StartPanel();
            }
            if (counter) ++expected[counter];
            if (!faults) {
                EXPECT_EQ(Counted(), expected);
                continue;
            }
            // What fails may lose a count, and no more than that.
            int changed = 0;
            for (const auto& [name, count] : Counted())
                if (count != before[name]) {
                    EXPECT_TRUE(count == before[name] + 1 || count == 1) << name;
                    ++changed;
                }
            EXPECT_LE(changed, 1);
            if (HasFailure()) return;
        }
        for (const auto& [name, count] : expected) all[name] += count;
        EXPECT_EQ(Pc().FileText(keptFile), "kept");
        EXPECT_EQ(Pc().Ini(settingsFile, "Branding", "LogoWebsite"), "http://shop.example/");
    }
    for (const char* name : counters) EXPECT_GT(all[name], 4) << name << " was hardly tried";
    Prepare();  // a script that was not asked for is no fault here
}

}  // namespace
