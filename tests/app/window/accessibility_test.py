"""Holds what a screen reader reads of the window."""
import os
from datetime import datetime
from zoneinfo import ZoneInfo

from support import LEFT, RIGHT, UP, WindowTest, main, set_up_desktop, stays_so

setUpModule = set_up_desktop

PRAGUE = ZoneInfo("Europe/Prague")
# These hold other controls together and say nothing themselves.
STRUCTURE = {"application", "filler", "menu bar", "panel", "separator", "split pane"}


def set_time(path, *moment):
    seconds = datetime(*moment, tzinfo=PRAGUE).timestamp()
    os.utime(path, (seconds, seconds))


class TableNames(WindowTest):
    def test_tell_side_folder_and_count_in_correct_czech(self):
        root = self.new_folder()
        folders = [("a", 0, "0 položek"), ("b", 1, "1 položka"), ("c", 2, "2 položky"),
                   ("d", 4, "4 položky"), ("e", 5, "5 položek"), ("f", 22, "22 položek"),
                   ("g", 1234, "1\u202f234 položek")]
        for name, count, _ in folders:
            (root / name).mkdir()
            for number in range(count):
                (root / name / str(number)).touch()
        fennik = self.start(root, root / "c")
        fennik.expect_table(RIGHT, "c, 2 položky")
        for name, _, count in folders:
            with self.subTest(count=count):
                fennik.press("Down")
                fennik.expect_cursor(name)
                fennik.press("Enter")
                fennik.expect_table(LEFT, f"{name}, {count}")
                fennik.expect("the status line", lambda: fennik.status(LEFT), count)
                fennik.press("Backspace")
                fennik.expect_cursor(name)

    def test_do_not_count_hidden_files(self):
        folder = self.new_folder(".skrytý", "a", "b")
        fennik = self.start(folder, folder)
        fennik.expect_table(RIGHT, f"{folder.name}, 2 položky")

    def test_the_root_folder_has_a_name_too(self):
        fennik = self.start("/", self.new_folder())
        fennik.wait(lambda: fennik.table(LEFT).get_name().startswith(f"{LEFT}, /, "),
                    lambda: f"the root is named, not {fennik.table(LEFT).get_name()!r}")


class Listener:
    """What a screen reader is told without asking."""

    def __init__(self, test, *kinds):
        self.heard = []
        listener = test.desktop.accessibility.EventListener.new(self._hear)
        for kind in kinds:
            listener.register(kind)
            test.addCleanup(listener.deregister, kind)

    def _hear(self, event):
        from gi.repository import GLib
        try:
            told = event.source.get_role_name(), event.source.get_name()
        except GLib.GError:
            return  # it is gone already
        self.heard.append((event.type.rpartition(":")[2], *told, event.detail1))

    def has_heard(self, *wanted):
        from gi.repository import GLib
        while GLib.MainContext.default().iteration(False):
            pass
        return wanted in self.heard


