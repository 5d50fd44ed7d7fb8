"""Taking archives apart, by whole programs in turns."""
import os
import random
import subprocess

from table import AtLeast, AtMost
from turns import Turns

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


def measure_extraction(table, programs, workspace):
    table.section(f"Extracting {ENTRIES:,} entries, programs as a whole")
    source = make_many_files(os.path.join(workspace, "many files"))
    turns = Turns(workspace)
    for extension in ("zip", "tar.gz"):
        archive = os.path.join(workspace, f"many.{extension}")
        subprocess.run([programs.benchmarks / "pack_once", extension, "6", archive, source],
                       check=True)
        contestants = {
            "Fennik": [[programs.benchmarks / "extract_once", archive, turns.target]],
            "bsdtar -xf": [["bsdtar", "-xf", archive, "-C", turns.target]]}
        if extension == "zip":
            contestants["unzip -q"] = [["unzip", "-q", archive, "-d", turns.target]]
        times = turns.medians(ROUNDS, contestants)
        targets = {"bsdtar -xf": AtMost(1.15), "unzip -q": AtLeast(1)}
        for name, goal in targets.items():
            if name in times:
                table.add(extension, times["Fennik"], name, times[name], goal)
