"""Holds which combinations real keys make on various layouts, in a program that prints them."""
import ctypes
import pathlib
import unittest

from support import KEYS, Desktop, main, prepared_program, wait_until


def setUpModule():
    Keys.program = prepared_program()
    Keys.desktop = Desktop()
    Keys.keyboard = Keyboard(Keys.desktop.environment["DISPLAY"])


class Keyboard:
    """Presses keys and nothing else; xdotool would turn the keyboard to its first layout."""

    def __init__(self, display):
        self._x11 = ctypes.CDLL("libX11.so.6")
        self._test = ctypes.CDLL("libXtst.so.6")
        self._x11.XOpenDisplay.restype = ctypes.c_void_p
        self._display = ctypes.c_void_p(self._x11.XOpenDisplay(display.encode()))

    def press(self, *combinations):
        for combination in combinations:
            codes = [KEYS[key] for key in combination.split("+")]
            for code in codes:
                self._test.XTestFakeKeyEvent(self._display, code, True, 0)
            for code in reversed(codes):
                self._test.XTestFakeKeyEvent(self._display, code, False, 0)
        self._x11.XSync(self._display, False)


class Keys:
    """The same keys on each system of windows."""

    desktop = None
    keyboard = None
    program = None
    wrapper = ()

    def setUp(self):
        Keys.use_layout(self, "us")
        self.printed = self.desktop.new_folder() / "printed"
        with open(self.printed, "wb") as output:
            program = self.desktop.spawn([*self.wrapper, self.program], stdout=output)
        self.addCleanup(program.wait)
        self.addCleanup(program.kill)
        wait_until(lambda: self.lines() == ["ready"], "the window has the keyboard")

    def use_layout(self, layout, *options):
        """Options of an earlier layout do not stay."""
        self.desktop.use_layout(layout, "-option", "", *options)

    def lines(self):
        return self.printed.read_text(encoding="utf-8").splitlines()

    def expect(self, combinations):
        """Presses keys and compares what they make; None stands for no combination."""
        before = len(self.lines())
        # The last one makes a combination on every layout and shows that all have arrived.
        self.keyboard.press(*combinations, "F1")
        wait_until(lambda: self.lines()[before:][-1:] == ["F1"],
                   lambda: f"F1 is printed after {self.lines()[before:]}")
        self.assertEqual(self.lines()[before:-1],
                         [combo for combo in combinations.values() if combo])

    # What the layout has no say in.
    EVERYWHERE = {
        "Shift+F6": "⇧F6", "Ctrl+Shift+Tab": "⇧⌘⇥", "Shift+Tab": "⇧⇥", "Enter": "↩",
        "Backspace": "⌫",
        "Insert": "Insert", "Delete": "⌦", "Ctrl+Shift+Space": "⇧⌘Mezerník", "Alt+Home": "⌥↖",
        "NumPlus": "Num+", "Ctrl+NumMinus": "⌘Num−", "NumMultiply": "Num*", "NumEnter": "⌅",
        "Alt+1": "⌥1", "Ctrl+Alt+2": "⌥⌘2", "Shift+3": "⇧3", "Ctrl+0": "⌘0",
        "Shift": None, "Ctrl": None, "Alt": None, "AltGr": None, "Super": None, "CapsLock": None,
        "Ctrl+CapsLock": None,
    }
    AMERICAN = {
        "Ctrl+Z": "⌘Z", "Ctrl+Shift+Z": "⇧⌘Z", "Ctrl+Y": "⌘Y", "Ctrl+Shift+Period": "⇧⌘.",
        "Ctrl+Bracket": "⌘[", "Ctrl+Equal": "⌘=", "Ctrl+Super+N": "⌃⌘N", "Q": "Q",
    }
    CZECH = {
        "Ctrl+Z": "⌘Y", "Ctrl+Shift+Z": "⇧⌘Y", "Ctrl+Y": "⌘Z", "Ctrl+Shift+Period": "⇧⌘.",
        "Ctrl+Bracket": "⌘Ú", "Ctrl+Shift+Semicolon": "⇧⌘Ů",
        # AltGr types "[" with this key, and is no Alt. Of a number key it changes nothing.
        "Ctrl+AltGr+F": "⌘[", "AltGr+F": "[", "AltGr+2": "2",
        # The dead key of the acute accent.
        "Ctrl+Equal": None,
    }

    def test_american(self):
        self.expect(self.AMERICAN | self.EVERYWHERE)

    def test_czech_with_z_above_and_y_below(self):
        self.use_layout("cz")
        self.expect(self.CZECH | self.EVERYWHERE)

    def test_czech_with_y_above_and_z_below(self):
        self.use_layout("cz", "-variant", "qwerty")
        self.expect(self.CZECH | {"Ctrl+Z": "⌘Z", "Ctrl+Shift+Z": "⇧⌘Z", "Ctrl+Y": "⌘Y"})

    def test_russian_alone_counts_as_american(self):
        self.use_layout("ru")
        self.expect(self.AMERICAN | self.EVERYWHERE)

    def test_russian_beside_czech_counts_as_czech(self):
        # Scroll Lock switches between the two.
        self.use_layout("ru,cz", "-option", "grp:sclk_toggle")
        for _ in range(2):
            self.expect({"Ctrl+Z": "⌘Y", "Ctrl+Y": "⌘Z", "Ctrl+Bracket": "⌘Ú", "ScrollLock": None})

    def test_the_group_in_use_decides_between_latin_layouts(self):
        self.use_layout("us,cz", "-option", "grp:sclk_toggle")
        self.expect(self.AMERICAN | {"ScrollLock": None})
        self.expect(self.CZECH | {"ScrollLock": None})
        self.expect(self.AMERICAN)

    def test_a_running_program_follows_every_change_of_the_layout(self):
        for layout, combo in (("cz", "⌘Y"), ("us", "⌘Z"), ("fr", "⌘W"), ("gr", "⌘Z")):
            self.use_layout(layout)
            self.expect({"Ctrl+Z": combo})

    def test_caps_lock_changes_nothing(self):
        self.use_layout("cz")
        self.addCleanup(self.keyboard.press, "CapsLock")
        self.expect({"CapsLock": None, "Ctrl+Z": "⌘Y", "Alt+1": "⌥1", "Bracket": "Ú"})

    def test_num_lock_decides_what_the_keypad_is(self):
        self.expect({"Num1": "↘", "Alt+Num1": "⌥↘"})
        self.addCleanup(self.keyboard.press, "NumLock")
        self.expect({"NumLock": None, "Num1": "1", "Ctrl+Num1": "⌘1", "NumPlus": "Num+"})

    def test_the_space_bar_stays_one_where_shift_types_another_space(self):
        self.use_layout("us", "-option", "nbsp:level2")
        self.expect({"Shift+Space": "⇧Mezerník", "Ctrl+Shift+Space": "⇧⌘Mezerník"})


class X11(Keys, unittest.TestCase):
    pass


class Wayland(Keys, unittest.TestCase):
    """A compositor in a window of the desktop passes its keys on to the windows inside."""

    SOCKET = "wayland-test"
    wrapper = ("env", "QT_QPA_PLATFORM=wayland", f"WAYLAND_DISPLAY={SOCKET}")

    @classmethod
    def setUpClass(cls):
        cls.compositor = cls.desktop.spawn(
            ["weston", "--backend=x11-backend.so", "--use-pixman", "--no-config",
             "--shell=kiosk-shell.so", f"--socket={cls.SOCKET}"],
            stdout=cls.desktop.log, stderr=cls.desktop.log)
        socket = pathlib.Path(cls.desktop.environment["XDG_RUNTIME_DIR"]) / cls.SOCKET
        wait_until(socket.exists, "the compositor has started")

    @classmethod
    def tearDownClass(cls):
        cls.compositor.kill()
        cls.compositor.wait()

    def use_layout(self, layout, *options):
        super().use_layout(layout, *options)
        # The news of it come on another connection than the keys, so one key may overtake them.
        self.expect({})


if __name__ == "__main__":
    main()
