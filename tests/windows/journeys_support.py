"""The buttons for support: downloads with their window, bundled programs, the client's dialogs, the password prompt."""

from harness import OK, Journey, wait
from loopback import HttpServer, Reply

SETTINGS = """
[Branding]
AppName=Harbour PC Care
UseNewInterface=0
RemoteSupportApp={target}
RemoteSupportType={type}
RemoteSupportDLName={name}
RemoteSupportAppParms=/quick
ShowPreRemoteURL=0
UseIBForSupportURL=0
[EmailConfig]
UseInternalSMTP=1
[Install]
PromptForClientID=1
[PromptForPasswordSet]
{user}=1
"""


class SupportJourney(Journey):
    def prepare(self, target="", kind="EXE", name="", user="nobody"):
        self.pc.install("Brevanta.exe")
        self.pc.write_settings(SETTINGS.format(target=target, type=kind, name=name, user=user))

    def panel(self):
        self.pc.start()
        panel = self.pc.form("frmMain", 60)
        wait(lambda: panel.text("lblUAC") != "---", "the health display")
        return panel



    def test_bundled_program_starts_with_its_parameters(self):
        self.prepare(target="helper.cmd")
        (self.pc.folder / "helper.cmd").write_text("@echo %1> C:\\Brevanta\\ran.txt\r\n")
        self.panel().click("cmdStartSupport")
        wait(lambda: (self.pc.folder / "ran.txt").exists(), "the program to run")
        self.assertIn("/quick", (self.pc.folder / "ran.txt").read_text())
        wait(lambda: "RemoteSupport=1" in (self.pc.folder / "Usage.ini").read_text(), "the counter")

    def test_download_shows_its_progress_and_cancel_leaves_nothing(self):
        body = b"MZ" + bytes(400000)
        slow = Reply(body, chunk=20000, delay=0.2)
        self.prepare(target="http://files.brevanta.example/s.exe", kind="Download", name="s.exe")
        (self.pc.session / "hosts").write_text("127.0.0.1 localhost files.brevanta.example\n")
        with HttpServer({"/s.exe": slow}):
            panel = self.panel()
            panel.click("cmdStartSupport")
            window = self.pc.form("frmDownload", 30)
            wait(lambda: window.text("lblReceived").startswith(("1", "2", "3")), "some kilobytes", 30)
            self.assertEqual(window.text("lblTotal"), "390.63Kb")
            self.pc.screenshot("download-half-way")
            window.click("cmdCancel")
            self.pc.wait_gone("frmDownload", 30)
        wait(lambda: "RemoteSupport=1" in (self.pc.folder / "Usage.ini").read_text(), "the counter")
        self.assertFalse((self.pc.folder / "s.exe").exists())
        self.assertEqual(self.pc.boxes(), [])

    def test_client_data_is_saved_and_read_back(self):
        self.prepare()
        for name, address in (("Ann Smith", "ann@home.example"), ("", "")):
            program = self.pc.start("/clientinfo")
            form = self.pc.form("frmClientInfoPrompt", 30)
            if not name:
                self.assertEqual(form.text("txtName"), "Ann Smith")
            self.pc.screenshot("client-information")
            form.type("txtName", name)
            form.type("txtEmail", address)
            form.click("Command1")
            self.pc.box("Client Information Saved.").answer(OK)
            form = self.pc.form("frmSetClientID", 30)
            self.pc.screenshot("client-id")
            form.type("Combo1", "Home")
            form.click("Command1")
            self.pc.box("Client ID Saved.").answer(OK)
            program.wait(30)
            self.assertEqual(self.pc.registry(r"HKLM\Software\Brevanta", "ClientID", 64), "Home")

    def test_password_prompt_instead_of_the_panel(self):
        self.prepare(user="client")
        program = self.pc.start()
        form = self.pc.form("frmPW", 30)
        self.pc.screenshot("password-prompt")
        form.type("Text1", "one")
        form.type("Text2", "two")
        form.click("Command1")
        self.pc.box("do not match").answer(OK)
        self.assertIn("client=1", (self.pc.folder / "Brevanta.ini").read_text())
        form.click("Command2")
        program.wait(30)
        self.assertIn("client=0", (self.pc.folder / "Brevanta.ini").read_text())
        self.assertNotIn("frmMain", self.pc.forms())

    def test_dialogs_by_keyboard_alone(self):
        self.prepare()
        program = self.pc.start("/clientinfo")
        form = self.pc.form("frmClientInfoPrompt", 30)
        wait(lambda: form.focus() == "txtName", "the first field to have the focus")
        order = ["txtName"]
        for _ in range(3):
            before = form.focus()
            form.key("Tab")
            order.append(wait(lambda: form.focus() if form.focus() != before else None, "the next field"))
        self.assertEqual(order, ["txtName", "txtEmail", "txtPhone", "Command1"])
        form.key("Alt+S")
        self.pc.box("Client Information Saved.").answer(OK)
        self.pc.form("frmSetClientID", 30).close()
        program.wait(30)


class FirstStartJourney(Journey):
    def test_without_any_settings_the_panel_opens_with_its_own_texts(self):
        self.pc.install("Brevanta.exe")
        self.pc.start()
        panel = self.pc.form("frmMain", 60)
        wait(lambda: panel.text("lblUAC") != "---", "the health display")
        self.assertEqual(panel.title(), "Talvenmoor  -  Support Control Panel")
        self.assertEqual(panel.text("lblPhone"), "555-555-5555")
        self.assertEqual(panel.text("cmdFix").replace("&", ""), "Fix Internet")
        self.assertFalse(panel.control("cmdCustom")["visible"])
        self.pc.screenshot("no-settings")

    def test_settings_of_garbage_and_a_logo_that_is_none(self):
        self.pc.install("Brevanta.exe")
        for garbage in (bytes(range(256)) * 40, b"\xef\xbb\xbf[Branding]\r\nAppName=X", b"no section", b"[" * 10_000_000):
            (self.pc.folder / "Brevanta.ini").write_bytes(garbage)
            (self.pc.folder / "supportlogo.png").write_bytes(garbage[:5000])
            (self.pc.folder / "AltLang.INI").write_bytes(garbage[:5000])
            program = self.pc.start()
            panel = self.pc.form("frmMain", 60)
            wait(lambda: panel.text("lblUAC") != "---", "the health display", 60)
            panel.close()
            program.wait(30)
