"""The internet repair and the add-on form, on a real registry and hosts file."""
import re
import shutil

from harness import BUILD, CANCEL, NO, OK, ROOT, YES, Journey, wait

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

    def test_fix_puts_proxy_hosts_and_addons_right(self):
        self.pc.install("Brevanta.exe")
        self.pc.write_settings(SETTINGS)
        self.pc.set_registry("HKCU\\" + INTERNET, "ProxyEnable", "1", "REG_DWORD")
        self.pc.set_registry("HKCU\\" + INTERNET, "ProxyServer", "evil:8080")
        self.pc.set_registry(TOOLBAR, "{AAAA}", "bar", view=64)
        self.pc.set_registry(BHO + r"\{BBBB}", "x", "y", view=64)
        self.pc.set_registry("HKCU\\" + SCOPES + r"\{CCCC}", "DisplayName", "Search")
        self.hosts().parent.mkdir(parents=True, exist_ok=True)
        self.hosts().write_text("6.6.6.6 bank.example\n")
        self.pc.start()
        panel = self.pc.form("frmMain", 60)
        panel.click("cmdFix")
        self.pc.box("Attempt to fix internet problems?").answer(CANCEL)
        wait(lambda: "Fix=1" in (self.pc.folder / "Usage.ini").read_text(), "the counter")
        self.assertIn("6.6.6.6", self.hosts().read_text())
        self.assertEqual(self.pc.registry("HKCU\\" + INTERNET, "ProxyServer"), "evil:8080")
        panel.click("cmdFix")
        self.pc.box("Attempt to fix internet problems?").answer(OK)
        self.pc.box("Try to access the internet now.", 120).answer(OK)
        self.assertEqual(self.hosts().read_bytes(), b"127.0.0.1       localhost\r\n::1       localhost\r\n")
        self.assertIn("6.6.6.6", self.hosts().with_name("hosts.RENAMED").read_text())
        self.assertIsNone(self.pc.registry("HKCU\\" + INTERNET, "ProxyServer"))
        self.assertEqual(self.pc.registry("HKCU\\" + INTERNET, "ProxyEnable"), "0x0")
        self.assertIsNone(self.pc.registry(TOOLBAR, "{AAAA}", 64))
        self.assertIsNone(self.pc.registry(BHO + r"\{BBBB}", view=64))
        self.assertEqual(self.pc.registry("HKCU\\" + SCOPES + r"\{CCCC}", "DisplayName"), "Search")
        self.assertNotIn("frmCleanIE", self.pc.forms())
        commands = [l.split("ShellandWaitForTermination:  ")[1] for l in self.pc.trace()
                    if "ShellandWaitForTermination:  " in l]
        self.assertEqual(commands[:4], ["cmd /c netsh winhttp reset proxy", "cmd /c netsh winsock reset",
                                        "cmd /c netsh winsock reset catalog",
                                        r"cmd /c netsh interface ip reset C:\int-resetlog.txt"])
        self.assertEqual(commands[-1], "cmd /c ipconfig /renew all")


