"""Holds what the program does where there is no display: its options, pictures and exit codes."""
import os
import pathlib
import re
import shutil
import struct
import subprocess
import tempfile
import unittest

from support import GIVEN_PROGRAM, main

PROGRAM = GIVEN_PROGRAM.resolve()
RUN = pathlib.Path(__file__).resolve().parents[3] / "run"
PNG = b"\x89PNG\r\n\x1a\n"
DESKTOP_VARIABLES = ("DISPLAY", "WAYLAND_DISPLAY", "XDG_RUNTIME_DIR", "HOME", "QT_QPA_PLATFORM",
                     "DBUS_SESSION_BUS_ADDRESS", "XAUTHORITY")


def picture_size(path):
    content = path.read_bytes()
    assert content.startswith(PNG), f"{path} is no PNG picture."
    return struct.unpack(">II", content[16:24])


class ProgramTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="fennik-program-"))
        self.addCleanup(shutil.rmtree, self.folder)
        self.home = self.folder / "home"
        self.home.mkdir()
        self.shown = self.folder / "složka"
        self.shown.mkdir()
        for name in ("a.txt", "b.txt", ".c.txt"):
            (self.shown / name).touch()

    def execute(self, command, **variables):
        """Runs without a desktop, except for these variables; all of them are unset by None."""
        environment = {name: value for name, value in os.environ.items()
                       if name not in DESKTOP_VARIABLES}
        environment |= {"HOME": str(self.home), **variables}
        environment = {name: value for name, value in environment.items() if value is not None}
        return subprocess.run(command, cwd=self.folder, env=environment, check=False, text=True,
                              capture_output=True, stdin=subprocess.DEVNULL, timeout=100)

    def fennik(self, *arguments, **variables):
        return self.execute([PROGRAM, *arguments], **variables)

    def check_fault(self, done, code, pattern):
        """One sentence on the error output, nothing else, and the exit code."""
        self.assertEqual((done.returncode, done.stdout), (code, ""), done.stderr)
        self.assertRegex(done.stderr, rf"\A{pattern}\n\Z")


class Options(ProgramTest):
    def test_help_names_every_option(self):
        for option in ("--help", "-h"):
            done = self.fennik(option)
            self.assertEqual((done.returncode, done.stderr), (0, ""))
            for named in ("--screenshot", "--appearance", "--size", "--verbose", "--version",
                          "--help"):
                self.assertIn(named, done.stdout)

    def test_version_is_one_line(self):
        done = self.fennik("--version")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertRegex(done.stdout, r"\AFennik \d+\.\d+\.\d+\n\Z")

    def test_what_makes_no_sense_is_said_in_a_sentence(self):
        for arguments, sentence in (
                (["--nesmysl"], "Neznámá volba „--nesmysl“. Všechny ukáže --help."),
                (["--archive-helper"],
                 "Neznámá volba „--archive-helper“. Všechny ukáže --help."),
                (["-x"], "Neznámá volba „-x“. Všechny ukáže --help."),
                (["--size"], "Za volbou --size chybí hodnota."),
                (["--size", "veliká"], "Hodnotě „veliká“ u volby --size nerozumím."),
                (["--size=0x0"], "Hodnotě „0x0“ u volby --size nerozumím."),
                (["--size=99999999999x1"], "Hodnotě „99999999999x1“ u volby --size nerozumím."),
                (["--appearance=modrý"], "Hodnotě „modrý“ u volby --appearance nerozumím."),
                (["--screenshot="], "Hodnotě „“ u volby --screenshot nerozumím."),
                (["a", "b", "c"], "Nejvýš dvě složky: levá a pravá.")):
            with self.subTest(arguments=arguments):
                self.check_fault(self.fennik(*arguments), 2, re.escape(sentence))


class WithoutDisplay(ProgramTest):
    def test_the_window_is_refused_with_a_sentence(self):
        self.check_fault(self.fennik(), 1,
                         r"Není tu displej, na kterém by se dalo otevřít okno\. .*--screenshot\.")

    def test_a_dead_display_is_refused_with_a_sentence(self):
        for variables in ({"DISPLAY": ":987"}, {"DISPLAY": "nesmysl"},
                          {"WAYLAND_DISPLAY": "wayland-987", "XDG_RUNTIME_DIR": str(self.folder)},
                          {"WAYLAND_DISPLAY": "wayland-987"}, {"WAYLAND_DISPLAY": "/" + "x" * 300},
                          {"DISPLAY": ":987", "WAYLAND_DISPLAY": "wayland-987"}):
            with self.subTest(variables=variables):
                self.check_fault(self.fennik(**variables), 1,
                                 r"K displeji se nejde připojit\. .*--screenshot\.")


