"""Taking archives apart, by whole programs in turns."""
import os
import random
import shutil
import statistics
import subprocess
import time

from table import AtLeast, AtMost

ENTRIES = 100_000
ROUNDS = 3


def make_many_files(path):
    chance = random.Random(6)
    for number in range(ENTRIES):
        folder = os.path.join(path, f"složka {number % 100}")
        os.makedirs(folder, exist_ok=True)
        with open(os.path.join(folder, f"soubor {number}"), "wb") as file:
            file.write(chance.randbytes(200) * chance.randrange(1, 10))
    return path


def milliseconds(command):
    os.sync()
    started = time.monotonic()
    subprocess.run(command, check=True, env=os.environ | {"LC_ALL": "C.UTF-8"})
    return (time.monotonic() - started) * 1000


def measure_extraction(table, programs, workspace):
    table.section(f"Extracting {ENTRIES:,} entries, programs as a whole")
    source = make_many_files(os.path.join(workspace, "many files"))
    target = os.path.join(workspace, "extracted")
    for extension in ("zip", "tar.gz"):
        archive = os.path.join(workspace, f"many.{extension}")
        subprocess.run([programs.benchmarks / "pack_once", extension, "6", archive, source],
                       check=True)
        contestants = {"Fennik": [programs.benchmarks / "extract_once", archive, target],
                       "bsdtar -xf": ["bsdtar", "-xf", archive, "-C", target]}
        if extension == "zip":
            contestants["unzip -q"] = ["unzip", "-q", archive, "-d", target]
        times = {name: [] for name in contestants}
        for _ in range(ROUNDS):
            for name, command in contestants.items():
                os.mkdir(target)
                times[name].append(milliseconds(command))
                shutil.rmtree(target)
        medians = {name: statistics.median(values) for name, values in times.items()}
        targets = {"bsdtar -xf": AtMost(1.15), "unzip -q": AtLeast(1)}
        for name, goal in targets.items():
            if name in medians:
                table.add(extension, medians["Fennik"], name, medians[name], goal)
