"""Drives the panels with real keys, and holds what the window and its title then show."""
import os
import shutil

from support import LEFT, RIGHT, UP, WindowTest, main, set_up_desktop, stays_so

setUpModule = set_up_desktop


class Cursor(WindowTest):
    def setUp(self):
        self.left = self.new_folder(*(f"{number:02}.txt" for number in range(1, 81)))
        self.fennik = self.start(self.left, self.new_folder())
        self.fennik.expect_table(LEFT, f"{self.left.name}, 80 položek")

    def test_begins_on_the_first_row_of_the_left_panel(self):
        self.fennik.expect_cursor(UP)
        self.assertEqual(self.fennik.keyboard_side(), LEFT)

    def test_the_arrows_move_it_by_one_row_and_stop_at_the_first(self):
        self.fennik.press("Down", "Down", "Down")
        self.fennik.expect_cursor("03.txt")
        self.fennik.press("Up")
        self.fennik.expect_cursor("02.txt")
        self.fennik.press("Up", "Up", "Up", "Up")
        self.fennik.expect_cursor(UP)

    def test_end_goes_to_the_last_row_and_home_to_the_first(self):
        self.fennik.press("End")
        self.fennik.expect_cursor("80.txt")
        self.fennik.press("Down")
        self.fennik.expect_cursor("80.txt")
        self.fennik.press("Home")
        self.fennik.expect_cursor(UP)

    def test_a_page_is_the_rows_in_view_but_one(self):
        table = self.fennik.table(LEFT)
        coordinates = self.desktop.accessibility.CoordType.SCREEN
        first = table.get_accessible_at(0, 0).get_extents(coordinates)
        bottom = table.get_extents(coordinates)
        page = (bottom.y + bottom.height - first.y) // first.height - 1
        self.assertGreater(page, 10)
        self.fennik.press("PageDown")
        self.fennik.expect_cursor(f"{page:02}.txt")
        self.fennik.press("Down", "PageUp")
        self.fennik.expect_cursor("01.txt")
        self.fennik.press("PageUp")
        self.fennik.expect_cursor(UP)
        self.fennik.press("PageDown", "PageDown", "PageDown", "PageDown")
        self.fennik.expect_cursor("80.txt")

    def test_its_row_is_always_in_view(self):
        for key, name in (("End", "80.txt"), ("Home", UP), ("PageDown", None), ("PageDown", None)):
            self.fennik.press(key)
            if name:
                self.fennik.expect_cursor(name)
            table = self.fennik.table(LEFT)
            coordinates = self.desktop.accessibility.CoordType.SCREEN
            area = table.get_extents(coordinates)

            def cursor_is_in_view(table=table, area=area):
                cells = (table.get_accessible_at(row, 0) for row in range(table.get_n_rows()))
                cell = next(cell for cell in cells if self.fennik.has_state(cell, "FOCUSED"))
                place = cell.get_extents(coordinates)
                return area.y < place.y and place.y + place.height <= area.y + area.height
            self.fennik.wait(cursor_is_in_view, f"the cursor is in view after {key}")


