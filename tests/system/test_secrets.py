#!/usr/bin/python3
"""The mail server's password in a real Secret Service."""

import os
import plistlib
import random
import signal
import subprocess
import time

from harness import SystemTest, main
from keyring import Keyring
from session import HERE, PROGRAM

SECRET = "s3cret-Gr\u00fc\u00dfe"
NEWER = "n3wer-Gr\u00fc\u00dfe"
UNREADABLE = "is kept in the desktop's password store, which is locked or does not answer"
KILLS = 20


def forms(secret):
    """The secret as a file could hold it."""
    return [secret.encode(code) for code in ("utf-8", "utf-16-be", "utf-16-le")] + [secret[:5].encode()]


class SecretTest(SystemTest):
    def setUp(self):
        super().setUp()
        self.keyring = Keyring(self.session)

    def set_password(self, secret):
        self.run_command("prefs", "set", "passwordAD", secret)

    def assert_password(self, secret):
        self.assertEqual(self.run_command("prefs", "get", "passwordAD"), secret + "\n")

    def stored(self):
        return plistlib.loads(self.session.store.read_bytes())

    def is_in_file(self, secret):
        return self.stored().get("passwordAD") == secret

    def files_with(self, secret):
        """Every file of the home, but for the keyring's own, that holds the secret."""
        found = []
        for path in self.session.home.rglob("*"):
            if path.is_file() and "keyrings" not in path.parts:
                data = path.read_bytes()
                if any(form in data for form in forms(secret)):
                    found.append(str(path))
        return found

    def assert_nowhere(self, *secrets):
        for secret in secrets:
            self.assertEqual(self.files_with(secret), [])

    def save_something(self):
        """A write of the store, with a copy kept of it."""
        self.add("Tea", "--at", "2031-03-04 09:05")


