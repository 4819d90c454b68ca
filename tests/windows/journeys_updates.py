"""What keeps panels current: the cloud area, the web address of a settings set, the program's own update."""
import random
import struct

from harness import OUT, Journey, archive
from loopback import FtpServer, HttpServer, Reply

CLOUD = """
[Branding]
AppName=Old Name
UseNewInterface=0
[General]
LastMaintenance=11/01/2026 9:00:00 AM
[Nimbra]
UserName=tech
Password=<C'Vc6W-ES~>
UpdateAtLaunch=1
[ScheduledTasks]
UpdateConfigLoc={address}
"""


NEW_SET = archive({"brevanta.ini": "[Branding]\r\nAppName=New Name\r\nUseNewInterface=1\r\n"
                               "[Nimbra]\r\nUserName=tech\r\nPassword=<C'Vc6W-ES~>\r\n"})


def with_version(program, version):
    """The program with other numbers in its version resource."""
    data = bytearray(program)
    at = data.find(struct.pack("<I", 0xFEEF04BD))
    struct.pack_into("<II", data, at + 8, version[0] << 16 | version[1] & 0xFFFF, version[2] << 16)
    for offset in (8, 16):
        struct.pack_into("<HHHH", data, at + offset, version[1], version[0], 0, version[2])
    return bytes(data)


class UpdatesJourney(Journey):
    def write(self, user="tech", address=""):
        text = CLOUD.format(address=address)
        self.pc.write_settings(text if user else text.replace("UserName=tech", "UserName="))

    def settings(self):
        return (self.pc.folder / "Brevanta.ini").read_text("cp1252")

    def test_an_ftp_server_that_goes_wrong_costs_neither_settings_nor_counters(self):
        area = self.pc.session / "area"
        self.pc.install("Brevanta.exe")
        (self.pc.folder / "App.cfg").write_text("mine")
        new_set = archive({"brevanta.ini": "[Branding]\r\nAppName=New Name\r\n", "App.cfg": random.Random(1).randbytes(300000)})
        unix = b"-rw-r--r--   1 owner    group    %d Jan 01 2026 Brevanta?Config.zip\r\n" % len(new_set)
        rows = {"wrong password": dict(password="other"), "no folder": {}, "cut": dict(cut=100000),
                "lies about its address": dict(address="10.255.255.1"),
                "foreign listing": dict(listing=b"4096 directory 12:01\r\n\xff\xfe no listing\r\n-rw-r--r-- x.zip\r\n"),
                "listing of another file": dict(listing=unix), "empty listing": dict(listing=b"")}
        for name, faults in rows.items():
            folder = area / name.replace(" ", "_")
            folder.mkdir(parents=True)
            if name != "no folder":
                (folder / "Brevanta").mkdir()
                (folder / "Brevanta/BrevantaConfig.zip").write_bytes(new_set)
            self.write()
            with FtpServer(folder, **faults) as server:
                self.pc.start("/updateconfig").wait(30)
                self.assertEqual("RETR BrevantaConfig.zip" in server.commands, name == "cut", (name, server.commands))
            self.assertIn("AppName=Old Name", self.settings(), name)
            self.assertIn("LastMaintenance=11/01/2026 9:00:00 AM", self.settings(), name)
            self.assertEqual((self.pc.folder / "App.cfg").read_text(), "mine", name)
            self.assertFalse((self.pc.folder / "BrevantaConfig.zip").exists(), name)
        usage = "[Usage]\r\nAppLaunch=7\r\n" + "".join(f"Button{i}={i:0200}\r\n" for i in range(1500))
        for name, faults in {"may not be written": dict(rights="elr"), "cut upload": dict(cut=100000)}.items():
            self.write()
            (self.pc.folder / "Usage.ini").write_text(usage)
            with FtpServer(area / "uploads", **faults) as server:
                program = self.pc.start()
                self.pc.form("frmMain", 60).close()
                program.wait(60)
            self.assertTrue(any(c.startswith("STOR ") for c in server.commands), (name, server.commands))
            self.assertIn("AppLaunch=8", (self.pc.folder / "Usage.ini").read_text(), name)

    def test_scheduled_set_from_the_web_and_a_hostile_one(self):
        self.pc.install("Brevanta.exe")
        cases = [(NEW_SET, "New Name"), (NEW_SET[:-30], "Old Name"), (b"no zip", "Old Name"),
                 (archive({"../evil.ini": "x", "brevanta.ini": "[A]\r\nb=c"}), "Old Name"),
                 (archive({"brevanta.ini": "\0\0garbage"}), "Old Name"),
                 (archive({"supportlogo.png": "x"}), "Old Name")]
        for body, name in cases:
            self.write(user="", address="http://update.brevanta.example/set.zip")
            with HttpServer({"/set.zip": body}):
                self.pc.start("/updateconfig").wait(60)
            self.assertIn(f"AppName={name}", self.settings())
            self.assertIn("LastMaintenance=11/01/2026 9:00:00 AM", self.settings())
            self.assertFalse((self.pc.drive / "evil.ini").exists())

    def update(self, files, version="9.0.0"):
        manifest = archive({"TalvenmoorUpdates.ini": f"[Brevanta]\r\nCurrentVersion={version}\r\n"})
        with HttpServer({"/TalvenmoorUpdates.zip": manifest, "/BrevantaEXE.zip": files}):
            self.pc.start("/updateonly").wait(90)

    def test_update_swaps_sound_programs_and_refuses_others(self):
        self.pc.install("Brevanta.exe", "Pelmark.exe", "BrevantaMCStub.exe")
        self.pc.write_settings("[Branding]\nAppName=Old Name")
        old = (OUT / "Brevanta.exe").read_bytes()
        newer, older = with_version(old, (9, 0, 0)), with_version(old, (1, 0, 0))
        whole = archive({"Brevanta.exe": newer, "Pelmark.exe": b"MZ new", "BrevantaMCStub.exe": b"MZ new"})
        refused = [archive({"Brevanta.exe": b"a text"}), archive({"Pelmark.exe": b"MZ new"}), whole[:-100],
                   archive({"Brevanta.exe": older}), archive({"Brevanta.exe": newer, "../x": "x"})]
        for body in refused:
            self.update(body)
            self.assertEqual((self.pc.folder / "Brevanta.exe").read_bytes(), old)
            self.assertEqual((self.pc.folder / "Pelmark.exe").read_bytes(), (OUT / "Pelmark.exe").read_bytes())
        self.update(whole, "4.0.0")
        self.assertEqual((self.pc.folder / "Brevanta.exe").read_bytes(), old)
        self.update(whole)
        self.assertEqual((self.pc.folder / "Brevanta.exe").read_bytes(), newer)
        self.assertEqual((self.pc.folder / "Pelmark.exe").read_bytes(), b"MZ new")
        self.pc.start()
        self.pc.form("frmMain", 60)

    def test_a_cut_off_swap_is_put_right_by_the_copy_that_was_moved_aside(self):
        self.pc.install("Brevanta.exe", "Pelmark.exe", "BrevantaMCStub.exe")
        for name in ("Brevanta", "Pelmark", "BrevantaMCStub"):
            (self.pc.folder / f"{name}.exe").rename(self.pc.folder / f"{name}_old.exe")
        self.pc.start("", r"C:\Brevanta\Brevanta_old.exe").wait(30)
        for name in ("Brevanta", "Pelmark", "BrevantaMCStub"):
            self.assertEqual((self.pc.folder / f"{name}.exe").read_bytes(), (OUT / f"{name}.exe").read_bytes())
