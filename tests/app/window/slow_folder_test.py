"""A folder that does not answer must hold up nothing but itself.

The kernel is made slow for that one folder: the tracer holds back the call that reads its entries.
"""
import time

from support import (LEFT, PATIENCE, RIGHT, UP, WindowTest, has_ended, main, set_up_desktop,
                     stays_so, wait_until)

setUpModule = set_up_desktop

DELAY = 10  # seconds until the folder answers after all
NO_ANSWER = "Složka neodpovídá – Esc ji opustí"


class SlowFolder(WindowTest):
    def setUp(self):
        self.left = self.new_folder("Pomalá/", "a.txt", "b.txt")
        self.slow = self.left / "Pomalá"
        (self.slow / "pozdě.txt").touch()
        self.right = self.new_folder(*(f"{number}.txt" for number in range(1, 10)))
        self.calls = self.desktop.folder / "calls.log"

    def start_slowed(self, left):
        tracer = ["strace", "-f", "-qq", "-o", self.calls, "-P", self.slow, "-e",
                  "trace=getdents64", "-e",
                  f"inject=getdents64:delay_enter={DELAY * 1_000_000}:when=1"]
        fennik = self.start(left, self.right, wrapper=tracer)
        fennik.expect_table(RIGHT, f"{self.right.name}, 9 položek")
        return fennik

    def has_answered(self):
        # The end of the folder is the second answer, and comes at once after the first.
        return self.calls.read_text(encoding="utf-8").count("= 0") > 0

    def test_leaves_the_rest_of_the_window_usable_and_comes_too_late_once_left(self):
        fennik = self.start_slowed(self.left)
        fennik.expect_table(LEFT, f"{self.left.name}, 3 položky")
        fennik.press("Down", "Enter")
        entered = time.monotonic()
        fennik.expect("the status line", lambda: fennik.status(LEFT), "Načítám…")
        self.assertEqual(fennik.names(LEFT), [UP, "Pomalá", "a.txt", "b.txt"])

        fennik.press("Tab")
        for number in range(1, 5):
            pressed = time.monotonic()
            fennik.press("Down")
            fennik.expect_cursor(f"{number}.txt", RIGHT)
            self.assertLess(time.monotonic() - pressed, 3)
        fennik.press("NumPlus")
        self.desktop.type("[12]*")
        fennik.press("Enter")
        fennik.wait(lambda: fennik.status(RIGHT).startswith("Označeno 2 z 9"), "the mask marks")
        fennik.press("Ctrl+L", "End")
        self.desktop.type("/../")
        fennik.wait(lambda: any(item.endswith(self.left.name)
                                for item in fennik.list_items("Návrhy složek")),
                    "folders are suggested")
        fennik.press("Esc", "Ctrl+R")
        fennik.expect("the table", lambda: fennik.table(RIGHT).get_name(),
                      f"{RIGHT}, {self.right.name}, 9 položek")

        if time.monotonic() - entered > 4.5:
            self.skipTest("The machine is too slow to see that the folder is loading.")
        stays_so(lambda: fennik.status(LEFT) == "Načítám…" or time.monotonic() - entered > 4.8,
                 "the folder is said to be loading", 4.8 - (time.monotonic() - entered))
        fennik.expect("the status line", lambda: fennik.status(LEFT), NO_ANSWER, timeout=2)
        self.assertFalse(self.has_answered(), "The folder has answered before it was given up.")

        fennik.press("Tab", "Esc")
        fennik.expect("the status line", lambda: fennik.status(LEFT), "3 položky")
        self.assertFalse(self.has_answered(), "Esc has waited for the folder.")
        fennik.press("End")
        fennik.expect_cursor("b.txt")
        wait_until(self.has_answered, "the folder has answered", DELAY)
        stays_so(lambda: fennik.table(LEFT).get_name() == f"{LEFT}, {self.left.name}, 3 položky"
                 and fennik.names(LEFT) == [UP, "Pomalá", "a.txt", "b.txt"]
                 and fennik.cursor(LEFT).startswith("b.txt"),
                 "the panel shows the folder that Esc returned to")

    def test_can_be_left_for_another_folder_without_waiting(self):
        fennik = self.start_slowed(self.left)
        fennik.expect_table(LEFT, f"{self.left.name}, 3 položky")
        fennik.press("Down", "Enter")
        fennik.expect("the status line", lambda: fennik.status(LEFT), "Načítám…")
        fennik.press("Backspace")
        fennik.wait(lambda: fennik.table(LEFT).get_name().startswith(
            f"{LEFT}, {self.desktop.folder.name}, "), "the folder above is shown", timeout=2)
        fennik.expect_cursor(self.left.name)
        self.assertFalse(self.has_answered())

    def test_can_be_stopped_where_it_is_the_first_one_and_tried_again(self):
        fennik = self.start_slowed(self.slow)
        fennik.expect("the status line", lambda: fennik.status(LEFT), "Načítám…")
        fennik.expect_title("Pomalá – Fennik")
        fennik.press("Esc")
        fennik.expect("the message", lambda: fennik.message(LEFT),
                      "Složku „Pomalá“ nejde přečíst: načítání bylo zastaveno.")
        self.assertFalse(self.has_answered())
        fennik.press("Tab", "Down")
        fennik.expect_cursor("1.txt", RIGHT)

    def test_does_not_keep_the_program_from_ending(self):
        fennik = self.start_slowed(self.left)
        fennik.expect_table(LEFT, f"{self.left.name}, 3 položky")
        fennik.press("Down", "Enter")
        fennik.expect("the status line", lambda: fennik.status(LEFT), "Načítám…")
        program = fennik.application.get_process_id()
        self.desktop.close_active_window()
        wait_until(lambda: has_ended(program), "the program has ended", 4)
        self.assertFalse(self.has_answered())
        # The tracer itself does not end before the delay is over.
        self.assertEqual(fennik.process.wait(DELAY + PATIENCE), 0, fennik.errors())


if __name__ == "__main__":
    main()
