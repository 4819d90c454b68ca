"""The support mail: typed by a client, received by a real server; and what happens when the server is gone."""
import email
import io
import zipfile

from aiosmtpd.controller import Controller
from harness import OK, Journey, wait

SETTINGS = """
[Branding]
AppName=Harbour PC Care
SupportEmail=tech@example.org
UseNewInterface=0
[EmailConfig]
UseInternalSMTP=1
EmailInfoPrompt=1
FromEmail=panel@example.org
ToEmail=tech@example.org
SMTPServer=127.0.0.1
SMTPPort=2525
SMTPAuth=0
UseSSL={tls}
"""


class Mailbox:
    def __init__(self):
        self.envelopes = []

    async def handle_DATA(self, server, session, envelope):
        self.envelopes.append(envelope)
        return "250 OK"


class MailJourney(Journey):
    def send(self, tls=0):
        """Sends from the form to a server of its own; that server's mailbox."""
        mailbox = Mailbox()
        server = Controller(mailbox, hostname="127.0.0.1", port=2525)
        server.start()
        self.addCleanup(server.stop)
        self.pc.install("Brevanta.exe")
        self.pc.write_settings(SETTINGS.format(tls=tls))
        _, panel = self.start_panel()
        panel.click("cmdEmailSupport")
        form = self.pc.form("frmEmail", 30)
        form.type("txtName", "Ann")
        form.type("txtEmail", "ann@home.com")
        form.type("txtSubject", "Help")
        form.type("txtBody", "Schön\r\n.\r\nlone dot")
        self.pc.screenshot("support-mail")
        form.click("Command1")
        return mailbox

    def test_mail_with_report_and_picture_arrives_whole(self):
        mailbox = self.send()
        self.pc.box("Email sent!", 60).answer(OK)
        self.assertEqual([e.rcpt_tos for e in mailbox.envelopes], [["tech@example.org"]])
        message = email.message_from_bytes(mailbox.envelopes[0].content)
        self.assertEqual((message["From"], message["Subject"]), ("ann@home.com", "Help - "))
        text, attachment = message.get_payload()
        body = text.get_payload(decode=True).decode().replace("\r\n", "\n")
        self.assertTrue(body.startswith("Name:  Ann\nEmail:  ann@home.com\n\nSchön\n.\nlone dot\n\n---\nComputer Name:  "), body)
        with zipfile.ZipFile(io.BytesIO(attachment.get_payload(decode=True))) as info:
            self.assertIsNone(info.testzip())
            self.assertEqual(sorted(info.namelist()), ["PCHealth.txt", "ScreenCapture.bmp"])
            self.assertIn("Event Log Errors/Warnings Since Last Boot:", info.read("PCHealth.txt").decode("cp1252"))
            picture = info.read("ScreenCapture.bmp")
        self.assertEqual((picture[:2], picture[28]), (b"BM", 8))
        self.assertFalse((self.pc.folder / "Info.zip").exists())

    def test_without_a_server_or_its_tls_nothing_is_sent_and_the_mail_program_takes_over(self):
        mailbox = self.send(tls=1)  # the server offers no STARTTLS
        wait(lambda: any("Email failed to send." in line for line in self.pc.trace()), "the failure", 60)
        self.pc.form("frmMain", 30)
        self.assertEqual(mailbox.envelopes, [])
        self.assertFalse((self.pc.folder / "Info.zip").exists())
        self.assertEqual(self.pc.boxes(), [])
