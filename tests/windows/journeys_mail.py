"""The support mail: typed by a client, received by a real server; what servers do wrong; what happens without one."""
import contextlib
import email
import email.policy
import io
import pathlib
import random
import re
import shutil
import subprocess
import tempfile
import zipfile

from harness import BUILD, OK, Journey, Pc, Program, wait
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

    def test_a_server_that_falls_silent_is_waited_for_and_left(self):
        running = []
        with contextlib.ExitStack() as servers:
            for number, verb in enumerate(["greeting", "EHLO", "STARTTLS", "AUTH", "secret", "MAIL", "RCPT", "DATA", "."]):
                server = servers.enter_context(FaultyMailServer(replies={verb: None, "HELO": None}))
                command = self.command(port=server.port, authenticate=1, tls=int(verb == "STARTTLS"), wait=2)
                running.append((verb, server, Program(self.pc, command, "", rf"C:\driver\silent{number}")))
            for number, (verb, server, program) in enumerate(running):
                self.assertEqual(program.wait(), 1, verb)
                self.assertIn("time", (self.pc.drive / f"driver/silent{number}").read_text(), verb)
                self.assertIn(verb, ["greeting", "secret", *server.verbs()])
        with FaultyMailServer(replies={"QUIT": None}) as server:  # the mail is taken; nobody waits for the farewell
            program = Program(self.pc, self.command(port=server.port, authenticate=1, wait=600), "", r"C:\driver\quit")
            self.assertEqual(program.wait(), 0)

    def test_large_and_locked_attachments(self):
        large = random.Random(1).randbytes(50_000_000)
        (self.pc.drive / "large.bin").write_bytes(large)
        with MailServer(2525) as server:
            self.assertEqual((0, ""), self.send(attach=[r"C:\large.bin"]))
            mail = email.message_from_bytes(server.envelopes[0].original_content)
            self.assertTrue(mail.get_payload()[1].get_payload(decode=True) == large)
            (self.pc.drive / "held.bin").write_bytes(b"held")
            self.pc.stand_in("driver/holder.exe")
            holder = self.pc.start(r"/hold C:\held.bin", r"C:\driver\holder.exe")
            wait(lambda: self.send(attach=[r"C:\held.bin"]) == (1, r"can't read C:\held.bin"), "the file to be held")
            self.assertIsNone(holder.exit_code())

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
        """Starts the panel, fills in the form and sends it; the panel."""
        self.pc.install("Brevanta.exe")
        self.pc.write_settings(SETTINGS)
        _, panel = self.start_panel()
        self.send(panel)
        return panel

    def send(self, panel, picture="support-mail"):
        panel.click("cmdEmailSupport")
        form = self.pc.form("frmEmail", 30)
        form.type("txtName", "Ann")
        form.type("txtEmail", "ann@home.com")
        form.type("txtSubject", "Help")
        form.type("txtBody", "Schön\r\n.\r\nlone dot")
        self.pc.screenshot(picture)
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

    def test_the_systems_message_object_comes_first_and_the_companion_behind_it(self):
        shutil.copy(BUILD / "message_object.dll", self.pc.drive / "driver")
        classes, identity = r"HKLM\Software\Classes", "{3AB2B7B6-7D0F-4F0A-9A0E-5C1B6F0D7A11}"
        for key, data in ((rf"CDO.Message\CLSID", identity),
                          (rf"CLSID\{identity}\InprocServer32", r"C:\driver\message_object.dll")):
            code, output = self.pc.run(rf'reg add "{classes}\{key}" /ve /d "{data}" /f /reg:32')
            self.assertEqual(code, 0, output)
        written = self.pc.drive / "message.txt"
        panel = self.open_form()
        self.pc.box("Email sent!", 60).answer(OK)
        schema = "http://schemas.microsoft.com/cdo/configuration/"
        fields = {"smtpserver": '"127.0.0.1"', "smtpconnectiontimeout": "60", "sendusing": "2", "smtpserverport": '"2525"',
                  "smtpauthenticate": "False", "smtpusessl": "False", "sendusername": '""', "sendpassword": '""'}
        before, body, behind = re.fullmatch(r'(.*)Message.TextBody = "(.*?)"\n(.*)', written.read_text(), re.DOTALL).groups()
        self.assertEqual(before.splitlines(), [f"{schema}{name}.Value = {value}" for name, value in fields.items()] + [
            'Message.To = "tech@example.org"', 'Message.From = "ann@home.com"', 'Message.Subject = "Help - "'])
        self.assertTrue(body.startswith("Name:  Ann\nEmail:  ann@home.com\n\nSchön\n.\nlone dot\n\n---\nComputer Name:  "), body)
        self.assertEqual(behind.splitlines(), [r'Message.AddAttachment "C:\Brevanta\Info.zip"', "Fields.Update", "Message.Send"])
        self.assertFalse((self.pc.folder / "SendMail.exe").exists())  # it was not needed
        # What it cannot send goes by the companion, once. Ticks that the client is not shown stay on.
        (self.pc.drive / "refuse").touch()
        self.pc.write_settings(SETTINGS.replace("EmailInfoPrompt=1", "EmailInfoPrompt=0"))
        with MailServer(2525) as mailbox:
            self.send(panel, "support-mail-without-attachments")
            self.pc.box("Email sent!", 60).answer(OK)
        message = email.message_from_bytes(mailbox.envelopes[0].original_content)
        self.assertEqual((message["From"], len(message.get_payload())), ("ann@home.com", 2))
        self.assertEqual((written.read_text().count("Message.Send"), len(mailbox.envelopes)), (2, 1))
        self.assertIn("\t- VB Error: -2147220973 The transport failed to connect to the server.", self.pc.trace())

    def test_without_a_server_the_mail_program_takes_over(self):
        self.pc.catch_addresses()
        self.open_form()
        self.assertIn("mailto:tech@example.org?Subject=Support", wait(self.pc.opened, "the mail program", 60)[0])
        self.assertIn("lone dot", "".join(self.pc.opened()).replace("%20", " "))
        self.pc.form("frmMain")
        self.assertFalse((self.pc.folder / "Info.zip").exists())
        self.assertTrue((self.pc.folder / "InfoTemp/PCHealth.txt").exists())
        self.assertEqual(self.pc.boxes(), [])
