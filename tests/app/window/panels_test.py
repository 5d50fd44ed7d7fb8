"""Drives marks, tabs, sizes, the search by letters, menus and the function keys with real keys."""
from support import (LEFT, RIGHT, UP, WindowTest, main, row_name, set_up_desktop, stays_so,
                     wait_until)

setUpModule = set_up_desktop


class Marks(WindowTest):
    def setUp(self):
        self.left = self.new_folder("Složka/", "a.pdf", "b.txt", "c.TXT", "čaj.txt")
        for number, name in enumerate(("a.pdf", "b.txt", "c.TXT", "čaj.txt")):
            (self.left / name).write_bytes(b"x" * 1000 * 2 ** number)
        self.fennik = self.start(self.left, self.new_folder())
        self.fennik.expect_table(LEFT, f"{self.left.name}, 5 položek")

    def marked(self):
        return [row_name(row) for row in self.fennik.rows(LEFT) if row.endswith(", označeno")]

    def expect_marked(self, *names, chip=None):
        self.fennik.expect("what is marked", self.marked, list(names))
        if chip:
            self.fennik.expect("the status line", lambda: self.fennik.status(LEFT), chip)

    def test_by_insert_and_shift_with_the_arrows(self):
        self.fennik.press("Insert")
        self.expect_marked(chip="5 položek")
        self.fennik.press("Home", "Down", "Down", "Insert")
        self.expect_marked("a.pdf", chip="Označeno 1 z 5 · 1,0\u00a0kB")
        self.fennik.expect_cursor("b.txt")
        self.fennik.press("Shift+Down", "Shift+Down")
        self.expect_marked("a.pdf", "b.txt", "c.TXT", chip="Označeno 3 z 5 · 7,0\u00a0kB")
        self.fennik.expect_cursor("čaj.txt")
        self.fennik.press("Up", "Up", "Insert")
        self.expect_marked("a.pdf", "c.TXT")
        self.fennik.press("End", "Shift+Up", "Shift+Up")
        self.expect_marked("a.pdf", "c.TXT", "čaj.txt")
        self.fennik.expect_cursor("b.txt")
        self.fennik.press("Esc")
        self.expect_marked(chip="5 položek")

    def test_of_all_and_of_the_others(self):
        self.fennik.press("Ctrl+A")
        self.expect_marked("Složka", "a.pdf", "b.txt", "c.TXT", "čaj.txt")
        self.fennik.press("Down", "Insert", "NumMultiply")
        self.expect_marked("Složka")
        self.fennik.press("Ctrl+Alt+I")
        self.expect_marked("a.pdf", "b.txt", "c.TXT", "čaj.txt", chip="Označeno 4 z 5 · 15\u00a0kB")
        self.fennik.press("Ctrl+Alt+A")
        self.expect_marked(chip="5 položek")

    def test_stay_with_their_files_and_with_their_panel(self):
        self.fennik.press("End", "Insert", "Ctrl+Alt+3", "Ctrl+Shift+Period", "Ctrl+R", "Tab",
                          "Ctrl+A", "Tab")
        self.expect_marked("čaj.txt")
        (self.left / "čaj.txt").unlink()
        self.expect_marked(chip="4 položky")

    def test_by_a_mask(self):
        self.fennik.press("NumPlus")
        dialog = self.fennik.wait(self.fennik.dialog, "the dialog is open")
        self.assertEqual((dialog.get_name(), dialog.get_description()),
                         ("Označit podle masky", f"{self.left.name} · 5 položek"))
        self.fennik.expect("the focused control", self.fennik.focused, "Maska")
        # Letters and named keys that are combinations of panels write and move in the field only.
        self.desktop.type("*.PDFx*")
        self.fennik.press("Backspace", "Backspace", "Home", "Space", "Backspace", "End")
        self.fennik.expect("the mask", lambda: self.fennik.text("Maska"), "*.PDF")
        self.fennik.expect("the number of matches", self.matches, "Odpovídá 1 položka, 1,0\u00a0kB")
        self.desktop.type(";?.txt;*/")
        self.fennik.expect("the number of matches", self.matches,
                           "Odpovídají 4 položky, 7,0\u00a0kB")
        self.fennik.press("Enter")
        self.expect_marked("Složka", "a.pdf", "b.txt", "c.TXT", chip="Označeno 4 z 5 · 7,0\u00a0kB")
        self.assertIsNone(self.fennik.dialog())
        self.fennik.expect_cursor(UP)

        # The last mask is at hand.
        self.fennik.press("NumMinus")
        self.fennik.expect("the mask", lambda: self.fennik.text("Maska"), "*.PDF;?.txt;*/")
        self.desktop.type("*.txt")
        self.fennik.press("NumEnter")
        self.expect_marked("Složka", "a.pdf")
        self.fennik.press("Ctrl+Alt+Equal", "Down", "Enter")
        self.expect_marked("Složka", "a.pdf", "b.txt", "c.TXT")

    def matches(self):
        return next(field for field in self.fennik.shown("text")
                    if field.get_name() == "Maska").get_description()

    def test_stay_as_they_are_when_the_dialog_is_left(self):
        self.fennik.press("Down", "Insert", "NumPlus")
        self.fennik.wait(self.fennik.dialog, "the dialog is open")
        self.desktop.type("*")
        self.fennik.expect("the mask", lambda: self.fennik.text("Maska"), "*")
        # Neither Tab nor a shortcut of the panels gets out of the dialog.
        self.fennik.press("Tab", "Tab", "Tab", "Tab", "Ctrl+T", "Ctrl+U", "Ctrl+Alt+A", "F10")
        self.fennik.expect("the tabs", lambda: self.fennik.tabs(LEFT), [])
        self.assertIsNotNone(self.fennik.dialog())
        self.fennik.press("Esc")
        self.fennik.wait(lambda: not self.fennik.dialog(), "the dialog is closed")
        self.expect_marked("Složka")
        self.fennik.press("Down")
        self.fennik.expect_cursor("b.txt")

    def test_a_mask_of_nothing_but_blanks_marks_nothing(self):
        self.fennik.press("NumPlus")
        self.fennik.wait(self.fennik.dialog, "the dialog is open")
        self.desktop.type("  ")
        self.fennik.press("Enter")
        stays_so(self.fennik.dialog, "the dialog waits for a mask", 0.3)
        self.desktop.type("[;;b.*")
        self.fennik.press("Enter")
        self.expect_marked("b.txt")


