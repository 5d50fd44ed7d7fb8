"""A private desktop on which the real program is driven as its user drives it.

The desktop has its own X server, window manager and session bus, so the tests neither need nor
disturb the desktop of whoever runs them. Keys are real presses, and what the program shows is read
the way a screen reader reads it.
"""
import contextlib
import ctypes
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

# Taken out of the arguments, because the rest of them are for the runner of the tests.
GIVEN_PROGRAM = pathlib.Path(sys.argv.pop(1))
NOBODY = 65534
PATIENCE = 5  # seconds for what has to happen at once, even on a busy machine
LEFT, RIGHT = SIDES = ("Levý panel", "Pravý panel")
# The places of a panel's parts among its children.
TAB_STRIP, PATH_BAR, TABLE, STATUS_LINE, MESSAGE = range(5)
UP = "nadřazená složka"
# All other keys are the program's, also those that desktops like to take for themselves.
WINDOW_MANAGER_KEYS = """<openbox_config xmlns="http://openbox.org/3.4/rc"><keyboard>
<keybind key="A-F4"><action name="Close"/></keybind></keyboard></openbox_config>"""
PR_SET_PDEATHSIG = 1
PR_SET_CHILD_SUBREAPER = 36

libc = ctypes.CDLL(None, use_errno=True)

# The keys by their place on the keyboard, called as on an American one, so that the layout decides
# what they type. Esc has its name, because xdotool takes a single digit for a character.
KEYS = {
    "Esc": "Escape", **{key: 10 + place for place, key in enumerate("1234567890")}, "Minus": 20,
    "Equal": 21, "Backspace": 22, "Tab": 23,
    **{key: 24 + place for place, key in enumerate("QWERTYUIOP")},
    "Bracket": 34, "BracketRight": 35, "Enter": 36, "Ctrl": 37,
    **{key: 38 + place for place, key in enumerate("ASDFGHJKL")}, "Semicolon": 47, "Shift": 50,
    **{key: 52 + place for place, key in enumerate("ZXCVBNM")}, "Comma": 59,
    "Period": 60, "NumMultiply": 63,
    "Alt": 64, "Space": 65, "CapsLock": 66,
    **{f"F{number}": 66 + number for number in range(1, 11)}, "NumLock": 77, "ScrollLock": 78,
    "NumMinus": 82, "NumPlus": 86, "Num1": 87, "NumEnter": 104, "AltGr": 108,
    "Home": 110, "Up": 111, "PageUp": 112, "Left": 113, "Right": 114, "End": 115, "Down": 116,
    "PageDown": 117, "Insert": 118, "Delete": 119, "Super": 133,
}


class TooLate(AssertionError):
    """What was waited for has not happened."""


def wait_until(condition, what, timeout=PATIENCE):
    """Asks `condition` until it holds and returns what it said; fails with the sentence `what`."""
    deadline = time.monotonic() + timeout
    while True:
        failure = None
        try:
            said = condition()
        except (AttributeError, RuntimeError) as error:
            # What is being read may vanish meanwhile; the bindings raise the one or return None.
            said, failure = None, error
        if said:
            return said
        if time.monotonic() > deadline:
            reason = what() if callable(what) else what
            raise TooLate(f"Not within {timeout} s: {reason}") from failure
        time.sleep(0.02)


def stays_so(condition, what, duration=0.6):
    """Asks `condition` again and again and fails with `what` as soon as it does not hold."""
    deadline = time.monotonic() + duration

    def is_over():
        if not condition():
            raise AssertionError(f"No longer: {what}")
        return time.monotonic() > deadline
    wait_until(is_over, what, duration + PATIENCE)


def prepared_program():
    """The program under test, ready to be run by somebody who is not root.

    The superuser may open every folder, so refused access would never show; whoever is root becomes
    an ordinary user here. The copy is there because that user may not get into the build's folder.
    """
    program = GIVEN_PROGRAM.resolve()
    if os.geteuid() != 0:
        return program
    folder = pathlib.Path(tempfile.mkdtemp(prefix="fennik-program-"))
    copy = folder / program.name
    # It expects the program that decodes for it in its own folder.
    helper = program.with_name("fennik-preview")
    copies = [shutil.copy2(file, folder / file.name) for file in (program, helper) if file.exists()]
    for path in (folder, *copies):
        os.chown(path, NOBODY, NOBODY)
        path.chmod(0o755)
    os.setgroups([])
    os.setgid(NOBODY)
    os.setuid(NOBODY)
    os.chdir("/")
    unittest.addModuleCleanup(shutil.rmtree, folder)
    return copy


