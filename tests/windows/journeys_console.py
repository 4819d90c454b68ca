"""The technician's console: its fifteen pages as they stand on the screen."""
from harness import Journey, wait


class ConsoleJourney(Journey):
    def pages(self, console):
        return [n for n in console.controls() if n.startswith("SideBar.1.") and n.count(".") == 2]

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
