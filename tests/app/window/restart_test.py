"""Holds what the program finds again at its next start, whatever became of it or its settings."""
import json
import random
import re
import shutil
import signal
import time

from support import LEFT, RIGHT, UP, WindowTest, main, set_up_desktop, stays_so, wait_until

setUpModule = set_up_desktop

SAVED_AFTER = 0.3  # seconds


def byte_array(text):
    """A value of bytes as it stands in the file."""
    escaped = text.replace("\\", "\\\\").replace('"', '\\"')
    return f'"@ByteArray({escaped})"'


class RestartTest(WindowTest):
    def setUp(self):
        self.home = self.new_home()
        self.left = self.new_folder("Alfa/", "Beta/", "c.txt")
        for name in "abc":
            (self.left / "Beta" / name).write_text(name * (ord(name) - 90), encoding="utf-8")
        self.right = self.new_folder("vpravo.txt", "vpravo2.txt")

    def start_again(self, *folders):
        return self.start(*folders, home=self.home)

    def panels(self):
        """The saved panels; fails where the file is cut off or is no settings file."""
        text = self.settings_file(self.home).read_text(encoding="utf-8")
        self.assertTrue(text.endswith("\n"), text)
        saved = re.search(r'^panels\.v1="@ByteArray\((.*)\)"$', text, re.MULTILINE)
        return json.loads(re.sub(r"\\(.)", r"\1", saved[1])) if saved else None

    def saved_paths(self, side):
        panels = self.panels() or {side: {"tabs": []}}
        return [tab["path"] for tab in panels[side]["tabs"] if isinstance(tab, dict)]

    def wait_saved(self, side, *folders):
        wait_until(lambda: self.settings_file(self.home).exists()
                   and self.saved_paths(side) == [str(folder) for folder in folders],
                   lambda: f"the tabs are saved, not {self.saved_paths(side)}")

    def live_a_little(self, fennik):
        """Leaves tabs, an active one on either side, an order, cursors and a favourite."""
        fennik.expect_table(LEFT, f"{self.left.name}, 3 položky")
        fennik.press("Down")
        fennik.open_tab()
        fennik.press("Down", "Enter")
        fennik.expect_table(LEFT, "Beta, 3 položky")
        fennik.press("Ctrl+Alt+3", "Ctrl+Shift+D", "Home", "Down", "Down")
        fennik.expect_cursor("b")
        fennik.press("Ctrl+T", "Ctrl+PageUp", "Tab", "End")
        fennik.expect_cursor("vpravo2.txt", RIGHT)

    def expect_all_of_it(self, fennik):
        fennik.expect("the tabs", lambda: fennik.tabs(LEFT), [self.left.name, "[Beta]", "Beta"])
        fennik.expect("the tabs", lambda: fennik.tabs(RIGHT), [f"[{self.right.name}]"])
        fennik.expect("the rows", lambda: fennik.names(LEFT), [UP, "c", "b", "a"])
        fennik.expect("the panel with the keyboard", fennik.keyboard_side, RIGHT)
        fennik.expect_cursor("b", LEFT)
        fennik.press("Tab", "Ctrl+PageUp")
        fennik.expect_cursor("Alfa", LEFT)
        fennik.press("Ctrl+D", "1")
        fennik.expect("the folder", lambda: fennik.shown_path(LEFT), str(self.left / "Beta"))


