// The FTP client: blocks and their progress, what failures leave behind, and whose words tell of them.
#include "transfer/ftp_client.h"

#include "pc/pc_test.h"
#include "pc/simulated_net.h"

namespace {

constexpr const char* local = "C:\\Work\\local.bin";

class FtpTest : public PcTest {
protected:
    FtpTest() {
        Pc().AddFolder("C:\\Work");
        ftp.SetModePassive();
        ftp.SetTransferBinary();
        ftp.FileTransferProgress = [this](int32_t done, int32_t total) {
            progress.push_back(std::to_string(done) + "/" + std::to_string(total));
        };
        EXPECT_TRUE(ftp.OpenConnection("host.example", "tech", "secret"));
    }

    cFTP ftp;
    std::vector<std::string> progress;
};

TEST_F(FtpTest, BlocksOf255BytesGoBothWaysAndTellTheirProgress) {
    const struct {
        size_t size;
        std::vector<std::string> steps;
    } rows[] = {
        {1, {"1/1"}},
        {254, {"254/254"}},
        {255, {"255/255", "255/255"}},
        {256, {"255/256", "256/256"}},
        {510, {"255/510", "510/510", "510/510"}},
    };
    for (const auto& row : rows) {
        std::string bytes(row.size, 'x');
        Pc().AddFile(local, bytes);
        progress.clear();
        EXPECT_TRUE(ftp.FTPUploadFile(std::string(" ") + local + " ", "a.bin "));
        EXPECT_EQ(Net().ftpFiles["/a.bin"], bytes);
        EXPECT_LINES(progress, row.steps);
        progress.clear();
        EXPECT_TRUE(ftp.FTPDownloadFile("C:\\Work\\back.bin", "a.bin"));
        EXPECT_EQ(Pc().FileText("C:\\Work\\back.bin"), bytes);
        EXPECT_LINES(progress, row.steps);
    }
    // Beyond the piece in which the local file is read and written.
    std::string large;
    for (int i = 0; i < 150000; ++i) large += static_cast<char>(i % 251);
    Pc().AddFile(local, large);
    EXPECT_TRUE(ftp.FTPUploadFile(local, "large") && ftp.FTPDownloadFile("C:\\Work\\back.bin", "large"));
    EXPECT_EQ(Pc().FileText("C:\\Work\\back.bin"), large);
}

TEST_F(FtpTest, ALineCutAnywhereLeavesNoPieceAndSaysSo) {
    std::string bytes(1000, 'y');
    for (size_t cut : {0u, 254u, 255u, 700u, 999u}) {
        Net().ftpFiles["/a"] = bytes;
        Net().ftpCutAfter = cut;
        Pc().AddFile(local, bytes);
        EXPECT_FALSE(ftp.FTPUploadFile(local, "b")) << cut;
        EXPECT_FALSE(ftp.FTPDownloadFile("C:\\Work\\back.bin", "a")) << cut;
        EXPECT_FALSE(Pc().Exists("C:\\Work\\back.bin")) << cut;
        EXPECT_EQ(ftp.GetLastErrorMessage(), "426 Line cut.") << "the server's own words";
        EXPECT_EQ(Pc().FileText(local), bytes);
    }
}

TEST_F(FtpTest, WhatIsNotThereOrEmptyIsNotFetchedAndNothingOfOursIsEmptied) {
    Net().ftpFiles = {{"/empty", ""}, {"/two words.zip", "12"}, {"/kept", "remote"}};
    Pc().AddFile("C:\\Work\\mine", "mine");
    EXPECT_EQ(ftp.GetFTPFileSize("two words.zip"), 2);
    EXPECT_EQ(ftp.GetFTPFileSize("none"), -2);
    for (const char* remote : {"empty", "none", "", " "}) EXPECT_FALSE(ftp.FTPDownloadFile("C:\\Work\\mine", remote));
    EXPECT_EQ(Pc().FileText("C:\\Work\\mine"), "mine");
    EXPECT_FALSE(ftp.FTPUploadFile("C:\\Work\\none", "kept"));
    EXPECT_EQ(Net().ftpFiles["/kept"], "remote") << "a missing local file";
    EXPECT_FALSE(ftp.SetFTPDirectory("/none"));
    EXPECT_EQ(ftp.GetLastErrorMessage(), "550 No such folder.");
    ASSERT_TRUE(ftp.GetDirectoryListing("*"));
    EXPECT_EQ(ftp.Directory().Count(), 3u);
    EXPECT_EQ(ftp.Directory().Item(0).modified, 46024) << "2026-01-02 in days since 1899-12-30";
    Net().ftpOnline = false;
    EXPECT_FALSE(ftp.OpenConnection("host.example", "tech", "secret"));
    EXPECT_EQ(ftp.GetLastErrorMessage(),
              "InternetConnect error code: 12029 Message: A connection could not be established");
}

}  // namespace
