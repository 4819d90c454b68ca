"""The setup program: silent install with the technician's files beside it, the panel from there, and removal."""
import shutil

from harness import OUT, Journey, wait

UNINSTALL = r"HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\Brevanta"
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
        before = self.files()
        self.assertEqual(self.pc.start("/S", r"C:\brought\BrevantaSetup.exe").wait(90), 0)
        folder = self.pc.drive / "Program Files (x86)/Brevanta"
        for name in ("Brevanta.exe", "Pelmark.exe", "BrevantaMCStub.exe", "Brevanta.ini", "Uninstall.exe"):
            self.assertTrue((folder / name).exists(), name)
        self.assertEqual(self.pc.registry(UNINSTALL, "Publisher"), "Harbour PC Care")
        self.assertIn("/S", self.pc.registry(UNINSTALL, "QuietUninstallString"))
        run_key = r"HKLM\SOFTWARE\Microsoft\Windows\CurrentVersion\Run"
        self.assertIn("BrevantaMCStub.exe", self.pc.registry(run_key, "Brevanta Maintenance Check", 64))
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
        self.assertIsNone(self.pc.registry(run_key, "Brevanta Maintenance Check", 64))
        self.assertIsNone(self.pc.registry(r"HKLM\Software\Talvenmoor", view=64))
        left = [f for f in self.files() - before if "brought" not in f]
        self.assertEqual([f for f in left if "Brevanta" in f or "Harbour" in f], [])

    def files(self):
        return {str(p.relative_to(self.pc.drive)) for p in self.pc.drive.rglob("*") if "windows/temp" not in str(p).lower()}
