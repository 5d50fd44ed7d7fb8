"""Opens, unpacks and packs archives in a real window, with real keys on a real disk."""
import gzip
import io
import os
import tarfile
import time
import zipfile

from support import LEFT, PATIENCE, RIGHT, STATUS_LINE, WindowTest, main, row_name, set_up_desktop

setUpModule = set_up_desktop

DEAF = 0.45  # seconds in which a question that opens by itself hears no keys

def make_archive(path):
    """A tar.gz with a folder, a file in it, a file beside it and a link to that."""
    with tarfile.open(path, "w:gz") as archive:
        for name, text in (("css/styl.css", "body {}"), ("úvod.html", "<html>")):
            entry = tarfile.TarInfo(name)
            entry.size = len(text)
            archive.addfile(entry, io.BytesIO(text.encode()))
        link = tarfile.TarInfo("index.html")
        link.type, link.linkname = tarfile.SYMTYPE, "úvod.html"
        archive.addfile(link)


def make_endless_archive(path):
    """A small file out of which a long time of zeros comes before the next header."""
    megabytes = 64
    zeros = gzip.compress(bytes(megabytes << 20), 1)
    repeats = 2000
    entry = tarfile.TarInfo("zeros")
    entry.size = repeats * megabytes << 20
    with open(path, "wb") as file:
        file.write(gzip.compress(entry.tobuf(tarfile.GNU_FORMAT)))
        for _ in range(repeats):
            file.write(zeros)


