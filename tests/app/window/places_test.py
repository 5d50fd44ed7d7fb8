"""Drives the path field and the menu of favourite and recent folders with real keys."""
from support import LEFT, RIGHT, UP, WindowTest, main, set_up_desktop, stays_so

setUpModule = set_up_desktop

FIELD = "Cesta ke složce"
SUGGESTIONS = "Návrhy složek"
FILTER = "Filtr oblíbených a nedávných složek"
PLACES = "Oblíbené a nedávné složky"


class PlacesTest(WindowTest):
    def setUp(self):
        self.home = self.new_home()
        self.left = self.new_folder("Alfa/", "alfabeta/", "Beta/", ".skrytá/", "a.txt")
        (self.left / "Beta" / "Uvnitř").mkdir()
        self.right = self.new_folder("vpravo.txt")
        self.fennik = self.start(self.left, self.right, home=self.home)
        self.fennik.expect_table(LEFT, f"{self.left.name}, 4 položky")

    def expect_focus(self, name):
        self.fennik.expect("the focused control", self.fennik.focused, name)

    def expect_folder(self, folder, side=LEFT):
        self.fennik.expect("the folder", lambda: self.fennik.shown_path(side), str(folder))

    def expect_panel(self, folder, side=LEFT):
        """The panel has the keyboard and shows the folder."""
        self.expect_folder(folder, side)
        self.fennik.expect("the panel with the keyboard", self.fennik.keyboard_side, side)