class Tabs(WindowTest):
    def setUp(self):
        self.left = self.new_folder("Alfa/", "Beta/", "c.txt")
        (self.left / "Alfa" / "uvnitř.txt").touch()
        self.name = self.left.name
        self.right = self.new_folder("vpravo.txt")
        self.fennik = self.start(self.left, self.right)
        self.fennik.expect_table(LEFT, f"{self.name}, 3 položky")

    def expect_tabs(self, *titles, side=LEFT):
        self.fennik.expect("the tabs", lambda: self.fennik.tabs(side), list(titles))

    def test_open_beside_the_active_one_and_keep_folder_cursor_order_marks_and_history(self):
        fennik = self.fennik
        self.expect_tabs()
        fennik.press("Down", "Insert", "Ctrl+Alt+3")
        fennik.open_tab()
        self.expect_tabs(self.name, f"[{self.name}]")
        self.expect_tabs(f"[{self.right.name}]", side=RIGHT)
        fennik.expect_cursor("Beta")
        fennik.expect("the status line", lambda: fennik.status(LEFT), "3 položky")
        fennik.press("Up", "Enter")
        fennik.expect_table(LEFT, "Alfa, 1 položka")
        self.expect_tabs(self.name, "[Alfa]")
        fennik.press("Ctrl+Tab")
        self.expect_tabs(f"[{self.name}]", "Alfa")
        fennik.expect_table(LEFT, f"{self.name}, 3 položky")
        fennik.expect_cursor("Beta")
        fennik.wait(lambda: fennik.status(LEFT).startswith("Označeno 1 z 3"), "the mark is back")
        fennik.press("Alt+Left")
        stays_so(lambda: fennik.table(LEFT).get_name() == f"{LEFT}, {self.name}, 3 položky",
                 "a tab has no history of another one", 0.3)
        fennik.press("Ctrl+Shift+Tab")
        fennik.expect_table(LEFT, "Alfa, 1 položka")
        fennik.expect_cursor(UP)
        fennik.press("Alt+Left")
        fennik.expect_table(LEFT, f"{self.name}, 3 položky")
        fennik.expect_cursor("Alfa")

    def test_go_round_and_close_with_their_keys(self):
        fennik = self.fennik
        fennik.press("Ctrl+W")
        fennik.open_tab()
        fennik.press("Down", "Enter")
        self.expect_tabs(self.name, "[Alfa]")
        fennik.press("Ctrl+T", "Backspace")
        self.expect_tabs(self.name, "Alfa", f"[{self.name}]")
        fennik.press("Ctrl+PageDown")
        self.expect_tabs(f"[{self.name}]", "Alfa", self.name)
        fennik.press("Ctrl+PageUp", "Ctrl+PageUp")
        self.expect_tabs(self.name, "[Alfa]", self.name)
        fennik.press("Ctrl+W")
        self.expect_tabs(self.name, f"[{self.name}]")
        fennik.press("Ctrl+W")
        self.expect_tabs()
        fennik.expect_table(LEFT, f"{self.name}, 3 položky")
        fennik.press("Ctrl+W", "Down")
        fennik.wait(lambda: fennik.cursor(), "the last tab stays")

    def test_change_sides_with_all_that_they_hold(self):
        fennik = self.fennik
        fennik.press("Down", "Insert", "Ctrl+T", "Ctrl+U")
        self.expect_tabs(f"[{self.right.name}]")
        self.expect_tabs(self.name, f"[{self.name}]", side=RIGHT)
        fennik.expect_table(LEFT, f"{self.right.name}, 1 položka")
        fennik.expect_table(RIGHT, f"{self.name}, 3 položky")
        fennik.expect("the panel with the keyboard", fennik.keyboard_side, LEFT)
        fennik.expect_title(f"{self.right.name} – Fennik")
        fennik.press("Tab", "Ctrl+PageUp")
        fennik.wait(lambda: fennik.status(RIGHT).startswith("Označeno 1 z 3"),
                    "the mark came along")


