"""Runs the programs of the benchmarks and reads their figures."""
import collections
import contextlib
import json
import os
import pathlib
import re
import select
import signal
import statistics
import subprocess
import time

PATIENCE = 60  # seconds that a program may take to show its folders
REST = 1.5  # seconds between the last picture and the look at the memory


class Programs:
    """The built programs; `folder` is where the build lies."""

    def __init__(self, build):
        self.benchmarks = pathlib.Path(build, "benchmarks")
        self.fennik = pathlib.Path(build, "app/main/fennik")

    def medians(self, program, repetitions, *arguments):
        """The median times in milliseconds by the names of the measurements, which alternate."""
        output = subprocess.run(
            [self.benchmarks / program, "--benchmark_format=json",
             "--benchmark_enable_random_interleaving=true",
             f"--benchmark_repetitions={repetitions}", *arguments],
            check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout
        times = collections.defaultdict(list)
        for run in json.loads(output)["benchmarks"]:
            if run["run_type"] == "iteration":
                name = re.sub("/(iterations:|manual_time|min_time:).*", "", run["run_name"])
                times[name].append(run["real_time"])
        return {name: statistics.median(values) for name, values in times.items()}

    def system_calls(self, folder):
        """How many calls one listing of `folder` makes, threads waiting for each other excepted."""
        command = ["strace", "-f", "-c", "-U", "name,calls", self.benchmarks / "list_once", folder]
        summary = subprocess.run(command, check=True, stdout=subprocess.DEVNULL,
                                 stderr=subprocess.PIPE, text=True).stderr
        counts = dict(re.findall(r"^(\w+) +(\d+)$", summary, re.MULTILINE))
        return sum(int(calls) for name, calls in counts.items() if name not in ("futex", "total"))

    def sizing_facts(self, folder):
        """The peak memory of adding up a tree in MiB, and the longest time in milliseconds from a
        cancellation to the end."""
        output = subprocess.run([self.benchmarks / "size_once", folder], check=True,
                                capture_output=True, text=True).stdout
        peak, cancelled = re.fullmatch(r"peak=(\d+) cancelled=(\d+)\n", output).groups()
        return int(peak) / 1024, int(cancelled) / 1e6

    def window_times(self, program, left, right):
        """Milliseconds from the start of the program to its first and to its full picture."""
        environment = os.environ | {"FENNIK_BENCH_EXEC": str(time.monotonic_ns())}
        output = subprocess.run([self.benchmarks / program, left, right], check=True,
                                env=environment, capture_output=True, text=True,
                                timeout=PATIENCE).stdout
        return tuple(int(time) / 1e6 for time in
                     re.fullmatch(r"first=(\d+) shown=(\d+)\n", output).groups())

    def fennik_memory(self, left, right):
        command = [self.fennik, "--verbose", left, right]
        return memory_once_said(command, {}, subprocess.STDOUT, r"Načteno .*\n(.*\n)*Načteno .*\n")

    def bare_memory(self, left, right):
        command = [self.benchmarks / "bare_window", left, right]
        environment = {"FENNIK_BENCH_STAY": "1", "FENNIK_BENCH_EXEC": "0"}
        return memory_once_said(command, environment, subprocess.DEVNULL, "shown=.*\n")

    def instructions_per_press(self, folder, first_row, presses, workspace):
        """Of a press of cursor-down, painting included, from row `first_row` of `folder` on."""
        result = os.path.join(workspace, "callgrind.out")
        subprocess.run(["valgrind", "-q", "--tool=callgrind", "--instr-atstart=no",
                        "--collect-atstart=no",
                        f"--callgrind-out-file={result}", self.benchmarks / "key_presses", folder,
                        str(first_row), str(presses)],
                       check=True, env=os.environ | {"QT_HASH_SEED": "0"},
                       stdout=subprocess.DEVNULL)
        text = pathlib.Path(result).read_text(encoding="utf-8")
        return int(re.search(r"^(?:totals|summary): (\d+)", text, re.MULTILINE)[1]) / presses


def memory_once_said(command, environment, errors, said):
    """The proportional share of memory, in MiB, that a program has some time after its output
    matched `said`."""
    with subprocess.Popen(command, env=os.environ | environment, stdout=subprocess.PIPE,
                          stderr=errors) as program:
        try:
            output = b""
            deadline = time.monotonic() + PATIENCE
            while not re.search(said, output.decode()):
                left = max(0, deadline - time.monotonic())
                if not select.select([program.stdout], [], [], left)[0]:
                    raise TimeoutError(f"{command[0]} has not shown its folders.")
                got = os.read(program.stdout.fileno(), 4096)
                if not got:
                    raise RuntimeError(f"{command[0]} has ended: {output.decode()}")
                output += got
            time.sleep(REST)
            facts = pathlib.Path(f"/proc/{program.pid}/smaps_rollup").read_text(encoding="ascii")
        finally:
            program.send_signal(signal.SIGTERM)
    return int(re.search(r"^Pss: +(\d+) kB", facts, re.MULTILINE)[1]) / 1024


def forget_desktop(workspace):
    """Takes the user's session out of the environment, so that all machines measure the same."""
    for name in ("WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "XDG_CURRENT_DESKTOP"):
        os.environ.pop(name, None)
    for name in [name for name in os.environ if name.startswith("QT_")]:
        del os.environ[name]
    os.environ["XDG_RUNTIME_DIR"] = os.path.join(workspace, "runtime")
    os.mkdir(os.environ["XDG_RUNTIME_DIR"], 0o700)


@contextlib.contextmanager
def private_display():
    """A screen that only these programs know."""
    reading, writing = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(writing), "-screen", "0", "1600x1000x24",
                               "-nolisten", "tcp", "-noreset"], pass_fds=[writing],
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    os.close(writing)
    try:
        with os.fdopen(reading) as announced:
            os.environ["DISPLAY"] = ":" + announced.readline().strip()
        yield
    finally:
        server.terminate()
        server.wait()