class PathField(PlacesTest):
    def open_field(self):
        self.fennik.press("Ctrl+L")
        self.expect_focus(FIELD)

    def expect_text(self, text):
        self.fennik.expect("the path", lambda: self.fennik.text(FIELD), text)

    def suggestions(self):
        return self.fennik.list_items(SUGGESTIONS)

    def test_suggests_completes_and_opens(self):
        self.open_field()
        self.expect_text(str(self.left))
        self.assertEqual(self.suggestions(), [])
        self.fennik.press("End")
        self.desktop.type("/aL")
        self.fennik.expect("the suggestions", self.suggestions,
                           [f"{self.left}/Alfa", f"{self.left}/alfabeta"])
        self.fennik.press("Down", "Down", "Tab")
        self.expect_text(f"{self.left}/alfabeta/")
        self.fennik.press("Ctrl+A")
        # What is typed replaces all of it, and Tab takes the first suggestion.
        self.desktop.type(f"{self.left}/be")
        self.fennik.expect("the suggestions", self.suggestions, [f"{self.left}/Beta"])
        self.fennik.press("Tab")
        self.expect_text(f"{self.left}/Beta/")
        self.fennik.expect("the suggestions", self.suggestions, [f"{self.left}/Beta/Uvnitř"])
        self.fennik.press("Enter")
        self.expect_panel(self.left / "Beta")
        self.fennik.press("Down", "Alt+Left")
        self.expect_folder(self.left)

    def test_opens_a_chosen_suggestion_and_paths_of_every_form(self):
        self.open_field()
        self.desktop.type(f"{self.left}/al")
        self.fennik.expect("the suggestions", self.suggestions,
                           [f"{self.left}/Alfa", f"{self.left}/alfabeta"])
        self.fennik.press("Down", "Down", "Enter")
        self.expect_panel(self.left / "alfabeta")
        for typed, folder in (("..", self.left), ("Beta", self.left / "Beta"),
                              ("../Alfa/", self.left / "Alfa"),
                              ("~", self.home["HOME"]),
                              (f"file://{self.left}/Beta", self.left / "Beta"),
                              (f"  {self.left}  ", self.left)):
            with self.subTest(typed=typed):
                self.fennik.press("Ctrl+Shift+G")
                self.expect_focus(FIELD)
                self.desktop.type(typed)
                self.fennik.press("NumEnter")
                self.expect_panel(folder)
        # A file is shown in its folder.
        self.open_field()
        self.desktop.type(f"{self.left}/a.txt")
        self.fennik.press("Enter")
        self.expect_panel(self.left)
        self.fennik.expect_cursor("a.txt")

    def test_is_left_by_esc_as_if_it_had_not_been_there(self):
        self.fennik.press("Down", "Down")
        self.open_field()
        self.desktop.type("/tmp/neco")
        self.fennik.press("Esc")
        self.expect_panel(self.left)
        self.fennik.press("Down")
        self.fennik.expect_cursor("Beta")
        self.open_field()
        self.expect_text(str(self.left))

    def test_stays_open_with_the_reason_when_the_path_leads_nowhere(self):
        self.open_field()
        self.desktop.type(f"{self.left}/nic")
        self.fennik.press("Enter")
        sentence = ("Složka „nic“ teď není dostupná – neexistuje, nebo je na odpojeném disku či "
                    "síti.")
        labels = lambda: [label.get_name() for label in self.fennik.shown("label")]
        self.fennik.wait(lambda: sentence in labels(),
                         "the sentence stands below the field")
        self.assertEqual(next(field.get_description() for field in self.fennik.shown("text")
                              if field.get_name() == FIELD), sentence)
        self.expect_text(f"{self.left}/nic")
        self.assertEqual(self.fennik.names(LEFT), [UP, "Alfa", "alfabeta", "Beta", "a.txt"])
        self.fennik.press("Backspace")
        self.fennik.wait(lambda: sentence not in labels(),
                         "the sentence is gone once something is typed")
        self.fennik.press("Esc")
        self.expect_panel(self.left)

    def test_a_copied_path_is_opened_without_the_field(self):
        self.open_field()
        self.fennik.press("End")
        self.desktop.type("/Beta")
        self.fennik.press("Ctrl+A", "Ctrl+C", "Esc", "Ctrl+Shift+V")
        self.expect_panel(self.left / "Beta")
        self.open_field()
        self.desktop.type("a b")
        self.fennik.press("Ctrl+A", "Ctrl+C", "Esc", "Ctrl+Shift+V")
        self.fennik.expect("the toast", self.fennik.toast, "Ve schránce není cesta.")
        self.expect_panel(self.left / "Beta")

    def test_typing_writes_and_does_nothing_in_the_panel(self):
        self.fennik.press("Down")
        self.open_field()
        self.desktop.type("aZ 5+-*")
        self.fennik.press("NumPlus", "Home", "Shift+End", "Delete", "Space", "Backspace", "Insert",
                          "Shift+Up", "Num1")
        self.desktop.type("x")
        self.expect_focus(FIELD)
        self.assertIsNone(self.fennik.dialog())
        self.assertEqual(self.fennik.toast(), "")
        self.fennik.press("Ctrl+A", "Ctrl+C", "End", "Ctrl+V")
        text = lambda: self.fennik.text(FIELD)
        self.fennik.wait(lambda: len(text()) == 2 * len(set(text())),
                         lambda: f"the text stands there twice: {text()!r}")
        self.fennik.press("Ctrl+Z")
        self.fennik.wait(lambda: len(self.fennik.text(FIELD)) == len(set(self.fennik.text(FIELD))),
                         lambda: f"the pasting is undone: {self.fennik.text(FIELD)!r}")
        self.assertEqual(self.fennik.toast(), "")
        self.fennik.press("Esc")
        self.expect_panel(self.left)
        self.fennik.expect("the status line", lambda: self.fennik.status(LEFT), "4 položky")
        self.fennik.expect_cursor("Alfa")

    def test_keys_of_menus_act_meanwhile(self):
        self.open_field()
        self.fennik.press("Ctrl+Shift+Period")
        self.fennik.expect("the rows", lambda: self.fennik.names(LEFT),
                           [UP, ".skrytá", "Alfa", "alfabeta", "Beta", "a.txt"])
        self.expect_focus(FIELD)
        self.fennik.press("Ctrl+T")
        self.fennik.expect("the tabs", lambda: self.fennik.tabs(LEFT),
                           [self.left.name, f"[{self.left.name}]"])
        self.fennik.press("F3")
        self.fennik.wait(lambda: any(part.get_name().startswith("Náhled, ")
                                     for part in self.fennik.in_view()), "the preview is open")


