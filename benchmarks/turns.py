"""Programs as a whole, in turns."""
import os
import shutil
import statistics
import subprocess
import time

FEW = 1_000


class Turns:
    """Times of programs that make new files, each in an empty `target`."""

    def __init__(self, workspace):
        self.target = os.path.join(workspace, "target")
        self.used = os.path.join(workspace, "used")

    def medians(self, rounds, contestants, prepare=None):
        """Milliseconds by name. Each contestant is a list of commands that share one time, and
        finds an empty target, and what `prepare` has made."""
        times = {name: [] for name in contestants}
        for _ in range(rounds):
            for name, commands in contestants.items():
                os.mkdir(self.target)
                if prepare:
                    prepare()
                os.sync()
                started = time.monotonic()
                for command in commands:
                    subprocess.run(command, check=True, stdout=subprocess.DEVNULL,
                                   env=os.environ | {"LC_ALL": "C.UTF-8"})
                times[name].append((time.monotonic() - started) * 1000)
                self.put_away()
        return {name: statistics.median(values) for name, values in times.items()}

    def put_away(self):
        """Removes the target, if it holds few files. Many are kept until all is measured: for
        minutes ext4 passes over the inodes of files that were removed, one by one, which makes
        creating as many again several times slower."""
        if sum(len(files) for _, _, files in os.walk(self.target)) < FEW:
            shutil.rmtree(self.target)
        else:
            os.makedirs(self.used, exist_ok=True)
            os.rename(self.target, os.path.join(self.used, str(len(os.listdir(self.used)))))
