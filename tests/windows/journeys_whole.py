"""One client from start to end: a technician makes the brand and publishes it; the client's PC gets the panel without a
question; each of its buttons is pressed; a new brand and a new version come by themselves; all of it is removed."""
import email
import shutil
import zipfile

from harness import OK, OUT, ROOT, YES, Journey, Pc, archive, wait
from journeys_setup import RUN_KEY, UNINSTALL
from journeys_updates import with_version
from loopback import FtpServer, HttpServer
from smtp import MailServer

FOLDER = "Program Files (x86)/Brevanta"
PANEL = r"C:\Program Files (x86)\Brevanta\Brevanta.exe"
# What the technician enters: page of the console, controls with a text each, or True for a tick.
BRAND = {
    1: {"txtAppName": "Harbour PC Care", "txtPhone": "555-0142", "txtShortcutName": "Harbour Help", "chkUninstallLink": True},
    2: {"chkNewInterface": True, "chkShowDetails": True},
    3: {"txtEmail": "tech@example.org", "chkUseEmailSMTP": True, "chkEmailInfoPrompt": True},
    4: {"txtSMTPServer": "127.0.0.1", "comboSMTPPort": "587", "txtFromEmail": "panel@example.org"},
    5: {"optRemoteURL": True, "txtSupportApp": "http://www.harbour-pc-care.example/connect", "txtPreRemoteURL": "*.exe"},
    6: {"chkShowRP": True},
    7: {"chkDelHistory": True},
    9: {"chkResetHosts": True},
    10: {"chkShowCustomButton": True, "optCustomURL": True, "txtCustomButtonAction": "http://www.harbour-pc-care.example/help"},
    11: {"chkShowCustomButton1": True, "optCustomEXE1": True, "txtCustomButtonAction1": "tool.exe"},
    12: {"chkShowCustomButton2": True, "optCustomCPQ2": True},
    13: {"chkShowCustomButton3": True, "optCustomSR3": True},
    14: {"chkShowCustomButton4": True, "optCustomSafe4": True},
    15: {"txtCloudUser": "tech", "txtCloudPass": "secret", "chkCloudUpdate": True},
}