class Archives(WindowTest):
    def setUp(self):
        self.left = self.new_folder("Zvláštní/")
        self.right = self.new_folder()
        make_archive(self.left / "web.tar.gz")

    def start_here(self, name):
        self.fennik = self.start(self.left, self.right)
        self.fennik.wait(lambda: row_name(self.fennik.cursor() or ""), "there is a cursor")
        self.put_cursor_on(name)

    def put_cursor_on(self, name):
        self.fennik.wait(lambda: name in self.fennik.names(LEFT), f"there is {name}")
        row = self.fennik.names(LEFT).index(name)
        self.fennik.press("Home", *["Down"] * row)
        self.fennik.expect_cursor(name)

    def expect_question(self, title):
        def question():
            dialog = self.fennik.dialog()
            return dialog and dialog.get_name()
        self.fennik.expect("the question", question, title)

    def says(self, text):
        return text in [label.get_name() for label in self.fennik.shown("label", self.fennik.dialog())]

    def expect_toast(self, text):
        self.fennik.expect("the toast", self.fennik.toast, text, 2 * PATIENCE)

    def status(self):
        bar = self.fennik.part(LEFT, STATUS_LINE)
        return [label.get_name() for label in self.fennik.shown("label", bar)]

    def expect_disk(self, wanted, folder):
        """Waits for what is in a folder: a text for a file, more of the same for a folder."""
        def read(place):
            return {entry.name: "→ " + os.readlink(entry.path) if entry.is_symlink()
                    else read(entry.path) if entry.is_dir()
                    else open(entry.path, encoding="utf-8").read() for entry in os.scandir(place)}
        self.fennik.expect("the disk", lambda: read(folder), wanted, 2 * PATIENCE)

    def test_the_inside_is_a_folder_that_cannot_be_changed(self):
        self.start_here("web.tar.gz")
        self.fennik.press("Enter")
        self.fennik.expect_table(LEFT, "web.tar.gz, 3 položky")
        self.fennik.expect_title("web.tar.gz – Fennik")
        self.fennik.wait(lambda: "2 soubory · 13\u00a0B" in self.status(), "the line tells what it holds")
        self.assertEqual(self.fennik.names(LEFT), ["nadřazená složka", "css", "index.html",
                                                   "úvod.html"])
        badge = self.fennik.shown("label", self.fennik.part(LEFT, 1))
        self.assertEqual([label.get_name() for label in badge], ["tar.gz · jen pro čtení"])
        self.fennik.press("F7")
        self.expect_toast("Archiv je jen pro čtení.")
        self.put_cursor_on("css")
        self.fennik.press("Enter")
        self.fennik.expect_table(LEFT, "web.tar.gz › css, 1 položka")
        self.assertTrue(self.fennik.shown_path(LEFT).endswith("/web.tar.gz/css"))
        self.fennik.press("Backspace")
        self.fennik.expect_cursor("css")
        self.fennik.press("Backspace")
        self.fennik.expect_cursor("web.tar.gz")
        self.fennik.expect_title(f"{self.left.name} – Fennik")

    def test_entries_are_taken_out_and_taken_back(self):
        self.start_here("web.tar.gz")
        self.fennik.press("Enter")
        self.fennik.expect_table(LEFT, "web.tar.gz, 3 položky")
        self.fennik.press("Ctrl+A", "F5")
        self.expect_question("Rozbalit 3 položky z „web.tar.gz“")
        existing = f"3 položky půjdou do existující složky „{self.right.name}“."
        self.fennik.wait(lambda: self.says(existing), "the dialog says where the items go")
        self.fennik.press("Enter")
        self.expect_disk({"css": {"styl.css": "body {}"}, "úvod.html": "<html>",
                          "index.html": "→ úvod.html"}, self.right)
        self.fennik.expect("the marks", lambda: self.fennik.status(LEFT), "3 položky")
        self.fennik.press("Ctrl+Z")
        self.expect_disk({}, self.right)

    def test_whole_archives_go_into_folders_of_their_own(self):
        with zipfile.ZipFile(self.left / "a.zip", "w") as archive:
            archive.writestr("a.txt", "a")
        self.start_here("a.zip")
        self.fennik.press("Insert", "Insert", "Alt+F9")
        self.expect_question("Rozbalit 2 archivy")
        self.fennik.press("Enter")
        self.expect_disk({"a": {"a.txt": "a"},
                          "web": {"css": {"styl.css": "body {}"}, "úvod.html": "<html>",
                                  "index.html": "→ úvod.html"}}, self.right)

    def test_a_name_is_judged_while_an_archive_is_packed(self):
        (self.left / "Zvláštní" / "háček.txt").write_text("ř", encoding="utf-8")
        (self.left / "Zvláštní.7z").touch()
        self.start_here("Zvláštní")
        self.fennik.press("Alt+F5")
        self.expect_question("Zabalit „Zvláštní“")
        self.fennik.press("Tab", "Right")  # to 7z
        taken = "„Zvláštní.7z“ už ve složce je."
        self.fennik.wait(lambda: self.says(taken), "the name is taken")
        self.fennik.press("Enter")
        self.expect_question("Zabalit „Zvláštní“")
        self.fennik.press("Right")  # to tar.gz
        self.fennik.wait(lambda: not self.says(taken), "the name is free")
        self.fennik.press("Enter")
        self.expect_question(None)
        self.fennik.wait(lambda: (self.left / "Zvláštní.tar.gz").exists(), "the archive is there")
        with tarfile.open(self.left / "Zvláštní.tar.gz") as archive:
            self.assertEqual(archive.extractfile("Zvláštní/háček.txt").read().decode(), "ř")
        self.fennik.press("Ctrl+Z")
        self.fennik.wait(lambda: not (self.left / "Zvláštní.tar.gz").exists(), "it is gone again")

    def test_a_password_locks_an_archive_and_opens_it(self):
        (self.left / "tajné.txt").write_text("psst", encoding="utf-8")
        self.start_here("tajné.txt")
        self.fennik.press("Alt+F5")
        self.expect_question("Zabalit „tajné.txt“")
        for field in ("Heslo", "Heslo ještě jednou"):
            while self.fennik.focused() != field:
                self.fennik.press("Tab")
            self.desktop.type("abc")
        self.fennik.press("Enter")
        self.expect_question(None)
        self.put_cursor_on("tajné.zip")
        self.fennik.press("Enter")
        self.fennik.expect_table(LEFT, "tajné.zip, 1 položka")
        self.fennik.press("End", "F5")
        self.expect_question("Rozbalit „tajné.txt“ z „tajné.zip“")
        self.fennik.press("Enter")
        self.expect_question("Archiv je chráněný heslem.")
        time.sleep(DEAF)
        self.desktop.type("xyz")
        self.fennik.press("Enter")
        self.fennik.wait(lambda: self.says("Špatné heslo."), "the password was wrong", 2 * PATIENCE)
        self.desktop.type("abc")  # in the place of the wrong one
        self.fennik.press("Enter")
        self.expect_question(None)
        self.expect_disk({"tajné.txt": "psst"}, self.right)

    def test_escape_ends_the_opening_of_an_archive(self):
        make_endless_archive(self.left / "nuly.tar.gz")
        self.start_here("nuly.tar.gz")
        self.fennik.press("Enter")
        self.fennik.expect("the status", lambda: self.fennik.status(LEFT), "Čtu archiv…")
        self.fennik.press("Esc")
        self.fennik.expect("the status", lambda: self.fennik.status(LEFT), "3 položky")
        self.fennik.expect_cursor("nuly.tar.gz")
        self.put_cursor_on("web.tar.gz")
        self.fennik.press("Enter")
        self.fennik.expect_table(LEFT, "web.tar.gz, 3 položky")


if __name__ == "__main__":
    main()
