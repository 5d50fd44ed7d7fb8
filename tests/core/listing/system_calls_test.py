"""Holds the number of system calls that one listing makes: one per entry, one per link, and few more."""
import collections
import os
import subprocess
import sys
import tempfile

ENTRIES = 20_000
LINKS = 300
ALLOWANCE = 200


def calls(program, folder, expected):
    with tempfile.NamedTemporaryFile("r") as trace:
        done = subprocess.run(["strace", "-f", "-qq", "-o", trace.name, program, folder],
                              check=True, capture_output=True, text=True)
        assert int(done.stdout) == expected, done.stdout
        # A line is: process, blanks, call; a call cut in two has a second line with "<... call resumed".
        names = (line.split(None, 1)[1].split("(", 1)[0] for line in trace)
        return collections.Counter(name for name in names if not name.startswith(("<", "-", "+")))


with tempfile.TemporaryDirectory() as root:
    full, empty = os.path.join(root, "full"), os.path.join(root, "empty")
    os.mkdir(full)
    os.mkdir(empty)
    for number in range(ENTRIES):
        open(os.path.join(full, f"file {number}"), "w").close()
    for number in range(LINKS):
        os.symlink("file 1", os.path.join(full, f"link {number}"))
    total = ENTRIES + LINKS
    counted = calls(sys.argv[1], full, total)
    counted.subtract(calls(sys.argv[1], empty, 0))
    allowed = total + LINKS + ALLOWANCE
    # Waiting of the two threads for each other depends on the moment and costs nothing per entry.
    needed = sum(count for name, count in counted.items() if name != "futex")
    print(f"{needed} calls for {total} entries, allowed {allowed}:", counted.most_common(6))
    sys.exit(0 if total <= needed <= allowed and counted["futex"] < 2000 else 1)
