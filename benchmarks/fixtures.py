"""The folders that are measured."""
import math
import os
import random
import string

WORDS = ("Řeka žluťoučký kůň příliš úpěl ďábelské ódy faktura smlouva Šumava čaj zápis rozpočet "
         "photo IMG report draft Budget notes index main backup letter scan track").split()
ENDINGS = "txt pdf jpg JPG docx cpp h md png tar.gz mp3 xlsx".split()
NEWEST = 1_750_000_000
YEARS = 5 * 365 * 24 * 3600
USUAL_SIZE, SIZE_SPREAD = math.log(32 * 1024), 2.2  # of a log-normal distribution, as disks have it


def mixed_names(count):
    """Names as people and programs give them, without order; the same ones at each call."""
    chance = random.Random(1)
    taken = set()
    while len(taken) < count:
        kind = chance.random()
        number = chance.randrange(count)
        if kind < 0.4:
            words = f"{chance.choice(WORDS)} {chance.choice(WORDS)}"
            name = f"{words} {number}.{chance.choice(ENDINGS)}"
        elif kind < 0.7:
            name = f"{chance.choice(WORDS)}_{number:07}.{chance.choice(ENDINGS)}"
        else:
            letters = "".join(chance.choices(string.ascii_letters, k=chance.randint(4, 20)))
            name = f"{letters}.{chance.choice(ENDINGS)}"
        if name not in taken:
            taken.add(name)
            yield name


def numbered_names(count):
    """The first names in order are the same, however many there are."""
    return (f"soubor {number}.txt" for number in range(count))


def make_folder(path, names):
    """Every twentieth entry is a folder, the rest are files without data but of different sizes."""
    chance = random.Random(2)
    os.mkdir(path)
    folder = os.open(path, os.O_RDONLY)
    for number, name in enumerate(names):
        if number % 20 == 19:
            os.mkdir(name, dir_fd=folder)
        else:
            entry = os.open(name, os.O_CREAT | os.O_WRONLY, 0o644, dir_fd=folder)
            os.ftruncate(entry, int(chance.lognormvariate(USUAL_SIZE, SIZE_SPREAD)))
            os.close(entry)
        when = (NEWEST - chance.randrange(YEARS)) * 10**9 + chance.randrange(10**9)
        os.utime(name, ns=(when, when), dir_fd=folder)
    os.close(folder)
    return path


def make_tree(path, folders, files):
    """Folders in folders, ten in each, with the files dealt evenly."""
    chance = random.Random(3)
    os.mkdir(path)
    paths = [path]
    for number in range(folders):
        paths.append(os.path.join(paths[number // 10], f"složka {number}"))
        os.mkdir(paths[-1])
    for number in range(files):
        with open(os.path.join(paths[number % len(paths)], f"soubor {number}"), "wb") as entry:
            entry.truncate(int(chance.lognormvariate(USUAL_SIZE, SIZE_SPREAD)))
    return path