def die_with_the_test():
    libc.prctl(PR_SET_PDEATHSIG, signal.SIGKILL)


def stat_of(process):
    """State and parent of a process; nothing when it is gone."""
    try:
        with open(f"/proc/{process}/stat", encoding="utf-8", errors="replace") as stat:
            # The name in parentheses may itself hold blanks and parentheses.
            state, parent = stat.read().rpartition(")")[2].split()[:2]
            return state, int(parent)
    except OSError:
        return None


def has_ended(process):
    """Whether a process runs no more, though its parent may not have taken note yet."""
    return (stat_of(process) or "Z")[0] == "Z"


def children_of(process):
    found = []
    for entry in os.listdir("/proc"):
        if entry.isdigit() and (stat := stat_of(int(entry))) and stat[1] == process:
            found.append(int(entry))
    return found


def descendants_of(process):
    children = children_of(process)
    return children + [found for child in children for found in descendants_of(child)]


def end_all(processes):
    for process in processes:
        try:
            os.kill(process, signal.SIGKILL)
        except ProcessLookupError:
            pass


def end_all_children():
    """Ends everything started from here. What a child leaves behind becomes a child of this one."""
    def all_gone():
        children = children_of(os.getpid())
        end_all(children)
        for child in children:
            try:
                os.waitpid(child, os.WNOHANG)
            except ChildProcessError:
                pass
        return not children
    wait_until(all_gone, "the processes of the desktop have ended")