class Restart(RestartTest):
    def test_after_closing_the_window_shows_it_as_it_was_left(self):
        fennik = self.start_again(self.left, self.right)
        self.live_a_little(fennik)
        fennik.press("Ctrl+Shift+Period")
        fennik.expect("the toast", fennik.toast, "Skryté soubory zobrazeny")
        # At once, before anything is saved by itself.
        fennik.press("Ctrl+Shift+Period")
        self.desktop.close_active_window()
        self.assertEqual(fennik.process.wait(5), 0, fennik.errors())
        fennik = self.start_again()
        fennik.expect_cursor("vpravo2.txt", RIGHT)
        self.expect_all_of_it(fennik)

    def test_after_a_kill_shows_what_was_there_shortly_before(self):
        fennik = self.start_again(self.left, self.right)
        self.live_a_little(fennik)
        time.sleep(SAVED_AFTER + 0.4)
        fennik.process.send_signal(signal.SIGKILL)
        fennik.process.wait()
        self.expect_all_of_it(self.start_again())

    def test_with_a_folder_opens_it_in_a_tab_or_goes_to_the_one_that_shows_it(self):
        first = self.start_again(self.left, self.right)
        self.wait_saved("left", self.left)
        first.close()
        for folder, tabs in ((self.left / "Beta", [self.left.name, "[Beta]"]),
                             (self.left, [f"[{self.left.name}]", "Beta"])):
            with self.subTest(folder=folder.name):
                fennik = self.start_again(folder)
                fennik.expect("the tabs", lambda: fennik.tabs(LEFT), tabs)
                fennik.expect("the folder", lambda: fennik.shown_path(LEFT), str(folder))
                fennik.expect("the folder", lambda: fennik.shown_path(RIGHT), str(self.right))
                self.wait_saved("left", self.left, self.left / "Beta")
                self.desktop.close_active_window()
                fennik.process.wait(5)

    def test_drops_tabs_whose_folders_are_gone(self):
        fennik = self.start_again(self.left, self.left / "Alfa")
        fennik.open_tab()
        fennik.press("Down", "Down", "Enter")
        self.wait_saved("left", self.left, self.left / "Beta")
        fennik.close()
        (self.left / "Alfa").rmdir()
        (self.left / "Beta").rename(self.left / "Gama")
        fennik = self.start_again()
        fennik.expect("the folder", lambda: fennik.shown_path(LEFT), str(self.left))
        fennik.expect("the folder", lambda: fennik.shown_path(RIGHT), self.home["HOME"])
        self.assertEqual(fennik.tabs(LEFT), [])


class Kills(RestartTest):
    def test_at_any_moment_leave_a_file_that_can_be_read(self):
        chance = random.Random(3)
        before = []
        for _ in range(8):
            fennik = self.start_again(*([] if before else [self.left, self.right]))
            for _ in range(3):
                fennik.press("Ctrl+T", "Ctrl+Alt+1", "Ctrl+Tab")
                end = time.monotonic() + chance.uniform(0.2, 0.45)
                while time.monotonic() < end:
                    if self.settings_file(self.home).exists():
                        before = self.saved_paths("left") or before
            fennik.process.send_signal(signal.SIGKILL)
            fennik.process.wait()
            self.assertGreaterEqual(len(self.saved_paths("left")), len(before))
            fennik.close()
        self.assertGreater(len(before), 8)
        self.assertEqual(set(before), {str(self.left)})

    def test_of_one_of_two_windows_leave_what_both_have_saved(self):
        first = self.start_again(self.left, self.right)
        first.press("Ctrl+Shift+D")
        first.expect("the toast", first.toast, f"Přidáno do oblíbených: {self.left.name}")
        self.wait_saved("left", self.left)
        # In one session, the second start would hand its folders over to the first.
        elsewhere = {"XDG_RUNTIME_DIR": str(self.new_folder())}
        second = self.start(self.right, self.left, home=self.home | elsewhere)
        second.expect_table(RIGHT, f"{self.left.name}, 3 položky")
        second.press("Ctrl+T", "Ctrl+Shift+Period")
        self.wait_saved("left", self.left, self.right, self.right)
        second.process.send_signal(signal.SIGKILL)
        second.process.wait()
        second.close()
        wait_until(lambda: self.desktop.active_title() == f"{self.left.name} – Fennik",
                   "the first window has the keyboard again")
        first.press("Down")
        first.open_tab()
        first.press("Enter")
        first.expect_table(LEFT, "Alfa, 0 položek")
        self.wait_saved("left", self.left, self.left / "Alfa")
        text = self.settings_file(self.home).read_text(encoding="utf-8")
        self.assertIn("showHidden=true", text)
        self.assertIn(f"favorites={self.left}", text)


