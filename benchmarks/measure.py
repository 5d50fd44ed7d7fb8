#!/usr/bin/env python3
"""Measures Fennik against small programs that do only what cannot be avoided, all in turns, and
prints the ratios beside what they should be: measure.py BUILD WORKSPACE [--full]"""
import os
import statistics
import sys

import fixtures
from archives import ENTRIES, make_archives, measure_index
from extracting import measure_extraction
from packing import measure_packing
from programs import Programs, forget_user, others_with_toolkit, private_display
from table import AtLeast, AtMost, Table, count, mebibytes
from transfers import Sources, Transfers, measure_clones, measure_copying, measure_moving

FEW = 2_000
ROUNDS = 15
WINDOW_ROUNDS = 15
MEMORY_ROUNDS = 3
COLD_ROUNDS = 5
SIZING_ROUNDS = 9
PRESSES = 20
PAINTED_PRESSES = 400
FRAME = 16  # milliseconds
REARRANGING_ROUNDS = 15
EXTRA_CALLS = 200
TREE_FOLDERS, TREE_FILES = 20_000, 200_000


def say(text):
    print(text, file=sys.stderr, flush=True)


class Folders:
    """What is measured, below the workspace."""

    def __init__(self, workspace, full):
        def make(name, names):
            return fixtures.make_folder(os.path.join(workspace, name), names)

        self.mixed = {size: make(f"mixed {size}", fixtures.mixed_names(size))
                      for size in [FEW, 10_000, 100_000] + [1_000_000] * full}
        self.numbered = {size: make(f"numbered {size}", fixtures.numbered_names(size))
                         for size in (1_000, 100_000)}
        self.empty = [make("empty 1", []), make("empty 2", [])]
        self.small = [make("small 1", fixtures.mixed_names(50)),
                      make("small 2", fixtures.numbered_names(50))]
        self.tree = fixtures.make_tree(os.path.join(workspace, "tree"), TREE_FOLDERS, TREE_FILES)
        self.large = [self.mixed[100_000], self.numbered[100_000]]


def measure_listing(table, programs, folders):
    table.section("Listing")
    repeats = {FEW: 10, 10_000: 3, 100_000: 1}
    sizes = [size for size in folders.mixed if size in repeats]
    arguments = [word for size in sizes for word in (folders.mixed[size], str(repeats[size]))]
    times = programs.medians("listing_benchmark", ROUNDS, *arguments)
    if 1_000_000 in folders.mixed:
        sizes.append(1_000_000)
        times |= programs.medians("listing_benchmark", 5, folders.mixed[1_000_000], "1")
    for size in sizes:
        def add(who, other, target=None):
            table.add(f"list {size:,}", times[f"{size}/fennik"], who, times[f"{size}/{other}"],
                      target)

        add("bare calls, one thread", "one thread", AtMost(1.15) if size == FEW else None)
        if size == FEW:
            continue
        add("bare calls, two threads", "two threads", AtMost(1.25))
        add("ls -U -l", "ls", AtLeast(4))
        add("find -printf", "find", AtLeast(1))

    if os.geteuid() != 0:
        table.note("list 100,000, cold cache", "only root can empty the caches")
    else:
        cold = programs.medians("listing_benchmark", COLD_ROUNDS, "--cold", folders.mixed[100_000],
                                "1")
        table.add("list 100,000, cold cache", cold["100000/fennik"], "bare calls, two threads",
                  cold["100000/two threads"], AtMost(1.2))
    calls = (programs.system_calls(folders.mixed[10_000]) -
             programs.system_calls(folders.empty[0]))
    table.add("system calls, 10,000", calls, f"entries + {EXTRA_CALLS}", 10_000 + EXTRA_CALLS,
              AtMost(1), count)


