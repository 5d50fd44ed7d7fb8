"""Reads the tips, the sheet of shortcuts and what the program says about itself."""
from support import LEFT, WindowTest, main, set_up_desktop, wait_until

setUpModule = set_up_desktop


class HelpTest(WindowTest):
    def setUp(self):
        self.folder = self.new_folder("a.txt")

    def start_here(self, home=None):
        fennik = self.start(self.folder, self.new_folder(), home=home)
        fennik.expect_table(LEFT, f"{self.folder.name}, 1 položka")
        return fennik

    def read(self, fennik, role):
        return [control.get_name() for control in fennik.shown(role, fennik.dialog())]

    def choose(self, fennik, place):
        """Chooses an item of the last menu, whose first one is chosen when it opens."""
        fennik.press("F10", "Left", *["Down"] * place, "Enter")
        return fennik.wait(fennik.dialog, "the card is shown")

    def expect_closed(self, fennik):
        """The card has gone, and the keyboard is where it was."""
        fennik.wait(lambda: not fennik.dialog(), "the card has gone")
        fennik.press("End")
        fennik.expect_cursor("a.txt")


class Tips(HelpTest):
    def test_greet_at_the_first_start_only(self):
        home = self.new_home()
        self.settings_file(home).unlink()
        fennik = self.start_here(home)  # which expects and closes them
        self.expect_closed(fennik)
        wait_until(lambda: b"welcomeShown=true" in self.settings_file(home).read_bytes(),
                   "it is known that they were shown")
        fennik.close()
        self.assertIsNone(self.start_here(home).dialog())

    def test_come_back_page_by_page_from_the_menu(self):
        fennik = self.start_here()
        dialog = self.choose(fennik, 0)
        self.assertEqual(dialog.get_name(), "Vítejte ve Fenniku")
        first = self.read(fennik, "label")
        self.assertIn("Přepne panel. Ten s modrým rámečkem má klávesnici.", first)
        fennik.press("Tab", "Enter")
        fennik.wait(lambda: self.read(fennik, "label") != first, "the next page is shown")
        fennik.press("Enter")
        fennik.wait(lambda: self.read(fennik, "label") == first, "the first page is shown again")
        fennik.press("Ctrl+Enter")
        self.expect_closed(fennik)


class Sheet(HelpTest):
    def rows(self, fennik):
        return [item.get_name() for item in fennik.shown("list item", fennik.dialog())]

    def test_shows_what_is_looked_for_by_title_or_key(self):
        fennik = self.start_here()
        fennik.press("F1")
        dialog = fennik.wait(fennik.dialog, "the sheet is shown")
        self.assertEqual(dialog.get_name(), "Klávesové zkratky")
        self.assertIn("Přepnout panel, Tab nebo Shift+Tab", self.rows(fennik))
        self.assertGreater(len(self.rows(fennik)), 52)
        self.desktop.type("prohodit")
        fennik.expect("the rows", lambda: self.rows(fennik), ["Prohodit panely, Ctrl+U"])
        fennik.press("Ctrl+A")
        self.desktop.type("alt+f5")
        fennik.expect("the rows", lambda: self.rows(fennik), ["Zabalit…, Alt+F5 nebo Ctrl+Shift+F5"])
        fennik.press("Esc")
        self.expect_closed(fennik)


class About(HelpTest):
    def test_names_the_version_and_shows_all_licences(self):
        fennik = self.start_here()
        dialog = self.choose(fennik, 2)
        self.assertEqual(dialog.get_name(), "O aplikaci Fennik")
        self.assertRegex(dialog.get_description(), r"^verze \d+\.\d+\.\d+$")
        fennik.press("Enter")
        fennik.wait(lambda: fennik.dialog().get_name() == "Licence", "the licences are shown")
        text = fennik.text("Licence")
        for sentence in ("GNU LESSER GENERAL PUBLIC LICENSE", "Tim Kientzle", "Unicode, Inc.",
                         "Niels Lohmann", "SIL OPEN FONT LICENSE", "Lucide", "The Fennik developers"):
            self.assertIn(sentence.lower(), text.lower())
        fennik.press("Esc")
        self.expect_closed(fennik)


if __name__ == "__main__":
    main()
