"""The technician's hour: from an empty folder to a branded set that starts another panel."""
import zipfile

from harness import OK, Journey, wait


class ConsoleJourney(Journey):
    def pages(self, console):
        return [n for n in console.controls() if n.startswith("SideBar.1.") and n.count(".") == 2]

    def test_brand_add_an_app_zip_and_start_a_panel_from_the_set(self):
        self.pc.install("Brevanta.exe")
        console = self.start_console()
        console.type("txtAppName", "Harbour PC Care")
        console.type("txtPhone", "555-0142")
        console.click("SideBar.1.2")
        console.wait_shown("chkNewInterface")
        console.check("chkNewInterface")
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
        console.click("SideBar.2.1")
        self.pc.box("Your config is saved to your desktop.", 30).answer(OK)
        archive = next(self.pc.drive.rglob("BrevantaConfig.zip"))
        with zipfile.ZipFile(archive) as config:
            self.assertIsNone(config.testzip())
            self.assertEqual(sorted(config.namelist()), ["brevanta.ini", "first.cfg", "second.cfg", "sortorder.cfg"])
            other = self.pc.drive / "Other"
            other.mkdir()
            config.extractall(other)
        self.assertEqual((other / "sortorder.cfg").read_text().strip(), "First|Second|")
        (other / "Brevanta.exe").write_bytes((self.pc.folder / "Brevanta.exe").read_bytes())
        self.pc.start("", r"C:\Other\Brevanta.exe")
        panel = self.pc.form("frmMainNew", 60)
        self.assertTrue(panel.title().startswith("Harbour PC Care"))
        self.assertEqual(panel.text("lblPhone"), "555-0142")

    def start_console(self):
        self.pc.start("/config")
        console = self.pc.form("frmConfig", 60)
        wait(lambda: "SideBar.1.15" in console.controls(), "the sidebar")
        return console

    def test_every_page_shows_its_controls_inside_the_window(self):
        self.pc.install("Brevanta.exe")
        console = self.start_console()
        pages = self.pages(console)
        self.assertEqual(len(pages), 15)
        width = max(c["rect"][2] for c in console.controls().values())
        for number, item in enumerate(pages, 1):
            shown = {n for n, c in console.controls().items() if c["visible"]}
            console.click(item)
            if number > 1:
                wait(lambda: {n for n, c in console.controls().items() if c["visible"]} != shown, item)
            self.pc.screenshot(f"console-{number:02}")
            for name, control in console.controls().items():
                if control["visible"] and not name.startswith("SideBar") and control["tabStop"]:
                    left, top, right, bottom = control["rect"]
                    self.assertLessEqual(right, width, name)
                    self.assertGreater(bottom - top, 10, name)
