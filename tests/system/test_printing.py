#!/usr/bin/python3
"""Printing: the preview from the menu and by command, on a printer and into PDF files, and what
waits meanwhile."""

import signal
import subprocess
from pathlib import Path

from harness import SystemTest, main
from panel_menu import PanelMenu
from pictures import png
from print_service import PrintService
from stores import reminder, write_store
from waiting import watch_for

SEPARATOR = "-" * 65
PAST = "2025-03-04 09:05"
PREVIEW = "Print Preview"


def text_of(path):
    """The lines of a PDF file that hold anything."""
    done = subprocess.run(["pdftotext", "-layout", str(path), "-"], check=True,
                          capture_output=True, encoding="utf-8")
    return [line.strip() for line in done.stdout.splitlines() if line.strip()]


def information(path):
    done = subprocess.run(["pdfinfo", str(path)], check=True, capture_output=True,
                          encoding="utf-8")
    return {key: value.strip() for key, _, value in
            (line.partition(":") for line in done.stdout.splitlines())}


def pictures_of(path):
    done = subprocess.run(["pdfimages", "-list", str(path)], check=True, capture_output=True,
                          encoding="utf-8")
    return [tuple(map(int, line.split()[3:5])) for line in done.stdout.splitlines()[2:]]


class PDFFiles:
    """What `print --pdf` promises whether the application runs or not."""

    def pdf(self, *options):
        """Writes a PDF file of the pages; returns its path."""
        path = Path(self.session.folder, "out.pdf")
        self.assertEqual(self.run_command("print", *options, "--pdf", str(path)), "")
        return path

    def test_the_file_holds_the_texts_in_their_order(self):
        self.add("Tea für fünf", "--at", "2031-03-04 09:05")
        self.add("the first office", "--at", "2031-03-05 21:30")
        path = self.pdf()
        self.assertEqual(text_of(path), [
            "Reminders", SEPARATOR, "Tue 3/4/2031 09:05 AM", "Tea für fünf",
            SEPARATOR, "Wed 3/5/2031 09:30 PM", "the first office"])
        self.assertEqual(information(path)["Title"], "Reminders")
        self.assertEqual(information(path)["Pages"], "1")

    def test_rich_texts_have_their_pictures(self):
        picture = Path(self.session.folder, "red.png")
        picture.write_bytes(png(40, 30, (200, 0, 0)))
        self.run_command("add", "--rich", str(picture), "--at", "2031-03-04 09:05")
        self.assertEqual(pictures_of(self.pdf()), [(40, 30)])

    def test_an_empty_queue_is_the_heading(self):
        self.assertEqual(text_of(self.pdf()), ["Reminders"])

    def test_a_relative_name_is_one_in_the_folder_of_the_command(self):
        folder = Path(self.session.folder, "elsewhere")
        folder.mkdir()
        self.run_command("print", "--pdf", "out.pdf", cwd=folder)
        self.assertEqual(text_of(folder / "out.pdf"), ["Reminders"])

    def test_a_file_that_is_there_is_overwritten(self):
        path = Path(self.session.folder, "out.pdf")
        path.write_text("before", encoding="utf-8")
        path.chmod(0o640)
        self.assertEqual(text_of(self.pdf()), ["Reminders"])
        self.assertEqual(path.stat().st_mode & 0o777, 0o640)

    def test_a_place_that_cannot_be_written_is_told(self):
        for path in (self.session.folder / "missing/out.pdf", self.session.folder):
            line = self.run_command("print", "--pdf", str(path), status=1)
            self.assertIn(str(path), line)

    def test_wrong_words_are_told(self):
        self.run_command("print", "--pdf", status=2)
        self.run_command("print", "--pdf=", status=2)
        self.run_command("print", "paper", status=2)

    def test_the_paper_is_that_of_the_locale(self):
        self.assertIn("A4", information(self.pdf())["Page size"])


