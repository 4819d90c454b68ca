#include "system/settings.h"

#include "pc/pc_test.h"
#include "system/language.h"
#include "system/macros.h"
#include "system/program_state.h"
#include "system/text.h"
#include "system/usage.h"

namespace {

constexpr const char* file = "C:\\Panel\\Brevanta.ini";
constexpr const char* languageFile = "C:\\Panel\\AltLang.INI";

class SettingsTest : public PcTest {
protected:
    SettingsTest() { State().settingsFile = file; }
    ~SettingsTest() override { SetPanelLabelSource({}); }
};

}  // namespace

TEST(SettingTests, NoNumberCountsAsPassed) {
    struct {
        const char* value;
        bool eq1, ne0, num1, numPositive, numNot1, blankOr1;
    } rows[] = {{"", false, true, true, true, true, true},       {"1", true, true, true, true, false, true},
                {"0", false, false, false, false, true, false},  {"true", false, true, true, true, true, false},
                {"2", false, true, false, true, true, false},    {"-1", false, true, false, false, true, false},
                {" 1", false, true, true, true, false, false},   {"01", false, true, true, true, false, false},
                {"0.5", false, true, false, false, true, false}, {"1.4", false, true, true, true, false, false},
                {"40000", false, true, true, true, true, false}, {" ", false, true, true, true, true, false}};
    for (const auto& row : rows) {
        EXPECT_EQ(Eq1(row.value), row.eq1) << row.value;
        EXPECT_EQ(Ne0(row.value), row.ne0) << row.value;
        EXPECT_EQ(Num1(row.value), row.num1) << row.value;
        EXPECT_EQ(NumPositive(row.value), row.numPositive) << row.value;
        EXPECT_EQ(NumNot1(row.value), row.numNot1) << row.value;
        EXPECT_EQ(BlankOr1(row.value), row.blankOr1) << row.value;
    }
}

TEST(SettingTests, TextsBecome16BitNumbers) {
    const std::pair<const char*, int> numbers[] = {
        {"7", 7},     {" +7 ", 7},       {"\t-12", -12}, {"007", 7},      {"0.5", 0},         {"1.5", 2},
        {"2.5", 2},   {"-0.5", 0},       {"-1.5", -2},   {".6", 1},       {"3.", 3},          {"1e3", 1000},
        {"&H1F", 31}, {"&h7fff", 32767}, {"&HFFFF", -1}, {"&H000001", 1}, {"32767.4", 32767}, {"-32768", -32768}};
    for (const auto& [text, number] : numbers) EXPECT_EQ(ToInt16(text).value_or(-9999), number) << text;
    for (const char* text :
         {"",       "  ",   "x",     "1x", "1 2",     "--1",   ".",    "e5",   "1e",  "32767.5", "32768",
          "-32769", "1e99", "1e999", "&H", "&H10000", "&H0x1", "&H-1", "0x10", "nan", "inf",     "&HFFFFFFFFFFFFFFFF1"})
        EXPECT_FALSE(ToInt16(text)) << text;
}

TEST_F(SettingsTest, EachReadSeesTheFileAsItIsNow) {
    EXPECT_EQ(Setting("Branding", "AppName"), "");
    EXPECT_TRUE(WriteSetting("Branding", "AppName", "Müller"));
    EXPECT_JOURNAL({"ini C:\\Panel\\Brevanta.ini [Branding] AppName=Müller"});
    EXPECT_EQ(Pc().FileText(file), "[Branding]\r\nAppName=M\xFCller\r\n");
    EXPECT_EQ(Setting("branding", "APPNAME"), "Müller");
    Pc().SetIni(file, "Branding", "AppName", "");
    EXPECT_EQ(SettingOr("Branding", "AppName", "Talvenmoor"), "Talvenmoor");
    Pc().SetIni(file, "Branding", "AppName", "\" \"");
    EXPECT_EQ(SettingOr("Branding", "AppName", "Talvenmoor"), " ");
}

TEST_F(SettingsTest, ValuesAreCutAt254Characters) {
    Pc().SetIni(file, "Branding", "Long", std::string(300, 'x'));
    Pc().SetIni(file, "Branding", "Fits", std::string(254, 'y'));
    Pc().SetIni(file, "Branding", "Wide", ReplaceAll(std::string(300, 'z'), "z", "é"));
    EXPECT_EQ(Setting("Branding", "Long"), std::string(254, 'x'));
    EXPECT_EQ(Setting("Branding", "Fits"), std::string(254, 'y'));
    EXPECT_EQ(CharacterCount(Setting("Branding", "Wide")), 254u);
}

