"""The support mail: typed by a client, received by a real server; what servers do wrong; what happens without one."""
import email
import email.policy
import io
import pathlib
import random
import subprocess
import tempfile
import zipfile

from harness import OK, Journey, Pc, wait
from smtp import PASSWORD, USER, FaultyMailServer, MailServer, make_certificates

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
UseSSL=0
"""


HOST, OTHER = "mail.harbour.test", "other.harbour.test"


class CompanionJourney(Journey):
    """SendMail.exe alone, handed what the panel hands it."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        folder = pathlib.Path(folder.name)
        self.tls = make_certificates(folder, HOST)
        self.pc = Pc(self.arch, hosts=[HOST, OTHER], ca=folder / "ca.crt")
        self.addCleanup(self.pc.close)
        self.pc.install("SendMail.exe")

    def command(self, **changes):
        """Writes the request; the command line that sends it."""
        fields = {"server": HOST, "port": 2525, "user": USER.decode(), "password": PASSWORD.decode(), "authenticate": 0,
                  "tls": 0, "from": "a@example.org", "to": ["tech@example.org"], "subject": "Help - ", "text": "text",
                  "attach": [], "end": 1} | {name.rstrip("_"): value for name, value in changes.items()}
        request = ""
        for name, value in fields.items():
            for one in value if isinstance(value, list) else [value]:
                request += f"{name}\0{one}\0"
        self.requests = getattr(self, "requests", 0) + 1
        (self.pc.drive / f"driver/request{self.requests}").write_bytes(request.encode())
        return rf'cmd /c "C:\Brevanta\SendMail.exe < C:\driver\request{self.requests}"'

    def send(self, **changes):
        """(exit code, what it says)."""
        return self.pc.run(self.command(**changes), 90)

    def test_mail_arrives_byte_for_byte_by_each_road(self):
        files = {"отчёт ü.bin": random.Random(1).randbytes(300_001), "empty.txt": b"", "dots.txt": b".\r\n..\r\n\n.\n\r\r\n"}
        for name, data in files.items():
            (self.pc.drive / name).write_bytes(data)
        text = "Schön\r\n.\r\n..\r\nFrom me\r\n" + "x" * 10_000 + "\r\nlone\rCR, tab\t, привет \r\nend"
        roads = [dict(port=2525), dict(port=2525, login="PLAIN"), dict(port=587, tls=1, login="PLAIN"),
                 dict(port=2587, tls=1, login="LOGIN"), dict(port=465, tls=1, login="LOGIN"), dict(port=465, tls=1)]
        for road in roads:
            port, tls, login = road["port"], road.get("tls", 0), road.get("login", "")
            with self.subTest(**road), MailServer(port, self.tls if tls else None, port == 465, login) as server:
                self.assertEqual((0, ""), self.send(
                    port=port, tls=tls, authenticate=int(bool(login)), text=text, subject="Помогите, " * 30,
                    from_='"Lee, Zoë" <zoe@example.org>', to=["Анна <a@example.org>", "b@example.org"],
                    attach=[rf"C:\{name}" for name in files]))
                [envelope] = server.envelopes
                self.assertEqual(("zoe@example.org", ["a@example.org", "b@example.org"]),
                                 (envelope.mail_from, envelope.rcpt_tos))
                self.assertLess(max(map(len, envelope.original_content.split(b"\r\n"))), 999)
                mail = email.message_from_bytes(envelope.original_content, policy=email.policy.default)
                self.assertEqual([("Lee, Zoë", "zoe@example.org"), ("Анна", "a@example.org"), ("", "b@example.org")],
                                 [(a.display_name, a.addr_spec) for h in ("From", "To") for a in mail[h].addresses])
                self.assertEqual("Помогите, " * 30, mail["Subject"] + " " * (not mail["Subject"].endswith(" ")))
                body, *attached = mail.iter_parts()
                self.assertEqual(text, body.get_payload(decode=True).decode())
                self.assertEqual(list(files.items()),
                                 [(str(email.header.make_header(email.header.decode_header(part.get_filename()))),
                                   part.get_payload(decode=True)) for part in attached])

    def test_with_tls_wanted_nothing_leaves_in_clear(self):
        refusals = {"taken back": {}, "not offered": {"EHLO": "250-here\r\n250 AUTH PLAIN"},
                    "no TLS behind it": {"STARTTLS": "220 go on\r\n250 clear"}, "gone": {"STARTTLS": ""}}
        for what, replies in refusals.items():
            with self.subTest(what), FaultyMailServer(replies=replies) as server:
                code, reason = self.send(port=server.port, tls=1, authenticate=1)
                self.assertNotEqual(0, code)
                self.assertTrue(reason)
                self.assertLessEqual(set(server.verbs()) - {""}, {"EHLO", "HELO", "STARTTLS", "QUIT"} |
                                     {v for v in server.verbs() if not v.isascii() or not v.isalpha()})
                for secret in ("AUTH", "MAIL", "tech@", "Help"):
                    self.assertNotIn(secret, server.received)
        # A name that the certificate does not have, and a certificate that nobody trusts.
        with MailServer(2525, self.tls) as server:
            for host in (OTHER, "127.0.0.1"):
                self.assertNotEqual(0, self.send(server=host, tls=1)[0], host)
            self.assertEqual(0, self.send(tls=1)[0])
        with tempfile.TemporaryDirectory() as folder:
            with MailServer(465, make_certificates(pathlib.Path(folder), HOST), implicit=True) as stranger:
                self.assertNotEqual(0, self.send(port=465, tls=1)[0])
        self.assertEqual((1, 0), (len(server.envelopes), len(stranger.envelopes)))

    def test_what_a_server_refuses_or_drops_is_a_failure(self):
        verbs = ["greeting", "EHLO", "AUTH", "secret", "MAIL", "RCPT", "DATA", "."]
        faults = [(verb, reply) for verb in verbs for reply in ("", "550 no", "421 busy")]
        for verb, reply in faults:
            replies = {verb: reply} | ({"HELO": reply} if verb == "EHLO" else {})
            with self.subTest(verb=verb, reply=reply[:9]), FaultyMailServer(replies=replies) as server:
                code, reason = self.send(port=server.port, authenticate=1)
                self.assertNotEqual(0, code)
                self.assertTrue(reason)
                # It has come as far as the fault, and no further.
                self.assertEqual(verbs.index(verb) >= verbs.index("MAIL"), "MAIL" in server.verbs())
                self.assertEqual(verb == ".", "." in server.verbs())
        with FaultyMailServer(slow=True) as server:
            self.assertEqual((0, ""), self.send(port=server.port, authenticate=1))
            self.assertEqual(1, server.verbs().count("DATA"))
        # What is wrong with the request is told, and nothing is sent.
        with MailServer(2525) as server:
            for changes in (dict(attach=[r"C:\gone.txt"]), dict(server="x@" + HOST), dict(server=HOST + "/x"), dict(end=0),
                            dict(port="25 25")):
                code, reason = self.send(**changes)
                self.assertEqual((1, True), (code, bool(reason)), changes)
            self.assertEqual([], server.envelopes)


