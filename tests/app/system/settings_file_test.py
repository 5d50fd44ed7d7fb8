"""Kills a program that stores settings at every one of its system calls on them, and at any moment; lets two of
them store at once; and lets them store where nothing can be stored."""
import os
import random
import re
import signal
import subprocess
import sys
import tempfile
import time
import unittest

PROGRAM = sys.argv.pop(1)


# What changes something. A kill at any other call is one before the next of these.
CHANGING = {"mkdir", "openat", "write", "pwrite64", "ftruncate", "fsync", "fdatasync", "link", "linkat", "rename",
            "renameat2", "unlink", "chmod", "fchmod", "flock", "close"}


def command(folder, key, first, last, length=50):
    return [PROGRAM, folder, key, str(first), str(last), str(length)]


def store(folder, key, first, last):
    return subprocess.run(command(folder, key, first, last), capture_output=True, text=True)


def stored(folder, key="number"):
    """What is stored, as the next start reads it."""
    return store(folder, key, 1, 0).stdout.strip()


def names(folder):
    return sorted(os.listdir(os.path.join(folder, "Fennik")))


class SettingsFileTest(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = temporary.name
        self.file = os.path.join(self.folder, "Fennik", "Fennik.conf")

    def test_a_kill_at_any_system_call_leaves_the_old_file_or_the_new_one(self):
        store(self.folder, "number", 40, 40)
        trace = os.path.join(self.folder, "trace")
        subprocess.run(["strace", "-y", "-o", trace, *command(self.folder, "number", 40, 41)],
                       check=True, capture_output=True)
        counts, kills, isOurs = {}, [], False
        with open(trace, encoding="utf-8", errors="replace") as lines:
            for line in lines:
                call = re.match(r"(\w+)\(", line)
                if not call:
                    continue
                counts[call[1]] = counts.get(call[1], 0) + 1
                isOurs = isOurs or self.folder + "/Fennik" in line
                if isOurs and call[1] in CHANGING:
                    kills.append((call[1], counts[call[1]]))
        self.assertTrue({"rename", "fdatasync"} <= {name for name, _ in kills}, kills)
        outcomes = set()
        for name, number in kills:
            # Back to the beginning, without the remains of the one before.
            subprocess.run(["rm", "-rf", os.path.dirname(self.file)], check=True)
            store(self.folder, "number", 40, 40)
            subprocess.run(["strace", "-o", "/dev/null", "-e", f"inject={name}:signal=KILL:when={number}",
                            *command(self.folder, "number", 41, 41)], capture_output=True)
            outcomes.add(stored(self.folder))
            self.assertLessEqual(outcomes, {"40 2000", "40 2050", "41 2050"}, (name, number))
            # What the dead one left behind keeps nobody from storing.
            self.assertEqual(store(self.folder, "number", 42, 42).returncode, 0)
            self.assertEqual(stored(self.folder), "42 2100")
        self.assertEqual(outcomes, {"40 2000", "40 2050", "41 2050"})

    def test_a_kill_at_any_moment_leaves_a_readable_file(self):
        reached = -1
        for _ in range(60):
            # A pipe tells that the storing has begun.
            with subprocess.Popen(command(self.folder, "number", reached + 1, 10_000), text=True,
                                  stdout=subprocess.PIPE) as program:
                program.stdout.readline()
                time.sleep(random.uniform(0, 0.08))
                program.send_signal(signal.SIGKILL)
            number, length = map(int, stored(self.folder).split())
            self.assertGreaterEqual(number, reached)
            self.assertIn(length, (max(number, 0) * 50, (number + 1) * 50))
            reached = number
        self.assertGreater(reached, 10)
        self.assertNotIn("Fennik.conf.damaged", names(self.folder))

    def test_two_at_once_lose_nothing_of_each_other(self):
        # All files are equally long, so that only their times tell them apart.
        programs = [subprocess.Popen(command(self.folder, key, 100, 200, 0), stdout=subprocess.DEVNULL)
                    for key in ("one", "two")]
        for program in programs:
            self.assertEqual(program.wait(), 0)
        for key in ("one", "two"):
            self.assertEqual(stored(self.folder, key), "200 0")
        self.assertEqual(names(self.folder), ["Fennik.conf"])

    def test_a_full_disk_is_reported_and_the_old_file_stays(self):
        disk = os.path.join(self.folder, "disk")
        os.mkdir(disk)
        script = ('mount -t tmpfs -o size=64k none "$1" && "$2" "$1" number 40 40 50 && '
                  '{ head -c 100000 /dev/zero > "$1/ballast"; "$2" "$1" number 41 41 50; "$2" "$1" number 1 0 50; }')
        done = subprocess.run(["unshare", "-rm", "sh", "-c", script, "sh", disk, PROGRAM],
                              capture_output=True, text=True)
        if "unshare" in done.stderr or "mount" in done.stderr:
            self.skipTest("no disk of our own here: " + done.stderr)
        self.assertIn("Nastavení nejde uložit: na disku není místo.", done.stderr)
        self.assertEqual(done.stdout.split("\n")[2], "40 2000")


if __name__ == "__main__":
    unittest.main(verbosity=2)