class Folders(WindowTest):
    def setUp(self):
        self.left = self.new_folder("Alfa/", "Beta/", "a.txt", "b.txt")
        (self.left / "Beta" / "Vnitřní").mkdir()
        self.right = self.new_folder("vpravo.txt")
        self.fennik = self.start(self.left, self.right)
        self.fennik.expect_table(LEFT, f"{self.left.name}, 4 položky")
        self.fennik.expect_table(RIGHT, f"{self.right.name}, 1 položka")

    def enter_beta(self):
        self.fennik.press("Down", "Down")
        self.fennik.expect_cursor("Beta")
        self.fennik.press("Enter")
        self.fennik.expect_table(LEFT, "Beta, 1 položka")

    def test_enter_opens_a_folder_and_backspace_returns_with_the_cursor_on_it(self):
        self.fennik.expect_title(f"{self.left.name} – Fennik")
        self.enter_beta()
        self.fennik.expect_title("Beta – Fennik")
        self.assertEqual(self.fennik.names(LEFT), [UP, "Vnitřní"])
        self.fennik.expect_cursor(UP)
        self.fennik.press("Backspace")
        self.fennik.expect_table(LEFT, f"{self.left.name}, 4 položky")
        self.fennik.expect_cursor("Beta")
        self.fennik.expect_title(f"{self.left.name} – Fennik")

    def test_enter_on_the_row_above_all_others_goes_up(self):
        self.enter_beta()
        self.fennik.press("Enter")
        self.fennik.expect_table(LEFT, f"{self.left.name}, 4 položky")
        self.fennik.expect_cursor("Beta")

    def test_enter_on_a_file_stays_in_the_folder(self):
        self.fennik.press("End", "Enter")
        self.fennik.expect_cursor("b.txt")
        name = f"{LEFT}, {self.left.name}, 4 položky"
        stays_so(lambda: self.fennik.table(LEFT).get_name() == name
                 and not self.fennik.message(LEFT), "the folder of the file is shown")

    def test_alt_with_the_arrows_goes_back_and_forward(self):
        self.enter_beta()
        self.fennik.press("Alt+Left")
        self.fennik.expect_table(LEFT, f"{self.left.name}, 4 položky")
        self.fennik.expect_cursor("Beta")
        self.fennik.press("Alt+Right")
        self.fennik.expect_table(LEFT, "Beta, 1 položka")

    def test_tab_hands_the_keyboard_to_the_other_panel_and_back(self):
        self.fennik.press("Tab")
        self.fennik.expect("the panel with the keyboard", self.fennik.keyboard_side, RIGHT)
        self.fennik.expect_title(f"{self.right.name} – Fennik")
        self.fennik.press("Down")
        self.fennik.expect_cursor("vpravo.txt", RIGHT)
        self.fennik.expect_cursor(UP, LEFT)
        self.fennik.press("Shift+Tab")
        self.fennik.expect("the panel with the keyboard", self.fennik.keyboard_side, LEFT)
        self.fennik.expect_title(f"{self.left.name} – Fennik")


class Unwatched(WindowTest):
    """Where the system watches no more folders, everything is still there when it is asked for."""

    def setUp(self):
        self.left = self.new_folder("Alfa/", "Beta/", "a.txt", "b.txt")
        tracer = ["strace", "-f", "-qq", "-o", "/dev/null", "-e", "trace=inotify_add_watch", "-e",
                  "inject=inotify_add_watch:error=ENOSPC"]
        self.fennik = self.start(self.left, self.new_folder(), wrapper=tracer)
        self.fennik.expect_table(LEFT, f"{self.left.name}, 4 položky")
        self.fennik.press("End")
        self.fennik.expect_cursor("b.txt")

    def test_ctrl_r_shows_what_was_created_and_deleted_meanwhile(self):
        (self.left / "aa.txt").touch()
        (self.left / "Alfa").rmdir()
        stays_so(lambda: self.fennik.names(LEFT) == [UP, "Alfa", "Beta", "a.txt", "b.txt"],
                 "nobody has told of the changes")
        self.assertEqual(self.fennik.toast(), "")
        self.fennik.press("Ctrl+R")
        self.fennik.expect("the rows", lambda: self.fennik.names(LEFT),
                           [UP, "Beta", "a.txt", "aa.txt", "b.txt"])
        self.fennik.expect_cursor("b.txt")

    def test_the_cursor_goes_to_a_neighbour_of_a_deleted_file(self):
        (self.left / "b.txt").unlink()
        self.fennik.press("Ctrl+R")
        self.fennik.expect_table(LEFT, f"{self.left.name}, 3 položky")
        self.fennik.expect_cursor("a.txt")


class QuickPresses(WindowTest):
    def setUp(self):
        # So deep that no number of presses gets out of the folders of this test.
        self.left = self.new_folder().joinpath(*["hloub"] * 130)
        (self.left / "Alfa" / "Beta" / "Gama").mkdir(parents=True)
        (self.left / "a.txt").touch()
        self.fennik = self.start(self.left, self.new_folder("vpravo.txt"))
        self.fennik.expect_table(LEFT, "hloub, 2 položky")

    def test_leave_what_belongs_together(self):
        # A press that comes while a folder is loading goes to what is still shown, so where the way
        # leads is a matter of speed; but all that is shown has to be about one folder.
        self.fennik.press("Down", *["Enter", "Backspace"] * 40, *["Enter"] * 7,
                          *["Backspace", "Down", "Enter", "Ctrl+R", "Tab", "Tab"] * 10)
        self.fennik.press("Tab", "Down")
        self.fennik.expect_cursor("vpravo.txt", RIGHT)
        self.fennik.press("Tab")
        self.fennik.wait(self.all_is_about_one_folder, "all that is shown is about one folder")
        stays_so(self.all_is_about_one_folder, "all that is shown is about one folder")
        self.fennik.press("End")
        self.fennik.expect_cursor(self.fennik.names(LEFT)[-1])

    def all_is_about_one_folder(self):
        folder = self.fennik.shown_path(LEFT)
        name = os.path.basename(folder)
        entries = set(os.listdir(folder))
        table = self.fennik.table(LEFT).get_name()
        return (self.desktop.active_title() == f"{name} – Fennik"
                and table.startswith(f"{LEFT}, {name}, {len(entries)} ")
                and self.fennik.status(LEFT).startswith(f"{len(entries)} ")
                and set(self.fennik.names(LEFT)) == {UP, *entries}
                and self.fennik.cursor(LEFT))


