"""The dialogs and companions with a window, by keyboard alone: Tab, access keys, Enter and Escape. Each leaves a picture."""
import shutil

from harness import BUILD, Journey, wait
from loopback import HttpServer, Reply

SETTINGS = """
[Branding]
AppName=Harbour PC Care
UseNewInterface=0
RemoteSupportApp=http://files.brevanta.example/s.exe
RemoteSupportType=Download
RemoteSupportDLName=s.exe
ShowPreRemoteURL=0
[EmailConfig]
UseInternalSMTP=1
EmailInfoPrompt=1
OfferTwoOptions={two}
PrimaryOptionCaption=Write to &Ann
SecondaryOptionCaption=Open a &ticket
[Install]
PromptForClientID=1
[Maint]
MaintReminderDays=30
[General]
LastMaintenance=01/02/2020
[PromptForPasswordSet]
client={password}
"""
RUN_ONCE = r"HKLM\SOFTWARE\Microsoft\Windows\CurrentVersion\RunOnce"
EDIT_OF_COMBO = None  # where a combo is typed into is a window of its own without a name


class DialogJourney(Journey):
    def prepare(self, two=0, password=0):
        if not (self.pc.folder / "Brevanta.exe").exists():
            self.pc.install("Brevanta.exe", "Pelmark.exe", "BrevantaMCStub.exe")
            shutil.copy(BUILD / "gallery.exe", self.pc.folder)
        self.pc.write_settings(SETTINGS.format(two=two, password=password))

    def walk(self, name, order, keys):
        """Waits for the form; goes once round it by Tab, then to each control by its access key."""
        form = self.pc.form(name, 30)
        reach = lambda control, how: wait(lambda: form.focus() == control,  # noqa: E731
                                          f"{how} to reach {control} of {name}, it is on {form.focus()}")
        reach(order[0], "the start")
        for control in order[1:] + order[:1]:
            form.key("Tab")
            reach(control, "Tab")
        for key, control in keys.items():
            form.key("Tab")
            form.key("Alt+" + key)
            reach(control, "Alt+" + key)
        self.pc.screenshot("dialog-" + name)
        return form

    def panel(self, two=0):
        self.prepare(two)
        return self.start_panel()

    def test_client_data(self):
        self.prepare()
        key = r"HKLM\Software\Brevanta"
        for last, name, client in (("Escape", None, None), ("Enter", "A", "Home")):
            program = self.pc.start("/clientinfo")
            form = self.walk("frmClientInfoPrompt", ["txtName", "txtEmail", "txtPhone", "Command1"],
                             {"E": "txtEmail", "P": "txtPhone", "N": "txtName"})
            form.key("A")
            form.key(last)
            if client:
                self.pc.box("Client Information Saved.").answer("Enter")
            form = self.walk("frmSetClientID", [EDIT_OF_COMBO, "Command1"], {"I": EDIT_OF_COMBO})
            form.key("Down")
            wait(lambda: form.text("Combo1") == "Home", "the first suggestion")
            form.key(last)
            if client:
                self.pc.box("Client ID Saved.").answer("Enter")
            program.wait()
            stored = self.pc.registry(key, "ClientName", 64), self.pc.registry(key, "ClientID", 64)
            self.assertEqual(tuple(text and text.upper() for text in stored), (name, client and client.upper()))

    def test_password_prompt(self):
        self.prepare(password=1)
        program = self.pc.start()
        form = self.walk("frmPW", ["Text1", "Text2", "Command1", "Command2"], {"C": "Text2", "N": "Text1"})
        for stroke in ("A", "Tab", "B", "Enter"):
            form.key(stroke)
        self.pc.box("do not match").answer("Enter")
        self.assertIn("client=1", (self.pc.folder / "Brevanta.ini").read_text())
        form.key("Alt+D")
        program.wait()  # so the panel does not follow
        self.assertIn("client=0", (self.pc.folder / "Brevanta.ini").read_text())

    def test_addons(self):
        self.prepare()
        toolbar = r"HKLM\Software\Microsoft\Internet Explorer\Toolbar"
        for name in "{A}", "{B}":
            self.pc.set_registry(toolbar, name, "Bar", view=64)
        program = self.pc.start("/addons", program=r"C:\Brevanta\gallery.exe")
        form = self.walk("frmCleanIE", ["ListView1", "ListView2", "ListView3", "Label1", "Label2", "Command1", "Command2",
                                        "Command3", "Command4"], {"S": "ListView3", "B": "ListView2", "T": "ListView1"})
        for stroke in ("Home", "Down", "Space"):
            form.key(stroke)
        wait(lambda: [row["checked"] for row in form.rows("ListView1")] == [False, True], "the second row to be checked")
        form.key("Alt+D")
        self.pc.box("WARNING").answer("Alt+Y")
        wait(lambda: len(form.rows("ListView1")) == 1, "the checked one to go")
        form.key("Escape")
        program.wait()
        self.assertEqual((self.pc.registry(toolbar, "{A}", 64), self.pc.registry(toolbar, "{B}", 64)), ("Bar", None))

    def test_safe_mode_changes_nothing_but_by_its_own_button(self):
        self.prepare()
        for close in "Enter", "Escape", "Alt+F4":
            program = self.pc.start(program=r"C:\Brevanta\Pelmark.exe")
            self.walk("frmSafeMode", ["cmdCancel", "cmdRestart"], {}).key(close)
            self.assertEqual(program.wait(), 0)
        before = self.pc.registry(RUN_ONCE, view=64)
        # This PC has no editor of the boot settings: the client is told, and the way back is not left behind.
        program = self.pc.start(program=r"C:\Brevanta\Pelmark.exe")
        form = self.pc.form("frmSafeMode")
        form.key("Alt+R")
        box = self.pc.box("Safe mode could not be set.  Nothing was changed.")
        self.pc.screenshot("safe-mode-refused")
        box.answer("Enter")
        self.assertEqual(self.pc.registry(RUN_ONCE, view=64), before)
        form.key("Escape")
        program.wait()
        # With one it is asked for safe mode, and the way back is registered before the restart.
        self.pc.stand_in("windows/system32/bcdedit.exe")
        program = self.pc.start(program=r"C:\Brevanta\Pelmark.exe")
        self.pc.form("frmSafeMode").key("Alt+R")
        program.wait()
        self.assertEqual(self.pc.started(), [r"C:\windows\system32\bcdedit.exe /set {current} safeboot network"])
        self.assertEqual(self.pc.registry(RUN_ONCE, "*Pelmark", 64), r'"C:\Brevanta\Pelmark.exe" /undo')

    def test_reminder(self):
        self.prepare()
        program = self.pc.start(program=r"C:\Brevanta\BrevantaMCStub.exe")
        form = self.walk("frmReminder", ["cmdRun", "cmdLater", "cmdStop"], {})
        self.assertIn(" days ago.", form.text("lblDays"))
        form.key("Escape")
        self.assertEqual(program.wait(), 0)
        self.pc.start(program=r"C:\Brevanta\BrevantaMCStub.exe")
        self.pc.form("frmReminder").key("Enter")
        self.pc.box("maintenance", 60)

    def test_download(self):
        (self.pc.session / "hosts").write_text("127.0.0.1 localhost files.brevanta.example\n")
        with HttpServer({"/s.exe": Reply(bytes(8_000_000), chunk=8000, delay=0.02)}):
            program, panel = self.panel()
            panel.click("cmdStartSupport")
            window = self.walk("frmDownload", ["cmdCancel"], {})
            wait(lambda: "Kb" in window.text("lblReceived"), "some kilobytes")
            window.key("Alt+F4")
            self.pc.box("Are you sure you wish to cancel").answer("Alt+N")
            received = window.text("lblReceived")
            wait(lambda: window.text("lblReceived") != received, "the download to go on")
            window.key("Escape")
            self.pc.wait_gone("frmDownload")
            self.assertEqual(self.pc.boxes(), [])
            panel.click("cmdStartSupport")
            self.pc.form("frmDownload", 30)
            panel.close()  # ends the program in the middle of the download
            self.assertEqual(program.wait(), 0)

    def test_support_mail(self):
        program, panel = self.panel(two=1)
        panel.click("cmdEmailSupport")
        self.walk("frmEmailOptions", ["cmdEmailSupport", "cmdEmailSupport2"], {}).key("Escape")
        self.pc.wait_gone("frmEmailOptions")
        panel.click("cmdEmailSupport")
        self.pc.form("frmEmailOptions").key("Alt+A")
        form = self.walk("frmEmail", ["txtName", "txtEmail", "txtPhone", "txtSubject", "txtBody", "chkAttachInfo",
                                      "chkAttachPic", "Command1"],
                         {"E": "txtEmail", "H": "txtPhone", "J": "txtSubject", "N": "txtName", "B": "txtBody"})
        self.assertTrue(form.checked("chkAttachPic"))
        form.key("Alt+P")
        wait(lambda: not form.checked("chkAttachPic"), "the picture to be left out")
        form.key("Escape")
        form.key("Alt+F4")  # Escape would lose what was typed
        self.pc.wait_gone("frmEmail")
        panel.key("Alt+F4")
        self.assertEqual(program.wait(), 0)
