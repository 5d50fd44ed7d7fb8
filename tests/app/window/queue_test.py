"""Copies slowly in a real window, and ends the program while it does."""
import signal

from support import LEFT, PATIENCE, WindowTest, main, set_up_desktop, wait_until

setUpModule = set_up_desktop

QUESTION = "Zrušit operace a skončit?"
MEGABYTE = 1000 * 1000


class Queue(WindowTest):
    def setUp(self):
        self.home = self.new_home()
        self.write_settings(self.home, throttleMBps=1)
        self.left = self.new_folder()
        self.right = self.new_folder()
        (self.left / "velký").write_bytes(b"x" * 60 * MEGABYTE)
        (self.left / "malý").write_bytes(b"y" * 1000)
        self.fennik = self.start(self.left, self.right, home=self.home)
        self.fennik.expect_table(LEFT, f"{self.left.name}, 2 položky")

    def start_copying(self):
        self.fennik.press("Ctrl+A", "F5")
        self.fennik.wait(self.fennik.dialog, "the question where to copy")
        self.fennik.press("Enter")
        self.fennik.wait(lambda: any(self.right.iterdir()), "something is being copied")

    def expect_end(self):
        self.assertEqual(self.fennik.process.wait(PATIENCE), 0, self.fennik.errors())
        self.assertFalse((self.right / "velký").exists())
        self.assertEqual({file.name for file in self.right.iterdir()} - {"malý"}, set())
        self.assertEqual((self.left / "velký").stat().st_size, 60 * MEGABYTE)

    def test_asks_before_it_cancels(self):
        self.start_copying()
        self.desktop.close_active_window()
        self.fennik.expect("the question", self.dialog_name, QUESTION)
        self.fennik.press("Esc")
        self.fennik.expect("the question", self.dialog_name, None)
        self.desktop.close_active_window()
        self.fennik.expect("the question", self.dialog_name, QUESTION)
        self.fennik.press("Enter")
        self.expect_end()

    def dialog_name(self):
        dialog = self.fennik.dialog()
        return dialog and dialog.get_name()

    def test_a_signal_ends_it_without_a_question(self):
        self.start_copying()
        self.fennik.process.send_signal(signal.SIGTERM)
        self.expect_end()

    def test_a_signal_ends_it_while_a_menu_is_open(self):
        self.start_copying()
        self.fennik.press("F10", "Down")
        self.fennik.wait(lambda: self.fennik.shown("menu item"), "an open menu")
        self.fennik.process.send_signal(signal.SIGTERM)
        self.expect_end()

    def start_clash(self):
        (self.right / "velký").write_bytes(b"stays")
        self.fennik.press("Ctrl+A", "F5")
        self.fennik.wait(self.fennik.dialog, "the question where to copy")
        self.fennik.press("Enter")
        self.fennik.expect("the question", self.dialog_name, "„velký“ už v cíli je")

    def expect_clash_ended(self):
        self.assertEqual(self.fennik.process.wait(PATIENCE), 0, self.fennik.errors())
        self.assertEqual((self.right / "velký").read_bytes(), b"stays")

    def dialog_names(self):
        return [dialog.get_name() for dialog in self.fennik.shown("dialog")]

    def test_ends_while_it_asks_about_a_name(self):
        self.start_clash()
        self.desktop.close_active_window()
        self.fennik.expect("the questions", self.dialog_names, ["„velký“ už v cíli je", QUESTION])
        self.fennik.press("Esc")
        self.fennik.expect("the questions", self.dialog_names, ["„velký“ už v cíli je"])
        self.desktop.close_active_window()
        self.fennik.expect("the questions", self.dialog_names, ["„velký“ už v cíli je", QUESTION])
        self.fennik.press("Enter")
        self.expect_clash_ended()

    def test_a_signal_ends_it_while_it_asks_about_a_name(self):
        self.start_clash()
        self.fennik.process.send_signal(signal.SIGTERM)
        self.expect_clash_ended()

    def test_starts_again_after_it_was_killed(self):
        self.start_copying()
        self.fennik.wait(lambda: (self.right / "velký").exists(), "the large file is being copied")
        self.fennik.close()  # kills it
        self.assertEqual((self.left / "velký").read_bytes(), b"x" * 60 * MEGABYTE)
        self.assertEqual((self.left / "malý").read_bytes(), b"y" * 1000)
        self.fennik = self.start(self.left, self.right, home=self.home)
        self.fennik.expect_table(LEFT, f"{self.left.name}, 2 položky")

    def test_errors_are_told_and_unfold(self):
        (self.left / "malý").chmod(0)
        (self.left / "velký").write_bytes(b"x")
        self.fennik.press("Ctrl+A", "F5")
        self.fennik.wait(self.fennik.dialog, "the question where to copy")
        self.fennik.press("Enter")
        self.fennik.expect("the toast", self.fennik.toast, "Hotovo, 1 chyb")
        self.button("Fronta operací").get_action_iface().do_action(0)
        count = self.fennik.wait(lambda: next((box for box in self.fennik.shown("check box")), None),
                                 "the number of errors")
        self.assertEqual(count.get_name(), "Chyby: 1")
        count.get_action_iface().do_action(0)
        self.fennik.wait(lambda: self.fennik.text("Chyby").startswith("„malý“"), "the errors")
        # What has failed stays marked, so that it can be tried again.
        self.fennik.expect("the marks", lambda: self.fennik.status(LEFT), "Označeno 1 z 2 · 1,0\u00a0kB")

    def button(self, beginning):
        return next((button for button in self.fennik.shown("push button")
                     if button.get_name().startswith(beginning)), None)

    def test_a_job_is_read_as_a_progress_bar_and_can_be_cancelled(self):
        self.start_copying()
        self.fennik.wait(lambda: self.button("Fronta operací, "), "the queue in a few words")
        self.fennik.press("Ctrl+Alt+P")
        bar = self.fennik.wait(lambda: next(iter(self.fennik.shown("progress bar")), None),
                               "the row of the job")
        self.assertRegex(bar.get_name(), r"^Kopírování 2 položek")
        self.button("Zrušit (rozpracovaný").get_action_iface().do_action(0)
        wait_until(lambda: not (self.right / "velký").exists(), "the half of a file is gone")
        self.fennik.wait(lambda: "Zrušeno" in bar.get_name(), "the job is cancelled")


if __name__ == "__main__":
    main()
