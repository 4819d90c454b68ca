// What the cleaner removes, and above all what it leaves alone.
#include "maintenance/temp_cleaner.h"

#include <algorithm>

#include "maintenance/clean_guard.h"
#include "pc/pc_test.h"
#include "system/paths.h"
#include "system/program_state.h"

namespace {

constexpr CleanerFlags nothing{}, everything{true, true, true, true};

// A file and the flags that must all be asked for to remove it: "T" temps, "I" internet, "C" cookies, "H" history,
// "always", or "never".
struct Place {
    const char* path;
    const char* removedBy;
};

const Place vistaPlaces[] = {
    {"C:\\Users\\Ann\\AppData\\Local\\Temp\\a.tmp", "always"},
    {"C:\\Users\\Ann\\AppData\\Local\\Temp\\Deep\\Er\\b.tmp", "always"},
    {"C:\\Users\\Ann\\AppData\\Local\\Microsoft\\Windows\\Burn\\Temporary Burn Folder\\c.iso", "always"},
    {"C:\\Users\\Ann\\AppData\\Local\\Microsoft\\Windows\\Burn\\d.iso", "never"},
    {"C:\\Users\\Ann\\AppData\\Local\\Microsoft\\Windows\\Temporary Internet Files\\Content.IE5\\X1\\p.gif", "I"},
    {"C:\\Users\\Ann\\AppData\\Local\\Microsoft\\Windows\\Temporary Internet Files\\index.dat", "I"},
    {"C:\\Users\\Ann\\AppData\\Local\\Google\\Chrome\\User Data\\Default\\Cache\\f_0001", "I"},
    {"C:\\Users\\Ann\\AppData\\Local\\Google\\Chrome\\User Data\\Profile 2\\Cache\\f_0002", "I"},
    {"C:\\Users\\Ann\\AppData\\Local\\Google\\Chrome\\User Data\\Cache\\f_0003", "never"},
    {"C:\\Users\\Ann\\AppData\\Local\\Mozilla\\Firefox\\Profiles\\x1y2.default\\Cache\\_CACHE_001_", "I"},
    {"C:\\Users\\Ann\\AppData\\Roaming\\Microsoft\\Windows\\Cookies\\ann@site.txt", "C"},
    {"C:\\Users\\Ann\\AppData\\Local\\Google\\Chrome\\User Data\\Default\\Cookies", "C"},
    {"C:\\Users\\Ann\\AppData\\Local\\Google\\Chrome\\User Data\\Default\\Cookies-journal", "C"},
    {"C:\\Users\\Ann\\AppData\\Local\\Google\\Chrome\\User Data\\Profile 2\\Extension Cookies", "C"},
    {"C:\\Users\\Ann\\AppData\\Roaming\\Mozilla\\Firefox\\Profiles\\x1y2.default\\cookies.sqlite", "C"},
    {"C:\\Users\\Ann\\AppData\\Local\\Microsoft\\Windows\\History\\History.IE5\\index.dat", "H"},
    {"C:\\Users\\Ann\\AppData\\Local\\Google\\Chrome\\User Data\\Default\\History", "H"},
    {"C:\\Users\\Ann\\AppData\\Local\\Google\\Chrome\\User Data\\Default\\History Index 2012-01", "H"},
    {"C:\\Users\\Ann\\AppData\\Local\\Google\\Chrome\\User Data\\Default\\Archived History", "H"},
    {"C:\\Users\\Ann\\AppData\\Local\\Google\\Chrome\\User Data\\Default\\Sub\\History", "never"},
    {"C:\\Users\\Ann\\AppData\\Local\\Google\\Chrome\\User Data\\Default\\Bookmarks", "never"},
    {"C:\\Users\\Ann\\AppData\\Local\\Google\\Chrome\\User Data\\Local State", "never"},
    {"C:\\Users\\Ann\\AppData\\Roaming\\Mozilla\\Firefox\\Profiles\\x1y2.default\\places.sqlite", "H"},
    {"C:\\Users\\Ann\\AppData\\Roaming\\Mozilla\\Firefox\\Profiles\\x1y2.default\\downloads.sqlite", "H"},
    {"C:\\Users\\Ann\\AppData\\Roaming\\Mozilla\\Firefox\\Profiles\\x1y2.default\\key3.db", "never"},
    {"C:\\Users\\Ann\\Documents\\Temp\\letter.doc", "never"},
    {"C:\\Users\\Ann\\AppData\\Local\\Tempo\\song.mid", "never"},
    {"C:\\Users\\Public\\AppData\\Local\\Temp\\a.tmp", "never"},
    {"C:\\Users\\Default\\AppData\\Local\\Temp\\a.tmp", "never"},
    {"C:\\Users\\Default User.old\\AppData\\Local\\Temp\\a.tmp", "always"},
    {"C:\\ProgramData\\Temp\\a.tmp", "never"},
    {"C:\\Temp\\a.tmp", "never"},
    {"C:\\Windows\\Temp\\w.tmp", "T"},
    {"C:\\Windows\\explorer.bak", "never"},
    {"C:\\Windows\\SoftwareDistribution\\Download\\u1\\update.cab", "T"},
    {"C:\\Windows\\SoftwareDistribution\\DataStore\\DataStore.edb", "never"},
    {"C:\\Windows\\System32\\config\\systemprofile\\Local Settings\\Temp\\s.tmp", "T"},
    {"C:\\Windows\\System32\\config\\systemprofile\\Local Settings\\Temporary Internet Files\\s.gif", "T"},
    {"C:\\Windows\\System32\\config\\systemprofile\\Cookies\\s.txt", "TC"},
    {"C:\\Windows\\System32\\config\\systemprofile\\Local Settings\\History\\s.dat", "TH"},
    {"C:\\Windows\\System32\\config\\systemprofile\\Desktop\\keep.txt", "never"},
};

const Place xpPlaces[] = {
    {"C:\\Documents and Settings\\Ann\\Local Settings\\Temp\\a.tmp", "always"},
    {"C:\\Documents and Settings\\LocalService\\Local Settings\\Temp\\a.tmp", "always"},
    {"C:\\Documents and Settings\\Ann\\Local Settings\\Application Data\\Microsoft\\CD Burning\\b.iso", "always"},
    {"C:\\Documents and Settings\\Ann\\Local Settings\\Temporary Internet Files\\Content.IE5\\Q\\p.gif", "I"},
    {"C:\\Documents and Settings\\Ann\\Local Settings\\Application Data\\Google\\Chrome\\User "
     "Data\\Default\\Cache\\f_1",
     "I"},
    {"C:\\Documents and Settings\\Ann\\Local Settings\\Application "
     "Data\\Mozilla\\Firefox\\Profiles\\q.default\\Cache\\c",
     "I"},
    {"C:\\Documents and Settings\\Ann\\Cookies\\ann@site.txt", "C"},
    {"C:\\Documents and Settings\\Ann\\Application Data\\Mozilla\\Firefox\\Profiles\\q.default\\cookies.sqlite", "C"},
    {"C:\\Documents and Settings\\Ann\\Local Settings\\Application Data\\Google\\Chrome\\User Data\\Default\\Cookies",
     "C"},
    {"C:\\Documents and Settings\\Ann\\Local Settings\\History\\index.dat", "H"},
    {"C:\\Documents and Settings\\Ann\\Application Data\\Mozilla\\Firefox\\Profiles\\q.default\\search.sqlite", "H"},
    {"C:\\Documents and Settings\\Ann\\My Documents\\Cookies\\recipe.doc", "never"},
    {"C:\\Documents and Settings\\Ann\\Local Settings\\Application Data\\Microsoft\\Outlook\\mail.pst", "never"},
    {"C:\\Documents and Settings\\All Users\\Local Settings\\Temp\\a.tmp", "never"},
    {"C:\\Documents and Settings\\DEFAULT user\\Cookies\\a.txt", "never"},
    {"C:\\Users\\Ann\\AppData\\Local\\Temp\\a.tmp", "never"},
    {"C:\\Windows\\Temp\\w.tmp", "T"},
    {"C:\\Windows\\System32\\config\\systemprofile\\Cookies\\s.txt", "TC"},
};

bool IsRemoved(const Place& place, const CleanerFlags& flags) {
    const std::string by = place.removedBy;
    if (by == "always" || by == "never") return by == "always";
    return std::all_of(by.begin(), by.end(), [&](char letter) {
        return letter == 'T'   ? flags.bDelTemps
               : letter == 'I' ? flags.bDelTempInternet
               : letter == 'C' ? flags.bDelCookies
                               : flags.bDelHistory;
    });
}

class CleanerTest : public PcTest {
protected:
    CleanerTest() { State().bHandle64BitRedirect = true; }

