"""Holds what the program starts on a desktop and gives it, and that there is one window only."""
import json
import os
import signal
import subprocess

from support import (LEFT, PATIENCE, RIGHT, WindowTest, children_of, main, set_up_desktop, stat_of,
                     stays_so, wait_until)

setUpModule = set_up_desktop

# Notes how it was started. The folder's own descriptor is the one that the listing takes.
RECORDER = """#!/usr/bin/python3
import json, os, sys
folder = os.path.dirname(os.path.realpath(__file__))
fds = {fd: os.readlink(f"/proc/self/fd/{fd}") for fd in os.listdir("/proc/self/fd")
       if os.path.lexists(f"/proc/self/fd/{fd}")}
with open(f"{folder}/record.new", "w") as record:
    json.dump({"name": os.path.basename(sys.argv[0]), "words": sys.argv[1:], "folder": os.getcwd(),
               "environment": dict(os.environ), "descriptors": fds, "pid": os.getpid(),
               "session": os.getsid(0)}, record)
os.rename(f"{folder}/record.new", f"{folder}/record")
"""


class DesktopTest(WindowTest):
    def setUp(self):
        self.home = self.new_home()
        self.tools = self.new_folder()
        data = self.new_folder("applications/")
        (data / "applications/viewer.desktop").write_text(
            "[Desktop Entry]\nType=Application\nName=Viewer\nExec=viewer %f\nMimeType=text/plain;\n",
            encoding="utf-8")
        for name in ("viewer", "xdg-terminal-exec"):
            (self.tools / name).write_text(RECORDER, encoding="utf-8")
            (self.tools / name).chmod(0o755)
        self.home |= {"PATH": f"{self.tools}:/usr/bin:/bin", "XDG_DATA_HOME": str(data),
                      "XDG_ACTIVATION_TOKEN": "ours"}
        self.left = self.new_folder("a.txt", "run.sh", "b/")
        (self.left / "a.txt").write_text("text\n", encoding="utf-8")
        (self.left / "run.sh").write_text("#!/bin/sh\ntouch ran\n", encoding="utf-8")
        (self.left / "run.sh").chmod(0o755)
        self.right = self.new_folder("vpravo.txt")

    def record(self):
        """How the last program was started."""
        file = self.tools / "record"
        wait_until(file.exists, "something was started")
        text = json.loads(file.read_text(encoding="utf-8"))
        file.unlink()
        return text

    def check_own(self, fennik, record):
        """The program that was started has nothing of Fennik's."""
        self.assertEqual(record["session"], record["pid"])
        self.assertEqual({fd: path for fd, path in record["descriptors"].items() if int(fd) < 3},
                         dict.fromkeys("012", "/dev/null"))
        self.assertEqual(len(record["descriptors"]), 3, record["descriptors"])
        environment = dict(record["environment"])
        self.assertEqual(os.fsencode(environment.pop("PWD")), os.fsencode(record["folder"]))
        with open(f"/proc/{fennik.process.pid}/environ", "rb") as file:
            own = dict(part.split(b"=", 1) for part in file.read().split(b"\0") if part)
        own = {os.fsdecode(name): os.fsdecode(value) for name, value in own.items()}
        del own["XDG_ACTIVATION_TOKEN"]
        own.pop("PWD", None)
        # What Python has found out about its own language is its own.
        environment.pop("LC_CTYPE", None)
        own.pop("LC_CTYPE", None)
        self.assertEqual(environment, own)
        wait_until(lambda: not [child for child in children_of(fennik.process.pid)
                                if (stat_of(child) or "Z")[0] == "Z"], "its end was taken note of")


