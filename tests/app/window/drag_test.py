"""Drags items with a real mouse, from panel to panel and from one program to another."""
import subprocess
import time

from support import LEFT, PATIENCE, PATH_BAR, RIGHT, WindowTest, main, row_name, set_up_desktop, wait_until

setUpModule = set_up_desktop


class Drag(WindowTest):
    def setUp(self):
        self.left = self.new_folder("a.txt", "b.txt", "Složka/")
        self.right = self.new_folder("Cíl/")
        self.fennik = self.start(self.left, self.right)
        self.fennik.expect_table(LEFT, f"{self.left.name}, 3 položky")
        self.fennik.expect_table(RIGHT, f"{self.right.name}, 1 položka")

    def mouse(self, *arguments):
        return subprocess.run(["xdotool", *map(str, arguments)], env=self.desktop.environment, check=True,
                              timeout=PATIENCE, capture_output=True).stdout.decode().strip()

    def area(self, control):
        on_screen = self.desktop.accessibility.CoordType.SCREEN
        return control.get_component_iface().get_extents(on_screen)

    def middle(self, control):
        """Where a control is on the screen; not far from its left edge, where there is a name."""
        area = self.area(control)
        return area.x + min(area.width // 2, 60), area.y + area.height // 2

    def row(self, side, name, fennik=None):
        fennik = fennik or self.fennik
        place = [row_name(text) for text in fennik.rows(side)].index(name)
        return self.middle(fennik.table(side).get_accessible_at(place, 0))

    def drag(self, start, end, key=None):
        """Takes hold of something and carries it to the end, where it is still held."""
        self.mouse("mousemove", *start, "mousedown", 1)
        steps = 10
        for step in range(1, steps + 1):
            self.mouse("mousemove", *(a + (b - a) * step // steps for a, b in zip(start, end)))
            time.sleep(0.02)
        if key:
            # What is held is told with the next move.
            self.mouse("keydown", key, "mousemove_relative", "2", "0")

    def drop(self, start, end, key=None, fennik=None):
        """Lets it go as soon as the program below says what will come of it."""
        self.drag(start, end, key)
        (fennik or self.fennik).expect("what is said beside the mouse", lambda: self.hint(fennik),
                                       "Přesunout" if key else "Kopírovat")
        self.mouse("mouseup", 1)
        if key:
            self.mouse("keyup", key)

    def hint(self, fennik=None):
        """The first word of what is said beside the mouse; empty when nothing is."""
        return "".join(tip.get_name() for tip in (fennik or self.fennik).shown("tool tip")).partition(" ")[0]

    def expect_names(self, folder, *names):
        wait_until(lambda: {item.name for item in folder.iterdir()} == set(names),
                   lambda: f"{folder.name} holds {names}, but {sorted(folder.iterdir())}")

    def test_copies_into_folders_and_moves_with_shift(self):
        self.drop(self.row(LEFT, "a.txt"), self.row(RIGHT, "Cíl"))
        self.expect_names(self.right / "Cíl", "a.txt")
        self.fennik.expect("the toast", self.fennik.toast, "Zkopírováno: „a.txt“")
        x, y = self.row(RIGHT, "Cíl")
        self.drop(self.row(LEFT, "b.txt"), (x, y + 200), "shift")
        self.expect_names(self.right, "Cíl", "b.txt")
        self.expect_names(self.left, "a.txt", "Složka")
        crumbs = self.fennik.shown("push button", self.fennik.part(LEFT, PATH_BAR))
        self.drop(self.row(RIGHT, "b.txt"), self.middle(crumbs[-1]))
        self.expect_names(self.left, "a.txt", "b.txt", "Složka")

    def test_what_is_not_possible_or_called_off_changes_nothing(self):
        x, y = self.row(LEFT, "Složka")
        self.drag((x, y), (x + 80, y + 2))
        self.fennik.expect("the status", lambda: self.fennik.status(LEFT),
                           "„Složka“ nejde vložit do sebe sama.")
        self.mouse("mouseup", 1)
        self.drag(self.row(LEFT, "a.txt"), self.row(RIGHT, "Cíl"))
        self.fennik.expect("the status", lambda: self.fennik.status(RIGHT),
                           "Ctrl kopíruje · Shift přesouvá · Esc zruší")
        self.fennik.press("Esc")
        self.fennik.expect("the status", lambda: self.fennik.status(RIGHT), "1 položka")
        self.mouse("mouseup", 1)
        self.assertIsNone(self.fennik.dialog())
        self.expect_names(self.left, "a.txt", "b.txt", "Složka")
        self.expect_names(self.right / "Cíl")

    def place_window(self, fennik, x):
        width = 780
        self.mouse("getactivewindow", "windowsize", "--sync", width, 700, "windowmove", "--sync", x, 20)

        def is_there():
            area = self.area(fennik.window())
            return area.width == width and abs(area.x - x) < 20
        wait_until(is_there, "the window stands where it shall")

    def test_from_one_program_to_another(self):
        self.place_window(self.fennik, 0)
        folder = self.new_folder()
        other = self.start(folder, folder)
        self.place_window(other, 800)
        x, y = self.row(LEFT, "nadřazená složka", other)
        free_space = (x, y + 200)
        self.drop(self.row(LEFT, "a.txt"), free_space, fennik=other)
        self.expect_names(folder, "a.txt")
        # Only the program that the files came to may take them away.
        self.drop(self.row(LEFT, "b.txt"), free_space, "shift", other)
        self.expect_names(folder, "a.txt", "b.txt")
        self.expect_names(self.left, "a.txt", "Složka")


if __name__ == "__main__":
    main()
