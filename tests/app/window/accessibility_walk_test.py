"""Walks through every view, dialog and menu as a screen reader does: whatever can have the keyboard
or be pressed has a name, and a role that says what it is."""
import subprocess

from support import LEFT, UP, WindowTest, main, set_up_desktop, stays_so

setUpModule = set_up_desktop

# These hold other controls together and say nothing themselves.
STRUCTURE = {"application", "filler", "menu bar", "panel", "separator", "split pane", "scroll pane",
             "viewport", "layered pane"}
# What somebody who does not see the window is told of something that can be used.
USABLE = {"push button", "toggle button", "check box", "radio button", "text", "password text",
          "combo box", "slider", "spin button", "list", "list item", "table", "table cell",
          "table column header", "tree", "page tab", "page tab list", "menu", "menu item",
          "check menu item", "radio menu item", "dialog", "frame", "window", "scroll bar",
          "progress bar", "document text", "terminal", "alert", "label", "popup menu"}


class Walk(WindowTest):
    def setUp(self):
        self.left = self.new_folder("Složka/", "Prázdná/", "a.txt", "b.txt")
        self.right = self.new_folder("a.txt")
        (self.left / "a.txt").write_text("text\n" * 50, encoding="utf-8")
        subprocess.run(["zip", "-q", "-P", "tajne", "tajny.zip", "a.txt"], cwd=self.left,
                       check=True)
        subprocess.run(["zip", "-q", "archiv.zip", "a.txt", "b.txt"], cwd=self.left, check=True)
        self.fennik = self.start(self.left, self.right)
        self.fennik.expect_table(LEFT, f"{self.left.name}, 6 položek")

    def faults(self):
        states = self.desktop.accessibility.StateType
        for control in self.in_view():
            role = control.get_role_name()
            held = control.get_state_set()
            actions = control.get_action_iface()
            is_usable = held.contains(states.FOCUSABLE) or actions and actions.get_n_actions() > 0
            name = control.get_name().strip()
            if not name and (is_usable or role not in STRUCTURE):
                yield f"{role} without a name in {self.path_of(control)}"
            if is_usable and role not in USABLE | STRUCTURE:
                yield f"{name!r} is a {role} in {self.path_of(control)}"

    def in_view(self):
        """What is in view in any window, without the rows of panels, which have tests of their own."""
        application = self.fennik.application
        for index in range(application.get_child_count()):
            yield from self.fennik.in_view(application.get_child_at_index(index))

    @staticmethod
    def path_of(control):
        names = []
        while control := control.get_parent():
            names.append(control.get_name() or control.get_role_name())
        return " < ".join(names)

    def check(self, view):
        with self.subTest(view=view):
            self.assertEqual(list(self.faults()), [])

    def walk(self, view, *keys, types="", closing=("Esc",)):
        self.fennik.press(*keys)
        if types:
            self.desktop.type(types)
        stays_so(self.fennik.window, "the window is there", 0.4)
        self.check(view)
        self.fennik.press(*closing)

    def to(self, name):
        self.fennik.press("Home")
        self.desktop.type(name)
        self.fennik.expect_cursor(name)
        self.fennik.press("Esc")

    def dialog(self, title, *keys, types=""):
        if keys:
            self.fennik.press(*keys)
        self.fennik.wait(lambda: self.fennik.dialog()
                         and self.fennik.dialog().get_name().startswith(title),
                         f"the dialog {title} is open")
        if types:
            self.desktop.type(types)
        stays_so(self.fennik.dialog, "the dialog is open", 0.6)  # it may be deaf at first
        self.check(title)
        self.fennik.press("Esc")
        self.fennik.wait(lambda: not self.fennik.dialog(), "the dialog has gone")

    def test_through_the_panels(self):
        self.check("panels")
        self.walk("tabs and marks", "Ctrl+T", "Ctrl+A", "Ctrl+Shift+D", closing=("Ctrl+W", "Esc"))
        self.walk("path with suggestions", "Ctrl+L", "End", types="/S")
        self.walk("places", "Ctrl+D")
        self.to("a.txt")
        self.walk("renaming", "F2")
        self.walk("quick preview", "F3")
        self.walk("information", "Alt+Enter")
        self.walk("command line", "Ctrl+K")
        self.walk("settings", "Ctrl+Comma")
        self.walk("operations", "Ctrl+Alt+P", closing=("Ctrl+Alt+P",))
        self.to("archiv.zip")
        self.walk("archive", "Enter", closing=("Backspace",))
        self.fennik.expect_cursor("archiv.zip")

    def test_through_the_dialogs(self):
        self.to("b.txt")
        for title, *keys in (("Kopírovat", "F5"), ("Přesunout", "F6"), ("Nová složka", "F7"),
                             ("Přesunout", "F8"), ("Označit podle masky", "NumPlus"),
                             ("Zabalit", "Alt+F5"), ("Klávesové zkratky", "F1")):
            self.dialog(title, *keys)
        self.to("archiv.zip")
        self.dialog("Rozbalit", "Alt+F9")
        self.to("tajny.zip")
        self.fennik.press("Enter")
        self.fennik.expect_cursor(UP)
        self.dialog("Archiv je chráněný heslem.", "Down", "Enter")
        self.fennik.press("Backspace")
        self.fennik.expect_cursor("tajny.zip")
        self.to("a.txt")
        self.fennik.press("F5", "Enter")
        self.dialog("„a.txt“ už v cíli je")
        self.check("the end of a cancelled copy")

    def test_through_the_menus(self):
        self.fennik.press("F10")
        for _ in range(6):
            stays_so(self.fennik.window, "the window is there", 0.2)
            self.check("menu")
            self.fennik.press("Right")
        self.fennik.press("Esc", "Esc")
        for place in (0, 2):
            self.dialog("", "F10", "Left", *["Down"] * place, "Enter")


if __name__ == "__main__":
    main()