class Layouts(WindowTest):
    layouts = ("us", "cz", "cz(qwerty)")

    def setUp(self):
        self.addCleanup(self.desktop.use_layout, "us")

    def test_ctrl_alt_and_a_digit_key_sort_whatever_the_key_types(self):
        folder = self.new_folder("složka/", "a.zip", "b.txt", "c.pdf")
        for name, size, time in (("a.zip", 20, 3000), ("b.txt", 30, 1000), ("c.pdf", 10, 2000)):
            (folder / name).write_bytes(b"x" * size)
            os.utime(folder / name, (time, time))
        fennik = self.start(folder, self.new_folder())
        fennik.expect_table(LEFT, f"{folder.name}, 4 položky")
        for layout in self.layouts:
            self.desktop.use_layout(layout)
            for key, files in (("Ctrl+Alt+2", ["c.pdf", "b.txt", "a.zip"]),
                               ("Ctrl+Alt+3", ["b.txt", "a.zip", "c.pdf"]),
                               ("Ctrl+Alt+4", ["a.zip", "c.pdf", "b.txt"]),
                               ("Ctrl+Alt+1", ["a.zip", "b.txt", "c.pdf"]),
                               ("Ctrl+Alt+1", ["c.pdf", "b.txt", "a.zip"])):
                with self.subTest(layout=layout, key=key):
                    fennik.press(key)
                    fennik.expect("the order", lambda: fennik.names(LEFT), [UP, "složka", *files])

    def test_the_cursor_stays_on_its_file_when_the_order_changes(self):
        folder = self.new_folder("a.zip", "b.txt", "c.pdf")
        fennik = self.start(folder, self.new_folder())
        fennik.expect_table(LEFT, f"{folder.name}, 3 položky")
        fennik.press("Down")
        fennik.expect_cursor("a.zip")
        fennik.press("Ctrl+Alt+2")
        fennik.expect("the order", lambda: fennik.names(LEFT), [UP, "c.pdf", "b.txt", "a.zip"])
        fennik.expect_cursor("a.zip")

    def test_ctrl_shift_and_the_full_stop_key_show_and_hide_hidden_files_in_both_panels(self):
        left, right = self.new_folder(".skrytý", "a.txt"), self.new_folder(".tajný")
        fennik = self.start(left, right)
        fennik.expect_table(LEFT, f"{left.name}, 1 položka")
        for layout in self.layouts:
            self.desktop.use_layout(layout)
            with self.subTest(layout=layout):
                fennik.press("Ctrl+Shift+Period")
                fennik.expect("the rows", lambda: fennik.names(LEFT), [UP, ".skrytý", "a.txt"])
                fennik.expect("the rows", lambda: fennik.names(RIGHT), [UP, ".tajný"])
                fennik.press("Ctrl+Shift+Period")
                fennik.expect("the rows", lambda: fennik.names(LEFT), [UP, "a.txt"])
                fennik.expect("the rows", lambda: fennik.names(RIGHT), [UP])

    def test_ctrl_r_is_the_key_labelled_r_where_the_letters_are_not_latin(self):
        folder = self.new_folder("a.txt")
        fennik = self.start(folder, self.new_folder())
        fennik.expect_table(LEFT, f"{folder.name}, 1 položka")
        for layout in ("cz", "ru,us"):
            self.desktop.use_layout(layout)
            with self.subTest(layout=layout):
                (folder / f"{layout}.txt").touch()
                fennik.press("Ctrl+R")
                fennik.wait(lambda: f"{layout}.txt" in fennik.names(LEFT), "the new file is shown")


