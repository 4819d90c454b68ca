"""The technician's console: its fifteen pages as they stand on the screen."""
from harness import OK, Journey, wait


class ConsoleJourney(Journey):
    def pages(self, console):
        return [n for n in console.controls() if n.startswith("SideBar.1.") and n.count(".") == 2]

    def start_console(self):
        self.pc.start("/config")
        console = self.pc.form("frmConfig", 60)
        wait(lambda: "SideBar.1.15" in console.controls(), "the sidebar")
        return console

    def test_half_a_set_goes_to_nobody(self):
        self.pc.install("Brevanta.exe")
        (self.pc.folder / "App.cfg").write_text("[Config]\r\nApp=x.exe\r\n")
        self.pc.stand_in("driver/holder.exe")
        self.pc.start(r"/hold C:\Brevanta\App.cfg", r"C:\driver\holder.exe")
        wait(lambda: self.pc.run(r"cmd /c type C:\Brevanta\App.cfg")[0], "the file to be held")
        console = self.start_console()
        console.click("SideBar.2.1")
        self.pc.box("Your config could not be packed whole.", 30).answer(OK)
        self.assertEqual(list(self.pc.drive.rglob("BrevantaConfig.zip")), [])
        self.assertFalse((self.pc.folder / "ConfigUpload").exists())

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
