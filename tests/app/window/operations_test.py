"""Copies, moves, renames, trashes and takes back in a real window, with real keys on a real disk."""
import os
import stat
import time

from support import LEFT, PATIENCE, RIGHT, WindowTest, main, row_name, set_up_desktop

setUpModule = set_up_desktop

DEAF = 0.45  # seconds in which a question that opens by itself hears no keys


class Operations(WindowTest):
    def setUp(self):
        self.left = self.new_folder("Faktury/", "a.txt", "b.txt")
        self.right = self.new_folder("Faktury/")
        for file in (self.left / "a.txt", self.left / "b.txt", self.left / "Faktury" / "leden.txt"):
            file.write_text("new", encoding="utf-8")

    def start_here(self, *wrapper):
        self.fennik = self.start(self.left, self.right, wrapper=wrapper)
        self.fennik.wait(lambda: row_name(self.fennik.cursor() or ""), "there is a cursor")

    def put_cursor_on(self, name):
        row = self.fennik.names(LEFT).index(name)
        self.fennik.press("Home", *["Down"] * row)
        self.fennik.expect_cursor(name)

    def question(self):
        dialog = self.fennik.dialog()
        return dialog and dialog.get_name()

    def expect_question(self, title):
        self.fennik.expect("the question", self.question, title)

    def expect_clash(self, name):
        self.expect_question(f"„{name}“ už v cíli je")
        time.sleep(DEAF)

    def says(self, text):
        """Whether the dialog shows a sentence."""
        return text in [label.get_name() for label in self.fennik.shown("label", self.fennik.dialog())]

    def expect_toast(self, text):
        self.fennik.expect("the toast", self.fennik.toast, text)

    def button(self, name):
        return next(button for button in self.fennik.shown("push button", self.fennik.dialog())
                    if button.get_name() == name)

    def expect_disk(self, wanted, folder):
        """Waits for what is in a folder: a text for a file, more of the same for a folder."""
        def read(place):
            return {entry.name: read(entry.path) if entry.is_dir()
                    else open(entry.path, encoding="utf-8").read() for entry in os.scandir(place)}
        self.fennik.expect("the disk", lambda: read(folder), wanted)

    def test_copies_asks_about_each_clash_and_takes_all_of_it_back(self):
        before = {"Faktury": {"leden.txt": "old"}, "a.txt": {}, "b.txt": "old"}
        (self.right / "a.txt").mkdir()
        (self.right / "b.txt").write_text("old", encoding="utf-8")
        (self.right / "Faktury" / "leden.txt").write_text("old", encoding="utf-8")
        self.start_here()
        self.fennik.press("Ctrl+A", "F5")
        self.expect_question("Kopírovat 3 položky")
        existing = f"3 položky půjdou do existující složky „{self.right.name}“."
        self.fennik.wait(lambda: self.says(existing), "the dialog says where the items go")
        self.fennik.press("Enter", "P", "P")  # the last ones were meant for something else
        self.expect_clash("leden.txt")
        self.fennik.press("P")
        self.expect_clash("a.txt")
        self.assertTrue(self.says("Pozor: jedno je složka a druhé soubor."))
        self.fennik.press("K")
        self.expect_clash("b.txt")
        self.fennik.press("Enter")
        self.expect_question(None)
        self.expect_toast("Hotovo, přeskočeno 1")
        self.expect_disk({"Faktury": {"leden.txt": "new"}, "a.txt": {}, "b.txt": "old",
                          "b 2.txt": "new"}, self.right)
        self.fennik.expect("the marks", lambda: self.fennik.status(LEFT), "3 položky")
        self.fennik.press("Ctrl+Z")
        self.expect_toast("Vráceno: Kopírování 3 položek")
        self.expect_disk(before, self.right)

    def test_one_answer_serves_all_clashes_and_escape_ends_the_operation(self):
        for name in ("a.txt", "b.txt"):
            (self.right / name).write_text("old", encoding="utf-8")
        self.start_here()
        self.fennik.press("Ctrl+A", "F5")
        self.expect_question("Kopírovat 3 položky")
        self.fennik.press("Enter")
        self.expect_clash("a.txt")
        self.fennik.press("Esc")
        self.expect_question(None)
        self.fennik.expect("the marks", lambda: self.fennik.status(LEFT)[:15], "Označeno 2 z 3 ")
        self.fennik.press("Ctrl+A", "F6")
        self.expect_question("Přesunout 3 položky")
        self.fennik.press("Enter")
        self.expect_clash("leden.txt")
        self.fennik.press("V", "P")
        self.expect_question(None)
        moved = {"Faktury": {"leden.txt": "new"}, "a.txt": "new", "b.txt": "new"}
        self.expect_disk(moved, self.right)
        self.expect_disk({}, self.left)
        self.fennik.press("Ctrl+Z")
        self.expect_disk(moved, self.left)

    def test_a_target_is_judged_while_it_is_typed(self):
        self.start_here()
        self.put_cursor_on("Faktury")
        self.fennik.press("F6")
        self.expect_question("Přesunout „Faktury“")

        def expect_refused(target, sentence):
            self.fennik.press("Ctrl+A")
            self.desktop.type(target)
            self.fennik.wait(lambda: self.says(sentence), f"the dialog says {sentence}")
            self.assertFalse(self.fennik.has_state(self.button("Přesunout"), "ENABLED"))
        expect_refused("Faktury/x/", "„Faktury“ nejde přesunout do sebe sama.")
        expect_refused("/proc/", "Do složky „proc“ nejde nic uložit: nemáte do ní právo zapisovat.")
        self.fennik.press("Enter")
        self.expect_question("Přesunout „Faktury“")
        self.fennik.press("Ctrl+A")
        self.desktop.type("x/y/z")
        renamed = "Složka „x/y“ se vytvoří, přesun a přejmenování na „z“"
        self.fennik.wait(lambda: self.says(renamed), "the dialog says what will be made")
        self.fennik.press("Enter")
        self.expect_disk({"a.txt": "new", "b.txt": "new", "x": {"y": {"z": {"leden.txt": "new"}}}},
                         self.left)

    def test_a_failed_item_keeps_its_mark(self):
        (self.left / "b.txt").unlink()
        os.mknod(self.left / "b.txt", stat.S_IFSOCK)
        self.start_here()
        self.fennik.press("Ctrl+A", "F5")
        self.expect_question("Kopírovat 3 položky")
        self.fennik.press("Enter")
        self.expect_toast("Hotovo, 1 chyb")
        self.expect_disk({"Faktury": {"leden.txt": "new"}, "a.txt": "new"}, self.right)
        self.fennik.expect("the marked row", lambda: [row_name(row) for row in self.fennik.rows(LEFT)
                                                      if row.endswith("označeno")], ["b.txt"])

    def test_a_limit_for_files_is_a_failure_and_no_end(self):
        (self.left / "b.txt").write_bytes(bytes(2_000_000))
        self.start_here("prlimit", "--fsize=1000000")
        self.fennik.press("Ctrl+A", "F5")
        self.expect_question("Kopírovat 3 položky")
        self.fennik.press("Enter")
        self.expect_toast("Hotovo, 1 chyb")
        self.expect_disk({"Faktury": {"leden.txt": "new"}, "a.txt": "new"}, self.right)

    def test_trash_asks_until_told_not_to(self):
        self.start_here()
        self.put_cursor_on("a.txt")
        self.fennik.press("Insert", "Insert", "F8")
        self.expect_question("Přesunout 2 položky do Koše?")
        self.fennik.press("Esc")
        self.expect_question(None)
        self.expect_disk({"Faktury": {"leden.txt": "new"}, "a.txt": "new", "b.txt": "new"}, self.left)
        self.fennik.press("Delete")
        self.expect_question("Přesunout 2 položky do Koše?")
        for _ in range(4):
            if self.fennik.focused() != "Příště se neptat":
                self.fennik.press("Tab")
        self.fennik.press("Space", "Enter")
        self.expect_toast("V Koši: 2 položky")
        self.expect_disk({"Faktury": {"leden.txt": "new"}}, self.left)
        self.put_cursor_on("Faktury")
        self.fennik.press("F8")
        self.expect_toast("V Koši: „Faktury“")
        self.expect_disk({}, self.left)
        self.fennik.press("Ctrl+Z")
        self.expect_toast("Vráceno: Přesun do Koše „Faktury“")
        self.fennik.expect_cursor("Faktury")
        self.fennik.press("Ctrl+Z")
        self.expect_disk({"Faktury": {"leden.txt": "new"}, "a.txt": "new", "b.txt": "new"}, self.left)

    def test_a_new_folder_is_checked_while_it_is_named(self):
        self.start_here()
        self.fennik.press("F7")
        self.expect_question("Nová složka")
        self.desktop.type("Faktury")
        self.fennik.wait(lambda: self.says("Složka „Faktury“ už existuje."), "the name is taken")
        self.fennik.press("Enter")
        self.expect_question("Nová složka")
        self.desktop.type("/2026/leden")
        self.fennik.wait(lambda: self.fennik.has_state(self.button("Vytvořit"), "ENABLED"),
                         "the name is good")
        self.fennik.press("Enter")
        self.expect_toast("Vytvořena složka „Faktury/2026/leden“")
        self.fennik.expect_cursor("Faktury")
        self.assertTrue((self.left / "Faktury" / "2026" / "leden").is_dir())
        self.fennik.press("Ctrl+Z")
        self.expect_disk({"leden.txt": "new"}, self.left / "Faktury")

    def test_renames_in_the_row_one_after_the_other(self):
        with open(os.fsencode(self.left) + b"/c\xe9.txt", "w", encoding="utf-8"):
            pass
        self.start_here()
        self.put_cursor_on("a.txt")
        hint = "Enter přejmenuje · Esc nechá původní · Tab další položka"

        def expect_field():
            self.fennik.expect("the hint", lambda: self.fennik.status(LEFT), hint)

        def names():
            return sorted(os.listdir(os.fsencode(self.left)))
        self.fennik.press("F2")
        expect_field()
        self.desktop.type("b")
        self.fennik.press("Enter")  # which is taken
        expect_field()
        self.desktop.type("2")
        self.fennik.press("Tab")
        self.expect_toast("Přejmenováno na „b2.txt“")
        self.fennik.wait(lambda: b"b2.txt" in names(), "the file has its new name")
        self.fennik.expect_cursor("b.txt", LEFT)
        expect_field()
        self.fennik.press("Esc")
        self.fennik.expect("the keyboard", self.fennik.keyboard_side, LEFT)
        self.put_cursor_on("c\ufffd.txt")
        self.fennik.press("Shift+F6")
        expect_field()
        self.fennik.press("Home")
        self.desktop.type("z")
        self.fennik.press("Enter")
        self.fennik.wait(lambda: b"zc\xe9.txt" in names(), "what is no text stays as it was")
        self.fennik.expect_cursor("zc\ufffd.txt")
        self.fennik.press("Ctrl+Z")
        self.fennik.expect_cursor("c\ufffd.txt")
        self.assertEqual(names(), [b"Faktury", b"b.txt", b"b2.txt", b"c\xe9.txt"])

    def test_many_items_are_asked_about_before_they_are_pasted(self):
        for number in range(12):
            (self.left / f"{number:02}").touch()
        self.start_here()
        self.fennik.press("Ctrl+A", "Ctrl+C", "Tab")
        self.fennik.expect("the keyboard", self.fennik.keyboard_side, RIGHT)
        self.fennik.press("Ctrl+V")
        self.expect_question("Vložit 15 položek ze schránky?")
        self.fennik.press("Enter")
        self.fennik.wait(lambda: len(os.listdir(self.right)) == 15, "all has been pasted", 2 * PATIENCE)


if __name__ == "__main__":
    main()