class Ways(WindowTest):
    """From folder to folder."""

    def setUp(self):
        self.left = self.new_folder("Alfa/", "b.txt")
        (self.left / "Alfa" / "Beta").mkdir()
        self.right = self.new_folder("vpravo.txt")
        self.home = self.new_home()
        self.home_name = self.home["HOME"].rpartition("/")[2]
        self.fennik = self.start(self.left, self.right, home=self.home)
        self.fennik.expect_table(LEFT, f"{self.left.name}, 2 položky")

    def expect_folder(self, name, side=LEFT):
        self.fennik.wait(lambda: self.fennik.table(side).get_name().startswith(f"{side}, {name}, "),
                         lambda: f"{name} is shown, not {self.fennik.table(side).get_name()}")

    def test_of_the_history_home_and_the_other_panel(self):
        fennik = self.fennik
        fennik.press("Down", "Enter")
        self.expect_folder("Alfa")
        fennik.press("Down", "Enter")
        self.expect_folder("Beta")
        fennik.press("Ctrl+Bracket")
        self.expect_folder("Alfa")
        fennik.expect_cursor("Beta")
        fennik.press("Ctrl+Bracket")
        self.expect_folder(self.left.name)
        fennik.press("Ctrl+BracketRight")
        self.expect_folder("Alfa")
        fennik.press("Alt+Right")
        self.expect_folder("Beta")
        fennik.press("Alt+Up")
        self.expect_folder("Alfa")
        fennik.expect_cursor("Beta")
        fennik.press("Ctrl+Equal")
        self.expect_folder("Alfa", RIGHT)
        self.assertEqual(fennik.keyboard_side(), LEFT)
        for key in ("Ctrl+Shift+H", "Alt+Home"):
            fennik.press("Tab", key)
            fennik.wait(lambda: fennik.shown_path(fennik.keyboard_side()) == self.home["HOME"],
                        f"{key} leads home")

    def test_which_are_none_change_nothing(self):
        self.fennik.press("Alt+Left", "Alt+Right", "Ctrl+Bracket")
        stays_so(lambda: self.fennik.shown_path(LEFT) == str(self.left), "the folder is shown", 0.3)
        self.fennik.press("Down")
        self.fennik.expect_cursor("Alfa")


