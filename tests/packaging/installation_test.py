#!/usr/bin/python3
"""What "cmake --install" installs, the Debian changelog, and the Flatpak manifest.

installation_test.py SOURCE BUILD VERSION [unittest arguments]
"""

import configparser
import gzip
import os
import plistlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

import yaml

SOURCE, BUILD, VERSION = Path(sys.argv[1]), Path(sys.argv[2]), sys.argv[3]
ID = "com.quillstone.Tockwise"
MIME = "application/vnd.quillstone.tockwise"
ICONS = {"apps": ID, "mimetypes": MIME.replace("/", "-")}
SIZES = (16, 22, 24, 32, 48, 64, 128, 256, 512)
NAMESPACE = "{http://www.freedesktop.org/standards/shared-mime-info}"


def run(*words, **options):
    done = subprocess.run([str(word) for word in words], capture_output=True, encoding="utf-8",
                          timeout=60, check=False, **options)
    if done.returncode != 0:
        raise AssertionError(f"{words}: {done.stdout}{done.stderr}")
    return done.stdout


class Installation(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = Path(tempfile.mkdtemp(prefix="tockwise-installation-"))
        cls.prefix = cls.folder / "prefix"
        run("cmake", "--install", BUILD, "--prefix", cls.prefix)
        cls.share = cls.prefix / "share"

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.folder)

    def service(self, root):
        entry = configparser.ConfigParser()
        entry.read(root / f"share/dbus-1/services/{ID}.service")
        return entry["D-BUS Service"]

    def desktop_entry(self):
        entry = configparser.ConfigParser(interpolation=None, strict=True)
        entry.optionxform = str
        entry.read(self.share / f"applications/{ID}.desktop")
        return entry

    def test_the_program_runs_and_has_its_sounds_beside_it(self):
        self.assertEqual(run(self.prefix / "bin/tockwise", "--version"), f"Tockwise {VERSION}\n")
        self.assertEqual(len(list((self.share / "tockwise/sounds").glob("*.wav"))), 10)

    def test_the_bus_starts_the_program_where_it_was_installed(self):
        self.assertEqual(self.service(self.prefix)["Exec"], f"{self.prefix}/bin/tockwise")
        self.assertEqual(self.service(self.prefix)["Name"], ID)

    def test_a_staging_folder_is_no_part_of_the_path(self):
        stage = self.folder / "stage"
        run("cmake", "--install", BUILD, "--prefix", "/opt/tockwise",
            env=os.environ | {"DESTDIR": str(stage)})
        self.assertEqual(self.service(stage / "opt/tockwise")["Exec"], "/opt/tockwise/bin/tockwise")

    def test_the_desktop_entry_opens_documents(self):
        entry = self.desktop_entry()
        main = entry["Desktop Entry"]
        self.assertIn(MIME, main["MimeType"].split(";"))
        self.assertEqual(main["Icon"], ID)
        self.assertRegex(main["Exec"], r"^tockwise %[FfUu]$")
        for action in filter(None, main["Actions"].split(";")):
            self.assertIn(f"Desktop Action {action}", entry)

    def test_the_metainfo_states_this_version_and_what_is_provided(self):
        component = ElementTree.parse(self.share / f"metainfo/{ID}.metainfo.xml").getroot()
        self.assertEqual(component.findtext("id"), ID)
        self.assertEqual(component.find("releases/release").get("version"), VERSION)
        self.assertEqual(component.findtext("provides/mediatype"), MIME)
        self.assertEqual(component.findtext("launchable"), f"{ID}.desktop")

    def test_icons_are_there_in_every_size(self):
        theme = self.share / "icons/hicolor"
        for context, name in ICONS.items():
            for size in SIZES:
                told = run("identify", "-format", "%w %h %[opaque]",
                           theme / f"{size}x{size}/{context}/{name}.png")
                self.assertEqual(told.lower().split(), [str(size), str(size), "false"], f"{name} {size}")
        ElementTree.parse(theme / f"symbolic/apps/{ID}-symbolic.svg")

    def test_the_scalable_icons_show_what_the_others_show(self):
        theme = self.share / "icons/hicolor"
        for context, name in ICONS.items():
            drawn = self.folder / f"{name}.png"
            run("rsvg-convert", "-w", 128, "-o", drawn, theme / f"scalable/{context}/{name}.svg")
            done = subprocess.run(
                ["compare", "-metric", "RMSE", drawn, theme / f"128x128/{context}/{name}.png",
                 "null:"], capture_output=True, encoding="utf-8", timeout=60, check=False)
            difference = float(re.search(r"\((.*)\)", done.stderr)[1])
            self.assertLess(difference, 0.03, name)

    def test_the_type_of_documents_is_known(self):
        run("update-mime-database", self.share / "mime")
        environment = os.environ | {"XDG_DATA_HOME": str(self.share), "HOME": str(self.folder)}

        def type_of(name, content):
            path = self.folder / name
            path.write_bytes(plistlib.dumps(content, fmt=plistlib.FMT_BINARY))
            told = run("gio", "info", "-a", "standard::content-type", path, env=environment)
            return told.split("standard::content-type: ")[1].strip()

        document = {"importedUIDs": [], "reminderQueue": []}
        self.assertEqual(type_of("list.tockwise", document), MIME)
        self.assertEqual(type_of("list", document), MIME)
        self.assertNotEqual(type_of("other", {"importedUIDs": []}), MIME)
        self.assertNotEqual(type_of("another.plist", {"a": 1}), MIME)

    def test_the_type_has_its_icon_and_its_name(self):
        root = ElementTree.parse(self.share / f"mime/packages/{ID}.xml").getroot()
        kind = root.find(f"{NAMESPACE}mime-type")
        self.assertEqual(kind.get("type"), MIME)
        self.assertEqual(kind.findtext(f"{NAMESPACE}comment"), "Tockwise reminders")

    def test_the_man_page_has_every_command_and_option(self):
        page = gzip.decompress((self.share / "man/man1/tockwise.1.gz").read_bytes()).decode()
        text = page.replace("\\-", "-").replace("\\fB", "").replace("\\fI", "").replace("\\fR", "")
        program = self.prefix / "bin/tockwise"
        commands = re.findall(r"^tockwise ([a-z-]+)", run(program, "--help"), re.MULTILINE)
        self.assertGreater(len(commands), 8)
        for command in commands:
            self.assertIn(f"\ntockwise {command}", text)
            for option in re.findall(r"^ +(--[\w-]+)", run(program, command, "--help"), re.MULTILINE):
                self.assertRegex(text, rf"\n{option}\b")
        self.assertNotIn("@", text)

    def test_the_completions_are_where_the_shells_look(self):
        for path in ("bash-completion/completions/tockwise", "zsh/site-functions/_tockwise",
                     "fish/vendor_completions.d/tockwise.fish"):
            self.assertTrue((self.share / path).is_file(), path)