class Failures(WindowTest):
    def setUp(self):
        self.left = self.new_folder("Zamčená/", "a.txt")
        self.locked = self.left / "Zamčená"
        self.right = self.new_folder("vpravo.txt")

    def test_a_folder_without_access_says_so_and_esc_returns_to_the_rows(self):
        self.locked.chmod(0)
        self.addCleanup(self.locked.chmod, 0o700)
        fennik = self.start(self.left, self.right)
        fennik.expect_table(LEFT, f"{self.left.name}, 2 položky")
        fennik.press("Down", "Enter")
        sentence = "Složku „Zamčená“ nejde otevřít: nemáte k ní přístup."
        fennik.expect("the message", lambda: fennik.message(LEFT), sentence)
        fennik.expect("the status line", lambda: fennik.status(LEFT), "Bez přístupu")
        fennik.expect("the description of the table",
                      lambda: fennik.table(LEFT).get_description(), sentence)
        fennik.expect_title(f"{self.left.name} – Fennik")
        fennik.press("Tab", "Down")
        fennik.expect_cursor("vpravo.txt", RIGHT)
        fennik.press("Tab", "Esc")
        fennik.expect("the message", lambda: fennik.message(LEFT), "")
        fennik.expect("the rows", lambda: fennik.names(LEFT), [UP, "Zamčená", "a.txt"])
        fennik.expect_cursor("Zamčená")
        fennik.expect("the status line", lambda: fennik.status(LEFT), "2 položky")

    def test_enter_tries_again_once_access_is_granted(self):
        self.locked.chmod(0)
        self.addCleanup(self.locked.chmod, 0o700)
        fennik = self.start(self.left, self.right)
        fennik.expect_table(LEFT, f"{self.left.name}, 2 položky")
        fennik.press("Down", "Enter")
        fennik.wait(lambda: fennik.message(LEFT), "the failure is shown")
        self.locked.chmod(0o700)
        fennik.press("Enter")
        fennik.expect_table(LEFT, "Zamčená, 0 položek")
        fennik.expect("the message", lambda: fennik.message(LEFT), "Složka je prázdná")

    def test_a_failure_has_room_for_its_sentence(self):
        self.locked.chmod(0)
        self.addCleanup(self.locked.chmod, 0o700)
        fennik = self.start(self.left, self.right)
        fennik.expect_table(LEFT, f"{self.left.name}, 2 položky")
        fennik.press("Down", "Enter")
        fennik.wait(lambda: fennik.message(LEFT), "the failure is shown")
        self.check_room(fennik, fennik.message(LEFT))

    def test_a_failure_stands_in_place_of_the_rows(self):
        self.locked.chmod(0)
        self.addCleanup(self.locked.chmod, 0o700)
        fennik = self.start(self.left, self.right)
        fennik.expect_table(LEFT, f"{self.left.name}, 2 položky")
        fennik.press("Down", "Enter")
        fennik.wait(lambda: fennik.message(LEFT), "the failure is shown")
        rows_in_view = [cell.get_name() for cell in fennik.all(fennik.table(LEFT))
                        if cell.get_role_name() == "table cell"
                        and fennik.has_state(cell, "SHOWING")]
        self.assertEqual(rows_in_view, [], "These rows are drawn under the sentence.")

    def test_an_empty_folder_says_so_and_has_room_for_its_sentence(self):
        fennik = self.start(self.locked, self.right)
        fennik.expect("the message", lambda: fennik.message(LEFT), "Složka je prázdná")
        self.check_room(fennik, "Složka je prázdná")

    def check_room(self, fennik, sentence):
        label = next(label for label in fennik.all() if label.get_name() == sentence
                     and label.get_role_name() == "label")
        place = label.get_extents(self.desktop.accessibility.CoordType.SCREEN)
        # An average letter of the interface's font is wider and higher than this.
        needed = len(sentence) * 5 * 15
        self.assertGreaterEqual(place.width * place.height, needed,
                                f"{place.width} × {place.height} pixels cut off „{sentence}“")

    def test_a_folder_deleted_while_shown_leads_to_the_nearest_one_that_exists(self):
        deep = self.left / "Zamčená" / "uvnitř" / "hluboko"
        deep.mkdir(parents=True)
        fennik = self.start(deep, self.right)
        fennik.expect_table(LEFT, "hluboko, 0 položek")
        shutil.rmtree(self.left / "Zamčená" / "uvnitř")
        fennik.press("Ctrl+R")
        fennik.expect("the message", lambda: fennik.message(LEFT),
                      "Složka „hluboko“ teď není dostupná – neexistuje, nebo je na odpojeném disku "
                      "či síti.")
        fennik.expect("the status line", lambda: fennik.status(LEFT), "Nedostupná")
        fennik.expect("the rows", lambda: fennik.names(LEFT), [])
        fennik.press("Backspace")
        fennik.expect_table(LEFT, "Zamčená, 0 položek")
        fennik.expect_title("Zamčená – Fennik")


if __name__ == "__main__":
    main()
