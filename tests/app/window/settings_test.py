"""Holds what the settings window does to the program at once, and what is found again later."""
import ctypes

from support import LEFT, WindowTest, main, set_up_desktop

setUpModule = set_up_desktop

ALL_PLANES = 0xFFFFFFFF
Z_PIXMAP = 2


class Screen:
    """Reads the colours that are seen."""

    def __init__(self, display):
        self.x11 = ctypes.CDLL("libX11.so.6")
        for name in ("XOpenDisplay", "XDefaultRootWindow", "XGetImage", "XGetPixel"):
            getattr(self.x11, name).restype = ctypes.c_void_p
        self.display = ctypes.c_void_p(self.x11.XOpenDisplay(display.encode()))
        self.root = ctypes.c_ulong(self.x11.XDefaultRootWindow(self.display))

    def brightness(self, x, y):
        """The sum of the three colours, of 255 each."""
        image = ctypes.c_void_p(self.x11.XGetImage(self.display, self.root, x, y, 1, 1,
                                                   ctypes.c_ulong(ALL_PLANES), Z_PIXMAP))
        pixel = self.x11.XGetPixel(image, 0, 0) or 0
        self.x11.XDestroyImage(image)
        return sum(pixel >> shift & 0xFF for shift in (0, 8, 16))

    def close(self):
        self.x11.XCloseDisplay(self.display)


class Settings(WindowTest):
    def setUp(self):
        self.home = self.new_home()
        self.folder = self.new_folder("a", "b", "c")
        self.screen = Screen(self.desktop.environment["DISPLAY"])
        self.addCleanup(self.screen.close)

    def place(self, control):
        return control.get_extents(self.desktop.accessibility.CoordType.SCREEN)

    def row_height(self, fennik):
        table = fennik.table(LEFT)
        first, second = (self.place(table.get_accessible_at(row, 0)).y for row in (1, 2))
        return second - first

    def is_dark(self, fennik):
        window = self.place(fennik.window())
        # Behind the last menu.
        return self.screen.brightness(window.x + window.width - 8, window.y + 8) < 3 * 64

    def settings_window(self, fennik):
        windows = (fennik.application.get_child_at_index(index)
                   for index in range(fennik.application.get_child_count()))
        return next((window for window in windows
                     if window and window.get_name().startswith("Nastavení")), None)

    def focused(self, fennik):
        """The name of the control of the settings that has the keyboard."""
        return next((control.get_name() for control in fennik.in_view(self.settings_window(fennik))
                     if fennik.has_state(control, "FOCUSED")), None)

    def expect_focused(self, fennik, name):
        fennik.expect("the control with the keyboard", lambda: self.focused(fennik), name)

    def start_here(self):
        fennik = self.start(self.folder, self.folder, home=self.home)
        fennik.expect_table(LEFT, f"{self.folder.name}, 3 položky")
        return fennik

    def test_take_effect_at_once_and_are_kept(self):
        fennik = self.start_here()
        self.assertEqual(self.row_height(fennik), 24)
        self.assertFalse(self.is_dark(fennik))
        fennik.press("Ctrl+Comma")
        fennik.expect_title("Nastavení – Obecné")
        self.expect_focused(fennik, "Obecné")
        fennik.press("Tab", "Right", "Right")
        self.expect_focused(fennik, "Tmavý")
        fennik.wait(lambda: self.is_dark(fennik), "the window is dark")
        fennik.press("Tab", "Left")
        self.expect_focused(fennik, "Hustá")
        fennik.expect("the height of rows", lambda: self.row_height(fennik), 20)

        fennik.press("Shift+Tab", "Shift+Tab", "Down", "Down")
        fennik.expect_title("Nastavení – Zkratky")
        fennik.press("Tab")
        self.expect_focused(fennik, "Hledat příkaz nebo zkratku")
        self.desktop.type("zalozka")
        fennik.press("Down")
        self.expect_focused(fennik, "Nová záložka, Ctrl+T")
        fennik.press("Enter")
        self.expect_focused(fennik, "Stiskněte zkratku…")
        fennik.press("Ctrl+T")
        self.expect_focused(fennik, "Nová záložka, Ctrl+T")
        fennik.press("Enter", "Ctrl+J")
        self.expect_focused(fennik, "Nová záložka, Ctrl+T, Ctrl+J, změněno")
        self.assertEqual(fennik.tabs(LEFT), [])
        fennik.press("Esc", "Esc")
        fennik.expect_title(f"{self.folder.name} – Fennik")
        fennik.press("Ctrl+J")
        fennik.expect("the number of tabs", lambda: len(fennik.tabs(LEFT)), 2)

        self.desktop.close_active_window()
        self.assertEqual(fennik.process.wait(5), 0, fennik.errors())
        fennik = self.start_here()
        self.assertEqual(self.row_height(fennik), 20)
        fennik.wait(lambda: self.is_dark(fennik), "the window is dark")
        fennik.press("Ctrl+J")
        fennik.expect("the number of tabs", lambda: len(fennik.tabs(LEFT)), 3)
        fennik.press("Ctrl+Comma")
        fennik.expect_title("Nastavení – Zkratky")

    def test_the_window_obeys_its_own_keys_and_none_of_the_other_one(self):
        fennik = self.start_here()
        for key in ("Esc", "Ctrl+W"):
            fennik.press("Ctrl+Comma")
            fennik.expect_title("Nastavení – Obecné")
            fennik.press("F7")  # an action of the other window
            fennik.press(key)
            fennik.expect_title(f"{self.folder.name} – Fennik")
            self.assertIsNone(fennik.dialog())
        self.assertEqual(fennik.tabs(LEFT), [])


if __name__ == "__main__":
    main()