class Search(WindowTest):
    def setUp(self):
        self.left = self.new_folder("Řízek.txt", "Smetana.txt", "Smlouva.txt", "smlouvy staré.txt",
                                    "žába.txt")
        self.fennik = self.start(self.left, self.new_folder())
        self.fennik.expect_table(LEFT, f"{self.left.name}, 5 položek")
        self.addCleanup(self.desktop.use_layout, "us")

    def expect_status(self, text, timeout=2):
        self.fennik.expect("the status line", lambda: self.fennik.status(LEFT), text, timeout)

    def test_goes_to_the_first_name_that_begins_so_until_a_pause(self):
        self.fennik.press("S", "M", "L")
        self.expect_status("Hledám: sml")
        self.fennik.expect_cursor("Smlouva.txt")
        self.expect_status("5 položek")
        self.fennik.press("Shift+R")
        self.expect_status("Hledám: R")
        self.fennik.expect_cursor("Řízek.txt")

    def test_ignores_diacritics_and_case(self):
        self.desktop.use_layout("cz")
        self.fennik.press("6")
        self.expect_status("Hledám: ž")
        self.fennik.expect_cursor("žába.txt")
        self.expect_status("5 položek")
        self.fennik.press("3", "M", "L")
        self.expect_status("Hledám: šml")
        self.fennik.expect_cursor("Smlouva.txt")

    def test_is_ended_by_a_key_that_does_its_own_work(self):
        for key, after in (("Esc", "5 položek"), ("Insert", "Označeno 1 z 5 · 0\u00a0B"),
                           ("Space", "Označeno 1 z 5 · 0\u00a0B"), ("Backspace", None)):
            with self.subTest(key=key):
                self.fennik.press("S", "M")
                self.expect_status("Hledám: sm")
                self.fennik.press(key)
                if after:
                    # Sooner than the pause would end it.
                    self.expect_status(after, timeout=1)
        self.fennik.wait(lambda: self.fennik.cursor().startswith(self.left.name),
                         "Backspace has gone up")

    def test_finds_nothing_without_moving(self):
        self.fennik.press("S", "Q", "W")
        self.expect_status("Hledám: sqw")
        self.fennik.expect_cursor("Smetana.txt")


class Sizes(WindowTest):
    def setUp(self):
        self.left = self.new_folder("Malá/", "Velká/", "c.txt")
        for name, size in (("Malá", 1000), ("Velká", 2000)):
            (self.left / name / "hluboko").mkdir()
            (self.left / name / "hluboko" / "data").write_bytes(b"x" * size)
        self.home = self.new_home()
        self.write_settings(self.home, autoFolderSizes="false")
        self.fennik = self.start(self.left, self.new_folder(), home=self.home)
        self.fennik.expect_table(LEFT, f"{self.left.name}, 3 položky")

    def size(self, name):
        """What is read for the size of a folder; nothing while there is none."""
        row = next(row for row in self.fennik.rows(LEFT) if row_name(row) == name)
        return next((part for part in row.split(", ")[2:] if part.endswith("B")), "")

    def test_are_counted_of_one_folder_and_of_all(self):
        stays_so(lambda: self.size("Malá") == "", "nothing is counted unasked", 0.3)
        for key in ("Ctrl+Space", "Alt+Space"):
            self.fennik.press("Home", "Down", key)
            self.fennik.wait(lambda: self.size("Malá").endswith("kB"), "the folder has a size")
            self.fennik.wait(lambda: self.fennik.status(LEFT).startswith("Označeno 1 z 3"),
                             "the folder is marked")
        self.assertEqual(self.size("Velká"), "")
        self.fennik.press("Ctrl+Shift+Space")
        self.fennik.expect("the toast", self.fennik.toast,
                           "Počítám velikosti složek… (Esc zastaví)")
        self.fennik.wait(lambda: self.size("Velká").endswith("kB"), "all folders have sizes")
        self.fennik.press("Ctrl+Alt+3")
        self.fennik.expect("the order", lambda: self.fennik.names(LEFT)[:3], [UP, "Velká", "Malá"])


