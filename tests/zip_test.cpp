#include "pc/pc_test.h"
#include "platform/machine.h"
#include "transfer/archives.h"
#include "transfer/zip_reader.h"
#include "transfer/zip_writer.h"
#include "zip_bytes.h"

namespace {

constexpr const char* archive = "C:\\Work\\a.zip";
constexpr const char* target = "C:\\Work\\out";

class ZipTest : public PcTest {
protected:
    // Extracts an archive of these bytes; the codes of its errors.
    std::vector<int32_t> Extract(const std::string& bytes, bool overwrite = true, bool keepFolders = true) {
        Pc().AddFile(archive, bytes);
        codes.clear();
        ZipExtractionClass reader;
        reader.ZipError = [this](int32_t code, const std::string&) { codes.push_back(code); };
        opened = reader.OpenZip(archive);
        extracted = opened && reader.Extract(target, keepFolders, overwrite);
        return codes;
    }
    std::string Out(const std::string& name) { return Pc().FileText(std::string(target) + "\\" + name); }
    std::vector<std::string> Tree() { return Pc().Tree("C:\\Work"); }

    std::vector<int32_t> codes;
    bool opened = false, extracted = false;
};

using Codes = std::vector<int32_t>;

TEST_F(ZipTest, WriterLaysOutEveryRecordByteForByte) {
    Pc().AddFile("C:\\Work\\note.txt", "hello hello hello");
    Pc().SetTimes("C:\\Work\\note.txt", 0, 0, FileTimeOf(2026, 11, 22, 13, 45, 31));
    ZipClass zip;
    ASSERT_TRUE(zip.AddFile("C:\\Work\\note.txt", "", "why"));
    zip.Comment("end");
    ASSERT_TRUE(zip.WriteZip(archive, false));
    std::string data = RawDeflate("hello hello hello");
    uint32_t crc = static_cast<uint32_t>(crc32(0, reinterpret_cast<const Bytef*>("hello hello hello"), 17));
    // 13:45:31 is 13<<11 | 45<<5 | 15, 2026-11-22 is 46<<9 | 11<<5 | 22.
    std::string shared = Number(20, 2) + Number(2, 2) + Number(8, 2) + Number(13 << 11 | 45 << 5 | 15, 2) +
                         Number(46 << 9 | 11 << 5 | 22, 2) + Number(crc, 4) + Number(data.size(), 4) + Number(17, 4) +
                         Number(8, 2) + Number(0, 2);
    std::string local = Number(0x04034B50, 4) + shared + "note.txt" + data;
    std::string central = Number(0x02014B50, 4) + Number(20, 2) + shared + Number(3, 2) + Number(0, 2) + Number(32, 2) +
                          Number(0, 4) + Number(0, 4) + "note.txt" + "why";
    std::string end = Number(0x06054B50, 4) + Number(0, 4) + Number(1, 2) + Number(1, 2) + Number(central.size(), 4) +
                      Number(local.size(), 4) + Number(3, 2) + "end";
    EXPECT_EQ(Pc().FileText(archive), local + central + end);
    EXPECT_EQ(zip.FileCount(), 1u);
    EXPECT_FALSE(zip.WriteZip(archive, false)) << "an existing file stays without leave to overwrite";
    EXPECT_FALSE(zip.AddFile("C:\\Work\\missing", "", ""));
}

TEST_F(ZipTest, EventsTellTheCourse) {
    Pc().AddFile(archive, HandZip({{"a.txt", "A"}, {"sub/b.txt", "B"}, {"sub/", ""}}));
    std::vector<std::string> events;
    ZipExtractionClass reader;
    reader.Status = [&](const std::string& text) { events.push_back(text); };
    reader.Progress = [&](int32_t percent, bool&) { events.push_back(std::to_string(percent)); };
    EXPECT_TRUE(reader.OpenZip(archive));
    EXPECT_TRUE(reader.Extract(target, true, true));
    reader.CloseZip();
    EXPECT_LINES(events, {"Opening Zip", "Zip Opened", "Extracting Files", "Extracting ...\\a.txt", "33",
                          "Extracting ...\\sub\\b.txt", "66", "100", "Extraction Complete", "Zip Closed"});
}

TEST_F(ZipTest, CancelKeepsWhatWasExtracted) {
    Pc().AddFile(archive, HandZip({{"a", "A"}, {"b", "B"}}));
    ZipExtractionClass reader;
    reader.Progress = [](int32_t, bool& cancel) { cancel = true; };
    ASSERT_TRUE(reader.OpenZip(archive));
    EXPECT_FALSE(reader.Extract(target, true, true));
    EXPECT_EQ(Out("a"), "A");
    EXPECT_FALSE(Pc().Exists(std::string(target) + "\\b"));
}

TEST_F(ZipTest, WhatOrdinaryToolsMakeOpens) {
    std::string zip64 = Number(1, 2) + Number(16, 2) + Number(5, 8) + Number(RawDeflate("zip64").size(), 8);
    HandEntry big = {"big", "zip64"};
    big.centralExtra = zip64;
    big.sizeClaim = big.compressedClaim = 0xFFFFFFFF;
    HandEntry late = {"late.txt", "descriptor"};
    late.descriptor = true;
    HandEntry stored = {"stored.txt", "as it is", zip::methodStored};
    stored.crcClaim = 1;  // a stored entry is not checked
    HandEntry utf8 = {"\xD0\xB6.txt", "zh"};
    utf8.flags = zip::flagUtf8;
    EXPECT_EQ(Extract(HandZip({{"win\\dows.txt", "w"}, {"./dot//a.txt", "d"}, late, stored, utf8, big, {"empty", ""}},
                              "a comment with PK\x05\x06 in front of nothing")),
              Codes{});
    // The signature in the comment is nearer to the end, so it wins and says nothing that fits; without it all come.
    Extract(HandZip({{"win\\dows.txt", "w"}, {"./dot//a.txt", "d"}, late, stored, utf8, big, {"empty", ""}}));
    EXPECT_TRUE(extracted);
    EXPECT_EQ(Out("win\\dows.txt") + Out("dot\\a.txt") + Out("late.txt") + Out("stored.txt") + Out("big"),
              "wddescriptoras it iszip64");
    EXPECT_EQ(Out("\xD0\xB6.txt"), "zh");
    EXPECT_FALSE(Pc().Exists(std::string(target) + "\\empty")) << "an entry without bytes makes no file";
}

TEST_F(ZipTest, NamesThatWouldLeaveTheFolderAreRefusedAndTheRestComes) {
    const std::string hostile[] = {"../evil",    "a/../../evil", "..\\evil", "/evil",       "\\evil",
                                   "\\\\srv\\x", "C:evil",       "C:\\evil", "a/b:stream",  "NUL",
                                   "con.txt",    "sub/AUX.log",  "com1",     "LPT9.prn",    "trail. ",
                                   "dots...",    "sp ",          "a/ /b",    "what?",       "st*r",
                                   "pi|pe",      "quo\"te",      "<tag>",    "COM\xC2\xB9", std::string("nul\0.exe", 8),
                                   "tab\t"};
    for (const std::string& name : hostile) {
        HandEntry entry = {name, "x"};
        entry.flags = zip::flagUtf8;
        EXPECT_EQ(Extract(HandZip({entry, {"good", "g"}})), Codes{zipUnsafeName}) << name;
        EXPECT_EQ(Out("good"), "g");
        Pc().DeleteTree(target);
    }
    EXPECT_LINES(Tree(), {"C:\\Work\\a.zip"});
    EXPECT_FALSE(Pc().Exists("C:\\evil"));
    for (const char* name : {"a..b", "...a", "console.txt", "com10", "a b", ".hidden"})
        EXPECT_EQ(Extract(HandZip({{name, "x"}})), Codes{}) << name;
}

TEST_F(ZipTest, NothingIsWrittenThroughALink) {
    Pc().AddFile("C:\\Precious\\file", "keep");
    Pc().AddJunction("C:\\Work\\out\\link", "C:\\Precious");
    Pc().AddFileLink("C:\\Work\\out\\direct", "C:\\Precious\\file");
    EXPECT_EQ(Extract(HandZip({{"link/file", "x"}, {"direct", "new"}, {"ok", "y"}})), Codes{zipThroughLink});
    EXPECT_EQ(Pc().FileText("C:\\Precious\\file"), "keep");
    EXPECT_EQ(Out("ok"), "y");
}

TEST_F(ZipTest, ClaimsAreNotBelieved) {
    HandEntry bomb = {"bomb", std::string(1000, 'x')};
    bomb.sizeClaim = 0x7FFFFFFF;
    HandEntry pastTheEnd = {"past", "x"};
    pastTheEnd.offsetClaim = 0x7FFFFFF0;
    HandEntry overlapping = {"second", "x"};
    overlapping.offsetClaim = 0;
    HandEntry wrongSum = {"sum", "data"};
    wrongSum.crcClaim = 42;
    HandEntry unknown = {"odd", "data", 12};
    HandEntry locked = {"secret", "data"};
    locked.flags = zip::flagEncrypted;
    struct Case {
        std::vector<HandEntry> entries;
        Codes codes;
        bool rest;  // the good entry comes all the same
    };
    const Case cases[] = {{{bomb}, {zipTooLarge}, true},
                          {{pastTheEnd}, {zipDamaged}, false},
                          {{{"first", "y"}, overlapping}, {zipDamaged}, false},
                          {{wrongSum}, {zipChecksum}, true},
                          {{unknown}, {zipUnsupported}, true},
                          {{locked}, {zipEncrypted}, true}};
    for (Case row : cases) {
        row.entries.push_back({"good", "g"});
        EXPECT_EQ(Extract(HandZip(row.entries)), row.codes) << row.entries[0].name;
        EXPECT_EQ(Out("good"), row.rest ? "g" : "") << row.entries[0].name;
        EXPECT_EQ(extracted, row.rest) << row.entries[0].name;
        Pc().DeleteTree(target);
    }
    Pc().SetDisk("C:", 1e9, 500);
    EXPECT_EQ(Extract(HandZip({{"large", std::string(1000, 'z')}})), Codes{zipTooLarge}) << "more than the disk has";
}

TEST_F(ZipTest, AnExistingFileSurvivesWhatGoesWrong) {
    std::string file = std::string(target) + "\\file";
    HandEntry wrongSum = {"file", "new"};
    wrongSum.crcClaim = 42;
    Pc().AddFile(file, "old");
    EXPECT_EQ(Extract(HandZip({{"file", "new"}}), false), Codes{zipTargetExists});
    EXPECT_EQ(Extract(HandZip({wrongSum})), Codes{zipChecksum});
    EXPECT_EQ(Out("file"), "old");
    Pc().FillDiskAfter(1);
    EXPECT_EQ(Extract(HandZip({{"file", "new"}})), Codes{zipWriteFailed});
    EXPECT_EQ(Out("file"), "old");
    Pc().FillDiskAfter(UINT64_MAX);
    Pc().Lock(file);
    EXPECT_EQ(Extract(HandZip({{"file", "new"}})), Codes{zipTargetKept});
    Pc().Unlock(file);
    Pc().AddFile(file, "old", pc::attributeReadOnly);
    EXPECT_EQ(Extract(HandZip({{"file", "first"}, {"file", "second"}})), Codes{});
    EXPECT_EQ(Out("file"), "second") << "of two entries of one name the later wins, over a read-only file too";
    EXPECT_EQ(Extract(HandZip({{"file/below", "x"}, {"other", "o"}})).size(), 1u) << "a file where a folder is wanted";
    EXPECT_EQ(Out("other"), "o");
    for (const std::string& path : Tree()) EXPECT_EQ(path.find(".unzip"), std::string::npos) << path;
}

TEST_F(ZipTest, AnArchiveCutAtAnyByteOrChangedAnywhereHarmsNothing) {
    std::string whole = HandZip({{"a/b.txt", "some text, some text"}, {"c", "stored", zip::methodStored}});
    Pc().AddFile("C:\\Work\\beside", "mine");
    for (size_t cut = 0; cut < whole.size(); ++cut) {
        Extract(whole.substr(0, cut));
        EXPECT_FALSE(extracted) << cut;
    }
    for (size_t at = 0; at < whole.size(); ++at)
        for (char byte : {'\0', '\xFF', '\x80'}) {
            std::string changed = whole;
            changed[at] = byte;
            Extract(changed);
        }
    EXPECT_EQ(Pc().FileText("C:\\Work\\beside"), "mine");
    for (const std::string& path : Pc().Tree("C:\\"))
        if (path.find("b.txt") != std::string::npos && path.back() != '\\') {
            EXPECT_EQ(path.rfind("C:\\Work\\out\\", 0), 0u) << path;
        }
}

TEST_F(ZipTest, ErrorsSayWhatIsWrong) {
    ZipExtractionClass reader;
    std::vector<std::string> errors;
    reader.ZipError = [&](int32_t code, const std::string& text) {
        errors.push_back(std::to_string(code) + " " + text);
    };
    EXPECT_FALSE(reader.Extract(target, true, true));
    EXPECT_FALSE(reader.OpenZip("C:\\Work\\none.zip"));
    Pc().AddFile("C:\\Work\\text.zip", std::string(200000, 'P'));
    EXPECT_FALSE(reader.OpenZip("C:\\Work\\text.zip"));
    EXPECT_LINES(errors, {"3 There is no Zip File Open", "10 The file C:\\Work\\none.zip doesn't exist",
                          "2 The file C:\\Work\\text.zip is not a Zip file"});
    errors.clear();
    HandEntry wrongSum = {"sub/sum", "x"};
    wrongSum.crcClaim = 1;
    Pc().AddFile(archive, HandZip({wrongSum, {"sub/odd", "x", 99}, {"there", "x"}}));
    Pc().AddFile(std::string(target) + "\\there", "old");
    Pc().Lock(std::string(target) + "\\there");
    EXPECT_TRUE(reader.OpenZip(archive));
    EXPECT_FALSE(reader.Extract("Q:\\none", true, true));
    EXPECT_TRUE(reader.Extract(target, true, false));
    EXPECT_TRUE(reader.Extract(target, false, true)) << "what becomes of single entries does not count";
    EXPECT_LINES(errors,
                 {"13 Can't create the folder Q:\\none", "5 Data checksum error in C:\\Work\\out\\sub\\sum",
                  "4 The compression Method for sub\\odd is unsupported",
                  "11 The file C:\\Work\\out\\there already exists", "5 Data checksum error in C:\\Work\\out\\sum",
                  "4 The compression Method for odd is unsupported", "12 Can't remove the file C:\\Work\\out\\there"});
}

TEST_F(ZipTest, FoldersAreZippedFlatOrRelative) {
    Pc().AddFolder("C:\\Work");
    Pc().AddFile("C:\\Src\\One.TXT", "1");
    Pc().AddFile("C:\\Src\\Sub\\Two.txt", "2");
    Pc().AddJunction("C:\\Src\\Link", "C:\\Windows");
    EXPECT_TRUE(ZipFolder("C:\\Src\\", "C:\\Work\\flat.zip"));
    EXPECT_TRUE(ZipFolderRelative("C:\\Src", "C:\\Work\\deep.zip", true));
    ZipExtractionClass flat, deep;
    std::vector<std::string> flatNames, deepNames;
    EXPECT_TRUE(flat.OpenZip("C:\\Work\\flat.zip") && flat.Test(flatNames));
    EXPECT_TRUE(deep.OpenZip("C:\\Work\\deep.zip") && deep.Test(deepNames));
    EXPECT_LINES(flatNames, {"One.TXT"});
    EXPECT_LINES(deepNames, {"one.txt", "sub\\two.txt"});
}

TEST_F(ZipTest, TheLibraryIsPutIntoTheSystemFolderOnce) {
    Pc().AddResource("CUSTOM", "ZLIB", "library");
    std::string path = Pc().Env("systemroot") + "\\SysWOW64\\zlib.dll";
    EnsureZlib();
    EXPECT_EQ(Pc().FileText(path), "library");
    Pc().AddFile(path, "own");
    EnsureZlib();
    EXPECT_EQ(Pc().FileText(path), "own");
}

}  // namespace
