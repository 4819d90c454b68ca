#include "system/registry.h"

#include "pc/pc_test.h"

using namespace std::string_literals;

namespace {

class RegistryTest : public PcTest {};
constexpr const char* key = "Software\\Test";

}  // namespace

TEST_F(RegistryTest, ReadsChooseTheView) {
    struct {
        Windows windows;
        const char* path;
        const char* value;
        const char* tracedPath;
    } cases[] = {
        {Windows::sevenX64, "Software\\A", "64", "HKLM\\Software\\A"},
        {Windows::sevenX64, "Software\\WOW6432Node\\A", "32", "HKLM\\software\\a"},
        {Windows::sevenX64, "guest_software\\Wow6432Node\\A", "guest", "HKLM\\guest_software\\Wow6432Node\\A"},
        {Windows::seven, "Software\\A", "64", "HKLM\\Software\\A"},
        {Windows::seven, "Software\\Wow6432Node\\A", "32", "HKLM\\Software\\Wow6432Node\\A"},
    };
    for (const auto& c : cases) {
        SimulatedPc::UseWindows(c.windows);
        Pc().SetText("HKLM\\Software\\A", "V", "64");
        Pc().SetText("HKLM\\Software\\Wow6432Node\\A", "V", "32");
        Pc().SetText("HKLM\\guest_software\\Wow6432Node\\A", "V", "guest");
        EXPECT_EQ(ReadRegistryText("HKLM", c.path, "V"), c.value) << c.path;
        EXPECT_TRUE(Pc().Traced("- Passed Key: "s + c.tracedPath)) << c.path;
    }
}

TEST_F(RegistryTest, ReadsGiveWhatIsStoredOrTheDefault) {
    const std::string large(1 << 20, 'x');
    struct {
        uint32_t type;
        std::string stored;
        char letter;
        int32_t status;
        std::string result;
    } texts[] = {
        {pc::typeSz, "abc\0"s, 'S', 0, "abc"},       {pc::typeSz, "\0"s, 's', 0, ""},
        {pc::typeSz, ""s, 'S', 0, "default"},        {pc::typeSz, "abc"s, 'S', 0, "ab"},
        {pc::typeSz, "ab\xC3\xA4"s, 'S', 0, "ab"},  // loses its last letter, not half of one
        {pc::typeExpandSz, "%x%\0"s, 'S', 0, "%x%"}, {pc::typeMultiSz, "a\0b\0\0"s, 'M', 0, "a\0b\0"s},
        {pc::typeBinary, "xyz"s, 'S', 0, "xy"},      {pc::typeSz, large + '\0', 'S', 0, large},
        {pc::typeSz, "abc\0"s, 'E', 0, "default"},
    };
    for (const auto& c : texts) {
        Pc().SetRaw("HKCU\\Software\\Test", "V", c.type, c.stored);
        std::string result;
        EXPECT_EQ(fReadValue("HKCU", key, "V", c.letter, "default", result), c.status);
        EXPECT_TRUE(result == c.result) << c.letter << " gave " << result.substr(0, 40);
    }
    struct {
        std::string stored;
        char letter;
        int32_t status, result;
    } numbers[] = {
        {"\xFF\xFF\xFF\xFF"s, 'D', 0, -1},
        {"\x01\x02"s, 'd', 0, 0x201},
        {"\x01\0\0\0\x09"s, 'D', 0, 1},
        {std::string(32, '\1'), 'D', 0, 0x1010101},
        {std::string(33, '\1'), 'D', 234, 7},
        {""s, 'D', 0, 0},
        {"\xFF\xFF"s, 'B', 0, 65535},
        {"\1\0\0"s, 'B', 234, 7},
        {"\1\0\0\0"s, 'S', 0, 7},
    };
    for (const auto& c : numbers) {
        Pc().SetRaw("HKCU\\Software\\Test", "V", pc::typeBinary, c.stored);
        int32_t result = 0;
        EXPECT_EQ(fReadValue("HKCU", key, "V", c.letter, 7, result), c.status) << c.letter << c.stored.size();
        EXPECT_EQ(result, c.result) << c.letter << c.stored.size();
    }
}

TEST_F(RegistryTest, OnlyReadsThatFindTheirValueAreTraced) {
    Pc().SetText("HKCU\\Software\\Test", "V", "text");
    ReadRegistryText("HKCU", key, "V");
    ReadRegistryText("HKCU", key, "Missing");
    ReadRegistryText("HKCU", "Software\\Missing", "V");
    EXPECT_LINES(Pc().trace,
                 {"\tmodRegistry\\fReadValue: ", "\t\t- Passed Key: HKCU\\Software\\Test", "\t\t- Passed Value: V",
                  "\t\t- Returned Value: text", "\t\t- lResult (0 is successful): 0"});
}

