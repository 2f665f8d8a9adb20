#!/usr/bin/python3
"""The completions offer what the program takes, in each of the shells.

completion_test.py SHARE PROGRAM [unittest arguments]: SHARE holds the completions as they are
installed, PROGRAM is asked for its commands and their options.
"""

import re
import shutil
import subprocess
import sys
import unittest
from pathlib import Path

from shells import Bash, Fish, Zsh, make_folder

SHARE, PROGRAM = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()


def program_help(*words):
    return subprocess.run([PROGRAM, *words, "--help"], capture_output=True, encoding="utf-8",
                          timeout=30, check=True).stdout


def commands():
    """Every command, as the program lists them."""
    return sorted(set(re.findall(r"^tockwise ([a-z-]+)", program_help(), re.MULTILINE)))


def options(command):
    """What a command's help lists, and --help itself."""
    return sorted(set(re.findall(r"^ +(--[\w-]+)", program_help(command), re.MULTILINE))
                  | {"--help"})


class Completion:
    """The tests; a class below makes them those of one shell."""

    SHELL = None

    @classmethod
    def setUpClass(cls):
        cls.folder = make_folder()
        cls.shell = cls.SHELL(SHARE, cls.folder)

    @classmethod
    def tearDownClass(cls):
        cls.shell.close()
        shutil.rmtree(cls.folder)

    def offers(self, line, expected):
        self.assertEqual(self.shell.offers(line), sorted(expected), line)

    def test_the_first_word_is_a_command_or_a_document(self):
        offered = self.shell.offers("tockwise ")
        for command in commands():
            self.assertIn(command, offered)
        self.assertIn("work.tockwise", offered)

    def test_a_document_is_followed_by_documents(self):
        self.offers("tockwise work.tockwise ho", ["home.tockwise"])

    def test_the_beginning_of_a_command_is_completed(self):
        self.offers("tockwise pref", ["prefs"])
        self.offers("tockwise --v", ["--version"])

    def test_every_command_offers_its_options(self):
        for command in commands():
            self.offers(f"tockwise {command} --", options(command))

    def test_options_are_offered_after_arguments(self):
        self.offers("tockwise add Tea --no-s", ["--no-sms"])
        self.offers("tockwise add Tea --in '5 Minutes' --no-s", ["--no-sms"])

    def test_settings_are_offered(self):
        self.assertLessEqual({"get", "set", "list"}, set(self.shell.offers("tockwise prefs ")))
        self.offers("tockwise prefs get useA", ["useADPrefs", "useADPrefsNoAuth", "useAbsolute"])
        self.offers("tockwise prefs set useS", ["useSSL"])

    def test_a_switch_is_set_to_yes_or_no(self):
        self.offers("tockwise prefs set useSSL ", ["NO", "YES"])
        self.offers("tockwise prefs set sortType ", [])
        self.offers("tockwise prefs get useSSL ", [])

    def test_what_is_done_with_alerts_is_offered(self):
        self.offers("tockwise alerts o", ["ok", "ok-all"])
        self.offers("tockwise alerts ok o", [])

    def test_an_option_offers_its_values(self):
        intervals = ["month", "week", "day", "hour", "minute", "never"]
        self.offers("tockwise add Tea --every ", intervals)
        self.offers("tockwise add Tea --every=m", ["month", "minute"])
        self.offers("tockwise edit 1 --every w", ["week"])
        self.offers("tockwise add Tea --at ", [])

    def test_an_option_that_takes_a_file_offers_files(self):
        self.offers("tockwise add --rich pa", ["page.html"])
        self.offers("tockwise edit 1 --rich wo", ["work.tockwise"])

    def test_the_value_of_an_option_is_no_argument(self):
        self.offers("tockwise edit --text prefs 1 --no-s", ["--no-sms"])
        self.offers("tockwise alerts --json o", ["ok", "ok-all"])

    def test_after_two_dashes_there_are_no_options(self):
        self.offers("tockwise add -- --", [])

    def test_a_command_with_documents_offers_them(self):
        for command in sorted({"save", "open", "merge"} & set(commands())):
            offered = [word.rstrip("/") for word in self.shell.offers(f"tockwise {command} ")]
            self.assertIn("work.tockwise", offered)
            self.assertIn("older", offered)


class InBash(Completion, unittest.TestCase):
    SHELL = Bash


class InFish(Completion, unittest.TestCase):
    SHELL = Fish


class InZsh(Completion, unittest.TestCase):
    SHELL = Zsh


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[3:], verbosity=2)
