"""Packing, by whole programs in turns."""
import os
import random
import statistics
import subprocess
import time

import fixtures
from table import AtMost, mebibytes

ROUNDS = 5
# The slower the format and the level, the less there is to pack; but so much that neither the start
# of a process nor the wait for the disk at the end is what is measured.
LEVELS = {1: 4, 6: 1, 9: 1}
SIZES = {"zip": 24, "tar.gz": 24, "tar.bz2": 12, "tar.xz": 4, "7z": 3}
MIB = 1 << 20
FILE = 64 << 10
EXTRA_MEMORY = 20


def make_documents(path, mebibytes_of_text):
    """Text of which no two files are the same, and pictures, which get no smaller."""
    chance = random.Random(5)
    for number in range(mebibytes_of_text * MIB // FILE):
        folder = os.path.join(path, f"složka {number % 10}")
        os.makedirs(folder, exist_ok=True)
        if number % 8 == 7:
            content = chance.randbytes(FILE)
        else:
            words = (f"{chance.choice(fixtures.WORDS)} {chance.randrange(10_000)}"
                     for _ in range(FILE // 10))
            content = " ".join(words).encode()[:FILE]
        with open(os.path.join(folder, f"soubor {number}"), "wb") as file:
            file.write(content)
    return path


def run(command):
    """Milliseconds, and the peak memory in MiB."""
    os.sync()
    started = time.monotonic()
    with subprocess.Popen(command) as process:
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        raise subprocess.CalledProcessError(process.returncode, command)
    return (time.monotonic() - started) * 1000, usage.ru_maxrss / 1024


def measure_packing(table, programs, workspace):
    table.section("Packing, programs as a whole")
    folder = os.path.join(workspace, "packed")
    os.mkdir(folder)
    archive = os.path.join(folder, "archive")
    for extension, least in SIZES.items():
        for level, factor in LEVELS.items():
            size = least * factor
            source = os.path.join(workspace, f"documents {size}")
            if not os.path.exists(source):
                make_documents(source, size)
            results = {"pack_once": [], "bare_pack": []}
            for _ in range(ROUNDS):
                for program, figures in results.items():
                    figures.append(run([programs.benchmarks / program, extension, str(level),
                                        archive, source]))
                    os.remove(archive)
            (fennik, memory), (bare, bare_memory) = (
                [statistics.median(column) for column in zip(*figures)]
                for figures in results.values())
            what = f"{extension}, level {level}, {size} MiB"
            table.add(what, fennik, "bare library loop", bare, AtMost(1.05))
            table.add("memory", memory, f"bare loop + {EXTRA_MEMORY} MiB",
                      bare_memory + EXTRA_MEMORY, AtMost(1), mebibytes)
