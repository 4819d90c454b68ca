#include "system/text.h"

#include <gtest/gtest.h>

TEST(Text, CaseFollowsTheAlphabetsAndKeepsEverythingElse) {
    struct {
        const char *given, *lower, *upper;
    } rows[] = {{"Az09[`{@", "az09[`{@", "AZ09[`{@"},
                {"ÀÖØÞß×÷ÿ", "àöøþß×÷ÿ", "ÀÖØÞß×÷ÿ"},
                {"àöøþ", "àöøþ", "ÀÖØÞ"},
                {"ΑΡΣΩ ΆΈΊΌΎΏΪ", "αρσω άέίόύώϊ", "ΑΡΣΩ ΆΈΊΌΎΏΪ"},
                {"ς", "ς", "Σ"},
                {"АЯЁЏ", "аяёџ", "АЯЁЏ"},
                {"名€𝄞ıİ", "名€𝄞ıİ", "名€𝄞ıİ"},
                // No valid UTF-8: a stray byte, a cut sequence, letters in forms longer than they need.
                {"A\xC4", "a\xC4", "A\xC4"},
                {"A\xE4z", "a\xE4z", "A\xE4Z"},
                {"\xC3", "\xC3", "\xC3"},
                {"\xC1\x81\xE0\x81\x81\xF0\x80\x81\x81", "\xC1\x81\xE0\x81\x81\xF0\x80\x81\x81",
                 "\xC1\x81\xE0\x81\x81\xF0\x80\x81\x81"},
                {"\xF8\x80\x81\x81", "\xF8\x80\x81\x81", "\xF8\x80\x81\x81"}};
    for (const auto& row : rows) {
        EXPECT_EQ(LowerCase(row.given), row.lower);
        EXPECT_EQ(UpperCase(row.given), row.upper);
    }
    EXPECT_TRUE(EqualNoCase("ПРИВЕТ.exe", "привет.EXE"));
    EXPECT_FALSE(EqualNoCase("\xC4", "\xE4"));
    EXPECT_TRUE(EndsWithNoCase("C:\\Ä.INI", "ä.ini"));
    EXPECT_TRUE(ContainsNoCase("Unknown", "KNOW"));
}

TEST(Text, ReplacementIsNotSearchedAgain) {
    EXPECT_EQ(ReplaceAll("a|b||", "|", "||"), "a||b||||");
    EXPECT_EQ(ReplaceAll("aaa", "aa", "b"), "ba");
    EXPECT_EQ(ReplaceAll("text", "", "x"), "text");
    EXPECT_EQ(ReplaceAllNoCase("[a][A][b", "[A]", "[a]-"), "[a]-[a]-[b");
    EXPECT_EQ(ReplaceAllNoCase("é[X]", "[x]", ""), "é");
}

TEST(Text, SplitKeepsEmptyPieces) {
    using Pieces = std::vector<std::string>;
    EXPECT_EQ(Split("", ';'), Pieces{""});
    EXPECT_EQ(Split(";a;;b;", ';'), (Pieces{"", "a", "", "b", ""}));
    EXPECT_EQ(Trim("  a \t b  "), "a \t b");
    EXPECT_EQ(Trim("   "), "");
}

TEST(Text, NumbersRoundHalvesAwayFromZero) {
    struct {
        double value;
        int decimals;
        const char *fixed, *grouped;
    } rows[] = {{0, 2, "0.00", ""},
                {1.005, 2, "1.01", "1.01"},
                {-1.005, 2, "-1.01", "-1.01"},
                {2, 2, "2.00", "2"},
                {0.5, 2, "0.50", ".5"},
                {0.004, 2, "0.00", ""},
                {-0.001, 2, "0.00", ""},
                {999.995, 2, "1000.00", "1,000"},
                {1234567.25, 2, "1234567.25", "1,234,567.25"},
                {-123456, 0, "-123456", "-123,456"},
                {2.5, 0, "3", "3"},
                {465.76, 2, "465.76", "465.76"},
                {1e300, 0, "9223372036854775807", "9,223,372,036,854,775,807"}};
    for (const auto& row : rows) {
        EXPECT_EQ(FixedText(row.value, row.decimals), row.fixed) << row.value;
        EXPECT_EQ(GroupedText(row.value, row.decimals), row.grouped) << row.value;
    }
    EXPECT_EQ(HexText(0), "0");
    EXPECT_EQ(HexText(0x0A10F), "A10F");
    EXPECT_EQ(NumberText(INT64_MIN), "-9223372036854775808");
}

TEST(Text, CharactersAreCountedAsCodePoints) {
    EXPECT_EQ(CharacterCount("aé名𝄞"), 4u);
    EXPECT_EQ(FirstCharacters("aé名𝄞", 3), "aé名");
    EXPECT_EQ(FirstCharacters("é", 9), "é");
    EXPECT_EQ(CharacterCount("\xE5\x90"), 2u);  // cut in the middle
}