class Favourites(PlacesTest):
    def open_menu(self):
        self.fennik.press("Ctrl+D")
        self.expect_focus(FILTER)

    def places(self):
        return self.fennik.list_items(PLACES)

    def favourites(self):
        items = self.places()
        end = items.index("Nedávné") if "Nedávné" in items else len(items) - 1
        return [item.split(", ")[0] for item in items[1:end]]

    def visit(self, *names):
        for name in names:
            self.fennik.press("Ctrl+L")
            self.expect_focus(FIELD)
            self.desktop.type(f"{self.left}/{name}")
            self.fennik.press("Enter")
            self.expect_panel(self.left / name)

    def test_are_added_found_opened_and_removed(self):
        fennik = self.fennik
        self.open_menu()
        fennik.expect("the menu", self.places,
                      ["Oblíbené", "Zatím nic – Ctrl+Shift+D přidá tuto složku",
                       "Přidat složku do oblíbených, Ctrl+Shift+D"])
        fennik.press("Esc")
        self.expect_panel(self.left)
        for name in ("Alfa", "Beta"):
            self.visit(name)
            fennik.press("Ctrl+Shift+D")
            fennik.expect("the toast", fennik.toast, f"Přidáno do oblíbených: {name}")
        fennik.press("Ctrl+Shift+D")
        fennik.expect("the toast", fennik.toast, "Už je v oblíbených")

        # The first nine have digits.
        self.open_menu()
        fennik.expect("the favourites", self.favourites, ["Alfa", "Beta"])
        fennik.press("1")
        self.expect_panel(self.left / "Alfa")
        self.open_menu()
        self.desktop.type("uvn")
        fennik.expect("the menu", self.places, ["Tomu neodpovídá žádná složka",
                                                "Přidat složku do oblíbených, Ctrl+Shift+D"])
        fennik.press("Backspace", "Backspace", "Backspace")
        self.desktop.type("bet")
        names = lambda: [place.split(", ")[0] for place in self.places()]
        fennik.wait(lambda: names()[:2] == ["Oblíbené", "Beta"],
                    lambda: f"Beta alone fits: {self.places()}")
        fennik.press("Ctrl+Enter")
        fennik.expect("the tabs", lambda: fennik.tabs(LEFT), ["Alfa", "[Beta]"])
        self.expect_panel(self.left / "Beta")

        self.open_menu()
        fennik.press("Down", "Backspace")
        fennik.expect("the favourites", self.favourites, ["Alfa"])
        fennik.press("Up", "Backspace")
        fennik.wait(lambda: self.places()[1].startswith("Zatím nic"), "no favourite is left")
        fennik.press("Esc")
        self.expect_panel(self.left / "Beta")

    def test_stand_beside_the_recent_folders_newest_first_without_repeats(self):
        self.visit("Alfa", "Beta", "alfabeta", "Beta")
        self.open_menu()
        def recents():
            items = self.places()
            begin = items.index("Nedávné") + 1 if "Nedávné" in items else len(items)
            return [item.split(", ")[0] for item in items[begin:-1]]
        self.fennik.wait(lambda: recents()[:3] == ["Beta", "alfabeta", "Alfa"],
                         lambda: f"{recents()}")
        self.assertEqual(len(recents()), len(set(recents())))
        self.fennik.press("Down", "Enter")
        self.expect_panel(self.left / "alfabeta")

    def test_filtering_writes_and_does_nothing_in_the_panel(self):
        self.open_menu()
        self.desktop.type("x 5+*")
        self.fennik.press("NumPlus", "Space", "Home", "Insert", "Tab")
        stays_so(lambda: self.fennik.focused() == FILTER and not self.fennik.dialog()
                 and not self.fennik.toast() and self.fennik.tabs(LEFT) == [],
                 "the filter is being written", 0.3)
        self.fennik.press("Esc", "Down")
        self.expect_panel(self.left)
        self.fennik.expect_cursor("Alfa")

    def test_belong_to_the_panel_with_the_keyboard(self):
        self.fennik.press("Tab", "Ctrl+Shift+D", "Tab")
        self.open_menu()
        self.fennik.press("1")
        self.expect_panel(self.right)
        self.expect_folder(self.right, RIGHT)


if __name__ == "__main__":
    main()
