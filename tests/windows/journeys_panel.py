"""The client's window: first start with nothing beside the program, both faces, the external address, bad answers."""
import shutil
import time

from harness import CANCEL, OK, ROOT, Journey, wait
from loopback import HttpServer, Reply

UNMEASURED = "---"


class PanelJourney(Journey):
    def setUp(self):
        super().setUp()
        self.pc.install("Brevanta.exe")

    def test_first_start_with_nothing_beside_the_program(self):
        program, panel = self.start_panel()
        self.assertEqual(panel.title(), "Talvenmoor  -  Support Control Panel")
        self.assertEqual(panel.text("lblPhone"), "555-555-5555")
        self.assertEqual(panel.text("lblInternet"), "Disconnected")
        self.assertEqual(panel.text("lblExtIP"), UNMEASURED)
        for item in ("lblHDD", "lblRAM", "lblOS", "lblAV", "lblFirewall", "lblAutoUpdates", "lblSystemRestore"):
            self.assertNotIn(panel.text(item), ("", UNMEASURED), item)
        self.assertFalse(panel.control("cmdCustom")["visible"])
        self.assertFalse((self.pc.folder / "GetExternalIP.exe").exists())
        panel.click("cmdClose")
        self.assertEqual(program.wait(), 0)
        self.assertIn("AppLaunch=1", (self.pc.folder / "Usage.ini").read_text())

    def test_branded_new_face(self):
        for file in (ROOT / "resources/demo").glob("*"):
            shutil.copy(file, self.pc.folder)
        program, panel = self.start_panel("frmMainNew")
        self.assertEqual(panel.title(), "Harbour PC Care  -  Support Control Panel    v4.2")
        self.assertTrue(panel.control("AlphaImgCtl1")["visible"])
        panel.click("SideBar.2.1")
        panel.wait_shown("cmdSaveRP")
        panel.type("txtRPName(1)", "Nightly")
        panel.click("cmdSaveRP")
        self.pc.box("Schedule Saved!").answer(OK)
        wait(lambda: not panel.control("picSRP")["visible"], "the page to go")
        self.assertIn("Name=Nightly", (self.pc.folder / "Brevanta.ini").read_text())
        panel.click("SideBar.2.3")
        self.pc.box().answer(CANCEL)
        self.assertIn("Fix=1", (self.pc.folder / "Usage.ini").read_text())
        panel.close()
        self.assertEqual(program.wait(), 0)

    def test_two_hundred_clicks_leave_nothing_behind(self):
        for file in (ROOT / "resources/demo").glob("*"):
            shutil.copy(file, self.pc.folder)
        program, panel = self.start_panel("frmMainNew")
        ways = [lambda: panel.click("SideBar.1"), lambda: panel.click("SideBar.1"),  # a group closes and opens
                lambda: panel.click("SideBar.2.1"), lambda: panel.click("Label12"),  # a page comes and goes
                lambda: (panel.click("AlphaImgCtl1"), self.pc.box("Go to website").answer(CANCEL)),
                lambda: (panel.click("SideBar.2.2"), self.pc.box().answer(CANCEL)),
                lambda: (panel.click("SideBar.2.3"), self.pc.box().answer(CANCEL))]
        expected = ["SideBar.1.1", "SideBar.1.1", "cmdSaveRP", "cmdSaveRP"]

        def go(clicks):
            for number in range(clicks):
                step = number % len(ways)
                shown = step < len(expected) and panel.control(expected[step])["visible"]
                ways[step]()
                if step < len(expected):
                    wait(lambda: panel.control(expected[step])["visible"] != shown, f"click {number} to show")

        # What is made once (a library loaded late, the stack of a thread that ended) may come in any of the rounds;
        # what is left behind by each click grows in every one of them.
        go(28)
        held = [program.held()]
        for _ in range(3):
            go(70)
            held.append(program.held())
        print("handles, windows, private KB:", *held)
        grown = [min(new - old for old, new in zip(row, row[1:])) for row in zip(*held)]
        for what, limit, least in zip(("handles", "windows", "KB"), (1, 0, 200), grown):
            self.assertLessEqual(least, limit, f"{what}: {held}")
        self.assertTrue(all(all(row) for row in held), held)
        self.assertIn("Fix=34", (self.pc.folder / "Usage.ini").read_text())

    def test_external_address(self):
        login_page = Reply(b"<html>Welcome to the hotel</html>")
        for answer, shown in ((b"203.0.113.7\n", "203.0.113.7"), (login_page, "Unknown"), (Reply(status=302,
                              headers={"Location": "http://elsewhere.example/"}), "Unknown")):
            with HttpServer({"/": b"there", "/IPCheck.php": answer}) as server:
                self.pc.write_settings("[Branding]\nShowPreRemoteURL=0\n")
                program, panel = self.start_panel()
                self.assertEqual(panel.text("lblInternet"), "Connected")
                panel.wait_text("lblExtIP", shown)
                self.assertEqual([path for _, path, _ in server.requests if path != "/"], ["/IPCheck.php"])
                wait(lambda: sorted(file.name for file in self.pc.folder.iterdir())
                     == ["Brevanta.exe", "Brevanta.ini", "Usage.ini"], "the companion's files to go")
                panel.click("cmdClose")
                self.assertEqual(program.wait(), 0)

    def test_server_that_never_answers(self):
        with HttpServer({"/IPCheck.php": Reply(b"203.0.113.7", chunk=1, delay=10)}):
            begin = time.monotonic()
            self.pc.install("GetExternalIP.exe")
            program = self.pc.start(program=r"C:\Brevanta\GetExternalIP.exe")
            self.assertEqual(program.wait(60), 0)
            self.assertLess(time.monotonic() - begin, 30)
        answer = (self.pc.folder / "External.IP").read_text()
        self.assertIn("External=Unknown", answer)
        self.assertEqual(sorted(file.name for file in self.pc.folder.iterdir()), ["Brevanta.exe", "External.IP", "GetExternalIP.exe"])
