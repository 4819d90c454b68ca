// Mail: the sender, its headers, the client's form, the report of the PC and the picture of its screen.
#include "mail/mail_sender.h"

#include "controls/panel_links.h"
#include "mail/pc_report.h"
#include "mail/screen_capture.h"
#include "mail/support_mail.h"
#include "panel_test.h"
#include "pc/simulated_net.h"
#include "system/scramble.h"
#include "system/text.h"
#include "tools/send_mail/mime_text.h"

namespace {

using Lines = std::vector<std::string>;

constexpr const char* stamp =
    "\r\n\r\n---\r\nComputer Name:  DESK\r\nUser Name:  Client\r\n\r\n\r\n\r\nThis message sent by Brevanta   v4.2";

class MailTest : public PanelTest {
protected:
    void SetUp() override { Fresh(); }
    void Fresh(const std::vector<Key>& more = {}) {
        Prepare({{"EmailConfig", "FromEmail", "panel@example.org"},
                 {"EmailConfig", "ToEmail", "tech@example.org"},
                 {"EmailConfig", "SMTPServer", "mail.example.org"},
                 {"EmailConfig", "SMTPPort", " 25"},
                 {"EmailConfig", "SMTPUserName", "ann"},
                 {"Branding", "SupportEmail", "tech@example.org"},
                 {"Branding", "AppName", "Harbour"}});
        for (const Key& key : more) Pc().SetIni(settingsFile, key.section, key.key, key.value);
        MailAccount() = {};
        Pc().SetIni(settingsFile, "EmailConfig", "SMTPPassword", EncryptString("secret", passwordKey));
        Pc().AddResource("CUSTOM", "sendmail", "companion");
        State().strSupportEmail = "tech@example.org";
        Links().showPanelBrowser = [](bool modal) {
            Pc().Note(std::string("open in panel ") + (modal ? "modal " : "") + State().browserAddress);
        };
        Pc().journal.clear();
    }
    // What the journal says of one part of the message object: "From = ", "AddAttachment ".
    static Lines Mailed(const std::string& head) {
        Lines lines;
        for (const std::string& line : Pc().Journal("mail " + head)) lines.push_back(line.substr(5 + head.size()));
        return lines;
    }
    // The panel with the mail form filled in.
    static Form& OpenForm(const char* name = "Ann", const char* email = "ann@home.com") {
        ShowForm(frmMain);
        ShowForm(frmEmail);
        Type("frmEmail", "txtName", name);
        Type("frmEmail", "txtPhone", "123");
        Type("frmEmail", "txtEmail", email);
        Type("frmEmail", "txtSubject", "Help");
        Type("frmEmail", "txtBody", "It\r\n.\r\nbroke");
        Pc().journal.clear();
        return FormNamed("frmEmail");
    }
    static void AddEvent(const char* log, const char* type, int code, const char* time) {
        Pc().AddWmiRow("root\\cimv2", "Win32_NTLogEvent",
                       {{"Logfile", log},
                        {"Type", type},
                        {"EventCode", code},
                        {"SourceName", "disk"},
                        {"Message", "bad block"},
                        {"TimeGenerated", time}});
    }
    static std::string Report() { return Pc().FileText("C:\\Panel\\InfoTemp\\PCHealth.txt"); }
};

TEST_F(MailTest, SenderGivesTheObjectEachFieldInOrder) {
    Pc().SetIni(settingsFile, "EmailConfig", "UseSSL", "1");
    Pc().AddFile("C:\\Panel\\Info.zip", "zip");
    EXPECT_TRUE(SendClientEmail("Help", "It broke", "C:\\Panel\\Info.zip", "ann@home.com"));
    EXPECT_JOURNAL({"mail create", "mail smtpserver = \"mail.example.org\"", "mail smtpconnectiontimeout = 60",
                    "mail sendusing = 2", "mail smtpserverport = \"25\"", "mail smtpauthenticate = False",
                    "mail smtpusessl = True", "mail sendusername = \"ann\"", "mail sendpassword = \"secret\"",
                    "mail To = \"tech@example.org\"", "mail From = \"ann@home.com\"", "mail Subject = \"Help - \"",
                    std::string("mail TextBody = \"It broke") + stamp + "\"", "mail AddAttachment C:\\Panel\\Info.zip",
                    "mail Update", "mail Send"});
    EXPECT_TRUE(Pc().Traced("Email sent!"));
    // Once on, TLS and login stay on for this run, and a user name stays when the setting is emptied.
    for (const char* key : {"UseSSL", "SMTPUserName"}) Pc().SetIni(settingsFile, "EmailConfig", key, "");
    EXPECT_TRUE(SendClientEmail("", "", "", ""));
    EXPECT_LINES(Mailed("smtpusessl = "), {"True", "True"});
    EXPECT_LINES(Mailed("sendusername = "), {"\"ann\"", "\"ann\""});
    EXPECT_EQ(Mailed("TextBody = ").back(), std::string("\"") + stamp + "\"");
    EXPECT_FALSE(Pc().Traced("secret"));
}

TEST_F(MailTest, AttachmentsAndTheSenderTheyBring) {
    Pc().AddFolder("C:\\None");
    Pc().AddFolder("C:\\One\\Deep");
    Pc().AddFile("C:\\One\\b.txt", "", pc::attributeHidden | pc::attributeSystem);
    Pc().AddFile("C:\\One\\Deep\\c.txt");
    for (int i = 0; i < 200; ++i) Pc().AddFile("C:\\Many\\" + std::to_string(1000 + i));
    Pc().Lock("C:\\Many\\1007");
    const struct {
        const char* attachment;
        bool sent;
        const char* from;  // a client's own address goes out only in the place of the sender
        size_t count;
        const char* last;
    } cases[] = {
        {"", true, "panel@example.org", 0, ""},
        {"x", true, "panel@example.org", 0, ""},
        {"C:\\One\\b.txt", true, "ann@home.com", 1, "C:\\One\\b.txt"},
        {"C:\\None", true, "ann@home.com", 0, ""},
        {"C:\\One", true, "ann@home.com", 1, "C:\\One\\b.txt"},
        {"C:\\Many", true, "ann@home.com", 200, "C:\\Many\\1199"},
        {"C:\\Gone", false, "", 0, ""},
    };
    for (const auto& row : cases) {
        Pc().journal.clear();
        EXPECT_EQ(SendClientEmail("s", "b", row.attachment, "ann@home.com"), row.sent) << row.attachment;
        Lines attached = Mailed("AddAttachment "), from = Mailed("From = ");
        EXPECT_EQ(attached.size(), row.count) << row.attachment;
        EXPECT_EQ(attached.empty() ? "" : attached.back(), row.last);
        EXPECT_EQ(from.empty() ? "" : from[0], row.sent ? std::string("\"") + row.from + "\"" : "") << row.attachment;
    }
}

TEST_F(MailTest, CompanionTakesTheSameFieldsWhereTheObjectFails) {
    const struct {
        bool object, objectSends, companion, companionSends, sent;
        size_t requests;
        const char* traced;
    } cases[] = {
        {true, true, true, true, true, 0, "Email sent!"},
        {false, true, true, true, true, 1, "- VB Error: 91 Object variable not set"},
        {true, false, true, true, true, 1, "- VB Error: -2147220973 The transport failed to connect to the server."},
        {true, false, true, false, false, 1, "SendEmail: SMTP: Login denied"},
        {false, true, false, true, false, 0, "SendEmail: SMTP: no SendMail.exe"},
    };
    for (const auto& row : cases) {
        Fresh({{"EmailConfig", "UseSSL", "1"}, {"EmailConfig", "ToEmail", "a@x.org; b@y.org,,"}});
        if (!row.companion) Pc().resources.clear();
        Net().mailObject = row.object;
        Net().mailSends = row.objectSends;
        Net().smtpSends = row.companionSends;
        Pc().AddFile("C:\\a.txt");
        EXPECT_EQ(SendClientEmail("Help", "x", "C:\\a.txt", ""), row.sent);
        EXPECT_TRUE(Pc().Traced(row.traced)) << row.traced;
        EXPECT_EQ(Pc().Traced("Email failed to send."), !row.sent);
        EXPECT_FALSE(Pc().Traced("secret"));
        ASSERT_EQ(Net().smtpRequests.size(), row.requests);
        if (row.requests == 0) continue;
        EXPECT_EQ(
            Net().smtpRequests[0],
            "server|mail.example.org|port|25|user|ann|password|secret|authenticate|0|tls|1|from|panel@example.org|"
            "to|a@x.org|to|b@y.org|subject|Help - |text|x" +
                std::string(stamp) + "|attach|C:\\a.txt|wait|60|end|1|");
        EXPECT_LINES(Pc().Journal("run"), {"run hidden \"C:\\Panel\\SendMail.exe\""});
        EXPECT_EQ(Pc().FileText("C:\\Panel\\SendMail.exe"), "companion");
    }
}

TEST_F(MailTest, IncompleteAccountSendsNothingAndOnlyTheTestTells) {
    for (const char* key : {"FromEmail", "ToEmail", "SMTPPort", "SMTPServer"}) {
        Fresh({{"EmailConfig", key, ""}});
        EXPECT_FALSE(SendClientEmail("s", "b", "", ""));
        EXPECT_JOURNAL({});
        SendTestEmail("Test Email", "Please Disregard.", "");
        EXPECT_JOURNAL({"show \"You must configure an email account before you can send email!\" (0) -> 1"});
    }
    Fresh();
    SendTestEmail("Test Email", "Please Disregard.", "C:\\Gone");
    EXPECT_JOURNAL({});
    SendTestEmail("Test Email", "Please Disregard.", "");
    EXPECT_LINES(Mailed("Subject = "), {"\"Test Email - \""});
    EXPECT_EQ(Pc().journal.back(), "show \"Test email sent!\" (0) -> 1");
    Net().mailSends = Net().smtpSends = false;
    SendTestEmail("Test Email", "Please Disregard.", "");
    EXPECT_EQ(Pc().journal.back(), "show \"Test email failed to send.\" (0) -> 1");
}

TEST_F(MailTest, TypedLineEndsMakeNoHeader) {
    Pc().AddFile("C:\\a.txt");
    Net().mailSends = false;
    for (const char* end : {"\r\n", "\n", "\r", "\n\r\n"}) {
        std::string evil = std::string("a@b.org") + end + "Bcc: all@example.org";
        MailAccount() = {};
        Pc().journal.clear();
        Net().smtpRequests.clear();
        SendClientEmail(evil, "b", "C:\\a.txt", evil);
        for (const char* name : {"From = ", "Subject = "})
            EXPECT_EQ(Mailed(name)[0].find_first_of("\r\n"), std::string::npos) << name;
        // The companion trusts nobody and takes them away once more.
        for (const std::string& header : MessageHeaders(evil, {evil, evil}, evil))
            for (const std::string& line : Split(ReplaceAll(header, "\r\n ", "|"), '|'))
                EXPECT_EQ(line.find_first_of("\r\n"), std::string::npos) << header;
        EXPECT_EQ(AddressOf(evil).find_first_of("\r\n"), std::string::npos);
    }
}

TEST_F(MailTest, SettingsChooseTheRoute) {
    const Key smtp = {"EmailConfig", "UseInternalSMTP", "1"}, two = {"EmailConfig", "OfferTwoOptions", "1"},
              outside = {"Branding", "UseIBForEmail", "0"};
    const char *counted = "ini C:\\Panel\\Usage.ini [Usage] Email=1", *page = "open HTTPS://x.org/desk",
               *pageInside = "open in panel modal HTTPS://x.org/desk",
               *program = "open mailto:tech@example.org?Subject=Support Request";
    const struct {
        std::vector<Key> keys;
        bool web, chosen;
        const char* button;  // of the chooser
        const char* form;    // that comes up
        Lines journal;
    } cases[] = {
        {{}, false, false, "", "", {counted, program}},
        {{{"EmailConfig", "UseInternalSMTP", "01"}}, false, false, "", "", {counted, program}},
        {{smtp}, false, false, "", "frmEmail", {counted}},
        {{smtp, outside}, true, false, "", "", {page}},
        {{smtp}, true, false, "", "", {pageInside}},
        {{two, smtp}, false, true, "", "frmEmail", {counted}},
        {{two, smtp}, false, false, "cmdEmailSupport", "frmEmail", {}},
        {{two}, false, false, "cmdEmailSupport", "", {program}},
        {{two}, true, false, "cmdEmailSupport", "", {pageInside}},
        {{two, outside}, false, false, "cmdEmailSupport2", "", {"open http://second.org/desk"}},
        {{two}, false, false, "cmdEmailSupport2", "", {"open in panel modal http://second.org/desk"}},
    };
    for (const auto& row : cases) {
        Fresh(row.keys);
        Pc().SetIni(settingsFile, "EmailConfig", "SecondaryEmailURLOnly", "http://second.org/[ComputerName]");
        if (row.web) State().strSupportEmail = "HTTPS://x.org/[ComputerName]";
        Pc().journal.clear();
        EmailAction(row.chosen);
        if (*row.button) Click("frmEmailOptions", row.button);
        EXPECT_JOURNAL(row.journal);
        EXPECT_FALSE(IsFormLoaded("frmEmailOptions"));
        EXPECT_EQ(IsFormLoaded("frmEmail"), *row.form != 0);
    }
}

TEST_F(MailTest, ChooserTakesItsTextsFromTheSettings) {
    Fresh({{"EmailConfig", "PrimaryOptionCaption", "Write"}, {"EmailConfig", "SecondaryOptionCaption", "Ticket"}});
    ShowForm(frmEmailOptions);
    EXPECT_EQ(FormNamed("frmEmailOptions").Caption(), "Email Support");
    EXPECT_EQ(TextOn("frmEmailOptions", "cmdEmailSupport") + TextOn("frmEmailOptions", "cmdEmailSupport2"),
              "WriteTicket");
}

TEST_F(MailTest, FormGoesOutWithReportAndPictureAndLeavesNoArchive) {
    Fresh({{"EmailConfig", "EmailInfoPrompt", "1"}});
    OpenForm();
    bool hidden = false;
    Pc().AtCall(1, [&] { hidden = !FormNamed("frmMain").Visible() && !FormNamed("frmEmail").Visible(); });
    Click("frmEmail", "Command1");
    EXPECT_TRUE(hidden);
    EXPECT_EQ(
        Mailed("TextBody = ")[0],
        std::string("\"Name:  Ann\r\nPhone:  123\r\nEmail:  ann@home.com\r\n\r\nIt\r\n.\r\nbroke") + stamp + "\"");
    EXPECT_LINES(Mailed("From = "), {"\"ann@home.com\""});
    EXPECT_LINES(Mailed("AddAttachment "), {"C:\\Panel\\Info.zip"});
    EXPECT_LINES(Pc().Journal("set "),
                 {"set HKLM\\Software\\Brevanta\\ClientName = Ann", "set HKLM\\Software\\Brevanta\\ClientPhone = 123",
                  "set HKLM\\Software\\Brevanta\\ClientEmail = ann@home.com"});
    EXPECT_LINES(Pc().Tree("C:\\Panel\\InfoTemp"),
                 {"C:\\Panel\\InfoTemp\\PCHealth.txt", "C:\\Panel\\InfoTemp\\ScreenCapture.bmp"});
    EXPECT_FALSE(Pc().Exists("C:\\Panel\\Info.zip"));
    EXPECT_LINES(Pc().Journal("show"), {"show \"Email sent!\" (0) -> 1"});
    EXPECT_TRUE(FormNamed("frmMain").Visible());
    EXPECT_FALSE(IsFormLoaded("frmEmail") || IsFormLoaded("frmStatusWin"));
    // What was typed is there again.
    ShowForm(frmEmail);
    EXPECT_EQ(TextOn("frmEmail", "txtName") + TextOn("frmEmail", "txtPhone") + TextOn("frmEmail", "txtEmail"),
              "Ann123ann@home.com");
    EXPECT_EQ(FormNamed("frmEmail").Caption(), "Send an Email to Harbour");
}

TEST_F(MailTest, OnlyWhoSeesTheBoxesCanLeaveThemOut) {
    const struct {
        const char* prompt;
        bool info, picture;
        Lines kept;
    } cases[] = {
        {"1", true, false, {"C:\\Panel\\InfoTemp\\PCHealth.txt"}},
        {"1", false, true, {"C:\\Panel\\InfoTemp\\ScreenCapture.bmp"}},
        {"1", false, false, {}},
        {"0", true, true, {"C:\\Panel\\InfoTemp\\PCHealth.txt", "C:\\Panel\\InfoTemp\\ScreenCapture.bmp"}},
    };
    for (const auto& row : cases) {
        Fresh({{"EmailConfig", "EmailInfoPrompt", row.prompt}});
        OpenForm();
        EXPECT_EQ(IsShown("frmEmail", "chkAttachInfo"), std::string(row.prompt) == "1");
        EXPECT_EQ(FormNamed("frmEmail").Find("txtBody")->Place().height > 3000, std::string(row.prompt) == "0");
        if (!row.info) Click("frmEmail", "chkAttachInfo");
        if (!row.picture) Click("frmEmail", "chkAttachPic");
        Click("frmEmail", "Command1");
        EXPECT_LINES(Pc().Tree("C:\\Panel\\InfoTemp"), row.kept);
        EXPECT_EQ(Mailed("AddAttachment ").size(), row.kept.empty() ? 0u : 1u);
        // Without an attachment the client's address does not go out.
        EXPECT_EQ(Mailed("From = ")[0], row.kept.empty() ? "\"panel@example.org\"" : "\"ann@home.com\"");
    }
}

TEST_F(MailTest, FailedSendOpensTheMailProgramWithTheText) {
    const struct {
        const char *name, *email, *from, *head;
    } cases[] = {
        {"Ann", "ann@home.com", "ann@home.com", "Name:  Ann\r\nPhone:  123\r\nEmail:  ann@home.com"},
        {"", "Ann.co@home", "Ann.co@home", "\r\nPhone:  123\r\nEmail:  Ann.co@home"},
        {"Ann", "ann@home.de", "panel@example.org", "Name:  Ann\r\nPhone:  123\r\nEmail:  ann@home.de"},
        {"Ann", "", "panel@example.org", "Name:  Ann\r\nPhone:  123"},
    };
    for (const auto& row : cases) {
        Fresh();
        Net().mailSends = Net().smtpSends = false;
        OpenForm(row.name, row.email);
        Click("frmEmail", "Command1");
        EXPECT_LINES(Mailed("From = "), {std::string("\"") + row.from + "\""});
        EXPECT_LINES(Pc().Journal("open"), {std::string("open mailto:tech@example.org?Subject=Support Request&body=") +
                                            row.head + "\r\n\r\nIt\r\n.\r\nbroke"});
        EXPECT_LINES(Pc().Journal("show"), {});
        EXPECT_FALSE(Pc().Exists("C:\\Panel\\Info.zip"));
        EXPECT_TRUE(Pc().Exists("C:\\Panel\\InfoTemp"));
        EXPECT_TRUE(FormNamed("frmMain").Visible());
    }
}

TEST_F(MailTest, ReportHoldsTheLabelsAndTheEventsSinceTheStart) {
    constexpr const char* newest = "20260102120000.000000-000";
    constexpr const char* boot = "20260102080000.000000-000";
    constexpr const char* older = "20260101120000.000000-000";
    const std::string heading =
        "\r\nEvent Log Errors/Warnings Since Last Boot:\r\n" + std::string(42, '*') + "\r\n\r\n";
    auto record = [](const char* log, const char* type, const char* code) {
        return std::string("Log:  ") + log + "\r\nType: " + type + "\r\nEventID:  " + code +
               "\r\nSource:  disk\r\nMessage:  bad block\r\n\r\n";
    };
    Form& panel = ShowForm(frmMain);
    panel.SetText("lblRAM", "4 GB");
    GatherInfo(panel);
    std::string bare = Report();
    EXPECT_TRUE(bare.starts_with("Last Maintenance:  ")) << bare;
    EXPECT_NE(bare.find("\r\nRAM:  4 GB\r\n"), std::string::npos) << bare;
    EXPECT_TRUE(bare.ends_with("\r\n" + heading)) << bare;
    EXPECT_EQ(GetLastBootTime(), "");
    const std::string body = bare;

    AddEvent("System", "Error", 7, newest);
    AddEvent("System", "Information", 6009, boot);
    AddEvent("System", "Warning", 8, boot);  // at the second of the start
    AddEvent("System", "Error", 9, older);
    AddEvent("Application", "ERROR", 10, newest);
    AddEvent("Application", "Information", 11, newest);
    AddEvent("Application", "warning", 12, newest);
    AddEvent("Application", "Error", 13, older);
    AddEvent("Application", "Error", 14, newest);  // behind the first that is too old
    for (int run = 0; run < 2; ++run) {
        GatherInfo(panel);  // the second time in place of the first
        EXPECT_EQ(Report(), body + record("Application", "ERROR", "10") + record("Application", "WARNING", "12") +
                                record("System", "ERROR", "7") + record("System", "WARNING", "8"));
    }
    EXPECT_FALSE(IsFormLoaded("frmStatusWin"));
    // Without the record of a start all count; without the service, none.
    Pc().ClearWmi("root\\cimv2", "Win32_NTLogEvent");
    for (int i = 0; i < 100000; ++i)
        AddEvent("Application", i % 2 ? "Error" : "Information", 1, i % 3 ? newest : older);
    GatherInfo(panel);
    EXPECT_EQ(Report().size(), body.size() + 50000 * record("Application", "ERROR", "1").size());
    Pc().FailWmi("root\\cimv2", "80041003");
    GatherInfo(panel);
    EXPECT_EQ(Report(), body);
}

TEST_F(MailTest, ArchiveHoldsTheWholeFolder) {
    ZipInfo();
    EXPECT_JOURNAL({});
    Pc().AddFile("C:\\Panel\\Info.zip", "old");
    Pc().AddFile("C:\\Panel\\InfoTemp\\PCHealth.txt", "report");
    Pc().AddFile("C:\\Panel\\InfoTemp\\ScreenCapture.bmp", "older picture");
    ZipInfo();
    std::string archive = Pc().FileText("C:\\Panel\\Info.zip");
    for (const char* name : {"PCHealth.txt", "ScreenCapture.bmp"})
        EXPECT_NE(archive.find(name), std::string::npos) << name;
    EXPECT_EQ(archive.find("old"), std::string::npos);
}

TEST_F(MailTest, PictureFileHasTheBitmapsLayout) {
    auto number = [](const std::string& bytes, size_t at, size_t size) {
        uint32_t value = 0;
        for (size_t i = size; i-- > 0;) value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
        return value;
    };
    const struct {
        int width, height, colours, depth;
        uint32_t header, line;
    } cases[] = {
        {1024, 3, 256, 8, 1064, 1024}, {1001, 3, 256, 8, 1064, 1004}, {1001, 3, 8, 8, 1064, 1004},
        {9, 2, 16, 4, 104, 8},         {8, 2, 4, 4, 104, 4},          {33, 1, 2, 1, 48, 8},
        {32, 1, 1, 1, 48, 4},          {1, 1, 77, 1, 48, 4},
    };
    Pc().AddFile("C:\\p.bmp", std::string(100000, 'x'));
    for (const auto& row : cases) {
        Net().screenWidth = row.width;
        Net().screenHeight = row.height;
        pc::Bitmap bitmap;
        ASSERT_TRUE(CaptureScreen(bitmap));
        ASSERT_TRUE(SaveBitmapColours(bitmap, "C:\\p.bmp", row.colours));
        std::string bytes = Pc().FileText("C:\\p.bmp");
        const uint32_t image = row.line * static_cast<uint32_t>(row.height);
        ASSERT_EQ(bytes.size(), 14 + row.header + image);
        EXPECT_EQ(number(bytes, 0, 2), 19778u);
        EXPECT_EQ(number(bytes, 2, 4), bytes.size());
        EXPECT_EQ(number(bytes, 6, 4), 0u);
        EXPECT_EQ(number(bytes, 10, 4), 14 + row.header);
        EXPECT_EQ(number(bytes, 14, 4), 40u);
        EXPECT_EQ(number(bytes, 18, 4), static_cast<uint32_t>(row.width));
        EXPECT_EQ(number(bytes, 22, 4), static_cast<uint32_t>(row.height));
        EXPECT_EQ(number(bytes, 26, 2), 1u);
        EXPECT_EQ(number(bytes, 28, 2), static_cast<uint32_t>(row.depth));
        EXPECT_EQ(number(bytes, 34, 4), image);
        EXPECT_EQ(bytes[54], '\x10') << "palette";
        EXPECT_EQ(bytes[14 + row.header], '\x01') << "pixels";
    }
    // No picture to be had: the one before stays.
    Net().screenWidth = 0;
    Pc().AddFile("C:\\Panel\\InfoTemp\\ScreenCapture.bmp", "before");
    TakeScreenCapture();
    EXPECT_EQ(Pc().FileText("C:\\Panel\\InfoTemp\\ScreenCapture.bmp"), "before");
}

TEST(MailHeaders, BeyondAsciiBecomesEncodedWords) {
    const struct {
        const char *mailbox, *header, *envelope;
    } cases[] = {
        {"a@b.org", "a@b.org", "<a@b.org>"},
        {" <a@b.org> ", "<a@b.org>", "<a@b.org>"},
        {"Ann <a@b.org>", "Ann <a@b.org>", "<a@b.org>"},
        {"\"Lee, Ann\" <a@b.org>", "\"Lee, Ann\" <a@b.org>", "<a@b.org>"},
        {"Zoë <a@b.org>", "=?UTF-8?B?Wm/Dqw==?= <a@b.org>", "<a@b.org>"},
        {"\"Lee, Zoë\" <a@b.org>", "=?UTF-8?B?TGVlLCBab8Or?= <a@b.org>", "<a@b.org>"},
        {"Анна<a@b.org>", "=?UTF-8?B?0JDQvdC90LA=?= <a@b.org>", "<a@b.org>"},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(MailboxHeader(row.mailbox), row.header);
        EXPECT_EQ(AddressOf(row.mailbox), row.envelope);
    }
    EXPECT_EQ(EncodedHeader("=?x?="), "=?UTF-8?B?PT94Pz0=?=") << "what looks encoded is encoded";
    EXPECT_EQ(EncodedHeader("a\tb"), "=?UTF-8?B?YQli?=");
    // No line of a header is longer than a message may have, and no letter is cut.
    for (const std::string& text : {std::string(10000, 'x'), ReplaceAll(std::string(5000, 'x'), "x", "я")}) {
        std::string header = MessageHeaders("a@b.org", {"c@d.org", "e@f.org"}, text)[3];
        size_t words = 0;
        for (const std::string& line : Split(ReplaceAll(header, "\r\n ", "\n"), '\n')) {
            EXPECT_LE(line.size(), 85u);
            EXPECT_TRUE(line.ends_with("?="));
            ++words;
        }
        EXPECT_EQ(words, (10000 + 41) / 42u);
    }
    EXPECT_EQ(MessageHeaders("a@b.org", {"c@d.org", "Zoë <e@f.org>"}, "s")[2],
              "To: c@d.org,\r\n =?UTF-8?B?Wm/Dqw==?= <e@f.org>");
}

TEST(MailHeaders, ServerSettingIsAHostAndNothingElse) {
    const struct {
        const char *server, *port;
        bool tls;
        const char* address;
    } cases[] = {
        {"mail.example.org", "25", false, "smtp://mail.example.org:25"},
        {" Mail-1.example.org ", "587", true, "smtp://Mail-1.example.org:587"},
        {"mail.example.org", "465", true, "smtps://mail.example.org:465"},
        {"mail.example.org", "465", false, "smtp://mail.example.org:465"},
        {"10.0.0.1", "25", false, "smtp://10.0.0.1:25"},
        {"[fe80::1]", "25", false, "smtp://[fe80::1]:25"},
        {"me@mail.example.org", "25", false, ""},
        {"mail.example.org/x", "25", false, ""},
        {"mail.example.org:99", "25", false, ""},
        {"mail example.org", "25", false, ""},
        {"mail.example.org#", "25", false, ""},
        {"mail%2eexample.org", "25", false, ""},
        {"mail.example.org\r\nQUIT", "25", false, ""},
        {"[x]", "25", false, ""},
        {"[]", "25", false, ""},
        {"", "25", false, ""},
        {"mail.example.org", "", false, ""},
        {"mail.example.org", "25/x", false, ""},
        {"mail.example.org", "123456", false, ""},
    };
    for (const auto& row : cases) EXPECT_EQ(ServerAddress(row.server, row.port, row.tls), row.address) << row.server;
}

}  // namespace
