"""The internet repair and the add-on form, on a real registry and hosts file."""
from harness import CANCEL, NO, OK, YES, Journey, wait

INTERNET = r"Software\Microsoft\Windows\CurrentVersion\Internet Settings"
TOOLBAR = r"HKLM\Software\Microsoft\Internet Explorer\Toolbar"
BHO = r"HKLM\Software\Microsoft\Windows\CurrentVersion\Explorer\Browser Helper Objects"
SCOPES = r"Software\Microsoft\Internet Explorer\SearchScopes"
SETTINGS = """
[Branding]
UseNewInterface=0
[Fix]
ResetHosts=1
RestartIE=0
RemIEToolbars=1
RemIEBHOs=1
ClearProxy=1
ResetNet=1
ShowNetMsg=1
ShowNetURL=0
"""


class FixJourney(Journey):
    def hosts(self):
        return self.pc.drive / "windows/system32/drivers/etc/hosts"

    def start_panel(self):
        self.pc.install("Brevanta.exe")
        self.pc.write_settings(SETTINGS)
        self.pc.set_registry("HKCU\\" + INTERNET, "ProxyEnable", "1", "REG_DWORD")
        self.pc.set_registry("HKCU\\" + INTERNET, "ProxyServer", "evil:8080")
        self.pc.set_registry(TOOLBAR, "{AAAA}", "bar", view=64)
        self.pc.set_registry(BHO + r"\{BBBB}", "x", "y", view=64)
        self.hosts().parent.mkdir(parents=True, exist_ok=True)
        self.hosts().write_text("6.6.6.6 bank.example\n")
        self.pc.start()
        return self.pc.form("frmMain", 60)

    def test_fix_puts_proxy_hosts_and_addons_right(self):
        panel = self.start_panel()
        panel.click("cmdFix")
        self.pc.box("Attempt to fix internet problems?").answer(OK)
        self.pc.box("Try to access the internet now.", 120).answer(OK)
        self.assertEqual(self.hosts().read_bytes(), b"127.0.0.1       localhost\r\n::1       localhost\r\n")
        self.assertIn("6.6.6.6", self.hosts().with_name("hosts.RENAMED").read_text())
        self.assertIsNone(self.pc.registry("HKCU\\" + INTERNET, "ProxyServer"))
        self.assertEqual(self.pc.registry("HKCU\\" + INTERNET, "ProxyEnable"), "0x0")
        self.assertIsNone(self.pc.registry(TOOLBAR, "{AAAA}", 64))
        self.assertIsNone(self.pc.registry(BHO + r"\{BBBB}", view=64))
        commands = [l.split("ShellandWaitForTermination:  ")[1] for l in self.pc.trace()
                    if "ShellandWaitForTermination:  " in l]
        self.assertEqual(commands[:4], ["cmd /c netsh winhttp reset proxy", "cmd /c netsh winsock reset",
                                        "cmd /c netsh winsock reset catalog",
                                        r"cmd /c netsh interface ip reset C:\int-resetlog.txt"])
        self.assertEqual(commands[-1], "cmd /c ipconfig /renew all")

    def test_cancel_leaves_everything(self):
        panel = self.start_panel()
        panel.click("cmdFix")
        self.pc.box("Attempt to fix").answer(CANCEL)
        wait(lambda: "Fix=1" in (self.pc.folder / "Usage.ini").read_text(), "the counter")
        self.assertIn("6.6.6.6", self.hosts().read_text())
        self.assertEqual(self.pc.registry("HKCU\\" + INTERNET, "ProxyServer"), "evil:8080")