class BadSettings(RestartTest):
    def check_usable(self, fennik):
        fennik.wait(lambda: fennik.names(LEFT) and fennik.names(RIGHT), "both panels show a folder")
        fennik.press("Ctrl+L")
        fennik.expect("the focused control", fennik.focused, "Cesta ke složce")
        self.desktop.type(str(self.left))
        fennik.press("Enter")
        fennik.expect("the folder", lambda: fennik.shown_path(LEFT), str(self.left))
        fennik.press("Down")
        fennik.expect_cursor("Alfa")
        self.wait_saved_somewhere()
        fennik.close()

    def wait_saved_somewhere(self):
        wait_until(lambda: str(self.left) in self.saved_paths("left"), "the folder is saved")

    def test_are_passed_over_and_kept_aside(self):
        tab = {"id": "nic", "path": str(self.right), "sort": 7, "cursorName": ["x"]}
        panels = json.dumps({"left": {"tabs": [tab], "active": -5}, "right": "nic", "activeSide": 3,
                             "zítra": {}}, ensure_ascii=True)
        whole = f"[General]\nshowHidden=true\npanels.v1={byte_array(panels)}\n"
        for what, content, kept in (
                ("bytes of something else", bytes(range(256)) * 40, bytes(range(256)) * 40),
                ("a file cut off", whole.encode()[:-30], whole.encode()[:-30]),
                ("nothing", b"", b""),
                ("broken values", b"[General]\npanels.v1=\"@ByteArray({\\\"left\\\":\"\n"
                                  b"shortcuts.v1=@ByteArray([[[)\nfavorites=@Invalid()\n",
                                  b"left\\\":")):
            with self.subTest(what=what):
                file = self.settings_file(self.home)
                shutil.rmtree(file.parent, ignore_errors=True)
                file.parent.mkdir(parents=True)
                file.write_bytes(content)
                self.check_usable(self.start_again())
                copies = [copy.read_bytes() for copy in file.parent.glob("*.damaged*")]
                self.assertTrue(not kept or any(kept in copy for copy in copies), "It is lost.")

    def test_of_wrong_types_lose_no_more_than_what_is_wrong(self):
        good = {"path": str(self.right), "sort": {"key": "size", "ascending": False}}
        panels = {"left": {"tabs": [{"path": "relativní"}, {"path": ""}, 5, None,
                                    {"path": str(self.left / "Beta"), "sort": 7,
                                     "cursorName": "b"}],
                           "active": 4},
                  "right": {"tabs": [good, {"id": 1, "path": str(self.left)}], "active": "nic"},
                  "activeSide": "right", "future": {"x": 1}}
        self.write_settings(self.home, **{
            "panels.v1": byte_array(json.dumps(panels)), "showHidden": "možná",
            "favorites": f'"relativní", , {self.left}', "recents": "5", "confirmThreshold": "mnoho",
            "autoFolderSizes": "@Variant(nic)", "zítřejší": "hodnota"})
        fennik = self.start_again()
        fennik.expect("the folder", lambda: fennik.shown_path(LEFT), str(self.left / "Beta"))
        fennik.expect("the panel with the keyboard", fennik.keyboard_side, RIGHT)
        fennik.expect("the tabs", lambda: fennik.tabs(RIGHT),
                      [f"[{self.right.name}]", self.left.name])
        fennik.expect("the tabs", lambda: fennik.tabs(LEFT), ["[Beta]"])
        fennik.expect_cursor("b", LEFT)
        fennik.press("Ctrl+D", "1")
        fennik.expect("the folder", lambda: fennik.shown_path(RIGHT), str(self.left))
        wait_until(lambda: self.saved_paths("left") == [str(self.left / "Beta")],
                   "the tabs are saved")
        self.assertRegex(self.settings_file(self.home).read_text(encoding="utf-8"),
                         "(?m)^z.*=hodnota$")

    def test_of_shortcuts_hold_and_keep_what_another_version_has_bound(self):
        def combo(key):
            return [{"key": key, "modifiers": 0}]
        shortcuts = {"bindings": {"markAll": combo("f5"), "copy": [], "letenky": combo("f12")}}
        self.write_settings(self.home, **{"shortcuts.v1": byte_array(json.dumps(shortcuts))})
        fennik = self.start_again(self.left, self.right)
        fennik.expect_table(LEFT, f"{self.left.name}, 3 položky")
        self.assertIn("Označit vše", [button.get_name() for button in fennik.shown("push button")])
        fennik.press("F5")
        fennik.wait(lambda: fennik.status(LEFT).startswith("Označeno 3 z 3"), "F5 marks all")
        # What the map of an older version does not have yet.
        fennik.press("NumMultiply")
        fennik.expect("the status line", lambda: fennik.status(LEFT), "3 položky")
        self.wait_saved("left", self.left)
        self.assertIn("letenky", self.settings_file(self.home).read_text(encoding="utf-8"))

    def test_with_ten_thousand_tabs_start_soon_and_live(self):
        for number in range(100):
            (self.right / f"{number:04}").mkdir()
        tabs = [{"path": f"{self.right}/{number % 100:04}"} for number in range(10_000)]
        panels = {"left": {"tabs": tabs, "active": 5000},
                  "right": {"tabs": [{"path": str(self.right)}], "active": 0}}
        self.write_settings(self.home, **{"panels.v1": byte_array(json.dumps(panels))})
        started = time.monotonic()
        fennik = self.start_again()
        fennik.wait(lambda: fennik.table(LEFT).get_name() == f"{LEFT}, 0000, 0 položek",
                    "the folder is shown", timeout=10)
        self.assertLess(time.monotonic() - started, 5)
        for key, folder in (("Ctrl+PageDown", "0001"), ("Ctrl+PageUp", "0000"), ("Ctrl+W", "0001")):
            with self.subTest(key=key):
                pressed = time.monotonic()
                fennik.press(key)
                fennik.wait(lambda: fennik.table(LEFT).get_name() == f"{LEFT}, {folder}, 0 položek",
                            "the tab is shown", timeout=10)
                self.assertLess(time.monotonic() - pressed, 3)
        wait_until(lambda: len(self.saved_paths("left")) == 9999, "the tabs are saved")

    def test_that_cannot_be_written_are_told_of_once(self):
        config = self.settings_file(self.home).parent.parent
        shutil.rmtree(config)
        config.mkdir()
        config.chmod(0o500)
        self.addCleanup(config.chmod, 0o700)
        fennik = self.start_again(self.left, self.right)
        fennik.expect("the toast", fennik.toast,
                      f"Nastavení nejde uložit: do „{config}/Fennik“ nemáte právo zapisovat.")
        wait_until(lambda: not fennik.toast(), "the toast has gone")
        fennik.press("Down", "Down", "Enter")
        fennik.expect_table(LEFT, "Beta, 3 položky")
        stays_so(lambda: not fennik.toast(), "nothing more is said", SAVED_AFTER + 0.5)
        # As soon as it can be, all of it is written.
        config.chmod(0o700)
        fennik.press("Ctrl+T")
        self.wait_saved("left", self.left / "Beta", self.left / "Beta")

    def test_and_a_home_that_does_not_exist_leave_a_usable_window(self):
        missing = f"{self.home['HOME']}/není"
        self.home = {"HOME": missing, "XDG_CONFIG_HOME": self.home["XDG_CONFIG_HOME"]}
        fennik = self.start_again()
        fennik.wait(lambda: fennik.message(LEFT).startswith("Složka „není“ teď není dostupná"),
                    lambda: f"the home folder is said to be missing: {fennik.message(LEFT)!r}")
        fennik.press("Ctrl+L")
        fennik.expect("the focused control", fennik.focused, "Cesta ke složce")
        self.desktop.type(str(self.left))
        fennik.press("Enter")
        fennik.expect("the names", lambda: fennik.names(LEFT), [UP, "Alfa", "Beta", "c.txt"])


if __name__ == "__main__":
    main()
