"""What the command line promises in every state of the application: a mix-in of tests."""

import json
import re
import subprocess
from datetime import datetime, timedelta, timezone

from session import PROGRAM

STORED_KEYS = {
    "reminderQueue", "reminderDateTimeCreated", "reminderDateTimeFired",
    "reminderDateTimeModified", "reminderRecent", "reminderUUID", "reminderDescriptions",
    "reminderRTFs", "reminderTypes", "reminderIntervals", "reminderTasks", "reminderExtras",
    "reminderOffsets", "reminderSendEmail", "reminderSendSMS", "importedUIDs",
}
MENU_KEYS = {"title", "action", "tag", "enabled", "checked", "toolTip", "separator", "richTitle",
             "submenu"}
ALERT_KEYS = {"position", "uuid", "text", "date", "shown", "rescheduled"}
UUID = re.compile(r"[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}")
DATE = re.compile(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d+Z")
ODD_TEXTS = [
    "two\nlines", "A & B && C", "<b>bold</b> &amp; <img src=x>", "\"double\" and 'single'",
    "🫖 Tee um fünf – ☕️", "--at", "-x", "%1 %ld %@ %n", "$(date) `date` ; rm", "\ttab",
    "a\\b\\n", " spaces around ", "e\u0301 \u202eright to left\u202c \u00a0", "1",
]


def parse_date(text):
    return datetime.strptime(text, "%Y-%m-%dT%H:%M:%S.%fZ").replace(tzinfo=timezone.utc)


class Contract:
    """What holds in every state of the application."""

    def test_adding_prints_the_identifier_of_a_reminder_with_the_sixteen_stored_keys(self):
        before = datetime.now(timezone.utc)
        uuid = self.add("Tea", "--at", "2031-03-04 09:05")
        after = datetime.now(timezone.utc)
        self.assertTrue(UUID.fullmatch(uuid), uuid)
        (reminder,) = self.reminders()
        self.assertEqual(set(reminder), STORED_KEYS)
        for key in ("reminderDateTimeCreated", "reminderDateTimeModified"):
            self.assertTrue(DATE.fullmatch(reminder.pop(key)), key)
        due = parse_date(reminder.pop("reminderQueue"))
        self.assertEqual(due.astimezone().strftime("%Y-%m-%d %H:%M:%S.%f"),
                         "2031-03-04 09:05:00.000000")
        self.assertLessEqual(before, after)
        self.assertEqual(reminder, {
            "reminderUUID": uuid, "reminderDescriptions": "Tea", "reminderDateTimeFired": None,
            "reminderRecent": 0, "reminderRTFs": "", "reminderTypes": "regular",
            "reminderIntervals": [0, 0, 0, 0], "reminderTasks": {"nil": "nil"},
            "reminderExtras": {"days": [True] * 7, "times": [0, 0, 0, 0]},
            "reminderOffsets": [0, 0, 0], "reminderSendEmail": False, "reminderSendSMS": False,
            "importedUIDs": "",
        })

    def test_a_new_reminder_is_created_and_modified_now(self):
        before = datetime.now(timezone.utc) - timedelta(milliseconds=1)
        self.add("Tea", "--in", "1 Hour")
        (reminder,) = self.reminders()
        for key in ("reminderDateTimeCreated", "reminderDateTimeModified"):
            self.assertGreaterEqual(parse_date(reminder[key]), before)
            self.assertLessEqual(parse_date(reminder[key]), datetime.now(timezone.utc))

    def test_an_amount_of_time_is_counted_from_now_with_the_seconds_cut(self):
        before = datetime.now(timezone.utc)
        self.add("Tea", "--in", "1 Day 2 Hours 30 Minutes")
        due = parse_date(self.reminders()[0]["reminderQueue"])
        self.assertEqual((due.second, due.microsecond), (0, 0))
        wait = due - before
        self.assertGreater(wait, timedelta(days=1, hours=2, minutes=28, seconds=59))
        self.assertLess(wait, timedelta(days=1, hours=2, minutes=31))

    def test_every_option_of_add_reaches_its_field(self):
        self.add("Walk", "--at", "2031-03-04 09:05", "--every", "1,2,3,4", "--days", "Mon,Fri",
                 "--between", "08:00-17:30", "--before", "1,2,3", "--email", "--sms", "--task",
                 "script:/tmp/a b.sh")
        (reminder,) = self.reminders()
        self.assertEqual(reminder["reminderIntervals"], [1, 2, 3, 4])
        self.assertEqual(reminder["reminderExtras"], {
            "days": [False, True, False, False, False, True, False], "times": [8, 0, 17, 30]})
        self.assertEqual(reminder["reminderOffsets"], [1, 2, 3])
        self.assertIs(reminder["reminderSendEmail"], True)
        self.assertIs(reminder["reminderSendSMS"], True)
        self.assertEqual(reminder["reminderTasks"], {"type": 4, "path": "/tmp/a b.sh"})

    def test_the_named_intervals(self):
        expected = {"month": [1, 0, 0, 0], "week": [0, 7, 0, 0], "day": [0, 1, 0, 0],
                    "hour": [0, 0, 1, 0], "minute": [0, 0, 0, 1]}
        for name in expected:
            self.add(name, "--at", "2031-03-04 09:05", "--every", name)
        self.assertEqual({each["reminderDescriptions"]: each["reminderIntervals"]
                          for each in self.reminders()}, expected)

    def test_odd_texts_come_back_as_they_were(self):
        for text in ODD_TEXTS:
            uuid = self.add(text, "--at", "2031-03-04 09:05")
            shown = self.session.json("show", uuid)
            self.assertEqual(shown["reminderDescriptions"], text)
        self.assertEqual(self.texts(), ODD_TEXTS)

    def test_a_long_text_comes_back_whole(self):
        text = "lorem ipsum 🫖 " * 7000  # about 100 kB, less than one argument may be long
        self.add(text, "--at", "2031-03-04 09:05")
        self.assertEqual(self.texts(), [text])

    def test_an_empty_text_is_refused(self):
        self.run_command("add", "", "--in", "1 Hour", status=2)
        self.assertEqual(self.reminders(), [])

    def test_list_follows_the_order_of_the_queue(self):
        self.add("late", "--at", "2032-01-01 00:00")
        self.add("soon", "--at", "2031-01-01 00:00")
        self.assertEqual(self.texts(), ["soon", "late"])
        lines = self.run_command("list").splitlines()
        self.assertEqual(len(lines), 2)
        self.assertIn("soon", lines[0])
        self.assertIn("Wed 1/1/2031 12:00 AM", lines[0])

    def test_show_takes_a_position_or_an_identifier(self):
        self.add("one", "--at", "2031-01-01 00:00")
        uuid = self.add("two", "--at", "2031-01-02 00:00")
        by_position = self.session.json("show", "2")
        self.assertEqual(by_position, self.session.json("show", uuid))
        self.assertEqual(set(by_position) - {"richText"}, STORED_KEYS)
        self.assertEqual(by_position["reminderDescriptions"], "two")
        self.assertIn("two", self.run_command("show", uuid))

    def test_show_of_what_is_not_there_fails(self):
        for which in ("1", "0", "-1", "99999999999999999999", "nonsense"):
            words = ("show", "--", which)
            self.assertIn(which, self.run_command(*words, status=1))

    def test_edit_replaces_what_is_named_and_nothing_else(self):
        uuid = self.add("Tea", "--at", "2031-01-01 00:00", "--every", "day", "--before", "0,1,0")
        before = self.session.json("show", uuid)
        self.run_command("edit", uuid, "--text", "Coffee", "--at", "2031-05-06 07:08")
        after = self.session.json("show", uuid)
        changed = {key for key in after if after[key] != before[key]}
        self.assertEqual(changed,
                         {"reminderDescriptions", "reminderQueue", "reminderDateTimeModified"})
        self.assertEqual(after["reminderDescriptions"], "Coffee")

    def test_edit_by_position(self):
        self.add("Tea", "--at", "2031-01-01 00:00")
        self.run_command("edit", "1", "--email", "--every", "week")
        (reminder,) = self.reminders()
        self.assertIs(reminder["reminderSendEmail"], True)
        self.assertEqual(reminder["reminderIntervals"], [0, 7, 0, 0])

    def test_edit_of_what_is_not_there_fails(self):
        self.run_command("edit", "7", "--text", "x", status=1)

    def test_delete_removes_the_one_that_is_named(self):
        self.add("one", "--at", "2031-01-01 00:00")
        uuid = self.add("two", "--at", "2031-01-02 00:00")
        self.add("three", "--at", "2031-01-03 00:00")
        self.run_command("delete", uuid)
        self.assertEqual(self.texts(), ["one", "three"])
        self.run_command("delete", "1")
        self.assertEqual(self.texts(), ["three"])
        self.run_command("delete", uuid, status=1)

    def test_clear_needs_its_yes(self):
        self.add("one", "--at", "2031-01-01 00:00")
        self.run_command("clear", status=2)
        self.assertEqual(self.texts(), ["one"])
        self.run_command("clear", "--yes")
        self.assertEqual(self.reminders(), [])

    def check_menu(self, items):
        for item in items:
            self.assertEqual(set(item), MENU_KEYS)
            if item["separator"]:
                self.assertEqual((item["title"], item["action"]), ("", None))
            self.check_menu(item["submenu"])

    def test_the_menu_of_an_empty_queue(self):
        menu = self.session.json("menu")
        self.check_menu(menu)
        self.assertEqual((menu[0]["title"], menu[0]["action"]), ("Quit Tockwise", "quit"))
        self.assertEqual([item["title"] for item in menu[-5:]],
                         ["", "Reminder Queue", "0 items", "", "No Reminders"])

    def test_the_menu_of_a_reminder(self):
        self.add("Tea & cake", "--at", "2031-03-04 09:05")
        menu = self.session.json("menu")
        self.check_menu(menu)
        titles = [item["title"] for item in menu]
        self.assertIn("1 item", titles)
        self.assertIn("Tue 3/4/2031 09:05 AM", titles)
        (reminder,) = [item for item in menu if item["action"] == "showReminder"]
        self.assertEqual((reminder["title"], reminder["tag"]), ("Tea & cake", 0))
        self.assertTrue(reminder["toolTip"].startswith("Created: "), reminder["toolTip"])
        self.assertEqual([item["title"] for item in reminder["submenu"]], ["Delete", "Copy"])
        self.assertIn("Tea & cake", self.run_command("menu"))

    def test_the_recent_entry_of_a_new_reminder_is_in_the_menu(self):
        self.add("x" * 41, "--at", "2031-03-04 09:05")
        (recent,) = [item for item in self.session.json("menu")
                     if item["title"] == "Recent Reminders"]
        self.assertEqual(recent["submenu"][0]["title"], "x" * 40 + "...")
        self.assertEqual(recent["submenu"][0]["action"], "recentReminder")

    def test_settings_are_read_as_they_were_set(self):
        for key, given, read in [
                ("useAbsolute", ["NO"], "NO"), ("useAbsolute", ["true"], "YES"),
                ("useAbsolute", ["0"], "NO"), ("clockoption", ["3"], "3"),
                ("email", ["a@example.org"], "a@example.org"), ("email", [""], ""),
                ("serverPortAD", ["25"], "25"), ("serverPortAD", [""], ""),
                ("quickRemindMenuArray", ["1 Minute", "2 Days"], "1 Minute\n2 Days")]:
            self.run_command("prefs", "set", key, *given)
            self.assertEqual(self.run_command("prefs", "get", key), read + "\n")

    def test_defaults_are_read_where_nothing_was_set(self):
        self.assertEqual(self.run_command("prefs", "get", "showRichText"), "YES\n")
        self.assertEqual(self.run_command("prefs", "get", "sortType"), "1\n")
        self.assertEqual(len(self.run_command("prefs", "get", "quickRemindMenuArray").split("\n")),
                         10)

    def test_the_list_of_settings_names_them_and_hides_the_password(self):
        self.run_command("prefs", "set", "passwordAD", "s3cret")
        listed = self.run_command("prefs", "list")
        self.assertNotIn("s3cret", listed)
        for key in ("sortType", "useCountdown", "smtpServerNameAD", "passwordAD"):
            self.assertRegex(listed, rf"(?m)^{key}\b")

    def test_settings_that_are_not_are_refused(self):
        for words in (["set", "nonsense", "1"], ["get", "nonsense"], ["set", "sortType", "abc"],
                      ["set", "useAbsolute", "perhaps"], ["set", "reminderQueue", "1"],
                      ["get", "reminderUUID"], ["set", "sortType", "1", "2"]):
            self.run_command("prefs", *words, status=2)
        self.assertEqual(self.run_command("prefs", "get", "sortType"), "1\n")

    def test_a_setting_takes_effect_in_the_menu(self):
        self.add("Tea", "--at", "2031-03-04 09:05")
        self.run_command("prefs", "set", "showItemIndex", "YES")
        self.run_command("prefs", "set", "useAbsolute", "NO")
        titles = [item["title"] for item in self.session.json("menu")]
        self.assertEqual(titles[-2:], ["Tea", ""])
        self.assertIn("1", titles)
        self.assertNotIn("Tue 3/4/2031 09:05 AM", titles)

    def test_wrong_words_have_status_2_and_change_nothing(self):
        for words in (["nonsense"], ["add"], ["add", "Tea"], ["add", "Tea", "--at"],
                      ["add", "Tea", "--at", "tomorrow"], ["add", "Tea", "--at", "2031-02-30 10:00"],
                      ["add", "Tea", "--in", "soon"], ["add", "Tea", "--in", "-1 Hours"],
                      ["add", "Tea", "--in", "1 Hour", "--at", "2031-03-04 09:05"],
                      ["add", "Tea", "--in", "1 Hour", "--every", "1,2,3"],
                      ["add", "Tea", "--in", "1 Hour", "--every", "fortnight"],
                      ["add", "Tea", "--in", "1 Hour", "--days", "Mon,Someday"],
                      ["add", "Tea", "--in", "1 Hour", "--between", "25:00-26:00"],
                      ["add", "Tea", "--in", "1 Hour", "--before", "1,-2,3"],
                      ["add", "Tea", "--in", "1 Hour", "--task", "9:/tmp/x"],
                      ["add", "Tea", "--in", "1 Hour", "--nonsense"],
                      ["add", "Tea", "Cake", "--in", "1 Hour"],
                      ["list", "more"], ["list", "--nonsense"], ["show"], ["delete"],
                      ["prefs"], ["prefs", "get"], ["prefs", "put", "sortType", "1"],
                      ["alerts", "nonsense"], ["alerts", "ok", "first"], ["alerts", "ok", "0"],
                      ["alerts", "ok", "--json"]):
            self.run_command(*words, status=2)
        self.assertEqual(self.reminders(), [])

    def test_help_and_version(self):
        self.assertIn("tockwise add", self.run_command("--help"))
        self.assertIn("--every", self.run_command("add", "--help"))
        self.assertRegex(self.run_command("--version"), r"\d+\.\d+")

    def test_json_output_is_one_value_and_nothing_else(self):
        self.add("Tea", "--at", "2031-03-04 09:05")
        for words in (["list"], ["show", "1"], ["menu"]):
            json.loads(self.run_command(*words, "--json"))

    def test_many_commands_at_once_lose_nothing(self):
        count = 8
        running = [subprocess.Popen(
            [PROGRAM, "add", f"number {i}", "--at", f"2031-01-{i + 1:02} 00:00"],
            env=self.session.environment, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
            encoding="utf-8") for i in range(count)]
        for process in running:
            output, errors = process.communicate(timeout=60)
            self.assertEqual(process.returncode, 0, errors)
            self.assertTrue(UUID.fullmatch(output.strip()), output)
        self.assertEqual(self.texts(), [f"number {i}" for i in range(count)])