class Desktop:
    """An X server, a window manager and a session bus with the accessibility registry."""

    def __init__(self):
        libc.prctl(PR_SET_CHILD_SUBREAPER, 1)
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="fennik-window-"))
        self._processes = []
        unittest.addModuleCleanup(self.close)
        # No more than this comes from outside: neither the settings nor the sessions of whoever
        # runs the tests may reach the program.
        self.environment = {"PATH": os.environ["PATH"], "LANG": "C.UTF-8", "TZ": "Europe/Prague",
                            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}
        for variable, name in (("HOME", "home"), ("XDG_RUNTIME_DIR", "runtime"),
                               ("XDG_CONFIG_HOME", "config"), ("XDG_CACHE_HOME", "cache"),
                               ("XDG_DATA_HOME", "data"), ("XDG_STATE_HOME", "state")):
            path = self.folder / name
            path.mkdir(mode=0o700)
            self.environment[variable] = str(path)
        self.log = open(self.folder / "desktop.log", "wb")
        self.environment["DISPLAY"] = ":" + self._start_telling(
            ["Xvfb", "-displayfd", "{}", "-screen", "0", "1600x1000x24", "-nolisten", "tcp",
             "-noreset"])
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self._start_telling(
            ["dbus-daemon", "--session", "--nofork", "--print-address={}",
             f"--address=unix:path={self.folder}/runtime/session"])
        keys = self.folder / "window-manager.xml"
        keys.write_text(WINDOW_MANAGER_KEYS, encoding="utf-8")
        self.spawn(["openbox", "--sm-disable", "--config-file", keys], stdout=self.log,
                   stderr=self.log)
        wait_until(lambda: b"window id" in self._ask("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"),
                   "the window manager has started")
        self.accessibility = self._accessibility()

    def _start_telling(self, command):
        """Starts a server and returns the line it writes to the descriptor it gets for {}."""
        reading, writing = os.pipe()
        self.spawn([part.format(writing) for part in command], stdout=self.log, stderr=self.log,
                   pass_fds=[writing])
        os.close(writing)
        with open(reading, encoding="utf-8") as pipe:
            line = pipe.readline().strip()
        if not line:
            raise TooLate(f"{command[0]} did not start: {self._log_text()}")
        return line

    def _log_text(self):
        self.log.flush()
        return (self.folder / "desktop.log").read_text(encoding="utf-8", errors="replace")

    def _accessibility(self):
        # The library looks for its bus when it is loaded.
        os.environ["DISPLAY"] = self.environment["DISPLAY"]
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = self.environment["DBUS_SESSION_BUS_ADDRESS"]
        os.environ["XDG_RUNTIME_DIR"] = self.environment["XDG_RUNTIME_DIR"]
        import gi
        gi.require_version("Atspi", "2.0")
        from gi.repository import Atspi
        Atspi.init()
        Atspi.set_timeout(3000, 3000)
        return Atspi

    def _ask(self, *command):
        return subprocess.run(command, env=self.environment, check=False, capture_output=True,
                              timeout=PATIENCE).stdout

    def spawn(self, command, environment=None, **options):
        process = subprocess.Popen(command, env=self.environment | (environment or {}),
                                   preexec_fn=die_with_the_test, stdin=subprocess.DEVNULL,
                                   **options)
        self._processes.append(process)
        return process

    def use_layout(self, layout, *options):
        """Turns the keyboard to a layout, as the desktop's settings do."""
        subprocess.run(["setxkbmap", layout, *options], env=self.environment, check=True,
                       timeout=PATIENCE)

    def press(self, *combinations):
        """Presses combinations such as "Ctrl+Alt+1", one after the other."""
        codes = ["+".join(str(KEYS[key]) for key in combination.split("+"))
                 for combination in combinations]
        subprocess.run(["xdotool", "key", "--delay", "4", *codes], env=self.environment, check=True,
                       timeout=60)

    def type(self, text):
        """Types ASCII characters on the American layout."""
        subprocess.run(["xdotool", "type", "--delay", "4", text], env=self.environment, check=True,
                       timeout=60)

    @contextlib.contextmanager
    def held(self, key):
        """Holds a key down for as long as the context lasts."""
        def send(command):
            subprocess.run(["xdotool", command, str(KEYS[key])], env=self.environment, check=True,
                           timeout=PATIENCE)
        send("keydown")
        try:
            yield
        finally:
            send("keyup")

    def active_title(self):
        """The title of the window that has the keyboard."""
        return self._ask("xdotool", "getactivewindow", "getwindowname").decode().rstrip("\n")

    def close_active_window(self):
        """Asks the window to close with the window manager's own key."""
        subprocess.run(["xdotool", "key", "alt+F4"], env=self.environment, check=True,
                       timeout=PATIENCE)

    def new_folder(self):
        """An empty folder of its own for a test."""
        return pathlib.Path(tempfile.mkdtemp(dir=self.folder))

    def close(self):
        end_all_children()
        for process in self._processes:
            process.poll()
        self.log.close()
        # Folders without rights would stop the removal of what is in them.
        subprocess.run(["chmod", "-R", "u+rwX", self.folder], check=True)
        shutil.rmtree(self.folder)


def row_name(text):
    """The name at the beginning of what is read for a row."""
    return text.partition(", ")[0]