class WithKeyring(SecretTest):
    def test_the_password_survives_a_kill_and_stands_in_no_file(self):
        self.keyring.start()
        self.session.start_application()
        self.save_something()
        self.set_password(SECRET)
        self.session.kill_application()  # what was answered is safe
        self.assert_nowhere(SECRET)
        self.assertEqual(self.keyring.items(), 1)
        self.assertEqual(self.stored()["keptElsewhere"], ["passwordAD"])
        self.assert_password(SECRET)  # without the application
        self.session.start_application()
        self.assert_password(SECRET)
        self.set_password(NEWER)
        self.session.quit_application()
        self.assert_password(NEWER)
        self.assert_nowhere(SECRET, NEWER)
        self.assertEqual(self.keyring.items(), 1)

    def test_commands_work_without_the_application(self):
        self.keyring.start()
        self.set_password(SECRET)
        self.assert_nowhere(SECRET)
        self.assert_password(SECRET)
        self.assertIn("passwordAD=(set)\n", self.run_command("prefs", "list"))
        self.set_password("")
        self.assert_password("")
        self.assertEqual(self.keyring.items(), 0)
        self.assertIn("passwordAD=\n", self.run_command("prefs", "list"))

    def test_a_password_of_the_file_moves_when_a_keyring_appears(self):
        self.session.start_application()
        self.set_password(SECRET)
        self.save_something()
        self.assertTrue(self.is_in_file(SECRET))
        self.assertEqual(self.session.store.stat().st_mode & 0o777, 0o600)
        self.session.quit_application()
        self.keyring.start()
        self.session.start_application()
        self.wait_for(lambda: not self.is_in_file(SECRET), "the move")
        self.assert_password(SECRET)
        self.wait_for(lambda: not self.files_with(SECRET), "clean copies")
        self.session.quit_application()
        self.assert_password(SECRET)

    def test_a_kill_at_any_moment_of_the_move_loses_nothing(self):
        self.keyring.start()
        chance = random.Random(4)
        for _ in range(KILLS):
            store = self.stored() if self.session.store.exists() else {}
            store.pop("keptElsewhere", None)
            store["passwordAD"] = SECRET
            self.session.store.parent.mkdir(parents=True, exist_ok=True)
            self.session.store.write_bytes(plistlib.dumps(store, fmt=plistlib.FMT_BINARY))
            process = self.session.spawn(PROGRAM, log="tockwise")
            time.sleep(chance.uniform(0.02, 0.4))
            process.kill()
            process.wait()
            self.wait_for(lambda: not self.session.is_running(), "the end on the bus")
            self.assert_password(SECRET)

    def test_from_the_standard_input_it_is_shown_by_neither_process_list_nor_log(self):
        self.keyring.start()
        self.session.start_application()
        command = subprocess.Popen([PROGRAM, "prefs", "set", "passwordAD", "-"],
                                   env=self.session.environment, stdin=subprocess.PIPE)
        command.communicate((SECRET + "\n").encode(), timeout=20)
        self.assertEqual(command.returncode, 0)
        self.assert_password(SECRET)
        for log in self.session.logs.iterdir():
            self.assertNotIn(SECRET.encode(), log.read_bytes(), log)
        self.run_command("prefs", "set", "passwordAD", "-", status=2)  # nothing comes in
        self.assert_password(SECRET)

    def test_a_locked_keyring_is_not_opened_by_starting(self):
        self.keyring.start()
        self.set_password(SECRET)
        self.keyring.lock()
        self.session.start_application()
        windows = {window.identifier for window in self.session.desktop.windows()}
        self.assertIn(UNREADABLE, self.run_command("prefs", "get", "passwordAD", status=1))
        self.assertIn("passwordAD=(set)\n", self.run_command("prefs", "list"))
        self.assertTrue(self.keyring.is_locked())
        self.assertEqual({window.identifier for window in self.session.desktop.windows()}, windows)
        self.keyring.unlock()
        self.wait_for(lambda: self.session.tockwise("prefs", "get", "passwordAD").stdout
                      == SECRET + "\n", "the password")

    def test_the_preferences_open_beside_a_locked_keyring(self):
        self.keyring.start()
        self.set_password(SECRET)
        self.keyring.lock()
        self.session.start_application()
        before = len(self.session.desktop.windows())
        self.run_command("prefs", "open")
        self.wait_for(lambda: len(self.session.desktop.windows()) > before, "the window")
        asked = time.monotonic()  # the keyring, which has nobody to ask, is asked meanwhile
        self.session.json("list")
        self.set_password(NEWER)
        self.assertLess(time.monotonic() - asked, 2.0)
        self.assert_password(NEWER)
        self.assertTrue(self.is_in_file(NEWER))
        self.keyring.unlock()
        self.wait_for(lambda: not self.is_in_file(NEWER), "the move", 30)
        self.assert_password(NEWER)

    def test_a_locked_keyring_is_not_opened_by_commands(self):
        self.keyring.start()
        self.set_password(SECRET)
        self.keyring.lock()
        self.assertIn(UNREADABLE, self.run_command("prefs", "get", "passwordAD", status=1))
        self.set_password(NEWER)
        self.assert_password(NEWER)
        self.assertTrue(self.keyring.is_locked())

    def test_while_locked_a_new_password_waits_in_the_file(self):
        self.keyring.start()
        self.set_password(SECRET)
        self.session.start_application()
        self.assert_password(SECRET)
        self.keyring.lock()
        # What the lock means reaches the application a moment later.
        self.wait_for(lambda: self.set_password(NEWER + str(time.monotonic_ns()))
                      or "passwordAD" in self.stored(), "a locked keyring in the application")
        self.set_password(NEWER)
        self.assertTrue(self.is_in_file(NEWER))
        self.keyring.unlock()
        self.wait_for(lambda: not self.is_in_file(NEWER), "the move")
        self.assert_password(NEWER)
        self.session.quit_application()
        self.assert_password(NEWER)
        self.assert_nowhere(SECRET, NEWER)

    def test_a_keyring_that_dies_leaves_the_password_in_the_file(self):
        self.keyring.start()
        self.set_password(SECRET)
        self.session.start_application()
        self.assert_password(SECRET)
        self.keyring.end()
        self.assert_password(SECRET)  # from memory
        self.wait_for(lambda: self.is_in_file(SECRET), "the password in the file", 30)
        self.assertEqual(self.session.store.stat().st_mode & 0o777, 0o600)
        self.keyring.start()
        self.wait_for(lambda: not self.is_in_file(SECRET), "the move")
        self.assert_nowhere(SECRET)
        self.assert_password(SECRET)

    def test_a_keyring_that_stands_still_holds_nobody_up(self):
        self.keyring.start()
        self.session.start_application()
        (daemon,) = [process for process, name in self.session._processes.items()
                     if name == "keyring"]
        os.kill(daemon.pid, signal.SIGSTOP)
        try:
            setting = subprocess.Popen([PROGRAM, "prefs", "set", "passwordAD", SECRET],
                                       env=self.session.environment)
            started = time.monotonic()
            while setting.poll() is None and time.monotonic() - started < 20:
                asked = time.monotonic()
                self.session.json("list")
                self.assertLess(time.monotonic() - asked, 1.0)
            self.assertEqual(setting.wait(20), 0)
            self.assertTrue(self.is_in_file(SECRET))
        finally:
            os.kill(daemon.pid, signal.SIGCONT)


