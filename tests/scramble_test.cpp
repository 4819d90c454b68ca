#include "system/scramble.h"
#include "pc/pc_test.h"
#include "system/base85.h"

using std::string_literals::operator""s;

namespace {

TEST(Base85, EveryLengthAndByteReadsBack) {
    for (size_t length = 0; length <= 64; ++length)
        for (int step = 0; step < 256; step += 5) {
            std::string bytes;
            for (size_t i = 0; i < length; ++i) bytes += static_cast<char>(static_cast<size_t>(step) + i * 37);
            std::string text = Base85EncodeBytes(bytes, false), back;
            EXPECT_TRUE(Base85DecodeBytes(text, back));
            EXPECT_EQ(back, bytes);
        }
    for (int byte = 0; byte < 256; ++byte) {
        std::string bytes(4, static_cast<char>(byte)), back;
        EXPECT_TRUE(Base85DecodeBytes(Base85EncodeBytes(bytes, true), back));
        EXPECT_EQ(back, bytes);
    }
}

TEST(Base85, PublishedVectorsAndDamage) {
    struct Case {
        const char* text;
        bool right;
        std::string bytes;
    };
    const Case cases[] = {
        {"87cURD]i,\"Ebo80~>", true, "Hello World!"},
        {"<~87cURD]i,\"Ebo80~>", true, "Hello World!"},
        {" 87cUR\r\nD]i,\"\tEbo80 ~>", true, "Hello World!"},
        {"z~>", true, std::string(4, '\0')},
        {"~>", true, ""},
        {"<~~>", true, ""},
        {"87cUR", false, ""},
        {"87zcUR~>", false, ""},
        {"87cU\x7Fv~>", false, ""},
        {"<7cUR~>", true, "\x54\xD7\x7F\x30"},
        {"87cUR~", false, ""},
        {"", false, ""},
        {"s8W-!~>", true, "\xFF\xFF\xFF\xFF"},
        {"!~>", true, ""},
    };
    for (const Case& row : cases) {
        std::string bytes;
        EXPECT_EQ(Base85DecodeBytes(row.text, bytes), row.right) << row.text;
        EXPECT_EQ(bytes, row.bytes) << row.text;
    }
    EXPECT_EQ(Base85EncodeBytes("", true), "<~~>");
    EXPECT_EQ(Base85EncodeBytes("", false), "~>");
    EXPECT_EQ(Base85EncodeBytes(std::string(3, '\0'), false), "!!!!~>") << "a short group is never a z";
    EXPECT_EQ(Base85EncodeBytes("\x03", false), "!r~>") << "what a group lacks counts as zeros";
}

class ScrambleTest : public PcTest {};

TEST_F(ScrambleTest, PasswordsReadBackAndAnEmptyOneIsStoredToo) {
    for (const char* password :
         {"", "a", "secret", "seven77", "eight888", "with blank and ~> and \"quotes\"", "4205173"}) {
        std::string stored = EncryptString(password, passwordKey);
        EXPECT_TRUE(stored.ends_with("~>"));
        EXPECT_FALSE(stored.starts_with("<~"));
        EXPECT_EQ(DecryptString(stored, passwordKey), password);
    }
    // Both guards and the first two key digits: 'a' ^ '4', 'a' ^ '2'.
    EXPECT_EQ(EncryptString("", passwordKey), Base85EncodeBytes("\x55\x53", false));
    // Low bytes only: U+20AC and a pair, and a code of 0x82, which the code page gives the character U+201A.
    EXPECT_EQ(Base85EncodeString("\xE2\x82\xAC\xF0\x9F\x98\x80", false), Base85EncodeBytes("\xAC\x3D\x00"s, false));
    EXPECT_EQ(EncryptString("\xC2\xB0", passwordKey), Base85EncodeBytes("\x55\x1A\x51", false));
    EXPECT_EQ(DecryptString(EncryptString("\xC3\xA9", passwordKey), passwordKey), "\xC3\xA9");
}

TEST_F(ScrambleTest, DamagedPasswordNeverPassesForTheRightOne) {
    const std::string password = "secret word 1", stored = EncryptString(password, passwordKey);
    std::vector<std::string> damaged = {"", "~>", "<~~>", "garbage", "zz~>", "!!~>", std::string(70000, 'z')};
    for (size_t cut = 0; cut < stored.size(); ++cut) damaged.push_back(stored.substr(0, cut));
    for (size_t at = 0; at + 2 < stored.size(); ++at)
        for (char wrong : {'v', 'z', '\x01', '\xFF', '~'}) {
            std::string text = stored;
            if (text[at] == wrong) continue;
            text[at] = wrong;
            damaged.push_back(text);
        }
    for (const std::string& text : damaged) {
        std::string read = DecryptString(text, passwordKey);
        EXPECT_NE(read, password) << text;
        EXPECT_LE(read.size(), 4 * text.size() + 4) << text;
    }
    // Blanks and line ends that an editor brings do no harm.
    EXPECT_EQ(DecryptString(" " + stored.substr(0, 4) + "\r\n\t" + stored.substr(4), passwordKey), password);
}

}  // namespace
