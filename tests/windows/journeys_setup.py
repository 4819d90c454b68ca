"""The setup program: silent install with the technician's files beside it, the panel from there, and removal."""
import shutil

from harness import OUT, Journey, wait

UNINSTALL = r"HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\Brevanta"
RUN_KEY = r"HKLM\SOFTWARE\Microsoft\Windows\CurrentVersion\Run"
SETTINGS = """
[Branding]
AppName=Harbour PC Care
UseNewInterface=1
[Install]
ShortcutName=Harbour Help
ShortcutWebsite=https://www.harbour-pc-care.example/
UninstallLink=1
PromptForClientID=0
[Maint]
MaintCheckEnabled=1
[ScheduledTasks]
UpdateApp=0
OpenTSAfterInstall=0
"""


class SetupJourney(Journey):
    def test_installed_silently_started_and_removed_without_a_trace(self):
        brought = self.pc.drive / "brought"
        brought.mkdir()
        shutil.copy(OUT / "BrevantaSetup.exe", brought)
        self.pc.write_settings(SETTINGS)
        shutil.move(self.pc.folder / "Brevanta.ini", brought)
        before, keys = self.files(), self.keys()
        self.assertEqual(self.pc.start("/S", r"C:\brought\BrevantaSetup.exe").wait(90), 0)
        folder = self.pc.drive / "Program Files (x86)/Brevanta"
        for name in ("Brevanta.exe", "Pelmark.exe", "BrevantaMCStub.exe", "Brevanta.ini", "Uninstall.exe"):
            self.assertTrue((folder / name).exists(), name)
        self.assertEqual(self.pc.registry(UNINSTALL, "Publisher"), "Harbour PC Care")
        self.assertIn("/S", self.pc.registry(UNINSTALL, "QuietUninstallString"))
        self.assertIn("BrevantaMCStub.exe", self.pc.registry(RUN_KEY, "Brevanta Maintenance Check", 64))
        self.assertTrue(self.pc.registry(r"HKLM\Software\Talvenmoor\Maintenance", "LastRun", 64))
        links = [p.name for p in self.pc.drive.rglob("*.lnk") if "Harbour" in p.name]
        self.assertEqual(len(links), 2, links)

        self.pc.start("", r"C:\Program Files (x86)\Brevanta\Brevanta.exe")
        panel = self.pc.form("frmMainNew", 60)
        self.assertTrue(panel.title().startswith("Harbour PC Care"))
        panel.close()
        self.pc.wait_gone("frmMainNew")

        self.pc.start("/S", r"C:\Program Files (x86)\Brevanta\Uninstall.exe").wait(60)
        wait(lambda: not folder.exists(), "the folder to go", 60)
        self.assertIsNone(self.pc.registry(UNINSTALL))
        self.assertIsNone(self.pc.registry(RUN_KEY, "Brevanta Maintenance Check", 64))
        self.assertIsNone(self.pc.registry(r"HKLM\Software\Talvenmoor", view=64))
        # The uninstaller runs from a copy in the temporary folder, which goes at the next start of Windows.
        self.assertEqual([f for f in self.files() ^ before if "~nsu" not in f], [])
        self.assertEqual(self.keys() ^ keys, set())

    def test_pages_seen_by_a_user(self):
        shutil.copy(OUT / "BrevantaSetup.exe", self.pc.drive)
        program = self.pc.start("", r"C:\BrevantaSetup.exe")
        for page, button in (("Choose Install Location", "&Install"), ("Completing Brevanta Setup", "&Finish")):
            setup = self.pc.box(page, 60)
            self.assertEqual((setup.title.strip(), setup.buttons[1]), ("Brevanta Setup", button))
            self.pc.screenshot("setup-" + button[1:].lower())
            self.pc.ask("click", setup.handle, "#1")
        program.wait(60)
        self.assertTrue((self.pc.drive / "Program Files (x86)/Brevanta/Brevanta.exe").exists())

    def keys(self):
        """Keys and names of values of the machine and the user, but for those that Wine itself keeps."""
        found = set()
        for root in ("HKLM", "HKCU"):
            code, _ = self.pc.run(rf"reg export {root}\Software C:\{root}.reg /y")
            assert code == 0
            key = ""
            for line in (self.pc.drive / f"{root}.reg").read_text("utf-16").splitlines():
                key = line if line.startswith("[") else key
                found.add(key + "\n" + line.split("=")[0])
        return {name for name in found if "\\Wine\\Temporary System Parameters\\" not in name}

    def files(self):
        names = (str(p.relative_to(self.pc.drive)) for p in self.pc.drive.rglob("*"))
        return {name for name in names if not name.startswith(("windows/temp", "driver", "HK"))}
