// One form with every kind of control, for pictures at all resolutions and colour schemes. With "/addons" the form of
// browser add-ons, which the panel itself only uses hidden.
#include <windows.h>

#include "controls/form_host.h"
#include "controls/input_box.h"
#include "controls/sidebar.h"
#include "platform/machine.h"
#include "repair/browser_addons.h"
#include "system/program_state.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

constexpr ControlSpec controls[] = {
    {Kind::sideBar, "SideBar", "", {0, 0, 3120, 8400}, "", growHeight},
    {Kind::label, "lblTitle", "Every kind of control", {3420, 240, 5400, 420}, "", heading},
    {Kind::label, "lblNote", "A note: small and quiet.", {3420, 660, 5400, 240}, "", note},
    {Kind::frame, "frameHealth", "Your PC Health", {3420, 1080, 4500, 2340}},
    {Kind::image, "imgBall", "", {7200, 960, 480, 480}},
    {Kind::label, "Label1", "Storage Space:", {240, 480, 1800, 240}, "frameHealth"},
    {Kind::label, "lblHDD", "118.2 GB free of 465.7 GB", {2040, 480, 2280, 240}, "frameHealth"},
    {Kind::label, "Label2", "Antivirus Installed:", {240, 780, 1800, 240}, "frameHealth"},
    {Kind::label, "lblAV", "None - your PC is not protected", {2040, 780, 2280, 240}, "frameHealth", bold},
    {Kind::label, "Label3", "Automatic Updates:", {240, 1080, 1800, 240}, "frameHealth"},
    {Kind::label, "lblUpdates", "Ask before installing", {2040, 1080, 2280, 240}, "frameHealth"},
    {Kind::label, "Label4", "Help:", {240, 1380, 1800, 240}, "frameHealth"},
    {Kind::label, "lblLink", "Open the store's page", {2040, 1380, 2280, 240}, "frameHealth"},
    {Kind::checkBox, "chkReport", "&Attach a report", {240, 1740, 2000, 300}, "frameHealth"},
    {Kind::checkBox, "chkOff", "Not available", {2340, 1740, 2000, 300}, "frameHealth", disabled},
    {Kind::image, "imgLogo", "", {8160, 1080, 3960, 1455}},
    {Kind::label,
     "lblWrapped",
     "A longer text that runs over several lines, since it says a little more than one line can hold.",
     {8160, 2640, 3960, 780},
     "",
     wrap},
    {Kind::label, "lblName", "Your &name:", {3420, 3660, 1500, 300}},
    {Kind::textBox, "txtName", "Jane Example", {4980, 3600, 2940, 360}},
    {Kind::label, "lblPassword", "&Password:", {3420, 4140, 1500, 300}},
    {Kind::textBox, "txtPassword", "secret", {4980, 4080, 2940, 360}, "", password},
    {Kind::label, "lblDay", "&Day:", {3420, 4620, 1500, 300}},
    {Kind::combo, "comboDay", "Daily", {4980, 4560, 1380, 345}, "", 0, 0, "Daily|Mon|Tue|Wed|Thu|Fri|Sat|Sun"},
    {Kind::combo, "comboFixed", "Mon", {6480, 4560, 1440, 345}, "", dropList, 0, "Mon|Tue|Wed"},
    {Kind::option, "optA", "&First choice", {3420, 5100, 1800, 300}, "", 0, 1},
    {Kind::option, "optB", "&Second choice", {5280, 5100, 1800, 300}, "", 0, 1},
    {Kind::label, "lblBody", "What is &wrong:", {8160, 3660, 3960, 240}},
    {Kind::textBox,
     "txtBody",
     "The PC has been slow\r\nsince yesterday.",
     {8160, 3960, 3960, 1440},
     "",
     multiLine | growWidth},
    {Kind::listView,
     "ListView1",
     "",
     {3420, 5640, 5400, 1560},
     "",
     checkRows | growWidth | growHeight,
     0,
     "Value Name|Value Data"},
    {Kind::list,
     "List1",
     "",
     {9060, 5640, 3060, 1560},
     "",
     moveRight | growHeight,
     0,
     "netsh winsock reset|netsh interface ip reset|ipconfig /flushdns"},
    {Kind::progress, "pb", "", {3420, 7380, 8700, 240}, "", growWidth | moveDown},
    {Kind::label, "txtStatus", "Idle...", {3420, 7860, 1200, 300}, "", moveDown},
    {Kind::button, "cmdScale", "&Other scale", {4680, 7800, 1380, 420}, "", moveRight | moveDown},
    {Kind::button, "cmdAsk", "Ask &me", {6210, 7800, 1380, 420}, "", moveRight | moveDown},
    {Kind::button, "cmdPage", "Show the &page", {7740, 7800, 1380, 420}, "", moveRight | moveDown},
    {Kind::button, "cmdOk", "OK", {9240, 7800, 1380, 420}, "", moveRight | moveDown | defaultButton},
    {Kind::button, "cmdCancel", "Cancel", {10740, 7800, 1380, 420}, "", moveRight | moveDown | cancelButton},
    {Kind::timer, "Timer1", "", {}},
    {Kind::picture, "picPage", "", {3120, 0, 9240, 7620}, "", hidden | growWidth | growHeight},
    {Kind::label, "lblPage", "A page that covers the rest", {480, 420, 6000, 420}, "picPage", heading},
    {Kind::label, "lblBack", "<< Back", {480, 960, 2400, 240}, "picPage"},
    {Kind::browser, "WebBrowser1", "", {480, 1440, 8520, 5880}, "picPage", growWidth | growHeight},
};