class Changelog(unittest.TestCase):
    def convert(self, text):
        return subprocess.run(
            ["awk", "-v", "version=0.3.0", "-v", "date=2031-05-06", "-v", "revision=1",
             "-v", "maintainer=A Maintainer <a@example.org>",
             "-f", SOURCE / "packaging/debian/changelog.awk"],
            input=text, capture_output=True, encoding="utf-8", timeout=60, check=False)

    def entries(self, text):
        """Of the converted text, as Debian's own reader sees it."""
        done = self.convert(text)
        self.assertEqual(done.returncode, 0, done.stderr)
        told = subprocess.run(["dpkg-parsechangelog", "-l-", "--all"], input=done.stdout,
                              capture_output=True, encoding="utf-8", timeout=60, check=True)
        self.assertEqual(told.stderr, "")
        return told.stdout

    def test_every_version_becomes_an_entry(self):
        text = "# Changelog\n\n## Unreleased\n\n- New.\n\n## 0.2.0 - 2031-01-02\n\n- Old.\n"
        told = self.entries(text)
        self.assertIn("Version: 0.3.0-1", told)
        self.assertIn("Date: Tue, 06 May 2031 00:00:00 +0000", told)
        self.assertIn("tockwise (0.2.0-1) unstable", told)
        self.assertIn("Thu, 02 Jan 2031 00:00:00 +0000", self.convert(text).stdout)

    def test_lines_are_joined_and_broken_anew(self):
        text = self.convert("## Unreleased\n\nSome\nprose.\n\n- " + "word " * 40 + "\n  end\n").stdout
        self.assertIn("  * Some prose.\n", text)
        self.assertIn("word end\n", text)
        self.assertLess(max(map(len, text.splitlines())), 80)

    def test_a_version_without_its_date_is_refused(self):
        for heading in ("## 0.2.0\n", "## 0.2.0 - soon\n", "## `date` - 2031-01-02\n"):
            done = self.convert(heading + "\n- Old.\n")
            self.assertEqual(done.returncode, 1, heading)
            self.assertIn("not a version with its date", done.stderr)

    def test_ours_can_be_read(self):
        text = (SOURCE / "CHANGELOG.md").read_text(encoding="utf-8")
        self.assertIn("Source: tockwise", self.entries(text))