class Screenshot(ProgramTest):
    def take(self, *arguments, file="okno.png", **variables):
        done = self.fennik("--screenshot", file, *arguments, **variables)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))
        return self.folder / file

    def test_needs_nothing_of_a_desktop_and_has_the_size_asked_for(self):
        self.assertEqual(picture_size(self.take("--size", "1000x600", HOME=None)), (1000, 600))
        self.assertEqual(picture_size(self.take("--size=1440x900", DISPLAY=":987")), (1440, 900))

    def test_has_the_size_of_a_new_window_when_none_is_asked_for(self):
        self.assertEqual(picture_size(self.take()), (1440, 900))

    def test_is_taken_of_whatever_the_paths_lead_to(self):
        (self.folder / os.fsdecode(b"\xff\n")).mkdir()
        for paths in (["není tu"], ["složka/a.txt"], ["složka", "složka/a.txt/uvnitř"], ["/", "/"],
                      ["."], ["--", "-x"], [""], [b"\xff\n"], ["/proc/self/mem", "/dev/null"],
                      ["/proc/1/cwd"]):
            with self.subTest(paths=paths):
                self.take(*paths)

    def test_shows_one_folder_differently_than_another_and_light_differently_than_dark(self):
        pictures = [self.take("--appearance", look, path, path).read_bytes()
                    for look, path in (("light", "složka"), ("dark", "složka"), ("light", "home"))]
        self.assertEqual(len(set(pictures)), 3)

    def test_replaces_its_own_picture_and_leaves_nothing_beside_it(self):
        first = self.take("--appearance=light").read_bytes()
        second = self.take("--appearance=dark").read_bytes()
        self.assertNotEqual(first, second)
        self.assertEqual({path.name for path in self.folder.iterdir()},
                         {"okno.png", "home", "složka"})

    def test_never_overwrites_what_fennik_did_not_draw(self):
        foreign = self.folder / "okno.png"
        for content in (b"cizi", PNG, PNG + b"zkomoleny obrazek", b"\n"):
            foreign.write_bytes(content)
            self.check_fault(self.fennik("--screenshot", "okno.png"), 1,
                             "Soubor „okno.png“ už existuje a Fennik ho nepřepíše.")
            self.assertEqual(foreign.read_bytes(), content)

    def test_does_not_write_through_a_link_or_into_a_folder_or_a_pipe(self):
        own = self.take(file="vlastní.png")
        content = own.read_bytes()
        (self.folder / "odkaz.png").symlink_to("vlastní.png")
        (self.folder / "nikam.png").symlink_to("nic.png")
        os.mkfifo(self.folder / "roura.png")
        for file in ("odkaz.png", "nikam.png", "roura.png", "složka"):
            with self.subTest(file=file):
                self.check_fault(self.fennik("--screenshot", file), 1, "Soubor „.*“ už existuje .*")
        self.assertEqual(own.read_bytes(), content)
        self.assertTrue((self.folder / "odkaz.png").is_symlink())
        self.assertFalse((self.folder / "nic.png").exists())

    def test_says_why_a_picture_cannot_be_saved(self):
        self.check_fault(self.fennik("--screenshot", "není/okno.png"), 1,
                         "Obrázek „okno.png“ nejde uložit: .+[^.]\\.")
        self.check_fault(self.fennik("--screenshot", "/proc/okno.png"), 1,
                         "Obrázek „okno.png“ nejde uložit: .+[^.]\\.")


class Verbose(ProgramTest):
    def test_writes_one_line_for_each_folder(self):
        done = self.fennik("--verbose", "--screenshot", "okno.png", "složka", "home")
        self.assertEqual((done.returncode, done.stdout), (0, ""))
        lines = sorted(re.sub(r"za \d+ ms", "za N ms", line) for line in done.stderr.splitlines())
        self.assertEqual(lines, ["Načteno 0 položek za N ms", "Načteno 3 položek za N ms"])

    def test_writes_why_a_folder_cannot_be_opened(self):
        done = self.fennik("--verbose", "--screenshot", "okno.png", "není", "home")
        self.assertEqual((done.returncode, done.stdout), (0, ""))
        lines = sorted(re.sub(r"za \d+ ms", "za N ms", line) for line in done.stderr.splitlines())
        self.assertEqual(lines, ["Načteno 0 položek za N ms",
                                 "Složku nejde otevřít: Složka „není“ teď není dostupná – "
                                 "neexistuje, nebo je na odpojeném disku či síti."])


class Run(ProgramTest):
    def test_draws_the_window_where_there_is_no_display_and_keeps_what_is_there(self):
        mine = self.folder / "fennik.png"
        for picture in (mine, self.folder / "fennik 2.png"):
            done = self.execute([RUN, "složka"], FENNIK_PRESET="dev")
            self.assertEqual((done.returncode, done.stdout), (0, ""), done.stderr)
            self.assertEqual(picture_size(picture), (1440, 900))
            self.assertIn("Není tu displej", done.stderr)
            self.assertTrue(done.stderr.endswith(f"Obrázek okna: {picture}\n"), done.stderr)
        self.assertEqual(len(list(self.folder.glob("*.png"))), 2)

    def test_passes_on_what_needs_no_display(self):
        done = self.execute([RUN, "--version"], FENNIK_PRESET="dev")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertRegex(done.stdout, r"\AFennik \d")
        done = self.execute([RUN, "--nesmysl"], FENNIK_PRESET="dev")
        self.assertEqual(done.returncode, 2)
        self.assertIn("Neznámá volba", done.stderr)

    def test_works_through_a_link_to_it(self):
        link = self.folder / "spustit"
        link.symlink_to(RUN)
        done = self.execute([link, "--screenshot=okno.png", "složka"], FENNIK_PRESET="dev")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(picture_size(self.folder / "okno.png"), (1440, 900))


if __name__ == "__main__":
    main()