def measure_sizing(table, programs, folders):
    table.section(f"Folder size, {TREE_FILES:,} files in {TREE_FOLDERS:,} folders")
    times = programs.medians("sizing_benchmark", SIZING_ROUNDS, folders.tree)
    for who, other, target in (("bare calls, two threads", "two threads", AtMost(1.15)),
                               ("bare calls, one thread", "one thread", None),
                               ("du -sb", "du", AtLeast(1.7)), ("gdu -n", "gdu", AtLeast(2.5)),
                               ("ncdu -o", "ncdu", None)):
        if other in times:
            table.add("add up", times["fennik"], who, times[other], target)
    peak, cancelled = programs.sizing_facts(folders.tree)
    table.add("memory", peak, "limit", 20, AtMost(1), mebibytes)
    table.add("from Esc to the end", cancelled, "limit", 50, AtMost(1))


def measure_sorting(table, programs, folders):
    table.section("Sorting 100,000")
    times = programs.medians("sorting_benchmark", ROUNDS, "--benchmark_min_time=0.3",
                             folders.mixed[100_000])
    by_name = times["by name"]
    table.add("by name", by_name, "arena, multikey quicksort", times["arena"], AtMost(1.3))
    table.add("by name", by_name, "key vectors, std::sort", times["plain"], AtLeast(6))
    table.add("again by size", times["by size"], "Fennik by name", by_name, AtMost(0.5))
    table.add("again by date", times["by date"], "Fennik by name", by_name, AtMost(0.5))


def measure_marking(table, programs, folders):
    table.section("Marking 100,000")
    times = programs.medians("marking_benchmark", ROUNDS, "--benchmark_min_time=0.1",
                             folders.mixed[100_000])
    for what in ("mark all", "invert", "prune", "totals"):
        table.add(what, times[what], "names into a hash set", times["hash set"], AtMost(3))
    table.add("mask, names in lower case", times["mask"], "bare fnmatch", times["fnmatch"],
              AtMost(1.5))


def in_turns(rounds, measurements):
    """The medians of what the measurements give, by their names; all are made in each round."""
    results = {name: [] for name in measurements}
    for _ in range(rounds):
        for name, measure in measurements.items():
            results[name].append(measure())
    return {name: statistics.median(values) if not isinstance(values[0], tuple)
            else tuple(statistics.median(column) for column in zip(*values))
            for name, values in results.items()}


def measure_start(table, programs, folders):
    table.section("Start, from exec")
    times = in_turns(WINDOW_ROUNDS, {
        (program, size): lambda program=program, size=size: programs.window_times(
            program, *getattr(folders, size))
        for size in ("small", "large") for program in ("window_start", "bare_window")})
    first, shown = times["window_start", "small"]
    bare_first, bare_shown = times["bare_window", "small"]
    table.add("first picture, small folders", first, "bare window", bare_first)
    table.add("all shown, small folders", shown, "bare window", bare_shown, AtMost(1.5))
    large_first, large_shown = times["window_start", "large"]
    bare_first, bare_shown = times["bare_window", "large"]
    table.add("first picture, 2 × 100,000", large_first, "Fennik, small folders", first,
              AtMost(1.1))
    table.add("first picture, 2 × 100,000", large_first, "bare window", bare_first)
    table.add("all shown, 2 × 100,000", large_shown, "bare window", bare_shown, AtMost(1.3))


def measure_memory(table, programs, folders):
    table.section("Memory, proportional share")
    others = others_with_toolkit()
    sizes = in_turns(MEMORY_ROUNDS, {
        (name, size): lambda measure=measure, size=size: measure(*getattr(folders, size))
        for size in ("empty", "large")
        for name, measure in (("fennik", programs.fennik_memory), ("bare", programs.bare_memory))})
    for size, what, limit in (("empty", "empty folders", 40), ("large", "2 × 100,000", 70)):
        fennik = sizes["fennik", size]
        table.add(what, fennik, "limit", limit, AtMost(1), mebibytes)
        table.add(what, fennik, "bare window", sizes["bare", size], AtMost(1.3), mebibytes)
    others = max(others, others_with_toolkit())
    if others:
        table.note("more than is said here", f"other programs that share the toolkit: {others}")


