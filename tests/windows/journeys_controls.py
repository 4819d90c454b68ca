"""The form host on the gallery program: names, keyboard, pages, sizes, modal forms."""
import shutil

from harness import BUILD, ROOT, Journey, wait

# By Tab from the sidebar on; a combo that can be typed into has the focus in a box of its own without a name.
TAB_ORDER = ["SideBar.1", "SideBar.1.1", "SideBar.1.2", "SideBar.2", "SideBar.2.1", "SideBar.2.2", "SideBar.2.3",
             "SideBar.3", "lblLink", "chkReport", "txtName", "txtPassword", None, "comboFixed", "optB", "txtBody",
             "ListView1", "List1", "cmdScale", "cmdAsk", "cmdPage", "cmdOk", "cmdCancel"]


class ControlsJourney(Journey):
    def setUp(self):
        super().setUp()
        shutil.copy(BUILD / "gallery.exe", self.pc.folder)
        shutil.copy(ROOT / "resources/demo/supportlogo.png", self.pc.folder)
        self.program = self.pc.start(program=r"C:\Brevanta\gallery.exe")
        self.form = self.pc.form("frmGallery")
        self.focused("SideBar.1")

    def focused(self, name):
        wait(lambda: self.form.focus() == name, f"the focus on {name}, it is on {self.form.focus()}")

    def press(self, key, focus):
        self.form.key(key)
        self.focused(focus)

    def status(self, text):
        self.form.wait_text("txtStatus", text)

    def place(self, control):
        return self.form.control(control)["rect"]

    def visible(self, control):
        return self.form.controls().get(control, {}).get("visible", False)

    def test_tab_reaches_everything_in_the_tables_order(self):
        for before, after in zip(TAB_ORDER, TAB_ORDER[1:] + TAB_ORDER[:1]):
            self.form.key("Tab")
            wait(lambda: self.form.focus() == after, f"Tab from {before} to {after}")
        self.press("Shift+Tab", "cmdCancel")

    def test_labels_stand_before_their_boxes_and_say_their_text(self):
        names = list(self.form.controls())
        for label, box in ("lblName", "txtName"), ("lblPassword", "txtPassword"), ("lblDay", "comboDay"):
            self.assertEqual(names.index(label) + 1, names.index(box))
        self.assertEqual(self.form.text("lblHDD"), "118.2 GB free of 465.7 GB")
        self.assertEqual(self.form.control("lblHDD")["class"], "Static")

    def test_access_keys_enter_and_escape(self):
        self.press("Alt+N", "txtName")
        self.form.key("Enter")
        self.status("OK: Jane Example")
        self.press("Alt+W", "txtBody")
        self.form.key("Enter")  # a new line, since this box takes several
        wait(lambda: self.form.text("txtBody").startswith("\r\n"), "a line break")
        self.press("Tab", "ListView1")
        self.form.key("Escape")
        self.assertEqual(self.program.wait(), 0)

    def test_arrows_choose_among_options(self):
        self.press("Alt+S", "optB")
        self.press("Down", "optA")
        self.assertTrue(self.form.checked("optA") and not self.form.checked("optB"))
        self.assertTrue(self.form.control("optA")["tabStop"] and not self.form.control("optB")["tabStop"])
        self.press("Up", "optB")

    def test_sidebar_by_keyboard(self):
        self.press("Down", "SideBar.1.1")
        self.form.key("Enter")
        self.status("Item 1.1")
        self.press("Down", "SideBar.1.2")
        self.form.key("Space")
        self.status("Item 1.2")
        self.press("Down", "SideBar.2")
        self.form.key("Left")
        wait(lambda: not self.visible("SideBar.2.1"), "the group to collapse")
        self.press("Down", "SideBar.3")
        self.form.click("SideBar.2")
        wait(lambda: self.visible("SideBar.2.1"), "the group to expand")

    def test_link_by_keyboard_and_pointer(self):
        self.press("Shift+Tab", "cmdCancel")
        for _ in TAB_ORDER[TAB_ORDER.index("lblLink"):-1]:
            self.form.key("Shift+Tab")
        self.focused("lblLink")
        self.form.key("Enter")
        self.status("Link")
        self.form.click("cmdOk")
        self.status("OK")
        self.form.click("lblLink")
        self.status("Link")

    def test_page_hides_what_lies_beneath_it(self):
        self.form.click("cmdPage")
        wait(lambda: self.visible("lblPage"), "the page")
        self.assertFalse(self.visible("txtName"))
        self.assertFalse(self.visible("chkReport"))
        self.assertTrue(self.visible("SideBar") and self.visible("cmdOk"))
        self.status("failed")  # nothing answers at the address that the browser is sent to
        self.form.click("lblBack")
        wait(lambda: self.visible("txtName"), "the page to go")
        self.assertFalse(self.visible("lblPage"))

    def test_controls_follow_the_edges(self):
        left, top, right, bottom = self.place("ListView1")
        x, y, x2, y2 = self.place("cmdOk")
        client = self.place("SideBar")
        window = self.form.control("")["rect"]
        self.form.resize(0, 0, window[2] - window[0] + 100, window[3] - window[1] + 60)
        wait(lambda: self.place("cmdOk") == [x + 100, y + 60, x2 + 100, y2 + 60], "the button to follow")
        self.assertEqual(self.place("ListView1"), [left, top, right + 100, bottom + 60])
        self.assertEqual(self.place("SideBar"), client[:3] + [client[3] + 60])
        self.form.resize(0, 0, 100, 100)  # not below the design
        wait(lambda: self.place("cmdOk") == [x, y, x2, y2], "the button to come back")

    def test_another_resolution_scales_everything(self):
        before = {name: self.place(name) for name in ("cmdOk", "frameHealth", "lblAV", "txtName")}
        self.form.click("cmdScale")
        for name, place in before.items():
            wait(lambda: all(abs(now - then * 3 / 2) <= 1 for now, then in zip(self.place(name), place)),
                 f"{name} at one and a half times {place}, it is at {self.place(name)}")
        self.form.click("cmdScale")
        wait(lambda: before == {name: self.place(name) for name in before}, "everything back")

    def test_modal_form_blocks_its_owner(self):
        self.form.click("cmdAsk")
        question = self.pc.form("frmInputBox")
        wait(lambda: question.focus() == "txtAnswer", "the box to have the focus")
        self.assertFalse(self.form.control("")["enabled"])
        question.type("txtAnswer", "Zoë")
        question.key("Enter")
        self.status("Answer: Zoë")
        self.pc.wait_gone("frmInputBox")
        self.assertTrue(self.form.control("")["enabled"])
        self.focused("cmdAsk")
        self.form.click("cmdAsk")
        self.pc.form("frmInputBox").key("Escape")
        wait(lambda: self.form.text("txtStatus") == "Answer: ", "no answer")