TEST_F(SettingsTest, AnEmptyOrMissingOverrideLeavesTheBuiltInText) {
    EXPECT_EQ(LanguageText("Misc", "Close", "Close"), "Close");
    EXPECT_EQ(Pc().profileReads, 0);
    struct {
        const char *bytes, *text;
    } rows[] = {{"", "Close"},
                {"[Misc]\r\nClose=\r\n", "Close"},
                {"[Misc]\r\nClose=Schlie\xDF"
                 "en\r\n",
                 "Schließen"},
                {"[misc]\r\nCLOSE=\" \"\r\n", " "},
                {"[MainForm]\r\nClose=Zu\r\n", "Close"},
                {"\x01\xFF[Misc\r\n]Close=\r\n=\r\n[[[", "Close"}};
    for (const auto& row : rows) {
        Pc().AddFile(languageFile, row.bytes);
        EXPECT_EQ(LanguageText("Misc", "Close", "Close"), row.text) << row.bytes;
    }
}

TEST_F(SettingsTest, OnlyCaptionsWithATextAreReplaced) {
    constexpr LanguageCaption rows[] = {
        {"MainForm", "RAM", "Label5"}, {"Misc", "Close", "cmdClose"}, {"Misc", "X", "x"}};
    std::vector<std::string> set;
    auto note = [&](const char* control, const std::string& text) { set.push_back(control + ("=" + text)); };
    ApplyLanguage(rows, note);
    Pc().AddFile(languageFile, "[Misc]\r\nClose=Zu\r\nX=\r\n[MainForm]\r\nRAM=Speicher\r\n");
    ApplyLanguage(rows, note);
    EXPECT_LINES(set, {"Label5=Speicher", "cmdClose=Zu"});
}

TEST_F(SettingsTest, CountersStopAtTheLargest16BitNumber) {
    struct {
        const char *before, *after;
    } rows[] = {{"", "1"},          {"0", "1"},         {"9", "10"}, {" 41 ", "42"},      {"32766", "32767"},
                {"32767", "32767"}, {"32768", "32768"}, {"-1", "0"}, {"broken", "broken"}};
    for (const auto& row : rows) {
        Pc().SetIni("C:\\Panel\\Usage.ini", "Usage", "Fix", row.before);
        AddUsage("Fix");
        EXPECT_EQ(Pc().Ini("C:\\Panel\\Usage.ini", "Usage", "Fix"), row.after) << row.before;
    }
    AddUsage("Email");
    EXPECT_EQ(Pc().Ini("C:\\Panel\\Usage.ini", "Usage", "Email"), "1");
}

TEST_F(SettingsTest, MacrosOfAddresses) {
    Pc().SetEnv("computername", "FRONT-DESK");
    Pc().SetEnv("username", "Anna B");
    EXPECT_EQ(ExpandMacros("http://a.example/?c=[COMPUTERNAME]&u=[UserName]"),
              "http://a.example/?c=front-desk&u=anna b");
    EXPECT_EQ(ExpandMacros("i=[InternalIP];e=[externalip];c=[ClientID];"), "i=;e=;c=;");
    SetPanelLabelSource([](const std::string& label) { return label == "lblExtIP" ? "---" : "10.0.0.7"; });
    Pc().SetText("HKLM\\Software\\Brevanta", "ClientID", "A-7");
    EXPECT_EQ(ExpandMacros("i=[InternalIP];e=[externalip];c=[ClientID];"), "i=10.0.0.7;e=---;c=A-7;");
    EXPECT_EQ(ExpandMacros("http://a.example/%windir%/[Other]/[ComputerName"),
              "http://a.example/%windir%/[Other]/[ComputerName");
}

TEST_F(SettingsTest, VariablesOfPathsComeInLowerCase) {
    Pc().SetEnv("allusersprofile", "C:\\ProgramData");
    struct {
        const char *given, *expanded;
    } rows[] = {{"%WinDir%\\Notepad.EXE", "c:\\windows\\notepad.exe"},
                {"%SystemDrive%\\%homedrive%", "c:\\c:"},
                {"%ProgramFiles%\\A;%ProgramFiles(x86)%\\B", "c:\\program files (x86)\\a;c:\\program files (x86)\\b"},
                {"%AllUsersProfile%\\App", "C:\\ProgramData\\app"},
                {"%TEMP%\\X", "%temp%\\x"},
                {"100% %windir", "100% %windir"}};
    for (const auto& row : rows) EXPECT_EQ(ExpandEnvVars(row.given), row.expanded);
    SimulatedPc::UseWindows(Windows::xp);
    EXPECT_EQ(ExpandEnvVars("%programfiles(x86)%\\A"), "\\a");
}
