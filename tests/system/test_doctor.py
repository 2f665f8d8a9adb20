#!/usr/bin/python3
"""What `tockwise doctor` tells of a desktop, with and without the application."""

import json
import signal

from harness import SystemTest, main

NAMES = ["tray host", "session bus", "notification service", "sound", "hot keys",
         "secret service", "autostart", "store writable", "last backup", "time zone"]


class Checks:
    def checks(self, **options):
        return {check["name"]: check
                for check in json.loads(self.run_command("doctor", "--json", **options))}

    def failing(self, **options):
        return {name for name, check in self.checks(**options).items() if not check["ok"]}

    def test_every_check_has_its_line_and_a_failing_one_its_remedy(self):
        checks = json.loads(self.run_command("doctor", "--json"))
        self.assertEqual([check["name"] for check in checks], NAMES)
        for check in checks:
            self.assertEqual(set(check), {"name", "ok", "detail", "remedy"})
            self.assertTrue(check["detail"])
            self.assertEqual(check["remedy"] == "", check["ok"])
        lines = self.run_command("doctor").splitlines()
        self.assertEqual(len(lines), len(NAMES))
        for line, check in zip(lines, checks):
            self.assertTrue(line.startswith(("missing", "ok     ")[check["ok"]] + " "
                                            + check["name"] + ": "), line)

    def test_words_that_it_does_not_know_are_refused(self):
        self.run_command("doctor", "sound", status=2)

    def test_a_login_item_that_is_wanted_and_missing_is_told(self):
        self.assertTrue(self.checks()["autostart"]["ok"])
        self.run_command("prefs", "set", "loginItem", "YES")
        self.assertIn("missing", self.checks()["autostart"]["detail"])

    def test_the_first_backup_is_told(self):
        self.assertIn("None yet", self.checks()["last backup"]["detail"])
        self.add("Tea", "--in", "1 Hour")
        self.session.backups.mkdir(parents=True, exist_ok=True)
        (self.session.backups / "com.quillstone.Tockwise-20261121-080000.plist").write_bytes(
            self.session.store.read_bytes())
        self.assertIn("was kept on", self.checks()["last backup"]["detail"])


class DoctorWithoutDesktop(Checks, SystemTest):
    SESSION = {"display": False, "bus": False}

    def test_a_bare_machine_lacks_the_desktop_and_nothing_else(self):
        self.assertEqual(self.failing(), {"tray host", "session bus", "notification service",
                                          "sound", "secret service"})

    def test_looking_leaves_no_store_behind_that_was_not_there(self):
        self.run_command("doctor")
        self.assertEqual(self.reminders(), [])

    def test_a_store_that_cannot_be_opened_is_told_and_not_an_error(self):
        folder = self.session.store.parent
        if folder.is_dir():
            folder.rmdir()
        folder.parent.mkdir(parents=True, exist_ok=True)
        folder.write_text("a file in the way")
        self.assertIn("store writable", self.failing())

    def test_a_damaged_store_is_told_by_whoever_finds_it(self):
        self.add("Tea", "--in", "1 Hour")
        self.session.store.write_bytes(b"garbage")
        check = self.checks()["store writable"]
        self.assertFalse(check["ok"])
        self.assertIn("damaged", check["detail"])
        self.assertNotIn("\n", check["detail"])
        self.assertTrue(self.checks()["store writable"]["ok"])  # it was put aside

    def test_a_detail_ends_before_its_remedy_begins(self):
        self.session.store.parent.mkdir(parents=True)
        self.session.store.mkdir()
        self.assertRegex(self.run_command("doctor"), r"missing store writable: .*\. [A-Z]")

    def test_a_zone_that_is_none_is_told(self):
        environment = dict(self.session.environment, TZ="Middle/Earth")
        self.assertIn("Middle/Earth", self.checks(environment=environment)["time zone"]["detail"])


class DoctorWithApplication(Checks, SystemTest):
    SESSION = {"tray": "status-notifier", "sound": True}

    def setUp(self):
        super().setUp()
        self.session.start_application()

    def test_what_is_there_is_found(self):
        def all_found():
            return not self.failing() & {"tray host", "session bus", "sound", "store writable"}
        self.wait_for(all_found, "the tray to be found")
        self.assertIn("StatusNotifierItem", self.checks()["tray host"]["detail"])

    def test_an_application_that_hangs_is_told(self):
        self.session.application.send_signal(signal.SIGSTOP)
        try:
            check = self.checks()["store writable"]
        finally:
            self.session.application.send_signal(signal.SIGCONT)
        self.assertFalse(check["ok"])
        self.assertIn("does not answer", check["detail"])

    def test_the_hot_keys_are_told_as_the_application_has_them(self):
        self.assertIn("switched off", self.checks()["hot keys"]["detail"])
        self.run_command("prefs", "set", "useGlobalHotKeys", "YES")
        self.wait_for(lambda: "X11" in self.checks()["hot keys"]["detail"], "the grabs")
        self.assertTrue(self.checks()["hot keys"]["ok"])


if __name__ == "__main__":
    main()