class Menus(WindowTest):
    def setUp(self):
        self.left = self.new_folder("Alfa/", "b.txt")
        self.fennik = self.start(self.left, self.new_folder("vpravo.txt"))
        self.fennik.expect_table(LEFT, f"{self.left.name}, 2 položky")

    def menu_item(self):
        """The item that Enter would choose, the innermost one."""
        chosen = [item.get_name() for item in self.fennik.shown("menu item")
                  if self.fennik.has_state(item, "FOCUSED")]
        return chosen[-1] if chosen else None

    def test_open_by_f10_and_act_on_the_panel(self):
        fennik = self.fennik
        fennik.press("F10")
        fennik.expect("the chosen item", self.menu_item, "Soubor")
        fennik.press("Right", "Right", "Right", "Down", "Down")
        fennik.expect("the chosen item", self.menu_item, "Druhý panel na stejnou složku\tCtrl+=")
        fennik.press("Esc", "Esc")
        fennik.press("Down")
        fennik.expect_cursor("Alfa")
        fennik.press("F10", "Right", "Right", "Right", "Enter")
        fennik.expect("the panel with the keyboard", fennik.keyboard_side, RIGHT)
        fennik.press("Down")
        fennik.expect_cursor("vpravo.txt", RIGHT)

    def test_do_not_open_by_alt_alone(self):
        self.fennik.press("Alt", "Down")
        self.fennik.expect_cursor("Alfa")
        self.fennik.press("Alt", "Alt", "Insert")
        self.fennik.wait(lambda: self.fennik.status(LEFT).startswith("Označeno 1 z 2"),
                         "the panel has kept the keyboard")


class FunctionKeys(WindowTest):
    def setUp(self):
        self.fennik = self.start(self.new_folder("a.txt"), self.new_folder())

    def cells(self):
        bar = self.fennik.window()
        parts = [bar.get_child_at_index(i) for i in range(bar.get_child_count())]
        place = next(i for i, part in enumerate(parts) if part.get_role_name() == "split pane")
        return [cell.get_name() for cell in self.fennik.shown("push button", parts[place + 1])]

    def test_follow_the_modifiers_that_are_held(self):
        plain = ["Náhled", "Upravit", "Kopírovat", "Přesunout", "Nová složka", "Do Koše",
                 "Terminál", "Zabalit", "Rozbalit"]
        self.fennik.expect("the cells", self.cells, plain)
        for key, layer in (("Alt", ["Alt+F3", "Alt+F4", "Zabalit", "Alt+F6", "Alt+F7", "Alt+F8",
                                    "Rozbalit"]),
                           ("Shift", ["Shift+F3", "Shift+F4", "Shift+F5", "Přejmenovat", "Shift+F7",
                                      "Shift+F8", "Shift+F9"])):
            with self.subTest(key=key):
                with self.desktop.held(key):
                    self.fennik.expect("the cells", self.cells, layer)
                self.fennik.expect("the cells", self.cells, plain)

    def test_undo_is_the_key_labelled_z_and_says_that_there_is_nothing_to_undo(self):
        self.addCleanup(self.desktop.use_layout, "us")
        for layout, key in (("us", "Ctrl+Z"), ("cz", "Ctrl+Y")):
            with self.subTest(layout=layout):
                self.desktop.use_layout(layout)
                self.fennik.press("End", key)
                self.fennik.expect("the toast", self.fennik.toast, "Není co vrátit.")
                wait_until(lambda: not self.fennik.toast(), "the toast has gone")
        self.assertEqual(self.fennik.names(LEFT), [UP, "a.txt"])


if __name__ == "__main__":
    main()
