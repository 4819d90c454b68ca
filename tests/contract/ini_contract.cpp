#include "contract/contract.h"

namespace {

class IniContract : public ContractTest {
protected:
    std::string Value(const std::string& name, const std::string& missing = "(none)", size_t capacity = 255) const {
        return pc::ReadProfileText(file, "S", name, missing, capacity);
    }
    std::string file = In("settings.ini");
};

TEST_F(IniContract, ReadsAsThePlatformDoes) {
    Write("settings.ini",
          "top=1\r\n[Other]\r\nplain=wrong\r\n[S]\r\nplain=value\r\n  blanks \t=  a b \t\r\nquoted=\"x y \"\r\n"
          "single='x'\r\nopen=\"x\r\ntwice=\"\"\"x\"\"\"\r\nempty=\r\nequals=a=b\r\nplain=second\r\nnokey\r\n"
          "semi=a;b\r\n\r\nansi=caf\xE9\r\nlast=end\n[s]\r\nagain=1\r\n[NoEnd\r\nbelow=1");
    EXPECT_EQ("value", Value("PLAIN"));
    EXPECT_EQ("a b", Value("blanks"));
    EXPECT_EQ("x y ", Value("quoted"));
    EXPECT_EQ("x", Value("single"));
    EXPECT_EQ("\"x", Value("open"));
    EXPECT_EQ("\"\"x\"\"", Value("twice"));
    EXPECT_EQ("", Value("empty"));
    EXPECT_EQ("a=b", Value("equals"));
    EXPECT_EQ("(none)", Value("nokey"));
    EXPECT_EQ("a;b", Value("semi"));
    EXPECT_EQ("caf\xC3\xA9", Value("ansi"));
    EXPECT_EQ("end", Value("last"));
    EXPECT_EQ("(none)", Value("top"));
    EXPECT_EQ("(none)", Value("missing"));
    EXPECT_EQ("(none)", Value("again"));  // only the first section of a name counts
    EXPECT_EQ("cut", Value("missing", "cut  "));
    EXPECT_EQ("value", pc::ReadProfileText(file, "s", "plain", "", 255));
    EXPECT_EQ("val", Value("plain", "", 4));
    EXPECT_EQ("caf", Value("ansi", "", 4));
    EXPECT_EQ("", Value("plain", "", 1));
    EXPECT_EQ("gone", pc::ReadProfileText(In("none.ini"), "S", "plain", "gone", 255));
}

TEST_F(IniContract, LongValuesAreCut) {
    Write("settings.ini", "[S]\r\nlong=" + std::string(400, 'x') + "\r\n");
    EXPECT_EQ(std::string(254, 'x'), Value("long", "", 255));
    EXPECT_EQ(std::string(400, 'x'), Value("long", "", 1000));
}

TEST_F(IniContract, Sections) {
    using namespace std::string_literals;
    Write("settings.ini", "[S]\r\na=1\r\n\r\n b = two \r\n[T]\r\nc=3\r\n");
    EXPECT_EQ("a=1\0b=two\0"s, pc::ReadProfileSection(file, "s", 255));
    EXPECT_EQ("", pc::ReadProfileSection(file, "none", 255));
    EXPECT_EQ("a=1\0b=\0"s, pc::ReadProfileSection(file, "S", 8));
}

TEST_F(IniContract, WritesInPlace) {
    EXPECT_TRUE(pc::WriteProfileText(file, "S", "first", "1"));
    EXPECT_TRUE(pc::WriteProfileText(file, "T", "other", "x"));
    EXPECT_TRUE(pc::WriteProfileText(file, "s", "second", "caf\xC3\xA9"));
    EXPECT_TRUE(pc::WriteProfileText(file, "S", "FIRST", "one"));
    EXPECT_EQ("one", Value("first"));
    EXPECT_EQ("caf\xC3\xA9", Value("second"));
    EXPECT_EQ("x", pc::ReadProfileText(file, "T", "other", "", 255));
    EXPECT_NE(std::string::npos, Read("settings.ini").find("second=caf\xE9\r\n"));
    EXPECT_TRUE(pc::WriteProfileText(file, "S", "first", ""));
    EXPECT_EQ("", Value("first"));
    EXPECT_FALSE(pc::WriteProfileText(In("none\\x.ini"), "S", "k", "v"));
    ASSERT_TRUE(pc::ChangeAttributes(file, pc::attributeReadOnly));
    EXPECT_FALSE(pc::WriteProfileText(file, "S", "first", "2"));
    EXPECT_EQ("", Value("first"));
}

}  // namespace