class WithWallet(SecretTest):
    """KDE's wallet, played by fake_wallet.py."""

    def setUp(self):
        super().setUp()
        self.session.environment |= {"XDG_CURRENT_DESKTOP": "KDE", "KDE_FULL_SESSION": "true",
                                     "KDE_SESSION_VERSION": "5"}
        self.closed = self.session.folder / "wallet-is-closed"
        self.wallet = self.session.spawn("/usr/bin/python3", HERE / "fake_wallet.py", self.closed,
                                         log="wallet")
        self.wait_for(lambda: self.session.bus.owner("org.kde.kwalletd5"), "the wallet")

    def test_the_password_is_kept_in_the_wallet(self):
        self.set_password(SECRET)
        self.assert_nowhere(SECRET)
        self.assert_password(SECRET)
        self.session.start_application()
        self.assert_password(SECRET)
        self.set_password(NEWER)
        self.session.kill_application()
        self.assert_password(NEWER)
        self.assert_nowhere(NEWER)
        self.set_password("")
        self.assert_password("")

    def test_a_closed_wallet_is_not_opened_by_starting(self):
        self.set_password(SECRET)
        self.closed.touch()
        opened = self.session.log("wallet").split().count("open")
        self.session.start_application()
        self.assertIn(UNREADABLE, self.run_command("prefs", "get", "passwordAD", status=1))
        self.assertEqual(self.session.log("wallet").split().count("open"), opened)
        self.closed.unlink()
        os.kill(self.wallet.pid, signal.SIGUSR1)
        self.wait_for(lambda: self.session.tockwise("prefs", "get", "passwordAD").stdout
                      == SECRET + "\n", "the password")


class WithoutKeyring(SecretTest):
    def test_the_password_is_kept_in_the_file(self):
        self.set_password(SECRET)
        self.assertTrue(self.is_in_file(SECRET))
        self.assertEqual(self.session.store.stat().st_mode & 0o777, 0o600)
        self.assert_password(SECRET)
        self.session.start_application()
        self.assert_password(SECRET)
        self.set_password(NEWER)
        self.session.kill_application()
        self.assertTrue(self.is_in_file(NEWER))
        self.assert_password(NEWER)

    def test_a_password_that_went_with_its_keyring_can_be_entered_again(self):
        self.keyring.start()
        self.set_password(SECRET)
        self.keyring.end()
        self.session.start_application()
        self.assertIn(UNREADABLE, self.run_command("prefs", "get", "passwordAD", status=1))
        self.set_password(NEWER)
        self.assert_password(NEWER)
        self.assertTrue(self.is_in_file(NEWER))


if __name__ == "__main__":
    main()