class Rows(WindowTest):
    def test_are_read_with_kind_size_and_date(self):
        folder = self.new_folder("Složka/", "Smlouva.pdf", ".tajné.txt", "cosi")
        (folder / "Smlouva.pdf").write_bytes(b"x" * 1_120_000)
        (folder / "odkaz na složku").symlink_to("Složka")
        (folder / "zlomený odkaz").symlink_to("nikam")
        os.mkfifo(folder / "roura")
        set_time(folder / "Složka", 2026, 7, 1, 3, 5)
        set_time(folder / "Smlouva.pdf", 2026, 11, 20, 15, 26)
        set_time(folder / ".tajné.txt", 2000, 1, 2, 0, 0)
        set_time(folder / "cosi", 1969, 12, 31, 23, 0)
        set_time(folder / "roura", 2026, 11, 20, 15, 26)
        fennik = self.start(folder, self.new_folder())
        fennik.expect_table(LEFT, f"{folder.name}, 6 položek")
        fennik.press("Ctrl+Shift+Period")
        fennik.expect_table(LEFT, f"{folder.name}, 7 položek")
        # Sizes of folders come later than the rows.
        folder_row = "Složka, složka, 0\u00a0B, změněno 1. 7. 2026 3:05"
        fennik.wait(lambda: folder_row in fennik.rows(LEFT),
                    lambda: f"the folder has its size: {fennik.rows(LEFT)}")
        rows = fennik.rows(LEFT)
        for text in (UP,
                     "Smlouva.pdf, dokument PDF, 1,12\u00a0MB, změněno 20. 11. 2026 15:26",
                     ".tajné.txt, textový dokument, 0\u00a0B, změněno 2. 1. 2000 0:00, skryté",
                     "cosi, soubor, 0\u00a0B, změněno 31. 12. 1969 23:00"):
            self.assertIn(text, rows)
        for beginning in ("odkaz na složku, odkaz na složku, změněno ", "zlomený odkaz, odkaz, ",
                          "roura, zvláštní soubor, "):
            self.assertTrue(any(row.startswith(beginning) for row in rows), (beginning, rows))
        fennik.press("End", "Home", "Down", "Down")
        fennik.expect("what is read for the focused row", fennik.cursor,
                      "Složka, složka, 0\u00a0B, změněno 1. 7. 2026 3:05")

    def test_are_announced_as_the_cursor_comes_to_them(self):
        listener = Listener(self, "object:state-changed:focused")
        folder = self.new_folder("Uvnitř/", "a.txt")
        (folder / "Uvnitř" / "b.txt").touch()
        fennik = self.start(folder, self.new_folder())
        fennik.expect_table(LEFT, f"{folder.name}, 2 položky")

        def has_heard_last(beginning):
            listener.has_heard()
            focused = [name for _, _, name, is_so in listener.heard if is_so]
            return focused and focused[-1].startswith(beginning)
        for key, beginning in (("Down", "Uvnitř, složka"), ("Enter", UP), ("Down", "b.txt, "),
                               ("Backspace", "Uvnitř, složka"), ("End", "a.txt, "),
                               ("Tab", RIGHT), ("Tab", LEFT)):
            listener.heard.clear()
            fennik.press(key)
            fennik.wait(lambda wanted=beginning: has_heard_last(wanted),
                        lambda wanted=beginning, key=key:
                        f"{key} announces {wanted!r}; announced: {listener.heard}")

    def test_say_that_they_are_marked_and_the_marks_are_counted(self):
        folder = self.new_folder("Složka/", "a.txt", "b.txt")
        (folder / "a.txt").write_bytes(b"x" * 2000)
        fennik = self.start(folder, self.new_folder())
        fennik.expect_table(LEFT, f"{folder.name}, 3 položky")
        listener = Listener(self, "object:property-change:accessible-name")
        fennik.press("Down", "Down", "Insert")
        fennik.wait(lambda: listener.has_heard("accessible-name", "label",
                                               "Označeno 1 z 3 · 2,0\u00a0kB", 0),
                    lambda: f"the count is told: {listener.heard}")
        self.assertRegex(fennik.rows(LEFT)[2], "^a[.]txt, textový dokument, 2,0\u00a0kB, změněno ")
        self.assertEqual([row.endswith(", označeno") for row in fennik.rows(LEFT)],
                         [False, False, True, False])


class Tabs(WindowTest):
    def test_are_a_list_of_tabs_with_their_paths_and_the_active_one(self):
        folder = self.new_folder("Alfa/")
        fennik = self.start(folder, self.new_folder())
        fennik.expect_table(LEFT, f"{folder.name}, 1 položka")
        self.assertEqual(fennik.shown("page tab list"), [])
        fennik.open_tab()
        fennik.press("Down", "Enter")
        fennik.expect("the tabs", lambda: fennik.tabs(LEFT), [folder.name, "[Alfa]"])
        strip = fennik.shown("page tab list")[0]
        self.assertEqual(strip.get_name(), "Záložky")
        tabs = fennik.shown("page tab", strip)
        self.assertEqual([tab.get_description() for tab in tabs],
                         [str(folder), str(folder / "Alfa")])
        fennik.press("Ctrl+Tab")
        fennik.expect("the tabs", lambda: fennik.tabs(LEFT), [f"[{folder.name}]", "Alfa"])
        # Pressing a tab with a screen reader's means goes to it.
        tabs[1].get_action_iface().do_action(0)
        fennik.expect("the tabs", lambda: fennik.tabs(LEFT), [folder.name, "[Alfa]"])