class MailJourney(Journey):
    def open_form(self):
        """Fills in the form and sends it."""
        self.pc.install("Brevanta.exe")
        self.pc.write_settings(SETTINGS)
        _, panel = self.start_panel()
        panel.click("cmdEmailSupport")
        form = self.pc.form("frmEmail", 30)
        form.type("txtName", "Ann")
        form.type("txtEmail", "ann@home.com")
        form.type("txtSubject", "Help")
        form.type("txtBody", "Schön\r\n.\r\nlone dot")
        self.pc.screenshot("support-mail")
        form.click("Command1")

    def test_mail_with_report_and_picture_arrives_whole(self):
        with MailServer(2525) as mailbox:
            self.open_form()
            self.pc.box("Email sent!", 60).answer(OK)
        self.assertEqual([e.rcpt_tos for e in mailbox.envelopes], [["tech@example.org"]])
        message = email.message_from_bytes(mailbox.envelopes[0].original_content)
        self.assertEqual((message["From"], message["Subject"]), ("ann@home.com", "Help - "))
        text, attachment = message.get_payload()
        body = text.get_payload(decode=True).decode().replace("\r\n", "\n")
        self.assertTrue(body.startswith("Name:  Ann\nEmail:  ann@home.com\n\nSchön\n.\nlone dot\n\n---\nComputer Name:  "), body)
        with zipfile.ZipFile(io.BytesIO(attachment.get_payload(decode=True))) as info:
            self.assertIsNone(info.testzip())
            self.assertEqual(sorted(info.namelist()), ["PCHealth.txt", "ScreenCapture.bmp"])
            self.assertIn("Event Log Errors/Warnings Since Last Boot:", info.read("PCHealth.txt").decode("cp1252"))
            picture = info.read("ScreenCapture.bmp")
        described = subprocess.run(["identify", "-format", "%m %wx%h %k %[pixel:p{9,9}]", "bmp:-"], input=picture, check=True,
                                   capture_output=True).stdout.decode()
        self.assertRegex(described, r"^BMP3? 1024x768 \d{1,3} ")
        self.assertNotIn("srgb(0,0,0)", described)  # the bare desktop, and no black picture
        self.assertFalse((self.pc.folder / "Info.zip").exists())

    def test_without_a_server_the_mail_program_takes_over(self):
        self.pc.catch_addresses()
        self.open_form()
        self.assertIn("mailto:tech@example.org?Subject=Support", wait(self.pc.opened, "the mail program", 60)[0])
        self.assertIn("lone dot", "".join(self.pc.opened()).replace("%20", " "))
        self.pc.form("frmMain")
        self.assertFalse((self.pc.folder / "Info.zip").exists())
        self.assertTrue((self.pc.folder / "InfoTemp/PCHealth.txt").exists())
        self.assertEqual(self.pc.boxes(), [])
