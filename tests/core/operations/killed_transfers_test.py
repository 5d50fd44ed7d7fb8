"""Kills a program that transfers items at every system call that changes something and at any moment, takes the power
from the disk it writes to, and lets it meet volumes that refuse, end or serve in their own way. Whatever happens, every
content that was there before is somewhere afterwards."""
import ctypes
import os
import pathlib
import random
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

PROGRAM = sys.argv.pop(1)
CHANGING = {"mkdirat", "openat", "write", "pwrite64", "copy_file_range", "ioctl", "ftruncate", "fsync", "syncfs",
            "linkat", "renameat2", "unlinkat", "fchmod", "fchown", "utimensat", "close"}
CLONE_NEWNS = 0x00020000
MS_REC_PRIVATE = 0x4000 | 0x40000


def mounts_obstacle():
    """Why there can be no mounts that only this process sees; none where there can."""
    libc = ctypes.CDLL(None, use_errno=True)
    if os.geteuid() != 0:
        return "only root can mount volumes"
    if libc.unshare(CLONE_NEWNS) != 0 or libc.mount(b"none", b"/", None, MS_REC_PRIVATE, None) != 0:
        return "this system lets no process have mounts of its own"
    return None


OBSTACLE = mounts_obstacle()


def run(*command, **options):
    return subprocess.run([str(part) for part in command], check=True, capture_output=True, text=True, **options)


def contents(*folders):
    """Of all files below the folders."""
    return {path.read_bytes() for folder in folders for path in folder.rglob("*")
            if path.is_file() and not path.is_symlink()}


def write(path, content):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(content)