class WholeJourney(Journey):
    def test_from_the_technicians_desk_to_the_clients_removal(self):
        area = self.pc.session / "area"
        (area / "Brevanta").mkdir(parents=True)
        with FtpServer(area):
            config = self.make_brand(area)
            self.client = Pc()
            self.addCleanup(self.client.close)
            self.install(config)
            self.press_each_button()
            usage, = (area / "Brevanta/Usage").glob("*.usage")
            counted = dict(line.split("=") for line in usage.read_text().split() if "=" in line)
            self.assertEqual({name: counted.get(name) for name in self.pressed}, self.pressed)
            self.change_brand()
            self.get_update()
        self.remove()

    # --- the technician -----------------------------------------------------------------------------------------------

    def console(self):
        self.pc.start("/config")
        console = self.pc.form("frmConfig", 60)
        wait(lambda: "SideBar.1.15" in console.controls(), "the sidebar")
        return console

    def enter(self, console, page, fields):
        console.click(f"SideBar.1.{page}")
        for name, value in fields.items():
            console.wait_shown(name)
            console.check(name) if value is True else console.type(name, value)

    def upload(self, console, area):
        console.click("SideBar.1.15")
        console.wait_shown("Command2")
        console.click("Command2")
        wait((area / "Brevanta/BrevantaConfig.zip").exists, "the set on the server", 30)
        self.pc.wait_gone("frmFTPUL", 30)

    def make_brand(self, area):
        """From an empty folder to the set on the server and on the desktop, which it returns."""
        self.pc.install("Brevanta.exe")
        shutil.copy(ROOT / "resources/demo/supportlogo.png", self.pc.folder)
        console = self.console()
        for page, fields in BRAND.items():
            self.enter(console, page, fields)
        console.click("SideBar.1.8")
        console.wait_shown("txtName")
        for name in ("Second", "First"):
            console.type("txtName", name)
            console.type("txtFileName(0)", name + ".exe")
            console.click("cmdMaint(3)")
            self.pc.box(f"App {name} Saved!").answer(OK)
        console.select("listApps", "First")
        console.click("cmdListMove(0)")
        wait(lambda: console.items("listApps") == ["First", "Second"], "the new order")
        self.upload(console, area)
        console.click("SideBar.2.1")
        self.pc.box("Your config is saved to your desktop.", 30).answer(OK)
        config = next((self.pc.drive / "users").rglob("BrevantaConfig.zip"))
        published = area / "Brevanta/BrevantaConfig.zip"
        for file in config, published:
            with zipfile.ZipFile(file) as packed:
                self.assertIsNone(packed.testzip())
                self.assertEqual(sorted(packed.namelist()),
                                 ["brevanta.ini", "first.cfg", "second.cfg", "sortorder.cfg", "supportlogo.png"])
        return config

    # --- the client ---------------------------------------------------------------------------------------------------

    def install(self, config):
        brought = self.client.drive / "brought"
        brought.mkdir()
        shutil.copy(OUT / "BrevantaSetup.exe", brought)
        zipfile.ZipFile(config).extractall(brought)
        for program in "3rd Party Tools/First.exe", "3rd Party Tools/Second.exe", "tool.exe", "none of ours.exe":
            self.client.stand_in(f"brought/{program}")
        self.assertEqual(self.client.start("/S", r"C:\brought\BrevantaSetup.exe").wait(90), 0)
        shutil.rmtree(brought)
        self.assertEqual(self.client.registry(UNINSTALL, "Publisher"), "Harbour PC Care")
        self.assertFalse((self.client.drive / FOLDER / "none of ours.exe").exists())

    def start(self, title):
        program = self.client.start("", PANEL)
        panel = self.client.form("frmMainNew", 60)
        self.assertTrue(panel.title().startswith(title), panel.title())
        wait(lambda: panel.text("lblUAC") != "---" and panel.text("txtStatus") == "", "the PC to be measured", 60)
        return program, panel

    def press_each_button(self):
        client = self.client
        client.stand_in("windows/system32/rstrui.exe")
        client.catch_addresses()
        temporary = client.user / "AppData/Local/Temp/old.tmp"
        temporary.parent.mkdir(parents=True, exist_ok=True)
        temporary.write_text("old")
        program, panel = self.start("Harbour PC Care")
        self.assertEqual(panel.text("lblPhone"), "555-0142")
        client.screenshot("whole-panel")

        with MailServer(587) as mailbox:
            panel.click("SideBar.1.1")
            form = client.form("frmEmail", 30)
            for name, text in {"txtName": "Ann", "txtEmail": "ann@home.com", "txtSubject": "Help", "txtBody": "Slow PC"}.items():
                form.type(name, text)
            form.click("Command1")
            client.box("Email sent!", 60).answer(OK)
        mail = email.message_from_bytes(mailbox.envelopes[0].original_content)
        self.assertEqual([part.get_filename() for part in mail.walk()][1:], [None, "Info.zip"])
        panel.click("SideBar.1.2")
        panel.click("SideBar.2.1")  # the schedule of restore points
        panel.wait_shown("cmdSaveRP")
        panel.click("Label12")
        wait(lambda: panel.control("SideBar.2.2")["visible"], "the page to go")
        panel.click("SideBar.2.2")
        client.box().answer(OK)
        client.box("Maintenance is complete!", 120).answer(OK)
        self.assertFalse(temporary.exists())
        panel.click("SideBar.2.3")
        client.box("Attempt to fix internet problems?").answer(OK)
        client.box("Try to access the internet now.", 120).answer(OK)
        panel.click("SideBar.2.4")
        panel.click("SideBar.2.5")
        panel.click("SideBar.2.6")
        client.box("Print Queue Cleared!", 60).answer(OK)
        panel.click("SideBar.2.7")
        panel.click("SideBar.2.8")
        client.form("frmSafeMode", 30).close()
        panel.close()
        program.wait(60)
        self.assertEqual([line.rsplit("\\", 1)[1].strip('" ').lower() for line in client.started()],
                         ["first.exe", "second.exe", "tool.exe", "rstrui.exe"])
        self.assertEqual(client.opened(), [f"http://www.harbour-pc-care.example/{page}" for page in ("connect", "help")])
        self.pressed = {"AppLaunch": "1", "Email": "1", "RemoteSupport": "1", "Maintenance": "1", "Fix": "1",
                        **{f"CustomButton{number}": "1" for number in range(5)}}

    def change_brand(self):
        """The technician's new name is the panel's at its next start, and what belongs to the client stays."""
        settings = self.client.drive / FOLDER / "Brevanta.ini"
        last = next(line for line in settings.read_text().splitlines() if line.startswith("LastMaintenance="))
        console = wait(lambda: self.pc.form("frmConfig"), "the console")
        self.enter(console, 1, {"txtAppName": "Quayside PC Care"})
        (self.pc.session / "area/Brevanta/BrevantaConfig.zip").unlink()
        self.upload(console, self.pc.session / "area")
        program, panel = self.start("Quayside PC Care")
        self.assertIn(last, settings.read_text())
        panel.close()
        program.wait(60)

    def get_update(self):
        newer = with_version((OUT / "Brevanta.exe").read_bytes(), (9, 0, 0))
        files = {"Brevanta.exe": newer, "Pelmark.exe": (OUT / "Pelmark.exe").read_bytes(),
                 "BrevantaMCStub.exe": (OUT / "BrevantaMCStub.exe").read_bytes()}
        manifest = archive({"TalvenmoorUpdates.ini": "[Brevanta]\r\nCurrentVersion=9.0.0\r\n"})
        with HttpServer({"/TalvenmoorUpdates.zip": manifest, "/BrevantaEXE.zip": archive(files)}):
            self.client.start("/updateonly", PANEL).wait(90)
        self.assertEqual((self.client.drive / FOLDER / "Brevanta.exe").read_bytes(), newer)
        program, panel = self.start("Quayside PC Care")
        panel.close()
        program.wait(60)

    def remove(self):
        self.client.start("/S", PANEL.replace("Brevanta.exe", "Uninstall.exe")).wait(60)
        wait(lambda: not (self.client.drive / FOLDER).exists(), "the folder to go", 60)
        self.assertIsNone(self.client.registry(UNINSTALL))
        self.assertIsNone(self.client.registry(RUN_KEY, "Brevanta Maintenance Check", 64))
        self.assertEqual([file.name for file in self.client.drive.rglob("*.lnk") if "Harbour" in file.name], [])