TEST_F(RegistryTest, FailuresLeaveTheDefault) {
    Pc().HideKey("HKLM\\Software\\Hidden");
    Pc().AddKey("HKLM\\Software\\Test");
    struct {
        const char *root, *path;
        int32_t status;
    } cases[] = {{"HKXX", key, 99},
                 {"HKEY_LOCAL_MACHINE", key, 99},
                 {"", key, 99},
                 {"C:\\Windows", key, 99},
                 {"hklm", "Software\\None", 2},
                 {"HKLM", key, 2},
                 {"HKLM", "Software\\Hidden", 5}};
    for (const auto& c : cases) {
        std::string text;
        int32_t number = 0;
        EXPECT_EQ(fReadValue(c.root, c.path, "V", 'S', "default", text), c.status) << c.root << c.path;
        EXPECT_EQ(fReadValue(c.root, c.path, "V", 'D', 5, number), c.status) << c.root << c.path;
        EXPECT_EQ(text, "default");
        EXPECT_EQ(number, 5);
    }
}

TEST_F(RegistryTest, AnIniFileServesAsRoot) {
    const std::string file = "C:\\Some.ini";
    Pc().SetIni(file, "Sect", "Long", std::string(400, 'x'));
    Pc().SetIni(file, "Sect", "Number", "12");
    std::string text, list = "gone";
    int32_t number = 0;
    EXPECT_EQ(fReadValue(file, "Sect", "Long", 'S', "", text), 0);
    EXPECT_EQ(text, std::string(254, 'x'));
    EXPECT_EQ(fReadValue(file, "Sect", "Number", 'D', 3, number), 0);
    EXPECT_EQ(number, 3);  // read, but never stored
    EXPECT_EQ(fWriteValue(file, "Sect", "Number", 'S', "13"), 0);
    EXPECT_EQ(fWriteValue(file, "Sect", "Number", 'E', "14"), 99);
    EXPECT_EQ(fEnumValue2(file, "Sect", list), 0);
    EXPECT_EQ(list.size(), 8192u);
    EXPECT_EQ(list.substr(list.find("Number")).substr(0, 13), "Number=13\0\0  "s);
    EXPECT_NE(fEnumKey(file, "Sect", list), 0);
}

TEST_F(RegistryTest, WritesMakeTheKeyAndAppendToLists) {
    Pc().SetRaw("HKCU\\Software\\Test", "M", pc::typeMultiSz, "one\0\0"s);
    EXPECT_EQ(fWriteValue("HKCU", key, "S", 's', "text"), 0);
    EXPECT_EQ(fWriteValue("HKCU", key, "E", 'E', "%windir%"), 0);
    EXPECT_EQ(fWriteValue("HKCU", key, "M", 'M', "two"), 0);
    EXPECT_EQ(fWriteValue("HKCU", key, "M", 'M', "two"), 0);
    EXPECT_EQ(fWriteValue("HKCU", key, "D", 'D', -32768), 0);
    EXPECT_EQ(fWriteValue("HKLM", "Software\\New\\Deep", "B", 'B', "x"), 0);
    EXPECT_EQ(fWriteValue("HKLM", "Software\\Wow6432Node\\New", "S", 'S', "32"), 0);
    EXPECT_JOURNAL({"set HKCU\\Software\\Test\\S = text", "set HKCU\\Software\\Test\\E = expand %windir%",
                    "set HKCU\\Software\\Test\\M = multi one|two", "set HKCU\\Software\\Test\\M = multi one|two|two",
                    "set HKCU\\Software\\Test\\D = dword 4294934528", "make key HKLM\\Software\\New\\Deep",
                    "make key HKLM\\Software\\Wow6432Node\\New", "set HKLM\\Software\\Wow6432Node\\New\\S = 32"});
    EXPECT_EQ(ReadRegistryText("HKCU", key, "S"), "text");  // with its last letter
}