class Overlays(WindowTest):
    def setUp(self):
        self.folder = self.new_folder("Alfa/", "a.txt", "b.txt")
        self.fennik = self.start(self.folder, self.new_folder())
        self.fennik.expect_table(LEFT, f"{self.folder.name}, 3 položky")

    def test_a_toast_is_an_alert(self):
        listener = Listener(self, "object:state-changed:showing")
        self.fennik.press("Ctrl+Shift+D")
        sentence = f"Přidáno do oblíbených: {self.folder.name}"
        self.fennik.wait(lambda: listener.has_heard("showing", "alert", sentence, 1),
                         lambda: f"the toast is told: {listener.heard}")

    def test_a_dialog_is_one_with_title_description_and_outcome(self):
        self.fennik.press("NumPlus")
        dialog = self.fennik.wait(self.fennik.dialog, "the dialog is open")
        self.assertEqual((dialog.get_name(), dialog.get_description()),
                         ("Označit podle masky", f"{self.folder.name} · 3 položky"))
        self.desktop.type("*.txt")
        field = self.fennik.shown("text", dialog)[0]
        self.fennik.expect("the description of the field", field.get_description,
                           "Odpovídají 2 položky, 0\u00a0B")
        self.assertEqual([button.get_name() for button in self.fennik.shown("push button", dialog)],
                         ["Zrušit", "Označit"])

    def test_the_chosen_row_of_a_list_is_told(self):
        listener = Listener(self, "object:state-changed:focused",
                            "object:active-descendant-changed")
        self.fennik.press("Ctrl+L", "End")
        self.desktop.type("/al")
        self.fennik.wait(lambda: self.fennik.list_items("Návrhy složek"), "folders are suggested")
        self.fennik.press("Down")
        self.fennik.wait(lambda: listener.has_heard("focused", "list item", f"{self.folder}/Alfa",
                                                    1),
                         lambda: f"the suggestion is told: {listener.heard}")


class Names(WindowTest):
    def check_names(self, fennik):
        nameless = []
        for control in fennik.all():
            role = control.get_role_name()
            if role not in STRUCTURE and fennik.has_state(control, "SHOWING") \
                    and not control.get_name().strip():
                place = control.get_extents(self.desktop.accessibility.CoordType.SCREEN)
                nameless.append(f"{role} at {place.x}, {place.y}, "
                                f"{place.width} × {place.height} pixels")
        self.assertEqual(nameless, [], "These are in view and have no name.")

    def test_belong_to_every_control_beside_rows(self):
        folder = self.new_folder("Složka/", "a.txt")
        fennik = self.start(folder, folder)
        fennik.expect_table(LEFT, f"{folder.name}, 2 položky")
        fennik.expect_table(RIGHT, f"{folder.name}, 2 položky")
        fennik.press("Down")
        fennik.expect_cursor("Složka")
        self.check_names(fennik)

    def test_belong_to_every_control_of_what_opens_over_the_panels(self):
        folder = self.new_folder("Složka/", "a.txt")
        fennik = self.start(folder, folder)
        fennik.expect_table(LEFT, f"{folder.name}, 2 položky")
        for keys in (("Ctrl+T", "Ctrl+A", "Ctrl+Shift+D"), ("Ctrl+D",),
                     ("Esc", "Ctrl+L", "Backspace"),
                     ("Esc", "NumMinus")):
            with self.subTest(keys=keys):
                fennik.press(*keys)
                stays_so(fennik.panels, "the window is there", 0.3)
                self.check_names(fennik)

    def test_belong_to_every_control_of_an_empty_folder(self):
        folder = self.new_folder(".skrytý")
        fennik = self.start(folder, self.new_folder())
        fennik.expect("the message", lambda: fennik.message(LEFT),
                      "Složka je prázdná 1 skrytý soubor ukáže Ctrl+Shift+.")
        self.check_names(fennik)

    def test_belong_to_every_control_of_a_failure(self):
        folder = self.new_folder("Složka/", "a.txt")
        (folder / "Složka").chmod(0)
        self.addCleanup((folder / "Složka").chmod, 0o700)
        fennik = self.start(folder, folder / "není")
        fennik.expect_table(LEFT, f"{folder.name}, 2 položky")
        fennik.press("Down", "Enter")
        for side in (LEFT, RIGHT):
            fennik.wait(lambda side=side: fennik.message(side), f"{side} shows its failure")
        self.check_names(fennik)

    def test_belong_to_every_control_where_the_path_is_too_long_to_show(self):
        deep = self.new_folder().joinpath(*["Velmi dlouhý název složky"] * 8)
        deep.mkdir(parents=True)
        (deep / "a").touch()
        fennik = self.start(deep, deep)
        fennik.expect_table(LEFT, f"{deep.name}, 1 položka")
        fennik.press("Down", "Tab", "Down")
        fennik.expect_cursor("a", RIGHT)
        more = [control.get_name() for control in fennik.all()
                if control.get_role_name() == "push button"
                and fennik.has_state(control, "SHOWING")]
        self.assertEqual(more.count("Další složky cesty"), 2, more)
        self.check_names(fennik)