class Fennik:
    """One run of the program, with what its user sees of it."""

    def __init__(self, desktop, program, arguments, environment, wrapper=()):
        self.desktop = desktop
        self._errors = open(desktop.new_folder() / "errors.log", "w+b")
        self.process = desktop.spawn([*wrapper, program, *arguments], environment,
                                     stdout=self._errors, stderr=self._errors)
        self.application = self.wait(self._find_application, "the program is on the bus")
        self.application.set_cache_mask(desktop.accessibility.Cache.NONE)
        self.wait(lambda: all(self.table(side) for side in SIDES), "both tables are there")
        # The program has to know that it has the keyboard, or the first keys would be lost.
        self.wait(lambda: self.has_state(self.window(), "ACTIVE"), "the window is active")
        self.wait(lambda: desktop.active_title().endswith("Fennik"), "the window has the keyboard")

    def _find_application(self):
        root = self.desktop.accessibility.get_desktop(0)
        root.clear_cache()
        found = [root.get_child_at_index(i) for i in range(root.get_child_count())]
        # A wrapper has the program as its child.
        own = {self.process.pid, *descendants_of(self.process.pid)}
        return next((child for child in found if child and child.get_name() == "Fennik"
                     and child.get_process_id() in own), None)

    def wait(self, condition, what, timeout=PATIENCE):
        """As `wait_until`, and fails at once when the program has ended."""
        def asks():
            if self.process.poll() is not None:
                raise AssertionError(f"The program has ended with {self.process.returncode}: "
                                     f"{self.errors()}")
            return condition()
        return wait_until(asks, what, timeout)

    def errors(self):
        return pathlib.Path(self._errors.name).read_text(encoding="utf-8", errors="replace")

    def press(self, *combinations):
        self.desktop.press(*combinations)

    def open_tab(self, side=LEFT):
        """Opens a tab and waits for its rows; the cursor can move over nothing before."""
        wanted = max(1, len(self.tabs(side))) + 1
        self.press("Ctrl+T")
        self.wait(lambda: len(self.tabs(side)) == wanted and self.cursor(side),
                  "the new tab shows rows")

    def all(self, start=None):
        """Everything on the accessibility tree, in the order in which it is read."""
        start = start or self.application
        yield start
        for index in range(start.get_child_count()):
            child = start.get_child_at_index(index)
            if child:
                yield from self.all(child)

    def has_state(self, control, state):
        states = self.desktop.accessibility.StateType
        return control.get_state_set().contains(getattr(states, state))

    def window(self):
        return self.application.get_child_at_index(0)

    def panels(self):
        """The panels in the order in which they are read."""
        window = self.window()
        parts = (window.get_child_at_index(i) for i in range(window.get_child_count()))
        splitter = next(part for part in parts if part.get_role_name() == "split pane")
        panels = [splitter.get_child_at_index(i) for i in range(splitter.get_child_count())]
        return [panel for panel in panels if panel.get_child_count() > 1]

    def table(self, side):
        for panel in self.panels():
            table = panel.get_child_at_index(TABLE)
            if table.get_name().startswith(side):
                return table
        return None

    def rows(self, side):
        """What is read for each row."""
        table = self.table(side)
        return [table.get_accessible_at(row, 0).get_name() for row in range(table.get_n_rows())]

    def names(self, side):
        return [row_name(text) for text in self.rows(side)]

    def keyboard_side(self):
        return next((side for side in SIDES if self.has_state(self.table(side), "FOCUSED")), None)

    def part(self, side, place):
        return self.table(side).get_parent().get_child_at_index(place)

    def in_view(self, start=None):
        """Everything that is in view, without the cells of tables."""
        start = start or self.window()
        if not self.has_state(start, "SHOWING"):
            return
        yield start
        for index in range(start.get_child_count() if start.get_role_name() != "table" else 0):
            child = start.get_child_at_index(index)
            if child:
                yield from self.in_view(child)

    def shown(self, role, start=None):
        """Everything of a role that is in view."""
        return [control for control in self.in_view(start) if control.get_role_name() == role]

    def focused(self):
        """The name of the control that has the keyboard, a row's that of its table."""
        return next((control.get_name() for control in self.in_view()
                     if self.has_state(control, "FOCUSED")), None)

    def text(self, name):
        """What stands in the field of a name."""
        field = next(field for field in self.shown("text") if field.get_name() == name)
        return self.desktop.accessibility.Text.get_text(field, 0, -1)

    def tabs(self, side):
        """The titles of a panel's tabs, the active one in brackets; none without a strip."""
        return [f"[{tab.get_name()}]" if self.has_state(tab, "SELECTED") else tab.get_name()
                for tab in self.shown("page tab", self.part(side, TAB_STRIP))]

    def toast(self):
        """What the toast says; empty when none is shown."""
        return "".join(alert.get_name() for alert in self.shown("alert"))

    def dialog(self):
        """The dialog that is open, or none."""
        return next(iter(self.shown("dialog")), None)

    def dismiss_welcome(self):
        """Closes what greets whoever starts the program for the first time."""
        self.wait(self.dialog, "the tips are shown")
        time.sleep(0.5)  # who is typing something else must not close them
        self.press("Esc")
        self.wait(lambda: not self.dialog(), "the tips have gone")

    def list_items(self, name):
        """What is read for the rows of a list of this name; none when it is not shown."""
        return [item.get_name() for found in self.shown("list") if found.get_name() == name
                for item in self.all(found) if item.get_role_name() == "list item"]

    def cursor(self, side=None):
        """What is read under the cursor of a panel, by itself of the one with the keyboard."""
        table = self.table(side or self.keyboard_side())
        for row in range(table.get_n_rows()):
            cell = table.get_accessible_at(row, 0)
            if self.has_state(cell, "FOCUSED"):
                return cell.get_name()
        return None

    def _labels(self, side, part):
        return [label.get_name() for label in self.shown("label", self.part(side, part))]

    def shown_path(self, side):
        """The folder of a panel, as the last crumb of its path bar tells it."""
        return self.shown("push button", self.part(side, PATH_BAR))[-1].get_description()

    def status(self, side):
        """What stands first in a panel's status line: a count, the marks or a state."""
        return next(filter(None, self._labels(side, STATUS_LINE)), "")

    def message(self, side):
        """What a panel says in place of rows; empty when it says nothing."""
        return " ".join(self._labels(side, MESSAGE)).strip()

    def expect(self, what, read, wanted, timeout=PATIENCE):
        """Waits until `read` returns `wanted`; says what it returned last otherwise."""
        seen = []

        def matches():
            seen[:] = [read()]
            return seen == [wanted]
        self.wait(matches, lambda: f"{what} is {wanted!r}, but it is {(seen or [None])[0]!r}",
                  timeout)

    def expect_cursor(self, name, side=None):
        self.expect("the row under the cursor", lambda: row_name(self.cursor(side) or ""), name)

    def expect_table(self, side, rest):
        self.expect("the name of the table", lambda: self.table(side).get_name(), f"{side}, {rest}")

    def expect_title(self, title):
        self.expect("the title", self.desktop.active_title, title)

    def close(self):
        if self.process.poll() is None:
            end_all(descendants_of(self.process.pid) + [self.process.pid])
            self.process.wait(PATIENCE)
        self._errors.close()
        wait_until(lambda: not self._find_application(), "the program has left the bus")


