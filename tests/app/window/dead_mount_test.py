"""A network disk whose server is gone must hold up nothing: not the start, typing or leaving it."""
import json
import os
import pathlib
import subprocess
import sys
import time
import unittest

from support import (LEFT, RIGHT, UP, WindowTest, has_ended, main, set_up_desktop, stays_so,
                     wait_until)

NO_ANSWER = "Složka neodpovídá – Esc ji opustí"


def setUpModule():
    if os.geteuid() != 0:
        raise unittest.SkipTest("Only the superuser may mount a file system that does not answer.")
    # It keeps the rights that the tests give up, and unmounts as soon as they end in whatever way.
    mount = subprocess.Popen([sys.executable, pathlib.Path(__file__).with_name("dead_mount.py")],
                             stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
    said = mount.stdout.readline().strip()
    if not said.startswith("/"):
        mount.communicate()
        raise unittest.SkipTest(f"No file system can be mounted here: {said}")
    DeadMount.dead = pathlib.Path(said)
    set_up_desktop()
    unittest.addModuleCleanup(mount.communicate)


class DeadMount(WindowTest):
    dead = None

    def setUp(self):
        self.home = self.new_home()
        self.left = self.new_folder("Alfa/", "a.txt", "b.txt")
        self.right = self.new_folder("1.txt", "2.txt")

    def expect_alive(self, fennik):
        """Keys in the right panel do at once what they always do."""
        for key, name in (("Home", UP), ("Down", "1.txt"), ("Down", "2.txt")):
            pressed = time.monotonic()
            fennik.press(key)
            fennik.expect_cursor(name, RIGHT)
            self.assertLess(time.monotonic() - pressed, 3)

    def expect_preview(self, fennik, name, facts):
        fennik.wait(lambda: any(part.get_name() == name and facts in part.get_description()
                                for part in fennik.in_view()), f"{name} {facts}")

    def type_path(self, fennik, path):
        fennik.press("Ctrl+L")
        fennik.expect("the focused control", fennik.focused, "Cesta ke složce")
        self.desktop.type(path)
        fennik.expect("the path", lambda: fennik.text("Cesta ke složce"), path)

    def test_leaves_panels_path_fields_and_dialogs_alive_until_esc(self):
        fennik = self.start(self.dead, self.right, home=self.home)
        fennik.expect("the status line", lambda: fennik.status(LEFT), "Načítám…")
        fennik.press("Tab")
        fennik.expect_table(RIGHT, f"{self.right.name}, 2 položky")
        self.expect_alive(fennik)
        fennik.press("NumPlus")
        self.desktop.type("2*")
        fennik.wait(lambda: "Odpovídá 1 položka, 0\u00a0B" in
                    (label.get_name() for label in fennik.shown("label")),
                    "the dialog counts matches")
        fennik.press("Enter")
        fennik.wait(lambda: fennik.status(RIGHT).startswith("Označeno 1 z 2"), "the mask marks")
        self.type_path(fennik, f"{self.left}/Al")
        fennik.expect("the suggestions", lambda: fennik.list_items("Návrhy složek"),
                      [f"{self.left}/Alfa"])
        fennik.press("Esc")
        fennik.expect("the status line", lambda: fennik.status(LEFT), NO_ANSWER, timeout=6)
        fennik.press("Tab", "Esc")
        fennik.expect("the message", lambda: fennik.message(LEFT),
                      f"Složku „{self.dead.name}“ nejde přečíst: načítání bylo zastaveno.")
        fennik.press("Tab")
        self.expect_alive(fennik)
        self.desktop.close_active_window()
        wait_until(lambda: has_ended(fennik.process.pid), "the program has ended", 4)

    def test_behind_a_link_holds_up_neither_the_folder_nor_its_reload(self):
        (self.left / "b.txt").write_text("ab")
        (self.left / "síť").symlink_to(self.dead / "uvnitř")
        fennik = self.start(self.left, self.right, home=self.home)
        fennik.expect_table(LEFT, f"{self.left.name}, 4 položky")
        fennik.press("F7")
        fennik.expect("the focused control", fennik.focused, "Název")
        self.desktop.type("Nová")
        fennik.press("Enter")
        fennik.expect_table(LEFT, f"{self.left.name}, 5 položek")
        fennik.press("End", "F3")
        self.expect_preview(fennik, "Náhled, síť", "")
        fennik.press("Up")
        self.expect_preview(fennik, "Náhled, b.txt", "Velikost: 2")
        fennik.press("F3")
        self.type_path(fennik, f"{self.left}/s")
        fennik.expect("the suggestions", lambda: fennik.list_items("Návrhy složek"),
                      [f"{self.left}/síť"])
        fennik.press("Down", "Enter")
        fennik.expect("the status line", lambda: fennik.status(LEFT), NO_ANSWER, timeout=8)
        fennik.press("Esc")
        fennik.expect_table(LEFT, f"{self.left.name}, 5 položek")

    def test_does_not_freeze_the_field_in_which_its_path_is_typed(self):
        fennik = self.start(self.left, self.right, home=self.home)
        fennik.expect_table(LEFT, f"{self.left.name}, 3 položky")
        self.type_path(fennik, f"{self.dead}/abc")
        fennik.press("Enter")
        fennik.expect("the status line", lambda: fennik.status(LEFT), "Načítám…")
        self.desktop.type("d")
        fennik.expect("the path", lambda: fennik.text("Cesta ke složce"), f"{self.dead}/abcd")
        fennik.press("Esc")
        fennik.expect("the panel with the keyboard", fennik.keyboard_side, LEFT)
        fennik.expect("the status line", lambda: fennik.status(LEFT), "3 položky")
        # Paths elsewhere are suggested all the same.
        self.type_path(fennik, f"{self.left}/Al")
        fennik.expect("the suggestions", lambda: fennik.list_items("Návrhy složek"),
                      [f"{self.left}/Alfa"])
        fennik.press("Down", "Enter")
        fennik.expect_table(LEFT, "Alfa, 0 položek")

    def test_in_a_saved_tab_does_not_hold_up_the_start(self):
        panels = {"left": {"tabs": [{"path": str(self.left)}, {"path": str(self.dead)}],
                           "active": 1},
                  "right": {"tabs": [{"path": f"{self.dead}/uvnitř"}, {"path": str(self.right)},
                                     {"path": f"{self.right}/není"}], "active": 1}}
        text = json.dumps(panels).replace("\\", "\\\\").replace('"', '\\"')
        self.write_settings(self.home, **{
            "panels.v1": f'"@ByteArray({text})"', "favorites": f"{self.left}, {self.right}"})
        fennik = self.start(home=self.home)
        fennik.expect_table(RIGHT, f"{self.right.name}, 2 položky")
        fennik.press("Tab")
        self.expect_alive(fennik)
        # What does not answer may be there; what is known to be gone is dropped.
        fennik.expect("the tabs", lambda: fennik.tabs(RIGHT), ["uvnitř", f"[{self.right.name}]"])
        fennik.expect("the tabs", lambda: fennik.tabs(LEFT),
                      [self.left.name, f"[{self.dead.name}]"])
        fennik.press("Ctrl+D")
        fennik.wait(lambda: len(fennik.list_items("Oblíbené a nedávné složky")) > 2,
                    "the menu is shown")
        fennik.press("Esc", "Tab", "Ctrl+Tab")
        fennik.expect_table(LEFT, f"{self.left.name}, 3 položky")
        stays_so(lambda: fennik.tabs(LEFT) == [f"[{self.left.name}]", self.dead.name],
                 "the tab stays")


if __name__ == "__main__":
    main()
