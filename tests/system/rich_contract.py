"""What the command line promises of rich text in every state of the application: a mix-in of
tests."""

import base64
import json
import plistlib
import struct

from pictures import png

PAGE = """<!DOCTYPE html><title>No text</title><script>alert("no text")</script>
<p>Tea for <b>two</b> and <i>one</i> <a href="https://example.org/?a=1&amp;b=2">more</a>
<img src="file:///etc/passwd"><img src="data:image/png;base64,%s"></p>"""
RTF = rb"{\rtf1\ansi{\fonttbl\f0 Helvetica;}\f0\fs24 caf\'e9 {\b bold}\par}"


def title_of(menu):
    """The titles of the reminders, plain and rich."""
    (found,) = [item for item in menu if item["action"] == "showReminder"]
    return found["title"], found["richTitle"]


class RichContract:
    def file(self, name, contents):
        """The path of a new file."""
        path = self.session.folder / name
        path.write_bytes(contents if isinstance(contents, bytes) else contents.encode())
        return str(path)

    def add_file(self, name, contents, *options):
        """Adds a reminder from a file; returns what "show" tells."""
        uuid = self.run_command("add", "--rich", self.file(name, contents), "--at",
                                "2031-03-04 09:05", *options).strip()
        return self.session.json("show", uuid)

    def test_a_page_becomes_rich_text(self):
        picture = base64.b64encode(png(570, 100, (1, 2, 3))).decode()
        shown = self.add_file("page.html", PAGE % picture)
        self.assertEqual(shown["reminderDescriptions"], "Tea for two and one more \ufffc")
        runs = {run["text"]: run["attributes"] for run in shown["richText"]}
        self.assertEqual("".join(run["text"] for run in shown["richText"]),
                         shown["reminderDescriptions"])
        self.assertEqual(runs["two"]["font"], "Helvetica-Bold")
        self.assertEqual(runs["one"]["font"], "Helvetica-Oblique")
        self.assertEqual(runs["more"], {"link": "https://example.org/?a=1&b=2"})
        picture = runs["\ufffc"]["attachment"]
        self.assertGreater(picture.pop("bytes"), 0)
        self.assertEqual(picture, {"name": "image.jpg", "width": 285, "height": 50})

    def test_what_is_stored_is_an_archived_text_storage(self):
        stored = base64.b64decode(self.add_file("text.rtf", RTF)["reminderRTFs"])
        archive = plistlib.loads(stored)
        self.assertEqual(archive["$archiver"], "NSKeyedArchiver")
        root = archive["$objects"][archive["$top"]["root"].data]
        self.assertEqual(archive["$objects"][root["$class"].data]["$classname"], "NSTextStorage")

    def test_a_picture_becomes_a_text(self):
        shown = self.add_file("dot.png", png(285, 2, (1, 2, 3)))
        self.assertEqual(shown["reminderDescriptions"], "\ufffc")
        self.assertEqual(shown["richText"][0]["attributes"]["attachment"]["name"], "dot.png")

    def test_the_text_of_a_file_goes_before_another(self):
        uuid = self.run_command("add", "Tea", "--rich", self.file("text.rtf", RTF), "--in",
                                "1 Hour").strip()
        self.assertEqual(self.session.json("show", uuid)["reminderDescriptions"], "caf\xe9 bold\n")

    def test_edit_replaces_the_text_and_its_format(self):
        uuid = self.add("Tea", "--at", "2031-03-04 09:05")
        self.run_command("edit", uuid, "--rich", self.file("text.rtf", RTF))
        shown = self.session.json("show", uuid)
        self.assertEqual(shown["reminderDescriptions"], "caf\xe9 bold\n")
        self.assertEqual([run["text"] for run in shown["richText"]], ["caf\xe9 ", "bold", "\n"])
        self.run_command("edit", uuid, "--email")
        self.assertEqual(self.session.json("show", uuid)["richText"], shown["richText"])
        self.run_command("edit", uuid, "--text", "Coffee")
        shown = self.session.json("show", uuid)
        self.assertEqual((shown["reminderDescriptions"], shown["richText"]), ("Coffee", None))

    def test_the_menu_shows_fifty_characters_of_a_rich_text(self):
        self.add_file("long.html", "<p>" + "<b>0123456789</b>abcdefghij" * 3 + "</p>")
        title, rich = title_of(self.session.json("menu"))
        start = "0123456789abcdefghij" * 2 + "0123456789"
        self.assertEqual(title, start + "...")
        self.assertEqual("".join(run["text"] for run in rich), start + "\u2026")
        self.assertEqual(rich[0]["attributes"]["font"], "Helvetica-Bold")
        self.assertEqual(rich[-1], {"text": "\u2026", "attributes": {}})
        self.run_command("prefs", "set", "truncateReminders", "NO")
        title, rich = title_of(self.session.json("menu"))
        self.assertEqual(title, "0123456789abcdefghij" * 3)
        self.assertEqual("".join(run["text"] for run in rich), title)
        self.run_command("prefs", "set", "showRichText", "NO")
        self.assertEqual(title_of(self.session.json("menu")), (title, None))

    def test_files_that_hold_no_rich_text_are_refused(self):
        whole = png(40, 40, (1, 2, 3))
        sizeless = whole[:16] + struct.pack(">II", 100000, 100000) + whole[24:]
        short = whole[:33] + png(40, 4, (1, 2, 3))[33:]  # with the header of a higher one
        files = {"empty.html": b"", "plain.txt": b"Tea", "cut.png": whole[:-30],
                 "head.png": whole[:33], "start.png": whole[:8], "sizeless.png": sizeless,
                 "blank.html": b"<p> </p>", "deep.rtf": b"{\\rtf1 " + b"{" * 100000,
                 "short.png": short}
        for name, contents in files.items():
            error = self.run_command("add", "--rich", self.file(name, contents), "--in", "1 Hour",
                                     status=1)
            self.assertIn(name, error)
        folder = str(self.session.home)
        for path in (folder, folder + "/none.html"):
            self.assertIn(path, self.run_command("add", "--rich", path, "--in", "1 Hour",
                                                 status=1))
        self.assertEqual(self.reminders(), [])

    def test_a_text_that_is_too_large_is_refused(self):
        page = self.file("large.html", "<p>" + "lorem ipsum " * 2000000)
        error = self.run_command("add", "--rich", page, "--in", "1 Hour", status=1)
        self.assertIn("larger than", error)
        self.add_file("long.html", "<p>" + "lorem ipsum " * 100000)

    def test_wrong_words_about_a_rich_text_have_status_2(self):
        page = self.file("page.html", "<p>x")
        self.add("Tea", "--in", "1 Hour")
        for words in (["add", "--rich", page], ["add", "--rich"], ["list", "--rich", page],
                      ["add", "--rich", "", "--in", "1 Hour"],
                      ["edit", "1", "--rich", page, "--text", "x"]):
            self.run_command(*words, status=2)
        self.assertEqual(self.texts(), ["Tea"])

    def test_runs_are_json_of_text_and_attributes(self):
        self.add_file("text.rtf", RTF)
        for run in json.loads(self.run_command("show", "1", "--json"))["richText"]:
            self.assertEqual(set(run), {"text", "attributes"})