class Programs(DesktopTest):
    def test_files_open_in_other_programs_and_scripts_do_not_run(self):
        fennik = self.start(self.left, self.right, home=self.home)
        fennik.expect_table(LEFT, f"{self.left.name}, 3 položky")
        fennik.press("Down", "Down")
        fennik.expect_cursor("a.txt")
        for key in ("Enter", "F4"):
            fennik.press(key)
            record = self.record()
            self.assertEqual((record["name"], record["words"], record["folder"]),
                             ("viewer", [str(self.left / "a.txt")], self.home["HOME"]))
            self.check_own(fennik, record)
        fennik.press("Down", "Enter")
        fennik.expect("the toast", fennik.toast,
                      "„run.sh“ je skript a ten Fennik nespouští, jen upravuje.")
        self.assertFalse((self.left / "ran").exists())
        fennik.press("Up", "Up", "F4")
        fennik.expect("the toast", fennik.toast, "Složku nejde upravit – Enter ji otevře.")

    def test_a_terminal_opens_in_the_folder_whatever_its_name(self):
        folder = os.fsencode(self.left) + b"/it's \xff \"$(id)\" \\ \n"
        os.mkdir(folder)
        fennik = self.start(os.fsdecode(folder), self.right, home=self.home)
        fennik.expect_table(RIGHT, f"{self.right.name}, 1 položka")
        fennik.press("F9")
        record = self.record()
        self.assertEqual((record["name"], record["words"]), ("xdg-terminal-exec", []))
        self.assertEqual(os.fsencode(record["folder"]), folder)
        self.check_own(fennik, record)
        buttons = fennik.shown("push button", fennik.part(RIGHT, 1))
        button = next(b for b in buttons if b.get_name() == "Terminál v této složce")
        button.get_action_iface().do_action(0)
        self.assertEqual(self.record()["folder"], str(self.right))
        (self.tools / "xdg-terminal-exec").write_text("#!/bin/sh\nexit 4\n", encoding="utf-8")
        fennik.press("F9")
        fennik.expect("the toast", fennik.toast,
                      "Terminál nejde otevřít: „xdg-terminal-exec“ hned skončil s kódem 4.")


class SecondStart(DesktopTest):
    def second(self, *arguments, **options):
        """A start that is to end at once, as another one runs."""
        return subprocess.run([self.program, *arguments], check=False, capture_output=True,
                              env=self.desktop.environment | self.home, timeout=PATIENCE, **options)

    def test_hands_its_paths_over_and_brings_the_window(self):
        fennik = self.start(self.left, self.right, home=self.home)
        fennik.expect_table(LEFT, f"{self.left.name}, 3 položky")
        other = self.start(self.right, self.right)
        fennik.wait(lambda: not fennik.has_state(fennik.window(), "ACTIVE"), "the other window")
        strange = os.fsencode(self.left) + b"/\xff\n"
        os.mkdir(strange)
        done = self.second("b", strange, cwd=self.left)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, b"", b""))
        fennik.expect("the tabs", lambda: fennik.tabs(LEFT), [self.left.name, "[b]"])
        fennik.expect("the tabs", lambda: fennik.tabs(RIGHT), [self.right.name, "[\ufffd↵]"])
        fennik.wait(lambda: fennik.has_state(fennik.window(), "ACTIVE"), "the window comes back")
        fennik.expect_title("b – Fennik")
        # Of a file, its folder is shown.
        self.assertEqual(self.second(self.left / "run.sh").returncode, 0)
        fennik.expect_cursor("run.sh", LEFT)
        self.assertIsNone(other.process.poll())

    def test_waits_for_neither_a_killed_nor_a_hung_one(self):
        first = self.start(self.left, self.right, home=self.home)
        first.process.send_signal(signal.SIGKILL)
        first.process.wait()
        first.close()
        second = self.start(self.left, self.right, home=self.home)
        second.expect_table(LEFT, f"{self.left.name}, 3 položky")
        self.assertEqual(self.second().returncode, 0)
        second.process.send_signal(signal.SIGSTOP)
        self.addCleanup(second.process.send_signal, signal.SIGCONT)
        third = self.start(self.right, self.right, home=self.home)
        third.expect_table(LEFT, f"{self.right.name}, 1 položka")
        second.process.send_signal(signal.SIGCONT)
        # What has given up is not answered late.
        second.expect_table(LEFT, f"{self.left.name}, 3 položky")
        stays_so(lambda: not second.tabs(LEFT), "the tabs are as they were")


if __name__ == "__main__":
    main()
