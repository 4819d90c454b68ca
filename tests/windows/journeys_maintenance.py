"""The maintenance button: what a client's click removes, what it leaves alone, and what it writes down."""
import os

from harness import CANCEL, OK, Journey, wait

PROFILES = ["Anna", "Jörg 100%; x", "Жанна"]
SETTINGS = """
[Branding]
AppName=Harbour PC Care
UseNewInterface=1
[Maint]
DelTemps=1
DelTempInternet=1
DelHistory=1
DelCookies=1
CleanMgr=0
DefragReg=0
DefragStartup=0
ProcIdleTasks=0
DoSystemRP=0
ShowURLAfterMaint=0
CloseAppAfterMaint=0
"""
# Below each profile: what goes, and what stays.
REMOVED = [
    "AppData/Local/Temp/a.tmp",
    "AppData/Local/Temp/deep/er/b.tmp",
    "AppData/Local/Microsoft/Windows/Temporary Internet Files/Content.IE5/x.htm",
    "AppData/Roaming/Microsoft/Windows/Cookies/c.txt",
    "AppData/Local/Microsoft/Windows/History/h.dat",
    "AppData/Local/Google/Chrome/User Data/Default/Cache/f_1",
    "AppData/Local/Google/Chrome/User Data/Profile 1/Cache/f_2",
    "AppData/Local/Google/Chrome/User Data/Default/Cookies",
    "AppData/Local/Google/Chrome/User Data/Profile 1/History",
    "AppData/Local/Google/Chrome/User Data/Default/History Index 2026-11",
    "AppData/Local/Mozilla/Firefox/Profiles/ab12.default/Cache/e",
    "AppData/Roaming/Mozilla/Firefox/Profiles/ab12.default/cookies.sqlite",
    "AppData/Roaming/Mozilla/Firefox/Profiles/ab12.default/places.sqlite",
]
KEPT = [
    "Desktop/letter.txt",
    "AppData/Local/Google/Chrome/User Data/Default/Bookmarks",
    "AppData/Roaming/Mozilla/Firefox/Profiles/ab12.default/logins.json",
    "AppData/Local/Microsoft/Windows/Explorer/thumb.db",
]


class MaintenanceJourney(Journey):
    def plant(self):
        users = self.pc.drive / "users"
        for name in ("Default", "Public"):
            (users / name / "AppData/Local/Temp").mkdir(parents=True, exist_ok=True)
            (users / name / "AppData/Local/Temp/template.tmp").write_text("stays")
        (self.pc.drive / "ProgramData").mkdir(exist_ok=True)
        for profile in PROFILES:
            for path in REMOVED + KEPT:
                file = users / profile / path
                file.parent.mkdir(parents=True, exist_ok=True)
                file.write_text(path)
            read_only = users / profile / REMOVED[0]
            os.chmod(read_only, 0o444)
        precious = self.pc.drive / "Precious"
        precious.mkdir()
        (precious / "do_not_delete").write_text("mine")
        link = users / PROFILES[0] / "AppData/Local/Temp/link"
        code, output = self.pc.run(r'cmd /c mklink /J "C:\users\Anna\AppData\Local\Temp\link" C:\Precious')
        if code or not link.exists():
            # A symbolic link on the host is what the system sees as one.
            os.symlink("../../../../../Precious", link)
        download = self.pc.drive / "windows/SoftwareDistribution/Download"
        download.mkdir(parents=True, exist_ok=True)
        (download / "update.cab").write_text("x")
        (self.pc.drive / "windows/temp").mkdir(exist_ok=True)
        (self.pc.drive / "windows/temp/w.tmp").write_text("x")

    def ini(self, name, key):
        for line in (self.pc.folder / name).read_text("cp1252").splitlines():
            if line.startswith(key + "="):
                return line.split("=", 1)[1]
        return None

    def test_click_cleans_every_profile_and_records_the_run(self):
        self.plant()
        self.pc.install("Brevanta.exe")
        self.pc.write_settings(SETTINGS)
        _, panel = self.start_panel("frmMainNew")
        item = next(n for n, c in panel.controls().items() if n.startswith("SideBar.2.") and c["text"] == "Run Maintenance")
        users = self.pc.drive / "users"
        panel.click(item)
        self.pc.box("Maintenance may take").answer(CANCEL)
        wait(lambda: self.ini("Usage.ini", "Maintenance") == "1", "the counter")
        for profile in PROFILES:
            self.assertTrue(all((users / profile / p).exists() for p in REMOVED + KEPT))
        self.assertIsNone(self.ini("Brevanta.ini", "LastMaintenance"))
        panel.click(item)
        self.pc.box("Maintenance may take").answer(OK)
        done = self.pc.box("Maintenance is complete!", 120)
        self.pc.screenshot("maintenance-complete")
        done.answer(OK)
        for profile in PROFILES:
            gone = [p for p in REMOVED if (users / profile / p).exists()]
            self.assertEqual(gone, [], profile)
            lost = [p for p in KEPT if not (users / profile / p).exists()]
            self.assertEqual(lost, [], profile)
        self.assertEqual((self.pc.drive / "Precious/do_not_delete").read_text(), "mine")
        for name in ("Default", "Public"):
            self.assertTrue((users / name / "AppData/Local/Temp/template.tmp").exists())
        self.assertFalse((self.pc.drive / "windows/SoftwareDistribution/Download").exists())
        self.assertFalse((self.pc.drive / "windows/temp/w.tmp").exists())
        last = self.ini("Brevanta.ini", "LastMaintenance")
        self.assertTrue(last)
        self.assertEqual(self.pc.registry(r"HKLM\Software\Talvenmoor\Maintenance", "LastRun", 64), last)
        self.assertEqual(self.ini("Usage.ini", "Maintenance"), "2")
        shown = panel.text("lblLastMaint")
        self.assertRegex(shown, r"^\d\d/\d\d/\d{4}$")
        self.assertEqual(panel.text("txtStatus"), "")
