"""Holds that what happens to a shown folder appears by itself and moves no more than it must."""
import os
import shutil
import time

from support import LEFT, RIGHT, UP, WindowTest, main, set_up_desktop, stays_so

setUpModule = set_up_desktop

AT_ONCE = 1.5  # seconds; half a second on a machine that does nothing else


class Watching(WindowTest):
    def setUp(self):
        self.left = self.new_folder(*(f"{number:03}.txt" for number in range(1, 201)))
        self.fennik = self.start(self.left, self.new_folder("vpravo.txt"))
        self.fennik.expect_table(LEFT, f"{self.left.name}, 200 položek")

    def expect_count(self, count, timeout=AT_ONCE):
        self.fennik.expect("the name of the table", lambda: self.fennik.table(LEFT).get_name(),
                           f"{LEFT}, {self.left.name}, {count} položek", timeout)

    def top_row(self):
        """The name of the row that stands first in view, with its place on the screen."""
        table = self.fennik.table(LEFT)
        coordinates = self.desktop.accessibility.CoordType.SCREEN
        header = self.fennik.shown("table", self.fennik.window())[0].get_extents(coordinates).y
        for row in range(table.get_n_rows()):
            place = table.get_accessible_at(row, 0).get_extents(coordinates)
            if place.y > header and place.height > 0:
                return table.get_accessible_at(row, 0).get_name().split(", ")[0], place.y
        return None

    def test_shows_what_was_created_deleted_renamed_and_written(self):
        (self.left / "0000.txt").touch()
        self.expect_count(201)
        self.assertEqual(self.fennik.names(LEFT)[:2], [UP, "0000.txt"])
        (self.left / "001.txt").unlink()
        self.expect_count(200)
        (self.left / "002.txt").rename(self.left / "!první.txt")
        self.fennik.wait(lambda: self.fennik.names(LEFT)[1] == "!první.txt",
                         "the new name is shown", AT_ONCE)
        self.assertNotIn("002.txt", self.fennik.names(LEFT))
        (self.left / "003.txt").write_bytes(b"x" * 5000)
        self.fennik.wait(lambda: any(row.startswith("003.txt, textový dokument, 5,0\u00a0kB")
                                     for row in self.fennik.rows(LEFT)), "the new size is shown",
                         AT_ONCE)

    def test_leaves_cursor_marks_and_scroll_position_as_they_are(self):
        self.fennik.press("End", *["PageUp"] * 2, "Insert", "Up")
        self.fennik.wait(lambda: self.fennik.status(LEFT).startswith("Označeno 1 z 200"),
                         "the mark is set")
        cursor, top = self.fennik.cursor(), self.top_row()
        for number in range(10):
            (self.left / f"!{number}.txt").touch()
        (self.left / "199.txt").unlink()
        self.expect_count(209)
        self.fennik.expect("the row under the cursor", self.fennik.cursor, cursor)
        self.assertEqual(self.top_row(), top)
        self.assertTrue(self.fennik.status(LEFT).startswith("Označeno 1 z 209"))
        self.fennik.press("Down")
        self.fennik.expect_cursor(f"{int(cursor[:3]) + 1:03}.txt")

    def test_takes_a_burst_of_ten_thousand_changes_while_keys_are_obeyed(self):
        self.fennik.press("Tab", "Down")
        self.fennik.expect_cursor("vpravo.txt", RIGHT)
        created = 0
        deadline = time.monotonic() + 15
        slowest = 0
        while created < 10_000 and time.monotonic() < deadline:
            for _ in range(2000):
                os.close(os.open(self.left / f"nový {created}", os.O_CREAT | os.O_WRONLY))
                created += 1
            pressed = time.monotonic()
            key, name = (("Up", UP), ("Down", "vpravo.txt"))[created // 2000 % 2]
            self.fennik.press(key)
            self.fennik.expect_cursor(name, RIGHT)
            slowest = max(slowest, time.monotonic() - pressed)
        self.assertEqual(created, 10_000)
        self.expect_count("10\u202f200", timeout=4)
        self.assertLess(slowest, 3)

    def test_says_so_when_the_folder_is_deleted_or_moved_away(self):
        shutil.rmtree(self.left)
        sentence = (f"Složka „{self.left.name}“ teď není dostupná – neexistuje, nebo je na "
                    "odpojeném disku či síti.")
        self.fennik.expect("the message", lambda: self.fennik.message(LEFT), sentence, AT_ONCE)
        self.fennik.expect("the status line", lambda: self.fennik.status(LEFT), "Nedostupná")
        self.left.mkdir()
        (self.left / "zpátky").touch()
        self.fennik.press("Enter")
        self.fennik.expect("the rows", lambda: self.fennik.names(LEFT), [UP, "zpátky"])
        away = self.left.with_name(f"{self.left.name} jinde")
        self.left.rename(away)
        self.fennik.expect("the message", lambda: self.fennik.message(LEFT), sentence, AT_ONCE)
        self.assertEqual([entry.name for entry in away.iterdir()], ["zpátky"])
        self.fennik.press("Backspace")
        self.fennik.wait(lambda: not self.fennik.message(LEFT) and self.fennik.names(LEFT),
                         "the folder above is shown")

    def test_says_so_when_a_file_takes_the_place_of_the_folder(self):
        shutil.rmtree(self.left)
        self.left.write_text("soubor", encoding="utf-8")
        self.fennik.wait(lambda: f"„{self.left.name}“" in self.fennik.message(LEFT),
                         "the panel says so")
        self.fennik.press("Backspace")
        self.fennik.wait(lambda: self.fennik.cursor(), "the panel is usable")
        self.assertEqual(self.left.read_text(encoding="utf-8"), "soubor")

    def test_keeps_both_panels_of_one_folder_alike(self):
        self.fennik.press("Ctrl+Equal")
        self.fennik.expect_table(RIGHT, f"{self.left.name}, 200 položek")
        (self.left / "nový").touch()
        self.expect_count(201)
        self.fennik.expect_table(RIGHT, f"{self.left.name}, 201 položek")

    def test_does_not_show_the_folder_again_that_was_left(self):
        self.fennik.press("Backspace")
        self.fennik.wait(lambda: self.left.name in self.fennik.names(LEFT),
                         "the folder above is shown")
        cursor = self.fennik.cursor()
        (self.left / "nový").touch()
        stays_so(lambda: self.left.name in self.fennik.names(LEFT)
                 and self.fennik.cursor().split(", ")[0] == cursor.split(", ")[0],
                 "the folder above is shown")


if __name__ == "__main__":
    main()