TEST_F(RegistryTest, RefusedWritesAreTracedAndMostlyNotTold) {
    EXPECT_EQ(fWriteValue("HKXX", key, "V", 'S', "x"), 99);
    EXPECT_LINES(Pc().trace, {"\tmodRegistry\\fWriteValue: ", "\t\t- Passed Key: HKXX\\Software\\Test",
                              "\t\t- Passed Value: V", "\t\t- lResult (0 is successful): 99"});
    Pc().AddKey("HKLM\\Software\\Test");
    Pc().DenyKey("HKLM\\Software\\Test");
    EXPECT_EQ(fWriteValue("HKLM", key, "V", 'S', "x"), 5);
    Pc().AddKey("HKCU\\Software\\Test");
    Pc().FailCall(2);  // the set itself
    EXPECT_EQ(fWriteValue("HKCU", key, "V", 'S', "x"), 0);
    EXPECT_NE(Pc().trace.back(), "\t\t- lResult (0 is successful): 0");
    for (int32_t number : {70000, -32769}) {
        Pc().trace.clear();
        EXPECT_EQ(fWriteValue("HKCU", key, "V", 'D', number), 0);
        EXPECT_EQ(Pc().trace.front(), "\tmodRegistry\\fWriteValue - VB ERROR: 6 Overflow");
    }
    EXPECT_TRUE(Pc().journal.empty());
}

TEST_F(RegistryTest, KeysAreListedWithNulsBetween) {
    const std::string longName(255, 'k');
    for (const std::string& name : {"b"s, longName, "  a b"s}) Pc().AddKey("HKCU\\Software\\Test\\" + name);
    std::string list, none;
    EXPECT_EQ(fEnumKey("HKCU", "Software\\Test\\", list), 0);
    EXPECT_EQ(list, "a b\0b\0"s + longName + "\0\0"s);
    EXPECT_EQ(SplitList(list).size(), 3u);
    Pc().trace.clear();
    EXPECT_EQ(fEnumKey("HKCU", "Software\\Test\\b", none), 0);
    EXPECT_EQ(none, "\0\0"s);
    EXPECT_LINES(Pc().trace, {"\tmodRegistry\\fEnumKey: ", "\t\t- Passed Key: HKCU\\Software\\Test\\b",
                              "\t\t- Returned Values: ||", "\t\t- lResult (0 is successful): 259"});
    none.clear();
    EXPECT_EQ(fEnumKey("HKCU", "Software\\None", none), 2);
    EXPECT_EQ(fEnumKey("HKXX", key, none), 99);
    EXPECT_EQ(none, "");
}

TEST_F(RegistryTest, ValuesAreListedByType) {
    const std::string place = "HKCU\\Software\\Test";
    Pc().SetText(place, "a", "text");
    Pc().SetRaw(place, "b", pc::typeSz, "bare");
    Pc().SetNumber(place, "c", 0xFFFFFFFF);
    Pc().SetRaw(place, "d", pc::typeBinary, "\x02\x01"s);
    Pc().SetRaw(place, "e", pc::typeBinary, "\1\2\3"s);
    Pc().SetRaw(place, "f", pc::typeMultiSz, "x\0\0"s);
    Pc().SetRaw(place, "g", pc::typeExpandSz, "%x%\0"s);
    std::string stored, clean;
    EXPECT_EQ(fEnumValue("HKCU", key, stored), 0);
    EXPECT_EQ(stored, "a=text\0b=barec=-1\0d=258\0\0"s);
    Pc().trace.clear();
    EXPECT_EQ(fEnumValue2("HKCU", key, clean), 0);
    EXPECT_EQ(clean, "a=text\0b=bare\0c=-1\0d=258\0\0"s);
    EXPECT_LINES(Pc().trace, {"\tmodRegistry\\fEnumValue2: ", "\t\t- Passed Key: HKCU\\Software\\Test",
                              "\t\t- Returned String:  (where | = vbNullChar)", "\t\t  a=text|b=bare|c=-1|d=258||",
                              "\t\t- lResult (0 is successful): 0"});
}

// Whatever vanishes between two calls, a listing ends with a list that can be split.
TEST_F(RegistryTest, ListingsSurviveAKeyThatVanishes) {
    for (int call = 1; call <= 8; ++call) {
        SimulatedPc::UseWindows(Windows::sevenX64);
        for (const char* name : {"a", "b", "c"}) Pc().SetText("HKCU\\Software\\Test\\"s + name, name, name);
        for (const char* name : {"a", "b", "c"}) Pc().SetText("HKCU\\Software\\Test", name, name);
        Pc().AtCall(call, [] { Pc().RemoveKey("HKCU\\Software\\Test"); });
        std::string keys, values;
        if (call % 2 == 0) {
            fEnumKey("HKCU", key, keys);
            EXPECT_LE(SplitList(keys).size(), 3u);
        } else {
            int32_t status = fEnumValue2("HKCU", key, values);
            EXPECT_TRUE(values.empty() || values.back() == '\0') << call << " gave " << status;
        }
    }
}
