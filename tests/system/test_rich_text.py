#!/usr/bin/python3
"""Rich text between the store, old releases and other programs."""

import plistlib
import time
from pathlib import Path

from clipboard_reader import ClipboardReader
from harness import SystemTest, main
from panel_menu import PanelMenu
from pictures import png
from stores import read_store, reminder, write_root

ARCHIVES = Path(__file__).resolve().parents[1] / "data/archives"
RTF = rb"{\rtf1\ansi{\fonttbl\f0 Helvetica;}\f0\fs24 caf\'e9 {\b bold}}"
NULL = "We have our representation of null RTF data"


class Copy(SystemTest):
    SESSION = {"tray": "status-notifier"}

    def setUp(self):
        super().setUp()
        self.session.start_application()
        self.menu = PanelMenu(self.session)
        self.clipboard = ClipboardReader(self.session.environment["DISPLAY"])
        self.addCleanup(self.clipboard.close)

    def add_file(self, name, contents):
        path = self.session.folder / name
        path.write_bytes(contents)
        return self.run_command("add", "--rich", str(path), "--in", "2 Hours").strip()

    def test_a_rich_text_is_copied_in_the_forms_that_other_programs_read(self):
        self.add_file("text.rtf", RTF)
        self.menu.choose("caf\xe9 bold", "Copy")
        self.wait_for(lambda: "text/html" in self.clipboard.types(), "the copy")
        self.assertIn("bold</span>", self.clipboard.read("text/html").decode())
        self.assertTrue(self.clipboard.read("text/rtf").startswith(b"{\\rtf1"))
        self.assertEqual(self.clipboard.read("text/rtf"), self.clipboard.read("application/rtf"))
        self.assertTrue(self.clipboard.read("text/rtfd").startswith(b"rtfd\0\0\0\0"))
        self.assertEqual(self.clipboard.read("UTF8_STRING").decode(), "caf\xe9 bold")
        self.copied_again("text/html", "text/rtf", "text/rtfd")

    def copied_again(self, *types):
        """What was copied is the same text when it comes back."""
        runs = self.session.json("show", "1")["richText"]
        for each in types:
            uuid = self.add_file("back", self.clipboard.read(each))
            self.assertEqual(self.session.json("show", uuid)["richText"], runs, each)
            self.run_command("delete", uuid)

    def test_pictures_are_copied_with_the_text(self):
        contents = png(40, 20, (9, 8, 7))
        self.add_file("dot.png", contents)
        self.menu.choose("\ufffc", "Copy")
        self.wait_for(lambda: "text/html" in self.clipboard.types(), "the copy")
        self.assertIn(b"data:image/png;base64,", self.clipboard.read("text/html"))
        self.assertIn(contents.hex().encode(),
                      self.clipboard.read("text/rtf").replace(b"\n", b""))
        self.assertIn(contents, self.clipboard.read("text/rtfd"))

    def test_a_plain_text_leaves_the_clipboard_as_it_is(self):
        self.add("plain", "--in", "1 Hour")
        self.add_file("text.rtf", RTF)
        self.menu.choose("caf\xe9 bold", "Copy")
        self.wait_for(lambda: "text/html" in self.clipboard.types(), "the copy")
        self.menu.choose("plain", "Copy")
        self.run_command("list")  # answered after the click
        self.assertEqual(self.clipboard.read("UTF8_STRING").decode(), "caf\xe9 bold")


class OldReleases(SystemTest):
    SESSION = {"tray": "status-notifier"}

    def start_with(self, archives):
        reminders = [reminder(f"r{i}", time.time() + 86400 * (i + 1), reminderRTFs=archive)
                     for i, archive in enumerate(archives)]
        write_root(self.session, {key: [each[key] for each in reminders] for key in reminders[0]})
        self.session.start_application()

    def logged(self):
        return [line.removeprefix("tockwise: ") for line in self.session.log().splitlines()
                if line.startswith("tockwise: ")]

    def test_old_archives_become_keyed_ones_once(self):
        old = [(ARCHIVES / f"typedstream-synthetic/ts_synth_textstorage_{order}.bin").read_bytes()
               for order in ("le", "be")]
        self.start_with([old[0], b"", old[1]])
        self.assertEqual(self.logged(), [NULL])
        for which in ("1", "3"):
            runs = self.session.json("show", which)["richText"]
            self.assertTrue("".join(run["text"] for run in runs).startswith("Plain bold link"))
            self.assertEqual(runs[1]["attributes"], {"font": "Helvetica-Bold", "size": 13.5,
                                                     "color": "#ff0040", "underline": 1})
        self.assertEqual(self.session.quit_application(), 0)
        root = read_store(self.session)
        self.assertIn("dataVersion", root)
        for stored in (root["reminderRTFs"][0], root["reminderRTFs"][2]):
            archive = plistlib.loads(stored)
            text = archive["$objects"][archive["$top"]["root"].data]
            self.assertEqual(archive["$objects"][text["$class"].data]["$classname"],
                             "NSTextStorage")
        (kept,) = self.session.backups.iterdir()
        with open(kept, "rb") as file:
            self.assertEqual(plistlib.load(file)["reminderRTFs"], [old[0], b"", old[1]])
        before = self.session.store.read_bytes()
        self.session.start_application()
        self.assertEqual(self.session.quit_application(), 0)
        self.assertEqual(self.logged(), [NULL])
        self.assertEqual(self.session.store.read_bytes(), before)

    def test_an_element_that_is_no_data_leaves_every_text_as_it_was(self):
        old = (ARCHIVES / "typedstream-synthetic/ts_synth_textstorage_le.bin").read_bytes()
        self.start_with([old, "no data", old])
        self.assertIn("Uh Oh - unarchiveObjectWithData - there was a problem converting the RTF "
                      "data! Index: 1", self.logged())
        self.assertEqual(self.session.quit_application(), 0)
        root = read_store(self.session)
        self.assertIn("dataVersion", root)
        self.assertEqual((root["reminderRTFs"][0], root["reminderRTFs"][2]), (old, old))


if __name__ == "__main__":
    main()