class TransferTest(unittest.TestCase):
    def setUp(self):
        if OBSTACLE:
            self.skipTest(OBSTACLE)
        self.random = random.Random(4)
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="fennik-transfer-"))
        self.addCleanup(shutil.rmtree, self.folder)
        self.source = self.folder / "source"
        self.target = self.folder / "target"
        self.trash = self.folder / "trash"
        for folder in (self.source, self.target, self.trash):
            folder.mkdir()

    def mount(self, *arguments):
        """The last one is the place."""
        done = subprocess.run(["mount", *map(str, arguments)], capture_output=True, text=True, check=False)
        if done.returncode != 0:
            self.skipTest(done.stderr)
        self.addCleanup(subprocess.run, ["umount", "-l", str(arguments[-1])], check=True)

    def disk(self, place, *make, options="loop", size=32):
        if not shutil.which(make[0]):
            self.skipTest(f"{make[0]} is missing")
        image = self.folder / f"{place.name}.image"
        with image.open("wb") as file:
            file.truncate(size << 20)
        run(*make, image)
        self.mount("-o", options, image, place)
        return image

    def served(self, place):
        """A volume behind a process that knows no exclusive rename."""
        if not shutil.which("lowntfs-3g"):
            self.skipTest("lowntfs-3g is missing")
        image = self.folder / f"{place.name}.image"
        with image.open("wb") as file:
            file.truncate(16 << 20)
        run("mkfs.ntfs", "-q", "-Q", "-F", image)
        run("lowntfs-3g", image, place)
        self.addCleanup(subprocess.run, ["umount", str(place)], check=True)

    def command(self, action, *items, choice="overwrite", trash=None):
        places = [] if action == "trash" else [str(self.target)]
        return [PROGRAM, action, choice, str(trash or self.trash), *places, *map(str, items)]

    def transfer(self, action, *items, **options):
        """The sentences that were said."""
        done = subprocess.run(self.command(action, *items, **options), capture_output=True, text=True, timeout=60,
                              check=False)
        self.assertEqual(done.returncode, 1 if done.stdout else 0, done)
        return done.stdout.splitlines()

    def reset(self, sizes=(3, 70_000)):
        """A tree of files in the source, and others under the same names in the target."""
        for folder in (self.source, self.target, self.trash):
            folder.mkdir(exist_ok=True)
            for entry in list(folder.iterdir()):
                if entry.is_dir() and not entry.is_symlink():
                    shutil.rmtree(entry)
                elif entry.name != "lost+found":
                    entry.unlink()
        for index, size in enumerate(sizes):
            write(self.source / f"x/sub{index % 2}/{index}", bytes(f"source {index} ", "ascii") * (size // 9 + 1))
        write(self.target / "x/sub0/0", b"the old one")
        write(self.target / "x/other", b"somebody else's")
        self.before = contents(self.source, self.target)

    def expect_nothing_lost(self, where):
        self.assertLessEqual(self.before, contents(self.source, self.target, self.trash), where)


class Kills(TransferTest):
    def kill_at_every_call(self, action):
        self.reset()
        trace = self.folder / "trace"
        run("strace", "-f", "-y", "-o", trace, *self.command(action, self.source / "x"))
        counts, kills = {}, set()
        for line in trace.read_text(errors="replace").splitlines():
            call = re.match(r"(\d+) +(\w+)\(", line)
            if not call:
                continue
            key = (call[1], call[2])
            counts[key] = counts.get(key, 0) + 1
            changes = call[2] in CHANGING and (call[2] != "openat" or "O_CREAT" in line)
            if changes and str(self.folder) in line:
                kills.add((call[2], counts[key]))
        self.assertGreater(len(kills), 15, kills)
        for name, number in sorted(kills):
            self.reset()
            subprocess.run(["strace", "-f", "-o", "/dev/null", "-e", f"inject={name}:signal=KILL:when={number}",
                            *self.command(action, self.source / "x")], capture_output=True, check=False)
            self.expect_nothing_lost((name, number))

    def test_at_every_call_of_a_copy(self):
        self.kill_at_every_call("copy")

    def test_at_every_call_of_a_move_to_another_volume(self):
        self.mount("-t", "tmpfs", "tmpfs", self.target)
        self.kill_at_every_call("move")

    def test_at_every_call_of_a_move_to_a_volume_without_exclusive_rename(self):
        self.served(self.target)
        self.trash = self.target / "trash"
        self.kill_at_every_call("move")

    def test_at_any_moment(self):
        for place in (self.source, self.target, self.trash):  # where no disk is waited for
            self.mount("-t", "tmpfs", "tmpfs", place)
        sizes = [self.random.choice((10, 5_000, 300_000)) for _ in range(60)]
        for action in ("copy", "move"):
            self.reset(sizes)
            began = time.monotonic()
            self.assertEqual(self.transfer(action, self.source / "x"), [])
            took = time.monotonic() - began
            for _ in range(40):
                self.reset(sizes)
                with subprocess.Popen(self.command(action, self.source / "x")) as program:
                    time.sleep(self.random.uniform(0, took))
                    program.send_signal(signal.SIGKILL)
                self.expect_nothing_lost(action)
                # What the dead one has left is no obstacle.
                self.transfer(action, self.source / "x")
                self.expect_nothing_lost(action)


class LossOfPower(TransferTest):
    """The image of a disk, copied while a program is stopped, is what a loss of power leaves."""

    def left_after_loss(self, image):
        copy, place = self.folder / "copy", self.folder / "after"
        place.mkdir(exist_ok=True)
        run("cp", "--sparse=always", image, copy)
        fixed = subprocess.run(["e2fsck", "-p", str(copy)], capture_output=True, check=False)
        self.assertLess(fixed.returncode, 4, fixed)
        run("mount", "-o", "loop,ro", copy, place)
        found = contents(place)
        run("umount", place)
        return found

    def lost(self, image, program):
        """What is neither in the source at this moment nor would be on the disk."""
        program.send_signal(signal.SIGSTOP)
        missing = self.before - contents(self.source) - self.left_after_loss(image)
        program.send_signal(signal.SIGCONT)
        return missing

    def prepare(self):
        self.mount("-t", "tmpfs", "tmpfs", self.source)
        image = self.disk(self.target, "mkfs.ext4", "-q", "-F", options="loop,commit=300")
        # Enough for several rounds of removals, with sizes that are written in different ways.
        for index in range(4300):
            write(self.source / f"x/{index % 7}/{index}", bytes(str(index), "ascii") * (1 + index % 40))
        write(self.source / "x/large", self.random.randbytes(3 << 20))
        for index in range(3):
            write(self.source / f"few/in/{index}", self.random.randbytes(9000))
        self.before = contents(self.source)
        return image

    def test_what_a_move_has_removed_is_on_the_disk(self):
        image = self.prepare()
        with subprocess.Popen(self.command("move", self.source / "few", self.source / "x")) as program:
            for _ in range(8):
                time.sleep(self.random.uniform(0, 0.06))
                self.assertEqual(self.lost(image, program), set())
        self.assertEqual(self.before - self.left_after_loss(image), set())
        self.assertEqual(contents(self.source), set())

    def test_without_waiting_for_the_disk_it_would_be_lost(self):
        image = self.prepare()
        run("strace", "-f", "-o", "/dev/null", "-e", "inject=fsync,syncfs:retval=0",
            *self.command("move", self.source / "x"))
        self.assertGreater(len(self.before - contents(self.source) - self.left_after_loss(image)), 1000)


class Volumes(TransferTest):
    def test_two_programs_never_share_a_place_in_the_trash(self):
        environment = {**os.environ, "XDG_DATA_HOME": str(self.folder), "HOME": str(self.folder)}
        for trash, files in (("system", self.folder / "Trash/files"), (str(self.trash), self.trash)):
            programs = []
            for worker in range(6):
                items = [self.source / f"{worker}-{index}/same" for index in range(25)]
                for item in items:
                    write(item, bytes(str(item), "utf-8"))
                programs.append(subprocess.Popen(self.command("trash", *items, trash=trash), env=environment))
            self.assertEqual([program.wait(60) for program in programs], [0] * 6)
            self.assertEqual(len(contents(files)), 150)
            self.assertEqual(contents(self.source), set())
        for item in (self.folder / "Trash/files").iterdir():
            record = (self.folder / "Trash/info" / f"{item.name}.trashinfo").read_text()
            self.assertIn(f"\nPath={item.read_text()}\n", record)

    def test_immutable_and_append_only_files_stay(self):
        self.disk(self.source, "mkfs.ext4", "-q", "-F")
        self.mount("-t", "tmpfs", "tmpfs", self.target)
        for flag in ("+i", "+a"):
            self.reset()
            stuck = self.source / "x/sub0/0"
            run("chattr", flag, stuck)
            said = self.transfer("move", self.source / "x")
            self.assertEqual(said, ["„0“ se zkopíroval, ale originál nejde odstranit."])
            self.expect_nothing_lost(flag)
            self.assertTrue(stuck.exists())
            for trash in ("system", self.source / "trash"):
                said = self.transfer("trash", stuck, trash=trash)
                self.assertEqual(said, ["„0“ nejde přesunout do Koše: Operation not permitted"])
            run("chattr", "-" + flag[1], stuck)

    def test_an_immutable_file_is_not_overwritten(self):
        self.disk(self.target, "mkfs.ext4", "-q", "-F")
        self.reset()
        run("chattr", "+i", self.target / "x/sub0/0")
        said = self.transfer("copy", self.source / "x", trash=self.target / "trash")
        self.assertEqual(said, ["„0“ nejde přepsat: Operation not permitted"])
        self.expect_nothing_lost("immutable")
        run("chattr", "-i", self.target / "x/sub0/0")

    def test_a_volume_that_turns_read_only_meanwhile(self):
        for place in (self.target, self.source):
            self.mount("-t", "tmpfs", "tmpfs", place)
        for refusing in (self.target, self.source):
            self.reset([50_000] * 40)
            for index in range(6, 40):
                write(self.target / f"x/sub{index % 2}/{index}", b"an old one of %d" % index)
            self.before = contents(self.source, self.target)
            with subprocess.Popen(self.command("move", self.source / "x", choice="wait"), stdin=subprocess.PIPE,
                                  stdout=subprocess.PIPE, text=True) as program:
                for number in range(12):
                    self.assertEqual(program.stdout.readline(), "?\n")
                    if number == 11:
                        run("mount", "-o", "remount,ro", refusing)
                    program.stdin.write("\n")
                    program.stdin.flush()
                said = set(program.communicate("\n" * 40, timeout=60)[0].splitlines()) - {"?"}
            self.assertIn("Read-only file system" if refusing == self.target else "nejde odstranit", "\n".join(said))
            self.expect_nothing_lost(said)
            run("mount", "-o", "remount,rw", refusing)

    def test_without_inodes_the_rest_stays(self):
        self.mount("-t", "tmpfs", "-o", "nr_inodes=12", "tmpfs", self.target)
        self.reset([50] * 30)
        said = self.transfer("move", self.source / "x")
        self.assertRegex("\n".join(said), r"(?m)^(„\d+“|Složku „sub\d“ nejde vytvořit): No space left on device$")
        self.expect_nothing_lost(said)
        self.assertGreater(len(contents(self.source)), 15)

    def move_there_and_back(self):
        self.reset()
        self.assertEqual(self.transfer("move", self.source / "x"), [])
        self.expect_nothing_lost("there")
        self.assertEqual(contents(self.source), set())
        self.source, self.target = self.target, self.source
        self.assertEqual(self.transfer("move", self.source / "x"), [])
        self.expect_nothing_lost("back")
        self.assertEqual(contents(self.source), set())

    def test_a_bound_folder(self):
        (self.folder / "bound").mkdir()
        self.mount("--bind", self.folder / "bound", self.target)
        self.move_there_and_back()

    def test_parts_of_a_disk_with_numbers_of_their_own(self):
        disk = self.folder / "disk"
        disk.mkdir()
        self.disk(disk, "mkfs.btrfs", "-q", "-f", size=128)
        for place in ("source", "target"):
            run("btrfs", "subvolume", "create", disk / place)
        self.source, self.target = disk / "source", disk / "target"
        self.move_there_and_back()

    def test_volumes_without_exclusive_rename(self):
        self.served(self.target)
        self.move_there_and_back()

    def test_a_limit_of_the_size_of_files_is_an_error(self):
        self.reset([10, 500_000])
        done = subprocess.run(["bash", "-c", 'ulimit -f 100; trap "" XFSZ; "$@"', "bash",
                               *self.command("move", self.source / "x", trash=self.folder / "t")],
                              capture_output=True, text=True, check=False)
        self.assertEqual(done.returncode, 0, done)  # a rename writes nothing
        self.mount("-t", "tmpfs", "tmpfs", self.source)
        self.reset([10, 500_000])
        done = subprocess.run(["bash", "-c", 'ulimit -f 100; trap "" XFSZ; "$@"', "bash",
                               *self.command("move", self.source / "x")], capture_output=True, text=True, check=False)
        self.assertEqual(done.stdout, "„1“: File too large\n")
        self.expect_nothing_lost("limit")
        self.assertFalse((self.target / "x/sub1/1").exists())


if __name__ == "__main__":
    unittest.main(verbosity=2)