class WindowTest(unittest.TestCase):
    """A test with a program of its own on the desktop that its module has set up."""

    desktop = None
    program = None

    def new_folder(self, *names):
        """A folder with files, and with folders where a name ends with a slash."""
        folder = self.desktop.new_folder()
        for name in names:
            if name.endswith("/"):
                (folder / name).mkdir()
            else:
                (folder / name).touch()
        return folder

    def new_home(self):
        """What tells the program of a home folder and of settings that no other test has."""
        folder = self.desktop.new_folder()
        home = {"HOME": str(folder), "XDG_CONFIG_HOME": str(folder / "config")}
        self.write_settings(home)
        return home

    @staticmethod
    def settings_file(home):
        return pathlib.Path(home["XDG_CONFIG_HOME"]) / "Fennik" / "Fennik.conf"

    def write_settings(self, home, **values):
        """Leaves settings as an earlier run would have; the values as they stand in the file."""
        file = self.settings_file(home)
        file.parent.mkdir(parents=True, exist_ok=True)
        # Whoever has used the program before is not welcomed any more.
        lines = [f"{key}={value}\n"
                 for key, value in {"tips.welcomeShown": "true", **values}.items()]
        file.write_text("[General]\n" + "".join(lines), encoding="utf-8")

    def start(self, *folders, home=None, **options):
        home = home or self.new_home()
        settings = self.settings_file(home)
        is_known = settings.exists() and b"welcomeShown=true" in settings.read_bytes()
        fennik = Fennik(self.desktop, self.program, ["--", *folders], home, **options)
        self.addCleanup(fennik.close)
        if not is_known:
            fennik.dismiss_welcome()
        return fennik


def set_up_desktop():
    """To be called by a module's `setUpModule`."""
    WindowTest.program = prepared_program()
    WindowTest.desktop = Desktop()


def main():
    # The bindings of the accessibility library warn about themselves.
    unittest.main(verbosity=2, warnings="ignore")