// What the system does when the window is drawn to a screen of another resolution.
void ChangeScale(const Form& form) {
    static int dpi = 96;
    dpi = dpi == 96 ? 144 : 96;
    auto window = reinterpret_cast<HWND>(host::WindowOf(form));
    RECT place;
    GetWindowRect(window, &place);
    place.right = place.left + (place.right - place.left) * dpi / (240 - dpi);
    place.bottom = place.top + (place.bottom - place.top) * dpi / (240 - dpi);
    constexpr UINT messageDpiChanged = 0x02E0;
    SendMessageW(window, messageDpiChanged, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&place));
}

std::string ProgramFolder() {
    std::string path = pc::ProgramPath();
    return path.substr(0, path.rfind('\\') + 1);
}

void FillSideBar(Form& form) {
    XPexplorerbar bar(*form.Find("SideBar"));
    bar.AddSpecialItem("Get Support");
    bar.AddSubItem(1, "Email Support");
    bar.AddSubItem(1, "Start Support Session");
    bar.AddNormalItem("PC Tasks");
    bar.AddSubItem(2, "System Restore Points");
    bar.AddSubItem(2, "Run Maintenance");
    bar.AddSubItem(2, "Fix Internet and everything else that takes two lines");
    bar.AddDetailItem("Come Visit Us!", "Store Hours:", "Mon - Fri: 9am - 6pm\r\nSat: 10am - 2pm\r\nSun: closed");
    form.Find("SideBar")->onItemClick = [&form](int group, int item) {
        form.SetText("txtStatus", "Item " + NumberText(group) + "." + NumberText(item));
    };
}

void Load(Form& form) {
    form.SetIcon("a1");
    form.Find("imgBall")->SetPicture("#GREEN");
    form.Find("imgLogo")->SetPicture(ProgramFolder() + "supportlogo.png");
    form.Find("lblAV")->SetColour(colourWarning);
    form.Find("lblUpdates")->SetColour(colourHighlight);
    form.Find("lblHDD")->SetToolTip("Drive C:");
    form.SetValue("chkReport", 1);
    form.SetValue("optB", 1);
    form.Find("ListView1")
        ->SetRows({{{"Toolbar", "{2318C2B1-4965-11D4-9B18-009027A5CD4F}"}, true, false},
                   {{"Helper", "C:\\Program Files\\Helper\\helper.dll"}, false, true},
                   {{"Search", "http://search.example/?q={searchTerms}"}, false, false}});
    form.Find("ListView1")->FitColumns();
    form.SetValue("pb", 40);
    form.Find("Timer1")->SetInterval(200);
    FillSideBar(form);
}

const FormDefinition frmGallery = {
    "frmGallery", "Gallery", 12360, 8400, Border::sizable, controls, [](Form& form) {
        form.onLoad = [&form] { Load(form); };
        form.OnClick("lblLink", [&form] { form.SetText("txtStatus", "Link"); });
        form.OnClick("cmdOk", [&form] { form.SetText("txtStatus", "OK: " + form.Text("txtName")); });
        form.OnClick("cmdCancel", [&form] { UnloadForm(form); });
        form.OnClick("cmdPage", [&form] {
            form.SetVisible("picPage", true);
            form.Find("WebBrowser1")->Navigate("http://127.0.0.1:9/");
        });
        form.OnClick("cmdScale", [&form] { ChangeScale(form); });
        form.OnClick("cmdAsk",
                     [&form] { form.SetText("txtStatus", "Answer: " + InputBox("What is your name?", "Jane")); });
        form.OnClick("lblBack", [&form] { form.SetVisible("picPage", false); });
        form.Find("WebBrowser1")->onChange = [&form] { form.SetText("txtStatus", form.Text("WebBrowser1")); };
        form.Find("Timer1")->onTimer = [&form] { form.SetValue("pb", (form.Find("pb")->Value() + 2) % 101); };
    }};

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    host::Start();
    InitPaths(true, true);
    State().bHandle64BitRedirect = true;
    ShowForm(pc::CommandLine() == "/addons" ? frmCleanIE : frmGallery);
    host::RunUntilNoForms();
    return 0;
}
