// Downloads and the forms of the technician's area: what they say, count and leave behind.
#include "pc/pc_test.h"
#include "pc/simulated_net.h"
#include "system/program_state.h"
#include "system/scramble.h"
#include "transfer/cloud.h"
#include "transfer/download.h"

namespace {

using Lines = std::vector<std::string>;
constexpr const char *url = "http://a.example/x", *file = "C:\\Panel\\Sub\\x.bin", *ini = "C:\\Panel\\Brevanta.ini";

class TransfersTest : public PcTest {
protected:
    TransfersTest() { State().settingsFile = ini; }
};

TEST_F(TransfersTest, ADownloadEndsWithAFileOrAWord) {
    const std::string enter = "show \"Please enter a valid source and destination.\" titled \"Download\" (48) -> 1",
                      again = "show \"Failed to download file.  Try again with IE?\" (4) -> 6";
    struct {
        const char* address;
        uint32_t result;
        bool visible, offered;
        Lines shown;
    } cases[] = {
        {url, 0, true, true, {}},
        {url, 0x800C0006, true, false, {"show \"Download aborted. File Not Found.\" titled \"Download\" (16) -> 1"}},
        {url,
         0x800C0300,
         false,
         false,
         {"show \"Download aborted. Cannot Replace SFP File.\" titled \"Download\" (16) -> 1"}},
        {url, 0x80004005, false, false, {"show \"Download aborted. Unknown Error.\" titled \"Download\" (16) -> 1"}},
        {url,
         0x800C000B,
         true,
         true,
         {"show \"Download aborted. Connection Timeout.\" titled \"Download\" (16) -> 1", again,
          "show \"Be sure to save the file as:  C:\\Panel\\Sub\\x.bin\" (0) -> 1"}},
        {"", 0, false, false, {enter}},
    };
    for (const auto& c : cases) {
        SimulatedPc::UseWindows(Windows::sevenX64);
        Pc().AddFile(file, "old");
        Net().web[url].bytes = "new";
        Net().web[url].result = c.result;
        Pc().AnswerWith([](const std::string& text) { return text.find("Try again") == std::string::npos ? 1 : 6; });
        bool there = *c.address && c.result == 0;
        EXPECT_EQ(DownloadFile(c.address, file, "Receiving", c.offered, c.visible), there);
        EXPECT_EQ(Pc().FileText(file), there ? "new" : "") << "what was there goes first";
        EXPECT_LINES(Pc().Journal("show"), c.shown);
        EXPECT_EQ(Pc().Journal("open").size(), c.offered && !there ? 1u : 0u);
        EXPECT_TRUE(Pc().Traced((there ? "Successfully Downloaded:  " : "Failed to download:  ") +
                                std::string(c.address) + " - to - " + file));
        EXPECT_FALSE(IsFormLoaded("frmDownload"));
    }
}

TEST_F(TransfersTest, TheWindowCountsKilobytesWhenTheServerTellsTheLength) {
    for (bool told : {true, false}) {
        SimulatedPc::UseWindows(Windows::sevenX64);
        Net().web["http://a.example/pc7/x"].bytes = std::string(8192, 'x');
        Net().web["http://a.example/pc7/x"].tellsLength = told;
        Pc().SetEnv("computername", "PC7");
        Lines seen;
        Net().atProgress = [&](size_t) {
            seen.clear();
            for (const char* name : {"lblURL", "lblDest", "lblMsg", "lblReceived", "lblTotal"})
                seen.push_back(TextOn("frmDownload", name));
            seen.push_back(std::to_string(FormNamed("frmDownload").Find("prgDownload")->Value()));
        };
        EXPECT_TRUE(DownloadFile("http://a.example/[ComputerName]/x", file, "Receiving:  x", false, true));
        EXPECT_LINES(seen, {"http://a.example/pc7/x", file, "Receiving:  x", told ? "4.00Kb" : "", told ? "8.00Kb" : "",
                            told ? "50" : "0"});
    }
}

TEST_F(TransfersTest, TheAreaIsReachedOnlyWithALogin) {
    struct {
        const char *user, *password;
        bool online, reached;
    } cases[] = {{"tech", "secret", true, true},
                 {"", "secret", true, false},
                 {"tech", "", true, false},
                 {"tech", "wrong", true, false},
                 {"tech", "secret", false, false}};
    for (const auto& c : cases) {
        ForgetForms();
        SimulatedPc::UseWindows(Windows::sevenX64);
        Pc().online = c.online;
        Pc().SetEnv("computername", "PC7");
        Pc().SetIni(ini, "Nimbra", "UserName", c.user);
        if (*c.password) Pc().SetIni(ini, "Nimbra", "Password", EncryptString(c.password, passwordKey));
        Net().ftpFolders.insert("/Brevanta");
        Net().ftpFiles["/Brevanta/BrevantaConfig.zip"] = "theirs";
        ShowFormModal(frmCloudDL);
        EXPECT_EQ(Pc().FileText("C:\\Panel\\BrevantaConfig.zip"), c.reached ? "theirs" : "");
        Pc().AddFile("C:\\Panel\\BrevantaConfig.zip", "ours");
        ShowFormModal(frmFTPUL);
        EXPECT_EQ(Net().ftpFiles["/Brevanta/BrevantaConfig.zip"], c.reached ? "ours" : "theirs");
        Pc().AddFile("C:\\Panel\\Usage.ini", "counts");
        ShowForm(frmCloudUL);
        EXPECT_THROW(Pc().Pass(1000), ProgramEnded);
        EXPECT_EQ(Pc().Exists("C:\\Panel\\Usage.ini"), !c.reached) << "counters restart once they are sent";
        EXPECT_EQ(Net().ftpFiles["/Brevanta/Usage/PC7.usage"], c.reached ? "counts" : "");
        EXPECT_TRUE(Pc().Journal("show").empty());
    }
}

}  // namespace
