"""Types commands in a real window and reads what comes of them."""
import os
import signal

from support import LEFT, PATIENCE, WindowTest, descendants_of, has_ended, main, set_up_desktop, wait_until

setUpModule = set_up_desktop

FIELD = "Příkaz"


class Commands(WindowTest):
    def setUp(self):
        self.home = self.new_home()
        self.left = self.new_folder("a", "b/")
        self.fennik = self.start(self.left, self.new_folder(), home=self.home)
        self.fennik.expect_table(LEFT, f"{self.left.name}, 2 položky")

    def run_command(self, command):
        self.fennik.press("Ctrl+K")
        self.fennik.expect("the place of the keyboard", self.fennik.focused, FIELD)
        self.desktop.type(command)
        self.fennik.press("Enter")

    def output(self):
        """The lines of the output, without the command before them."""
        field = next((field for field in self.fennik.shown("text")
                      if field.get_name().startswith("Výstup příkazu")), None)
        if field is None:
            return None
        text = self.desktop.accessibility.Text.get_text(field, 0, -1)
        return text.split("\n")[1:]

    def state(self):
        return next((label.get_name() for label in self.fennik.shown("label")
                     if label.get_name().startswith("Příkaz ")), None)

    def test_a_command_runs_where_the_panel_is_and_escape_closes_its_output(self):
        self.run_command("pwd; ls; exit 3")
        self.fennik.expect("the output", self.output, [str(self.left), "a", "b"])
        self.fennik.expect("the state", self.state,
                           "Příkaz pwd; ls; exit 3: Skončilo s kódem 3")
        self.fennik.expect("the place of the keyboard", self.fennik.focused, FIELD)
        # What is typed next stays; the one before comes back with the arrow key.
        self.desktop.type("echo")
        self.fennik.press("Up")
        self.fennik.expect("the field", lambda: self.fennik.text(FIELD), "pwd; ls; exit 3")
        self.fennik.press("Down")
        self.fennik.expect("the field", lambda: self.fennik.text(FIELD), "echo")
        self.fennik.press("Esc")
        self.fennik.wait(lambda: self.fennik.keyboard_side() == LEFT, "the panel has the keyboard")
        self.assertIsNotNone(self.output())
        self.fennik.press("Esc")
        self.fennik.expect("the output", self.output, None)
        self.assertEqual(self.fennik.text(FIELD), "echo")

    def test_the_keyboard_goes_to_the_output_and_stops_the_command(self):
        self.run_command("echo $$; exec sleep 1000")
        self.fennik.wait(lambda: self.output() and self.output()[0], "the number of the process")
        process = int(self.output()[0])
        self.fennik.press("Shift+Tab")
        self.fennik.wait(lambda: (self.fennik.focused() or "").startswith("Výstup příkazu"),
                         "the output has the keyboard")
        self.fennik.press("Tab")
        self.fennik.expect("the place of the keyboard", self.fennik.focused, "Ukončit")
        self.fennik.press("Space")
        self.fennik.wait(lambda: (self.state() or "").endswith("Skončilo s kódem 143"), "the end")
        self.assertTrue(has_ended(process))
        self.fennik.press("Esc")
        self.fennik.expect("the output", self.output, None)
        self.fennik.wait(lambda: self.fennik.keyboard_side() == LEFT, "the panel has the keyboard")

    def test_cd_leads_the_panel_and_history_stays(self):
        self.run_command("cd b")
        self.fennik.expect_title("b – Fennik")
        self.fennik.expect("the field", lambda: self.fennik.text(FIELD), "")
        self.desktop.type("cd nowhere")
        self.fennik.press("Enter")
        self.fennik.expect("the toast", self.fennik.toast, "Složka „nowhere“ teď není dostupná – "
                           "neexistuje, nebo je na odpojeném disku či síti.")
        self.assertEqual(self.fennik.text(FIELD), "cd nowhere")
        self.desktop.close_active_window()
        self.assertEqual(self.fennik.process.wait(PATIENCE), 0, self.fennik.errors())
        self.fennik = self.start(home=self.home)
        self.fennik.press("Ctrl+K", "Up", "Up")
        self.fennik.expect("the field", lambda: self.fennik.text(FIELD), "cd b")

    def test_the_window_lives_through_a_flood_and_takes_the_command_with_it(self):
        self.run_command("yes")
        self.fennik.wait(lambda: self.output() and self.output()[0], "some output")
        flood = next(process for process in descendants_of(self.fennik.process.pid)
                     if os.readlink(f"/proc/{process}/exe").endswith("/yes"))
        # The keys go on working meanwhile.
        self.fennik.press("Esc", "Down")
        self.fennik.expect_cursor("b", LEFT)
        self.fennik.press("Down")
        self.fennik.expect_cursor("a", LEFT)
        self.fennik.process.send_signal(signal.SIGTERM)
        self.assertEqual(self.fennik.process.wait(PATIENCE), 0, self.fennik.errors())
        wait_until(lambda: has_ended(flood), "the command has ended")


if __name__ == "__main__":
    main()
