"""What the command line promises of rich text in every state of the application: a mix-in of
tests."""

import base64
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
        picture = base64.b64encode(png(570, 100)).decode()
        shown = self.add_file("page.html", PAGE % picture)
        self.assertEqual(shown["reminderDescriptions"], "Tea for two and one more \ufffc")
        runs = {run["text"]: run["attributes"] for run in shown["richText"]}
        self.assertEqual("".join(run["text"] for run in shown["richText"]),
                         shown["reminderDescriptions"])
        self.assertEqual(runs["two"]["font"], "Helvetica-Bold")
        self.assertEqual(runs["one"]["font"], "Helvetica-Oblique")
        self.assertEqual(runs["more"]["link"], "https://example.org/?a=1&b=2")
        picture = runs["\ufffc"]["attachment"]
        self.assertGreater(picture.pop("bytes"), 0)
        self.assertEqual(picture, {"name": "image.jpg", "width": 285, "height": 50})

    def test_what_is_stored_is_an_archived_text_storage(self):
        stored = base64.b64decode(self.add_file("text.rtf", RTF)["reminderRTFs"])
        archive = plistlib.loads(stored)
        self.assertEqual(archive["$archiver"], "NSKeyedArchiver")
        root = archive["$objects"][archive["$top"]["root"].data]
        self.assertEqual(archive["$objects"][root["$class"].data]["$classname"], "NSTextStorage")

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
                      ["edit", "1", "--rich", page, "--text", "x"],
                      ["edit", "1", "--rich", page, "--text", ""]):
            self.run_command(*words, status=2)
        self.assertEqual(self.texts(), ["Tea"])

    def test_a_rich_file_is_the_text_of_a_new_reminder(self):
        path = self.file("tea time.rtf",
                         rb"{\rtf1{\fonttbl\f0 Helvetica;}\f0\fs28 Tea {\b now}\par at \u8364?5}")
        uuid = self.run_command("add", "--rich", path, "--in", "1 Hour").strip()
        shown = self.session.json("show", uuid)
        self.assertEqual(shown["reminderDescriptions"], "Tea now\nat €5")
        self.assertEqual([(run["text"], run["attributes"]["font"], run["attributes"]["size"])
                          for run in shown["richText"]],
                         [("Tea ", "Helvetica", 14), ("now", "Helvetica-Bold", 14),
                          ("\nat €5", "Helvetica", 14)])
        self.assertEqual(self.session.json("menu")[-2]["title"], "Tea now\nat €5")

    def test_a_rich_file_is_found_from_the_folder_of_the_caller(self):
        self.file("page.html", b"<p>Tea <a href='https://example.org/'>here</a><script>x</script>")
        self.run_command("add", "--rich", "page.html", "--in", "1 Hour", cwd=self.session.folder)
        shown = self.session.json("show", "1")
        self.assertEqual(shown["reminderDescriptions"], "Tea here")
        self.assertEqual(shown["richText"][1]["attributes"]["link"], "https://example.org/")

    def test_a_picture_file_is_a_text_with_a_small_picture(self):
        path = self.file("wide cup.png", png(600, 200))
        self.run_command("add", "", "--rich", path, "--in", "1 Hour")
        (run,) = self.session.json("show", "1")["richText"]
        self.assertEqual(run["text"], "\ufffc")
        attachment = run["attributes"]["attachment"]
        self.assertEqual((attachment["width"], attachment["height"]), (285, 95))
        self.run_command("edit", "1", "--rich", self.file("cup.png", png(20, 10)))
        (run,) = self.session.json("show", "1")["richText"]
        attachment = run["attributes"]["attachment"]
        self.assertEqual((attachment["name"], attachment["width"]), ("cup.png", 20))

    def test_edit_takes_a_rich_file_in_place_of_the_text(self):
        uuid = self.add("Tea", "--at", "2031-01-01 00:00", "--every", "day")
        self.run_command("edit", uuid, "--rich", self.file("a.html", b"<b>Coffee</b>"))
        (reminder,) = self.reminders()
        self.assertEqual(reminder["reminderDescriptions"], "Coffee")
        self.assertNotEqual(reminder["reminderRTFs"], "")
        self.assertEqual(reminder["reminderIntervals"], [0, 1, 0, 0])
        self.run_command("edit", uuid, "--text", "Cake")
        self.assertEqual(self.reminders()[0]["reminderRTFs"], "")

    def test_a_rich_file_that_cannot_be_read_is_named_and_nothing_changes(self):
        self.add("Tea", "--at", "2031-01-01 00:00")
        before = self.reminders()
        whole = png(40, 40)
        sizeless = whole[:16] + struct.pack(">II", 100000, 100000) + whole[24:]
        short = whole[:33] + png(40, 4)[33:]  # with the header of a higher one
        folder = str(self.session.folder)
        files = {"empty.rtf": b"", "empty.html": b"<p></p>", "plain.txt": b"only words",
                 "half.png": png(90, 90)[:60], "head.png": whole[:33], "start.png": whole[:8],
                 "sizeless.png": sizeless, "short.png": short,
                 "deep.rtf": b"{\\rtf1" + b"{" * 100000}
        paths = [self.file(name, contents) for name, contents in files.items()]
        for path in (*paths, folder, folder + "/nowhere.rtf"):
            for words in (["add", "--in", "1 Hour"], ["edit", "1"]):
                self.assertIn(path, self.run_command(*words, "--rich", path, status=1))
        self.assertEqual(self.reminders(), before)