class WithoutApplication(PDFFiles, SystemTest):
    SESSION = {"display": False}

    def test_alerts_and_the_preview_need_the_application(self):
        path = Path(self.session.folder, "out.pdf")
        for words in (("print",), ("print", "--alerts"),
                      ("print", "--alerts", "--pdf", str(path))):
            self.assertIn("not running", self.run_command(*words, status=1))
        self.assertFalse(path.exists())

    def test_the_locale_tells_the_paper(self):
        self.session.environment["LC_PAPER"] = "en_US.UTF-8"
        self.assertIn("letter", information(self.pdf())["Page size"])

    def test_no_session_is_no_hindrance(self):
        del self.session.environment["XDG_RUNTIME_DIR"]
        done = self.session.tockwise("print", "--pdf", str(self.session.folder / "out.pdf"))
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))

    def test_a_damaged_store_is_told_and_the_rest_printed(self):
        self.add("Tea", "--at", "2031-03-04 09:05")
        self.add("Bread", "--at", "2031-03-05 09:05")
        self.session.store.write_bytes(b"nonsense")
        path = Path(self.session.folder, "out.pdf")
        done = self.session.tockwise("print", "--pdf", str(path))
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("tockwise:", done.stderr)
        self.assertEqual(text_of(path)[0], "Reminders")


class PreviewTest(SystemTest):
    SESSION = {"tray": "status-notifier"}

    def setUp(self):
        super().setUp()
        self.before_start()
        self.session.start_application()

    def before_start(self):
        """What a class sets up before the application starts."""

    def preview(self):
        return self.session.desktop.window_titled(PREVIEW)

    def wait_for_preview(self):
        """The preview, once it has the keyboard."""
        desktop = self.session.desktop

        def active():
            window = self.preview()
            return window if window and desktop.active_window() == window.identifier else None
        return self.wait_for(active, "the preview")

    def close(self, key="Escape"):
        self.session.desktop.press(key)
        self.wait_for(lambda: not self.preview(), "the end of the preview")