    // Cleans a fresh PC with the places planted and compares each place.
    template <size_t count>
    void CheckPlaces(Windows windows, const Place (&places)[count], const CleanerFlags& flags) {
        SimulatedPc::UseWindows(windows);
        for (const Place& place : places) Pc().AddFile(place.path, "x");
        CleanTempFiles(flags);
        for (const Place& place : places)
            EXPECT_EQ(Pc().Exists(place.path), !IsRemoved(place, flags)) << place.path << " by " << place.removedBy;
    }

    // The temp file of a user of Windows 7.
    static std::string TempFileOf(const std::string& user) {
        return "C:\\Users\\" + user + "\\AppData\\Local\\Temp\\a.tmp";
    }
};

TEST_F(CleanerTest, EachFlagRemovesItsOwnPlacesAndNoOther) {
    for (int bits = 0; bits < 16; ++bits) {
        SCOPED_TRACE(bits);
        const CleanerFlags flags{(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0, (bits & 8) != 0};
        CheckPlaces(Windows::sevenX64, vistaPlaces, flags);
        CheckPlaces(Windows::xp, xpPlaces, flags);
    }
}

TEST_F(CleanerTest, CdBurningIsBackEmptyOnXpOnly) {
    const std::string tail = "\\Local Settings\\Application Data\\Microsoft\\CD Burning";
    for (bool old : {true, false}) {
        SimulatedPc::UseWindows(old ? Windows::xp : Windows::seven);
        const std::string folder = (old ? "C:\\Documents and Settings\\Ann" : "C:\\Users\\Ann") + tail;
        Pc().AddFile(folder + "\\Sub\\b.iso");
        CleanTempFiles(nothing);
        EXPECT_EQ(Pc().Exists(folder), old);
        EXPECT_TRUE(Pc().Tree(folder).empty());
    }
}

TEST_F(CleanerTest, SharedProfilesAreNotRealInAnySpelling) {
    for (const char* name : {"", "C:\\Users\\Public", "c:\\users\\PUBLIC", "C:\\Users\\Default",
                             "C:\\Users\\dEFAULT uSER", "D:\\Documents and Settings\\All Users"})
        EXPECT_FALSE(IsRealUserProfile(name)) << name;
    for (const char* name : {"C:\\Users\\Ann", "C:\\Users\\Publican", "C:\\Users\\Default.old", "C:\\Users\\x"})
        EXPECT_TRUE(IsRealUserProfile(name)) << name;
}

TEST_F(CleanerTest, StaysAwayFromWhatALinkOnTheWayLeadsTo) {
    Pc().AddFile("C:\\Data\\Temp\\thesis.doc");
    Pc().AddFile("C:\\Data\\Cache\\thesis.doc");
    Pc().AddFile("C:\\Data\\AppData\\Local\\Temp\\thesis.doc");
    Pc().AddFile("C:\\Data\\Download\\thesis.doc");
    // On the way, at its end, a subfolder of a store, a whole profile, Windows' own folders.
    Pc().AddJunction("C:\\Users\\Middle\\AppData\\Local", "C:\\Data");
    Pc().AddJunction("C:\\Users\\Last\\AppData\\Local\\Temp", "C:\\Data\\Temp");
    Pc().AddJunction("C:\\Users\\Store\\AppData\\Local\\Google\\Chrome\\User Data\\Default", "C:\\Data");
    Pc().AddJunction("C:\\Users\\Elsewhere", "C:\\Data");
    Pc().AddJunction("C:\\Windows\\SoftwareDistribution", "C:\\Data");
    Pc().DeleteTree("C:\\Windows\\Temp");
    Pc().AddJunction("C:\\Windows\\Temp", "C:\\Data\\Temp");
    const auto before = Pc().Tree("C:\\Data");
    CleanTempFiles(everything);
    EXPECT_LINES(Pc().Tree("C:\\Data"), before);
    for (const char* link :
         {"C:\\Users\\Middle\\AppData\\Local", "C:\\Users\\Last\\AppData\\Local\\Temp", "C:\\Users\\Elsewhere"})
        EXPECT_TRUE(Pc().Exists(link)) << link;
    EXPECT_TRUE(Pc().Traced("    LINK PASSED OVER:  C:\\Users\\Last\\AppData\\Local\\Temp"));
}

// The stock links of Vista and later lead to folders that have their own row.
TEST_F(CleanerTest, CleansBehindTheStockLinksByTheRealPathAndKeepsTheLinks) {
    const std::string ann = "C:\\Users\\Ann";
    Pc().AddFile(ann + "\\AppData\\Local\\Temp\\a.tmp");
    Pc().AddFile(ann + "\\AppData\\Roaming\\Microsoft\\Windows\\Cookies\\c.txt");
    Pc().AddJunction(ann + "\\Local Settings", ann + "\\AppData\\Local");
    Pc().AddJunction(ann + "\\Cookies", ann + "\\AppData\\Roaming\\Microsoft\\Windows\\Cookies");
    CleanTempFiles(everything);
    EXPECT_FALSE(Pc().Exists(ann + "\\AppData\\Local\\Temp\\a.tmp"));
    EXPECT_FALSE(Pc().Exists(ann + "\\AppData\\Roaming\\Microsoft\\Windows\\Cookies\\c.txt"));
    EXPECT_TRUE(Pc().Exists(ann + "\\Local Settings"));
    EXPECT_TRUE(Pc().Exists(ann + "\\Cookies"));
}

TEST_F(CleanerTest, LeavesWhatALinkInsideTheTempFolderPointsTo) {
    for (bool locked : {false, true}) {  // a locked file takes the removal the long way round
        SimulatedPc::UseWindows(Windows::sevenX64);
        Pc().AddFile("C:\\Data\\thesis.doc");
        Pc().AddFile(TempFileOf("Ann"));
        Pc().AddJunction("C:\\Users\\Ann\\AppData\\Local\\Temp\\link", "C:\\Data");
        Pc().AddFileLink("C:\\Users\\Ann\\AppData\\Local\\Temp\\link.doc", "C:\\Data\\thesis.doc");
        if (locked) {
            Pc().AddFile("C:\\Users\\Ann\\AppData\\Local\\Temp\\0\\held.tmp");
            Pc().Lock("C:\\Users\\Ann\\AppData\\Local\\Temp\\0\\held.tmp");
        }
        CleanTempFiles(nothing);
        EXPECT_TRUE(Pc().Exists("C:\\Data\\thesis.doc"));
        EXPECT_FALSE(Pc().Exists(TempFileOf("Ann")));
        EXPECT_FALSE(Pc().Exists("C:\\Users\\Ann\\AppData\\Local\\Temp\\link"));
        EXPECT_EQ(Pc().Exists("C:\\Users\\Ann\\AppData\\Local\\Temp\\0\\held.tmp"), locked);
    }
}

TEST_F(CleanerTest, CleansProfilesOfAnyNameAndNoNeighbour) {
    const std::string names[] = {"Ann Lee",     "100% Ann",           "%windir%",  "a;b",    ";",     "a;b;",
                                 "Łukasz Żółć", "Παπαδοπούλου",       "山田 太郎", "مستخدم", "'x'&y", "[x]{y}",
                                 ".ann",        std::string(200, 'n')};
    for (const std::string& name : names) Pc().AddFile(TempFileOf(name));
    // What a wrong cut or expansion of the names above would hit.
    Pc().AddFile(TempFileOf("public"));
    Pc().AddFile(TempFileOf("public;a"));
    Pc().AddFile("C:\\Users\\AppData\\Local\\Temp\\a.tmp");
    CleanTempFiles(nothing);
    for (const std::string& name : names) EXPECT_FALSE(Pc().Exists(TempFileOf(name))) << name;
    EXPECT_TRUE(Pc().Exists(TempFileOf("public")));
    EXPECT_FALSE(Pc().Exists(TempFileOf("public;a")));
    EXPECT_TRUE(Pc().Exists("C:\\Users\\AppData\\Local\\Temp\\a.tmp"));
}

TEST_F(CleanerTest, NamesThatStandForAnotherFolderAreRefused) {
    for (const char* name : {"", ".", "..", "Public.", "Public ", "a\\..", "a/b", "*", "Pub?ic", "C:", "a|b"})
        EXPECT_FALSE(IsPlainName(name)) << name;
    Pc().AddFolder("C:\\Users\\Ann");
    EXPECT_TRUE(IsProfileFolder("c:\\users\\Ann", "C:\\Users"));
    for (const char* path : {"C:\\Users", "C:\\Users\\", "C:\\Users\\..", "C:\\Users\\Ann\\..",
                             "C:\\Users\\Ann\\AppData", "C:\\Windows", "C:\\UsersAnn", "Ann", "C:\\Users\\Nobody"})
        EXPECT_FALSE(IsProfileFolder(path, "C:\\Users")) << path;
    EXPECT_FALSE(IsOwnPath("C:\\Users\\Ann", "\\..\\..\\Windows"));
    EXPECT_FALSE(IsOwnPath("", "\\Windows"));
    EXPECT_FALSE(IsOwnPath("C:\\Users\\Ann", ""));
}

const ControlSpec listControls[] = {{Kind::list, "lstFailed", "", {}}};
const FormDefinition listForm = {"frmList", "", 100, 100, Border::fixed, listControls, [](Form&) {}};

TEST_F(CleanerTest, ListsTheFoldersThatStayedButNotThoseOfTheServices) {
    SimulatedPc::UseWindows(Windows::xp);
    const std::string base = "C:\\Documents and Settings\\";
    for (const std::string user : {"Ann", "LocalService", "NetworkService"}) {
        for (const std::string tail :
             {"\\local settings\\temp", "\\local settings\\temporary internet files", "\\cookies"}) {
            Pc().AddFile(base + user + tail + "\\held.dat");
            Pc().Lock(base + user + tail + "\\held.dat");
        }
    }
    Pc().AddFile("C:\\Windows\\Temp\\held.dat");
    Pc().Lock("C:\\Windows\\Temp\\held.dat");
    CleanerStatus status;
    status.failures = LoadForm(listForm).Find("lstFailed");
    CleanTempFiles(everything, status);
    EXPECT_LINES(status.failures->Items(), {base + "Ann\\local settings\\temporary internet files",
                                            base + "Ann\\local settings\\temp", "C:\\Windows\\temp"});
    EXPECT_TRUE(Pc().Traced("    DIR DELETION ERROR:  " + base + "Ann\\cookies"));
}

TEST_F(CleanerTest, EmptiesTheUpdateStoreBetweenStoppedServices) {
    Pc().AddFile("C:\\Windows\\SoftwareDistribution\\Download\\u.cab");
    CleanerStatus status;
    std::vector<std::string> seen;
    Pc().Program("net ", {.effect = [&](SimulatedPc&) {
                     seen.push_back(TextOn("frmStatusWin", "lblStatus") + "|" + TextOn("frmStatusWin", "lblStatus2"));
                 }});
    status.second = "(Windows Update)";
    ClearWindowsUpdateCache(status);
    EXPECT_JOURNAL({"run hidden cmd /c net stop wuauserv /y", "run hidden cmd /c net stop bits /y",
                    "delete C:\\Windows\\SoftwareDistribution\\Download\\u.cab",
                    "remove folder C:\\Windows\\SoftwareDistribution\\Download", "run hidden net start bits",
                    "run hidden net start wuauserv"});
    EXPECT_LINES(seen, {"Stopping Services...|(Windows Update)", "Stopping Services...|(Windows Update)",
                        "Starting Services...|Deleting Files...", "Starting Services...|Deleting Files..."});
    EXPECT_EQ(status.first, "Idle...");
}

TEST_F(CleanerTest, TellsStageAndProfileAndTracesStartAndEnd) {
    Pc().AddFolder("C:\\Users\\Ann");
    Pc().AddFile("C:\\Windows\\Temp\\w.tmp");
    std::vector<std::string> seen;
    for (int pump = 1; pump < 200; ++pump)
        Pc().AtPump(pump, [&] {
            const std::string now = TextOn("frmStatusWin", "lblStatus") + "|" + TextOn("frmStatusWin", "lblStatus2");
            if (seen.empty() || seen.back() != now) seen.push_back(now);
        });
    CleanTempFiles({true, true, true, true});
    for (const char* line : {"Deleting Temp Internet Files... |(Internet - Ann)", "Deleting Temp Files... |(Ann)",
                             "Deleting Cookies... |(Cookies - Ann)", "Deleting History... |(Internet History - Ann)",
                             "Deleting Windows Temp Files...|(C:\\Windows\\Temp)",
                             "Deleting System Profile Temp Files...|(System Profile)"})
        EXPECT_EQ(std::count(seen.begin(), seen.end(), line), 1) << line;
    EXPECT_FALSE(IsFormLoaded("frmStatusWin"));
    EXPECT_TRUE(Pc().Traced("Starting temp file deletion on "));
    EXPECT_TRUE(Pc().Traced("\tTemp Internet Files=True Cookies=True History=True"));
    EXPECT_TRUE(Pc().Traced("Completed temp file deletion on C:"));
    EXPECT_TRUE(Pc().Traced("    DIR DELETED:  C:\\Windows\\temp"));
}

TEST_F(CleanerTest, AnySingleFailureHarmsNothingAndTheRunGoesOn) {
    const std::string chrome = "C:\\Users\\Ann\\AppData\\Local\\Google\\Chrome\\User Data\\Default\\";
    const std::string removed[] = {TempFileOf("Ann"),          chrome + "Cache\\f_0001",
                                   chrome + "Cookies",         chrome + "History",
                                   "C:\\Windows\\Temp\\w.tmp", "C:\\Windows\\SoftwareDistribution\\Download\\u.cab"};
    const std::string kept[] = {"C:\\Users\\Ann\\Documents\\a.doc", chrome + "Bookmarks", TempFileOf("Default"),
                                "C:\\Windows\\SoftwareDistribution\\DataStore\\d.edb"};
    for (int n = 1;; ++n) {
        SCOPED_TRACE(n);
        SimulatedPc::UseWindows(Windows::seven);
        Pc().DeleteTree(Pc().Profile());
        for (const std::string& file : removed) Pc().AddFile(file);
        for (const std::string& file : kept) Pc().AddFile(file);
        const int before = Pc().calls;
        Pc().FailCall(n);
        CleanTempFiles(everything);
        for (const std::string& file : kept) EXPECT_TRUE(Pc().Exists(file)) << file;
        const auto left =
            std::count_if(std::begin(removed), std::end(removed), [](auto& file) { return Pc().Exists(file); });
        // A lost listing of the profiles, or of a browser's users, costs what stands below it.
        EXPECT_LE(left, 4);
        EXPECT_TRUE(Pc().Traced("Completed temp file deletion on"));
        EXPECT_FALSE(IsFormLoaded("frmStatusWin"));
        if (HasFailure() || Pc().calls - before < n) break;
    }
}

}  // namespace