class Window(WindowTest):
    def test_is_told_as_a_window_with_its_title(self):
        folder = self.new_folder()
        fennik = self.start(folder, folder)
        fennik.expect("the window's name", fennik.window().get_name, f"{folder.name} – Fennik")
        # A screen reader takes only these for windows, and says nothing about others.
        self.assertIn(fennik.window().get_role_name(), ("frame", "window"))

    def test_is_read_from_left_to_right(self):
        fennik = self.start(self.new_folder(), self.new_folder())
        tables = [control.get_name().split(", ")[0] for control in fennik.all()
                  if control.get_role_name() == "table"]
        self.assertEqual(tables, [LEFT, RIGHT])


class StrangeNames(WindowTest):
    names = {
        b"konec\nradku": "konec↵radku",
        b"tab\tulator": "tab⇥ulator",
        b"\xff\xfe nic": "\ufffd\ufffd nic",
        "faktura\u202efdp.exe".encode(): "faktura\ufffdfdp.exe",
        b"x" * 255: "x" * 255,
        ("ž" * 127).encode(): "ž" * 127,
        b"<b>tucne": "<b>tucne",
        b"&zkratka": "&zkratka",
        b"%1 %n": "%1 %n",
        b" ": " ",
        b"-rf": "-rf",
    }

    def test_of_files_are_shown_so_that_nothing_pretends_to_be_something_else(self):
        folder = self.new_folder()
        for name in self.names:
            open(os.path.join(os.fsencode(folder), name), "w", encoding="utf-8").close()
        fennik = self.start(folder, folder)
        fennik.expect_table(LEFT, f"{folder.name}, {len(self.names)} položek")
        self.assertEqual(set(fennik.names(LEFT)), {UP, *self.names.values()})
        for _ in self.names:
            fennik.press("Down")
        fennik.press("Ctrl+Alt+2", "Ctrl+Alt+3", "Ctrl+Alt+1", "Home")
        fennik.expect_cursor(UP)

    def test_of_folders_can_be_entered_and_left(self):
        folder = self.new_folder()
        for name in self.names:
            inside = os.path.join(os.fsencode(folder), name)
            os.mkdir(inside)
            open(os.path.join(inside, b"soubor"), "w", encoding="utf-8").close()
        fennik = self.start(folder, folder)
        fennik.expect_table(LEFT, f"{folder.name}, {len(self.names)} položek")
        for shown in fennik.names(LEFT)[1:]:
            with self.subTest(folder=shown):
                fennik.press("Down", "Enter")
                fennik.expect_table(LEFT, f"{shown}, 1 položka")
                fennik.expect("the window's name", fennik.window().get_name, f"{shown} – Fennik")
                self.assertEqual(fennik.names(LEFT), [UP, "soubor"])
                fennik.press("Backspace")
                fennik.expect_cursor(shown)

    def test_stand_in_the_sentence_about_their_failure(self):
        folder = self.new_folder()
        locked = os.path.join(os.fsencode(folder), b"<b>a\n&b \xff")
        os.mkdir(locked, 0)
        self.addCleanup(os.chmod, locked, 0o700)
        fennik = self.start(folder, folder)
        fennik.expect_table(LEFT, f"{folder.name}, 1 položka")
        fennik.press("Down", "Enter")
        fennik.expect("the message", lambda: fennik.message(LEFT),
                      "Složku „<b>a↵&b \ufffd“ nejde otevřít: nemáte k ní přístup.")


if __name__ == "__main__":
    main()