class WithApplication(PDFFiles, PreviewTest):
    SESSION = {"tray": "status-notifier"}

    def before_start(self):
        self.session.environment["CUPS_SERVER"] = str(self.session.folder / "no-cups")

    def open_alert(self, text):
        signals = self.record()
        self.add(text, "--at", PAST)
        self.wait_for_signal(signals, "AlertOpened")

    def test_the_alerts_of_plain_reminders_are_their_dates(self):
        self.open_alert("Tea")
        self.assertEqual(text_of(self.pdf("--alerts")),
                         ["Reminders", SEPARATOR, "Tue 3/4/2025 09:05 AM"])

    def test_the_alerts_of_rich_reminders_are_their_texts(self):
        page = Path(self.session.folder, "tea.html")
        page.write_text("<p>Tea, <b>strong</b></p>", encoding="utf-8")
        signals = self.record()
        self.run_command("add", "--rich", str(page), "--at", PAST)
        self.wait_for_signal(signals, "AlertOpened")
        self.assertEqual(text_of(self.pdf("--alerts")),
                         ["Reminders", SEPARATOR, "Tue 3/4/2025 09:05 AM", "Tea, strong"])

    def test_the_menu_opens_the_preview(self):
        menu = PanelMenu(self.session)
        for title in ("Print...", "Preview..."):
            menu.choose(title)
            self.wait_for_preview()
            self.close()

    def test_while_the_preview_is_open_nothing_fires_and_commands_answer(self):
        self.run_command("print")
        self.wait_for_preview()
        signals = self.record()
        self.add("Tea", "--at", PAST)
        self.assertEqual(self.texts(), ["Tea"])
        watch_for(3, lambda: [each for each in signals if each[1] == "ReminderFired"],
                  "a firing beside the preview")
        self.run_command("print")  # again: the same one
        self.run_command("print", "--alerts")
        PanelMenu(self.session).choose("New Reminder...")
        self.assertEqual(len([window for window in self.session.desktop.windows()
                              if "—" in window.title]), 1)
        self.close()
        self.wait_for_signal(signals, "ReminderFired", 2)

    def test_the_program_can_be_ended_while_the_preview_is_open(self):
        self.run_command("print")
        self.wait_for_preview()
        self.assertEqual(self.session.quit_application(), 0)

    def test_what_fell_due_beside_the_preview_waits_for_the_next_start(self):
        ran = self.session.folder / "ran"
        script = self.session.folder / "run.sh"
        script.write_text(f"#!/bin/sh\necho ran >> {ran}\n")
        script.chmod(0o755)
        self.run_command("print")
        self.wait_for_preview()
        signals = self.record()
        self.add("Tea", "--at", PAST, "--task", f"script:{script}")
        self.assertEqual(self.session.quit_application(), 0)
        self.assertEqual([each for each in signals if each[1] == "ReminderFired"], [])
        self.assertFalse(ran.exists())
        self.assertEqual(self.texts(), ["Tea"])

    def test_a_signal_ends_the_program_in_order_while_the_preview_is_open(self):
        self.add("Tea", "--in", "1 Hour")
        self.run_command("print")
        self.wait_for_preview()
        self.session.application.send_signal(signal.SIGTERM)
        self.assertEqual(self.session.wait_for_end(), 0)
        self.assertEqual(self.texts(), ["Tea"])

    def test_the_question_before_quitting_can_be_answered_over_the_preview(self):
        self.open_alert("Tea")
        self.run_command("print")
        preview = self.wait_for_preview()
        quitting = self.session.spawn(*self.quit_words(), log="quit")
        desktop = self.session.desktop
        self.wait_for(lambda: desktop.active_window() not in (0, preview.identifier),
                      "the question")
        desktop.press("Escape")
        self.wait_for(lambda: quitting.poll() is not None, "the answer")
        self.assertEqual(quitting.returncode, 1)
        self.assertTrue(self.preview())

    @staticmethod
    def quit_words():
        from session import PROGRAM
        return PROGRAM, "quit"

    def test_without_a_printer_the_way_to_a_pdf_file_is_shown(self):
        self.run_command("print")
        preview = self.wait_for_preview()
        desktop = self.session.desktop
        desktop.press("Return")
        self.wait_for(lambda: desktop.active_window() not in (0, preview.identifier),
                      "the question")
        desktop.press("Escape")
        self.wait_for(lambda: not self.preview(), "the end of the preview")


class Printer(PreviewTest):
    def before_start(self):
        self.service = PrintService(self.session)
        write_store(self.session, [reminder("Tea für fünf", 1930118700 + minute * 60)
                                   for minute in range(40)])

    def print_dialog(self):
        windows = self.session.desktop.windows()
        return next((window for window in windows if window.title.startswith("Print")
                     and PREVIEW not in window.title), None)

    def test_what_is_printed_arrives_as_pdf_with_its_text(self):
        self.run_command("print")
        self.wait_for_preview()
        desktop = self.session.desktop
        desktop.press("Return")
        dialog = self.wait_for(self.print_dialog, "the print dialog")
        self.wait_for(lambda: desktop.active_window() == dialog.identifier, "its keyboard")
        desktop.press("Return")
        self.wait_for(lambda: not self.preview(), "the end of the preview")
        (job,) = self.wait_for(self.service.jobs, "the job", 20)
        self.assertEqual(job.title, "Reminders")
        lines = text_of(job.path)
        self.assertEqual(lines[0], "Reminders")
        self.assertEqual(lines.count(SEPARATOR), 40)
        self.assertEqual(lines.count("Tea für fünf"), 40)

    def test_a_dialog_that_is_cancelled_prints_nothing(self):
        self.run_command("print")
        self.wait_for_preview()
        self.session.desktop.press("Return")
        dialog = self.wait_for(self.print_dialog, "the print dialog")
        self.wait_for(lambda: self.session.desktop.active_window() == dialog.identifier,
                      "its keyboard")
        self.session.desktop.press("Escape")
        self.wait_for(lambda: not self.preview(), "the end of the preview")
        self.assertEqual(self.service.jobs(), [])


if __name__ == "__main__":
    main()
