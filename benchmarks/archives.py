"""The archives that are measured, and the rows of the table about reading what is in them."""
import io
import os
import random
import subprocess
import tarfile

import fixtures
from table import AtLeast, AtMost

ENTRIES = 100_000
ROUNDS = 11
FORMATS = {"zip": ["--format", "zip"], "tar.gz": ["-z"], "tar.xz": ["-J", "--options", "compression-level=1"],
           "7z": ["--format", "7zip", "--options", "compression=store"]}


def make_tar(path, entries):
    """Small files in a hundred folders, one folder after the other."""
    chance = random.Random(4)
    folders = [f"složka {number}" for number in range(10)]
    folders += [f"{folder}/{number} další" for folder in folders for number in range(9)]
    with tarfile.open(path, "w", format=tarfile.PAX_FORMAT) as archive:
        for number, name in enumerate(fixtures.mixed_names(entries)):
            entry = tarfile.TarInfo(f"{folders[number * len(folders) // entries]}/{name}")
            content = chance.randbytes(chance.randrange(400))
            entry.size = len(content)
            entry.mtime = fixtures.NEWEST - chance.randrange(fixtures.YEARS)
            archive.addfile(entry, io.BytesIO(content))


def make_archives(folder, entries):
    """The same entries in every format, by their extensions."""
    tar = os.path.join(folder, "entries.tar")
    make_tar(tar, entries)
    paths = {}
    for extension, options in FORMATS.items():
        paths[extension] = os.path.join(folder, f"entries.{extension}")
        subprocess.run(["bsdtar", "-cf", paths[extension], *options, f"@{tar}"], check=True,
                       env=os.environ | {"LC_ALL": "C.UTF-8"})
    os.remove(tar)
    return paths


def measure_index(table, programs, archives):
    table.section(f"What is in an archive of {ENTRIES:,}")
    times = programs.medians("index_benchmark", ROUNDS, *archives.values())
    for extension in archives:
        name = f"entries.{extension}"
        fennik = times[f"{name}/fennik"]
        table.add(extension, fennik, "bare header loop", times[f"{name}/bare"], AtMost(1.25))
        table.add(f"{extension}, by a helper", times[f"{name}/helped"], "bare loop as a program",
                  times[f"{name}/bare program"], AtMost(1.4))
        for tool, title, target in (("unzip", "unzip -l", AtLeast(1.5)), ("tar", "tar -tvf", None),
                                    ("7z", "7z l", None)):
            if f"{name}/{tool}" in times:
                table.add(extension, fennik, title, times[f"{name}/{tool}"], target)