def measure_keys(table, programs, folders):
    table.section("Instructions per key press, painting included")
    few, many = (programs.instructions_per_press(folders.numbered[size], PRESSES)
                 for size in (1_000, 100_000))
    for what, kind in (("cursor down, in view", "cursor"), ("cursor down, scrolling", "scroll"),
                       ("mark", "mark"), ("mark, all others marked", "mark more"),
                       ("type a letter", "type")):
        table.add(what, many[kind], "1,000 rows", few[kind], AtMost(1.1), count)


def measure_painting(table, programs, folders):
    table.section("From a press of the cursor to its picture, 100,000 rows")
    times = programs.paint_times(folders.numbered[100_000], PAINTED_PRESSES)
    for what, kind in (("within the view, median", "within"),
                       ("within the view, longest", "within_most"),
                       ("scrolling, median", "scrolling"),
                       ("scrolling, longest", "scrolling_most")):
        table.add(what, times[kind], "a frame", FRAME, AtMost(1))


def measure_rearranging(table, programs, folders):
    table.section("Rearranging 100,000 shown rows, on the main thread")
    places = folders.mixed[100_000], folders.empty[0]
    sorting = programs.medians("sorting_benchmark", ROUNDS, "--benchmark_min_time=0.3", places[0])
    times = programs.rearranging_times(REARRANGING_ROUNDS, *places)
    for what, kind in (("sort by name", "name"), ("sort by size", "size"),
                       ("sort by date", "date"), ("show or hide hidden files", "hidden")):
        table.add(what, times[kind], "sort by name alone", sorting["by name"])
    listing, rearranging = programs.rearranging_calls(*places)
    table.add("system calls to the folder", rearranging, "while listing", listing, AtMost(0), count)


def measure_changes(table, programs, folders):
    table.section("Changes in a shown folder of 100,000")
    counts = programs.watched_changes(folders.mixed[100_000], folders.empty[0])
    table.add("1,000 new files in 0.2 s", counts["created"], "readings", 2, AtMost(1), count)
    table.add("10,000 changes in 1 s", counts["changed"], "rebuilds, one in 0.25 s", 1 / 0.25 + 1,
              AtMost(1), count)
    reading = counts["time"] / 1e9
    most = 5 / (reading + max(0.25, 3 * reading)) + 2  # the first one, and one at the end
    table.add("changes for 5 s", counts["going_on"], "readings with their pauses", most, AtMost(1),
              count)


def main():
    build, workspace = sys.argv[1:3]
    say("Making the folders…")
    folders = Folders(workspace, "--full" in sys.argv[3:])
    programs = Programs(build, workspace)
    forget_user(workspace)
    table = Table()
    say("Listing…")
    measure_listing(table, programs, folders)
    say("Adding up a tree…")
    measure_sizing(table, programs, folders)
    say("Sorting…")
    measure_sorting(table, programs, folders)
    say("Marking…")
    measure_marking(table, programs, folders)
    say("Reading archives…")
    measure_index(table, programs, make_archives(workspace, ENTRIES))
    with private_display():
        say("Starting…")
        measure_start(table, programs, folders)
        say("Looking at the memory…")
        measure_memory(table, programs, folders)
    say("Pressing keys…")
    measure_keys(table, programs, folders)
    measure_painting(table, programs, folders)
    say("Rearranging…")
    measure_rearranging(table, programs, folders)
    say("Changing files…")
    measure_changes(table, programs, folders)

    say("Copying and moving…")
    transfers = Transfers(programs, workspace)
    sources = Sources(workspace)
    measure_copying(table, transfers, sources)
    measure_clones(table, transfers, sources)
    measure_moving(table, transfers)
    say("Packing…")
    measure_packing(table, programs, workspace)
    say("Extracting…")
    measure_extraction(table, programs, workspace)

    print(table)
    print(f"\nMedians on {os.cpu_count()} cores, load {os.getloadavg()[0]:.1f}. A ratio is "
          "Fennik's figure divided by the other;\nwhere the target is a least one, the other's "
          "divided by Fennik's.")
    print(f"Over their targets: {table.missed}.")


if __name__ == "__main__":
    main()