class AddonsJourney(Journey):
    """The form of browser add-ons as a user would see it; the panel itself uses it hidden."""

    ENTRIES = {"T1": TOOLBAR, "T2": TOOLBAR, "B1": BHO, "B2": BHO, "S1": "HKLM\\" + SCOPES, "S2": "HKCU\\" + SCOPES}

    def plant(self):
        for name, key in self.ENTRIES.items():
            for view in 64, 32:
                if key == TOOLBAR:
                    self.pc.set_registry(key, "{%s}" % name, "Bar" if name == "T1" else "5",
                                         "REG_SZ" if name == "T1" else "REG_DWORD", view)
                else:
                    self.pc.set_registry(key + "\\{%s}" % name, "DisplayName", "Search & co", view=view)
        self.pc.run(f'reg add "{BHO}\\{{B1}}" /ve /d "\\"%windir%\\helper.dll\\" /x" /f /reg:64')
        self.pc.run(f'reg add "{BHO}\\{{B1}}\\below\\deeper" /f /reg:64')

    def left(self, view):
        """Names of the entries that are there, such as "T1 B2"."""
        listed = {key: self.pc.run(f'reg query "{key}" /s /reg:{view}')[1] for key in set(self.ENTRIES.values())}
        return " ".join(name for name, key in self.ENTRIES.items() if "{%s}" % name in listed[key])

    def press(self, form, button, answer):
        form.click(button)
        self.pc.box("WARNING:  If you delete all of the search scopes").answer(answer)

    def test_selected_and_all_addons_go_after_a_yes_alone(self):
        shutil.copy(BUILD / "gallery.exe", self.pc.folder)
        self.plant()
        program = self.pc.start("/addons", program=r"C:\Brevanta\gallery.exe")
        form = self.pc.form("frmCleanIE")
        rows = {name: [row["cells"] for row in form.rows(name)] for name in ("ListView1", "ListView2", "ListView3")}
        place = "HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Browser Helper Objects\\"
        self.assertEqual(rows["ListView1"], [["Bar", "{T1}"], ["5", "{T2}"]])
        self.assertEqual(rows["ListView2"], [['"%windir%\\helper.dll" /x', "C:\\windows\\helper.dll", place + "{B1}", "{B1}"],
                                             ["", "", place + "{B2}", "{B2}"]])
        self.assertEqual(rows["ListView3"], [["", "Search & co", "", key + r"\Software\Microsoft\Internet Explorer"
                                              r"\SearchScopes\{%s}" % name] for key, name in (("HKLM", "S1"), ("HKCU", "S2"))])
        self.pc.screenshot("addons")
        everything = self.left(64)
        self.press(form, "Command1", NO)
        for list_name, row in ("ListView1", 0), ("ListView2", 0), ("ListView3", 0), ("ListView3", 1):
            form.check_row(list_name, row)
        self.press(form, "Command2", NO)
        self.assertEqual((everything, self.left(64)), ("T1 T2 B1 B2 S1 S2",) * 2)
        self.press(form, "Command2", YES)
        wait(lambda: len(form.rows("ListView3")) == 0, "the scopes to go")
        self.assertEqual(self.left(64), "T2 B2")
        self.plant()
        form.click("Command3")
        wait(lambda: len(form.rows("ListView3")) == 2, "the new scopes to be listed")
        self.press(form, "Command1", YES)
        wait(lambda: not any(form.rows(f"ListView{n}") for n in (1, 2, 3)), "the lists to be empty")
        self.assertEqual(self.left(64), "")
        self.assertEqual(self.left(32), "T1 T2 B1 B2 S1")  # the view of 32-bit programs is not this form's; HKCU has one
        form.key("Escape")
        self.assertEqual(program.wait(), 0)


def export_values(text):
    """{(key, name): data} of a registry export, keys in lower case."""
    values, key = {}, ""
    for line in re.sub(r"\\\s*\n\s*", "", text.replace("\r", "")).splitlines():
        if line.startswith("["):
            key = line.strip("[]").lower()
            values[key, ""] = ""
        elif "=" in line:
            name, data = re.fullmatch(r'("(?:[^"\\]|\\.)*"|@)=(.*)', line).groups()
            values[key, name] = data
    return values


class OldWindowsJourney(Journey):
    arch = "win32"

    def test_reset_of_the_network_restores_the_stock_sockets_of_windows_xp(self):
        self.pc.install("Brevanta.exe")
        self.pc.set_registry(r"HKCU\Software\Wine\AppDefaults\Brevanta.exe", "Version", "winxp")
        self.pc.write_settings(SETTINGS.replace("=1", "=0").replace("ResetNet=0", "ResetNet=1"))
        services = r"HKLM\SYSTEM\CurrentControlSet\Services"
        for key in "Winsock", "WinSock2":
            self.pc.set_registry(rf"{services}\{key}\Parameters", "Layered", "spy.dll")
        self.pc.start()
        panel = self.pc.form("frmMain", 60)
        panel.click("cmdFix")
        self.pc.box("Attempt to fix").answer(OK)
        wait(lambda: panel.text("txtStatus") == "" and any("renew all" in line for line in self.pc.trace()), "the end", 60)
        stock = export_values((ROOT / "resources/WinsockXP.reg").read_bytes().decode("utf-16"))
        found = {}
        for number, key in enumerate(("Winsock", "WinSock2")):
            self.pc.run(rf'regedit /e C:\export{number}.reg "HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Services\{key}"')
            found |= export_values((self.pc.drive / f"export{number}.reg").read_bytes().decode("utf-16"))
        self.assertGreater(len(stock), 50)
        self.assertEqual({name: found.get(name) for name in stock}, stock)
        self.assertFalse([name for name in found if name[1] == '"Layered"'])
        self.assertFalse((self.pc.folder / "WinsockXP.reg").exists())
