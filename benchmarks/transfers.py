"""Copying and moving, by whole programs in turns."""
import contextlib
import os
import re
import shutil
import subprocess
import tempfile

from table import AtLeast, AtMost, count, mebibytes
from turns import Turns

FILES = 20_000
SMALL = os.urandom(4096)
LARGE = 1 << 30
SPARSE, SPARSE_DATA = 2 << 30, 64 << 20
MIB = 1 << 20


class Sources:
    """What is copied, in a folder of its own."""

    def __init__(self, workspace):
        folder = os.path.join(workspace, "transferred")
        os.mkdir(folder)
        self.large = os.path.join(folder, "large")
        with open(self.large, "wb") as file:
            for _ in range(LARGE // MIB):
                file.write(os.urandom(MIB))
        self.sparse = os.path.join(folder, "sparse")
        with open(self.sparse, "wb") as file:
            pieces = SPARSE_DATA // MIB
            for piece in range(pieces):
                file.seek(piece * (SPARSE // pieces))
                file.write(os.urandom(MIB))
            file.truncate(SPARSE)
        self.tree = make_small_files(os.path.join(folder, "tree"))


def make_small_files(path):
    """A hundred folders with all files dealt evenly."""
    for number in range(100):
        os.makedirs(os.path.join(path, f"složka {number}"))
    for number in range(FILES):
        name = os.path.join(path, f"složka {number % 100}", f"soubor {number}")
        with open(name, "wb") as file:
            file.write(SMALL)
    return path


class Transfers:
    def __init__(self, programs, workspace):
        self.once = programs.benchmarks / "transfer_once"
        self.bare = programs.benchmarks / "bare_copy"
        self.workspace = workspace
        self.turns = Turns(workspace)

    @property
    def target(self):
        return self.turns.target

    def copying(self, source, rounds, tools):
        name = os.path.basename(source)
        contestants = {
            "fennik": [[self.once, "copy", self.target, source]],
            "bare": [[self.bare, source, os.path.join(self.target, name)]],
        }
        known = {"cp": ["cp", "-a", source, self.target],
                 "rsync": ["rsync", "-a", source, self.target]}
        contestants |= {tool: [known[tool]] for tool in tools if shutil.which(tool)}
        return self.turns.medians(rounds, contestants)

    def calls(self, *arguments):
        """How often each system call is made by one transfer."""
        with tempfile.NamedTemporaryFile("r", dir=self.workspace, encoding="utf-8") as result:
            subprocess.run(["strace", "-f", "-c", "-U", "name,calls", "-o", result.name, self.once,
                            *arguments], check=True)
            found = re.findall(r"^(\w+) +(\d+)$", result.read(), re.MULTILINE)
        return {name: int(number) for name, number in found}


@contextlib.contextmanager
def loop_volume(workspace, kind, size):
    """A new file system in a file, mounted; nothing where that cannot be."""
    image = os.path.join(workspace, f"image.{kind}")
    place = os.path.join(workspace, kind)
    os.mkdir(place)
    with open(image, "wb") as file:
        file.truncate(size)
    make = {"ext4": ["mkfs.ext4", "-q", "-F", image], "btrfs": ["mkfs.btrfs", "-q", "-f", image]}
    def runs(*command):
        return subprocess.run(command, check=False, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL).returncode == 0

    try:
        mounted = (os.geteuid() == 0 and shutil.which(make[kind][0]) and runs(*make[kind]) and
                   runs("mount", "-o", "loop", image, place))
        yield place if mounted else None
    finally:
        runs("umount", "-l", place)
        os.remove(image)


def measure_copying(table, transfers, sources):
    table.section("Copying, programs as a whole")
    for what, source, rounds, tools, targets in (
            ("1 GiB", sources.large, 7, ["cp", "rsync"], {"bare": AtMost(1.10)}),
            (f"{FILES:,} × 4 KiB", sources.tree, 3, ["cp", "rsync"],
             {"bare": AtMost(1.15), "rsync": AtLeast(2)}),
            ("2 GiB with 64 MiB of data", sources.sparse, 7, ["cp"], {"bare": AtMost(1.5)})):
        times = transfers.copying(source, rounds, tools)
        for other, title in (("bare", "bare calls, one thread"), ("cp", "cp -a"),
                             ("rsync", "rsync -a")):
            if other in times:
                table.add(what, times["fennik"], title, times[other], targets.get(other))
    os.mkdir(transfers.target)
    subprocess.run([transfers.once, "copy", transfers.target, sources.sparse], check=True)
    copied = os.stat(os.path.join(transfers.target, "sparse")).st_blocks * 512
    transfers.turns.put_away()
    table.add("allocated of it", copied / MIB, "source",
              os.stat(sources.sparse).st_blocks * 512 / MIB, AtMost(1.01), mebibytes)


def measure_clones(table, transfers, sources):
    with loop_volume(transfers.workspace, "btrfs", 3 << 30) as place:
        if not place:
            table.note("1 GiB, cloned", "no volume that clones can be made here")
            return
        shutil.copy(sources.large, place)
        source = os.path.join(place, "large")
        turns = Turns(place)
        times = turns.medians(5, {
            "fennik": [[transfers.once, "copy", turns.target, source]]})
        table.add("1 GiB, cloned", times["fennik"], "limit", 10, AtMost(1))


def measure_moving(table, transfers):
    table.section("Moving, programs as a whole")
    items = [os.path.join(transfers.workspace, "moved", f"{number}") for number in range(1000)]
    os.mkdir(os.path.dirname(items[0]))
    os.mkdir(transfers.target)
    for item in items:
        with open(item, "wb") as file:
            file.write(SMALL)
    calls = transfers.calls("move", transfers.target, *items)
    transfers.turns.put_away()
    table.add("1,000 items: renameat2", calls["renameat2"], "items", len(items), AtMost(1),
              count)
    moving_data = sum(calls.get(name, 0) for name in ("write", "copy_file_range", "sendfile"))
    table.add("1,000 items: calls that move data", moving_data, "items", len(items), AtMost(0),
              count)

    with loop_volume(transfers.workspace, "ext4", 1 << 30) as place:
        if not place:
            table.note("to another volume", "no other volume can be made here")
            return
        source = os.path.join(place, "tree")
        times = transfers.turns.medians(5, {
            "fennik": [[transfers.once, "move", transfers.target, source]],
            "cp": [["cp", "-a", source, transfers.target], ["sync"], ["rm", "-r", source]],
        }, prepare=lambda: make_small_files(source))
        table.add(f"{FILES:,} × 4 KiB to another volume", times["fennik"], "cp -a; sync; rm -r",
                  times["cp"], AtMost(1.5))
