"""The buttons for support and the technician's own ones: programs, downloads, addresses, tools; the client's data."""
import shutil

from harness import BUILD, OK, Journey, archive, wait
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
UseIBForSupportURL={internal}
{branding}
PreRemoteKillProc=,,Brevanta.exe,  ,quick.exe,
ShowCustomButton=1
[CustomButton]
ShowButton=1
{custom}
[EmailConfig]
UseInternalSMTP=1
[Install]
PromptForClientID=1
"""


class SupportJourney(Journey):
    presses = 0  # of the custom button

    def prepare(self, target="", kind="EXE", name="", internal=0, custom="", branding=""):
        if not (self.pc.folder / "Brevanta.exe").exists():
            self.pc.install("Brevanta.exe")
        self.pc.write_settings(SETTINGS.format(target=target, type=kind, name=name, internal=internal,
                                               custom=custom, branding=branding))

    def panel(self):
        return self.start_panel()[1]

    def count(self, name, number):
        wait(lambda: f"{name}={number}" in (self.pc.folder / "Usage.ini").read_text(), f"{name} to be counted")

    def press_custom(self, panel, **keys):
        """The custom button's keys are read at the click."""
        self.prepare(custom="\n".join(f"{key}={value}" for key, value in keys.items()))
        panel.click("cmdCustom")
        self.presses += 1
        self.count("CustomButton0", self.presses)
        panel.text("txtStatus")  # is answered once the keys were read

    def test_bundled_program_starts_when_stale_ones_are_gone(self):
        self.prepare(target="help me.exe")
        shutil.copy(BUILD / "gallery.exe", self.pc.folder / "old quick.exe")
        self.pc.start(program=r"C:\Brevanta\old quick.exe")
        self.pc.form("frmGallery")
        panel = self.panel()
        panel.click("cmdStartSupport")  # no such program yet: nothing is said, the click counts
        self.count("RemoteSupport", 1)
        self.pc.wait_gone("frmGallery")
        self.pc.stand_in("Brevanta/help me.exe")
        panel.click("cmdStartSupport")
        self.count("RemoteSupport", 2)
        wait(self.pc.started, "the program to run")
        self.assertEqual(self.pc.started(), [r'"C:\Brevanta\help me.exe" /quick'])
        self.assertIn("frmMain", self.pc.forms())  # though its own name stood among those to end

    def test_other_ways_to_the_client_than_the_configured_one(self):
        self.prepare(target="tool.exe")
        for place in "Brevanta/tool.exe", "windows/system32/msra.exe":
            self.pc.stand_in(place)
        for version in 7, 9:
            self.pc.stand_in(f"Program Files (x86)/Teamviewer/Version{version}/Teamviewer.exe")
        panel = self.panel()
        expected = []
        for branding, command in (
                ("", r"C:\Brevanta\tool.exe /quick"),
                ("RemoteUseMSRA=1", r"C:\windows\system32\msra.exe"),
                ("RemoteUseMSRA=1\nTeamviewerOverride=1",
                 r'"C:\Program Files (x86)\Teamviewer\Version9\Teamviewer.exe"')):
            self.prepare(target="tool.exe", branding=branding)
            expected.append(command)
            panel.click("cmdStartSupport")
            wait(lambda: len(self.pc.started()) == len(expected), f"{command}, there is {self.pc.started()}")
            self.count("RemoteSupport", len(expected))
        self.assertEqual(self.pc.started(), expected)

    def test_downloads_run_and_of_two_programs_the_newer(self):
        program = (BUILD / "standin.exe").read_bytes()
        addresses = {"/tool.exe": program}
        for newer in "ab":
            addresses[f"/{newer}.zip"] = archive({f"sub/{name}.exe": program for name in sorted("ab", key=newer.__eq__)})
        self.prepare(target="http://files.brevanta.example/a.zip", kind="Download", name="tool.zip")
        (self.pc.session / "hosts").write_text("127.0.0.1 localhost files.brevanta.example\n")
        (self.pc.folder / "RemoteDL").mkdir()
        (self.pc.folder / "RemoteDL/stale.exe").write_bytes(program)
        expected = [r"C:\Brevanta\RemoteDL\sub\a.exe /quick"]
        with HttpServer(addresses):
            panel = self.panel()
            panel.click("cmdStartSupport")
            self.count("RemoteSupport", 1)
            for address, name, command in (("tool.exe", "Tool.exe", r"C:\Brevanta\TOOL.EXE -x"),
                                           ("b.zip", "t.zip", r"C:\Brevanta\CustomDL\sub\b.exe -x")):
                self.press_custom(panel, Type="Download", ButtonAction="http://files.brevanta.example/" + address,
                                  DownloadName=name, CustomEXEParms="-x")
                expected.append(command)
                wait(lambda: len(self.pc.started()) == len(expected), f"{address} to run, now {self.pc.started()}")
        self.assertEqual(self.pc.started(), expected)
        self.assertFalse((self.pc.folder / "RemoteDL/stale.exe").exists())

    def test_custom_programs_by_names_of_the_environment_and_beside_the_panel(self):
        self.prepare()
        panel = self.panel()
        for place, action, command in (
                ("Program Files (x86)/My Tool/tool.exe", r"%PROGRAMFILES%\My Tool\Tool.exe",
                 r'"c:\program files (x86)\my tool\tool.exe"'),
                ("windows/tool.exe", r"%SystemRoot%\Tool.exe", r"c:\windows\tool.exe"),
                ("users/client/tool.exe", r"%userprofile%\tool.exe", r"c:\users\client\tool.exe"),
                ("My app/My app.exe", r"..\My app\My app.exe", r'"C:\Brevanta\\..\my app\my app.exe"')):
            self.pc.stand_in(place)
            started = len(self.pc.started())
            self.press_custom(panel, Type="EXE", ButtonAction=action, CustomEXEParms='/A "B c"')
            wait(lambda: len(self.pc.started()) > started, f"{action} to run")
            self.assertEqual(self.pc.started()[-1], command + ' /A "B c"')

    def test_tools_of_windows_and_the_print_queue(self):
        self.prepare()
        panel = self.panel()
        for kind, place, command in (("SR", "windows/system32/rstrui.exe", r"C:\windows\system32\rstrui.exe"),
                                     ("wu", "windows/system32/wuapp.exe", r"C:\windows\system32\wuapp.exe"),
                                     ("Safe", "Brevanta/Pelmark.exe", r"C:\Brevanta\Pelmark.exe")):
            self.press_custom(panel, Type=kind)  # without the tool nothing happens
            self.assertEqual((self.pc.started()[-1:] == [command], self.pc.boxes()), (False, []))
            self.pc.stand_in(place)
            self.press_custom(panel, Type=kind)
            wait(lambda: self.pc.started()[-1:] == [command], f"{kind} to start its tool")
        queue = self.pc.drive / "windows/system32/spool/PRINTERS"
        queue.mkdir(parents=True)
        (queue / "00001.SPL").write_text("stuck")
        self.press_custom(panel, Type="CPQ")
        box = self.pc.box("Print Queue Cleared!  You may now try to print again.", 60)
        self.pc.screenshot("print-queue-cleared")
        box.answer(OK)
        self.assertFalse(queue.exists())
        commands = [line.strip().split(":  ")[1] for line in self.pc.trace() if "ShellandWaitForTermination:  " in line]
        self.assertEqual(commands, ["cmd /c net stop spooler /y", "cmd /c net start spooler"])

    def test_addresses_are_opened_as_told_and_never_by_a_shell(self):
        self.prepare()
        self.pc.catch_addresses()
        (self.pc.folder / "page.htm").write_text("page")
        panel = self.panel()
        expected = []
        for action, opened in (
                ("http://a.example/a b?x=1&y='2';|echo $(touch x) `id`>C:\\evil",
                 "http://a.example/a%20b?x=1&y='2';%7Cecho%20$(touch%20x)%20%60id%60%3EC:%5Cevil"),
                ("http://a.example/" + "x" * 2000, "http://a.example/" + "x" * 237),  # settings end at 254 characters
                *((nothing, None) for nothing in
                  ("a.example/page", "javascript:alert(1)", "file:///C:/Brevanta/page.htm", "", "cmd /c echo x> C:\\evil",
                   '"C:\\windows\\system32\\cmd.exe" /c echo x> C:\\evil', "none.exe")),
                ("mailto:a@b.example?Subject=x y&body=<b>", "mailto:a@b.example?Subject=x%20y&body=%3Cb%3E"),
                ("www.a.example/page", "http://www.a.example/page")):
            self.press_custom(panel, Type="URL", ButtonAction=action, ShowCustomURLinIB=0)
            if opened:
                expected.append(opened)
                wait(lambda: len(self.pc.opened()) >= len(expected), f"{action[:60]} to be opened")
        self.assertEqual(self.pc.opened(), expected)
        self.assertFalse((self.pc.drive / "evil").exists() or (self.pc.folder / "x").exists())
        self.assertEqual((self.pc.boxes(), self.pc.forms()), ([], ["frmMain"]))

    def test_what_the_internal_browser_cannot_show_goes_to_the_systems(self):
        self.prepare(target="http://a.example/?id=[ClientID]", kind="URL", internal=1)
        self.pc.catch_addresses()
        self.pc.set_registry(r"HKLM\Software\Brevanta", "ClientID", "Home 42", view=64)
        panel = self.panel()
        panel.click("cmdStartSupport")
        self.count("RemoteSupport", 1)  # so the caller went on
        wait(self.pc.opened, "the address to be opened")
        self.assertEqual(self.pc.opened(), ["http://a.example/?id=Home%2042"])
        self.assertEqual(self.pc.forms(), ["frmMain"])

    def test_download_shows_its_progress_and_cancel_leaves_nothing(self):
        body = b"MZ" + bytes(400000)
        slow = Reply(body, chunk=20000, delay=0.2)
        self.prepare(target="http://files.brevanta.example/s.exe", kind="Download", name="s.exe")
        (self.pc.session / "hosts").write_text("127.0.0.1 localhost files.brevanta.example\n")
        with HttpServer({"/s.exe": slow}) as server:
            panel = self.panel()
            panel.click("cmdStartSupport")
            window = self.pc.form("frmDownload", 30)
            wait(lambda: window.text("lblReceived").startswith(("1", "2", "3")), "some kilobytes", 30)
            self.assertEqual(window.text("lblTotal"), "390.63Kb")
            self.pc.screenshot("download-half-way")
            panel.click("cmdStartSupport")  # the second of a double click starts no second download
            self.count("RemoteSupport", 1)
            window.click("cmdCancel")
            self.pc.wait_gone("frmDownload", 30)
            self.count("RemoteSupport", 2)
            self.assertEqual(len(server.requests), 1)
        self.assertFalse((self.pc.folder / "s.exe").exists())
        self.assertEqual(self.pc.boxes(), [])


class FirstStartJourney(Journey):
    def test_settings_of_garbage_and_a_logo_that_is_none(self):
        self.pc.install("Brevanta.exe")
        for garbage in (bytes(range(256)) * 40, b"\xef\xbb\xbf[Branding]\r\nAppName=X", b"no section", b"[" * 10_000_000):
            (self.pc.folder / "Brevanta.ini").write_bytes(garbage)
            (self.pc.folder / "supportlogo.png").write_bytes(garbage[:5000])
            (self.pc.folder / "AltLang.INI").write_bytes(garbage[:5000])
            program, panel = self.start_panel()
            panel.close()
            program.wait(30)