class Flatpak(unittest.TestCase):
    """The manifest against the tree: what a build would find out late."""

    @classmethod
    def setUpClass(cls):
        cls.path = SOURCE / f"packaging/flatpak/{ID}.yml"
        cls.manifest = yaml.safe_load(cls.path.read_text(encoding="utf-8"))

    def test_it_is_for_this_program(self):
        self.assertEqual(self.manifest["id"], ID)
        self.assertEqual(self.manifest["command"], "tockwise")
        self.assertEqual(self.manifest["runtime"], "org.kde.Platform")
        self.assertEqual(self.manifest["sdk"], "org.kde.Sdk")
        self.assertRegex(self.manifest["runtime-version"], r"^6\.\d+$")

    def test_its_keys_and_permissions_are_known_ones(self):
        self.assertLessEqual(set(self.manifest), {
            "id", "runtime", "runtime-version", "sdk", "command", "finish-args", "cleanup", "modules"})
        for argument in self.manifest["finish-args"]:
            self.assertRegex(argument, r"^--(socket|share|talk-name|own-name|system-talk-name|"
                                       r"filesystem)=[\w.:/-]+$")
        self.assertNotIn("--filesystem=host", self.manifest["finish-args"])
        self.assertNotIn("--socket=session-bus", self.manifest["finish-args"])

    def test_its_sources_are_there_or_pinned(self):
        for module in self.manifest["modules"]:
            for source in module["sources"]:
                if source["type"] == "dir":
                    self.assertEqual((self.path.parent / source["path"]).resolve(), SOURCE.resolve())
                else:
                    self.assertTrue(source["url"].startswith("https://"))
                    self.assertRegex(source["sha256"], r"^[0-9a-f]{64}$")

    def test_the_options_of_its_build_exist(self):
        known = (SOURCE / "CMakeLists.txt").read_text(encoding="utf-8")
        options = self.manifest["modules"][-1]["config-opts"]
        for option in options:
            name = re.match(r"-D(\w+)=", option)[1]
            self.assertTrue(name.startswith("CMAKE_") or f"option({name} " in known, name)

    def test_it_may_talk_to_whom_the_program_talks_to(self):
        names = {argument.split("=")[1] for argument in self.manifest["finish-args"]
                 if "talk-name" in argument}
        sources = "".join(path.read_text(encoding="utf-8")
                          for path in sorted((SOURCE / "src").rglob("*.cpp")))
        for name in ("org.kde.StatusNotifierWatcher", "org.freedesktop.login1",
                     "org.freedesktop.Notifications", "org.freedesktop.secrets",
                     "org.kde.kglobalaccel"):
            self.assertIn(name, sources)
            self.assertIn(name, names)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[4:], verbosity=2)
