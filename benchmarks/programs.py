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
import tempfile
import time

PATIENCE = 60  # seconds that a program may take to show its folders
REST = 1.5  # seconds between the last picture and the look at the memory


class Programs:
    """The built programs. What they leave behind goes with the workspace."""

    def __init__(self, build, workspace):
        self.workspace = workspace
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
        environment = self.new_user() | {"FENNIK_BENCH_EXEC": str(time.monotonic_ns())}
        output = subprocess.run([self.benchmarks / program, left, right], check=True,
                                env=environment, capture_output=True, text=True,
                                timeout=PATIENCE).stdout
        return tuple(int(time) / 1e6 for time in
                     re.fullmatch(r"first=(\d+) shown=(\d+)\n", output).groups())

    def fennik_memory(self, left, right):
        command = [self.fennik, "--verbose", left, right]
        return memory_once_said(command, self.new_user(), subprocess.STDOUT, r"Načteno .*\n(.*\n)*Načteno .*\n")

    def bare_memory(self, left, right):
        command = [self.benchmarks / "bare_window", left, right]
        environment = self.new_user() | {"FENNIK_BENCH_STAY": "1", "FENNIK_BENCH_EXEC": "0"}
        return memory_once_said(command, environment, subprocess.DEVNULL, "shown=.*\n")

    def instructions_per_press(self, folder, presses):
        """By the kinds of presses in the panel that shows `folder`; painting included."""
        with tempfile.TemporaryDirectory(dir=self.workspace) as results:
            subprocess.run(["valgrind", "-q", "--tool=callgrind", "--instr-atstart=no",
                            "--collect-atstart=no",
                            f"--callgrind-out-file={results}/callgrind.out",
                            self.benchmarks / "key_presses", folder, str(presses)],
                           check=True, env=self.new_user() | {"QT_HASH_SEED": "0"},
                           stdout=subprocess.DEVNULL)
            found = {}
            for result in pathlib.Path(results).iterdir():
                text = result.read_text(encoding="utf-8")
                kind = re.search(r"^desc: Trigger: Client Request: (.+)", text, re.MULTILINE)
                if kind:
                    total = re.search(r"^(?:totals|summary): (\d+)", text, re.MULTILINE)[1]
                    found[kind[1]] = int(total) / presses
        return found

    def paint_times(self, folder, presses):
        """Milliseconds from a press of the cursor to its picture: the median and the longest."""
        output = subprocess.run([self.benchmarks / "paint_times", folder, str(presses)],
                                check=True, env=self.new_user(), stdout=subprocess.PIPE,
                                text=True).stdout
        return {kind: time / 1e6 for kind, time in named_numbers(output).items()}

    def watched_changes(self, folder, empty_folder):
        """How often a shown folder is read again and its rows are built anew, and how long a
        reading takes, in nanoseconds."""
        output = subprocess.run([self.benchmarks / "watched_changes", folder, empty_folder],
                                check=True, env=self.new_user(), stdout=subprocess.PIPE,
                                text=True).stdout
        return named_numbers(output)

    def rearranging_times(self, rounds, folder, empty_folder):
        """The median milliseconds that the main thread needs to rearrange a shown folder."""
        output = subprocess.run(self.rearranging(folder, empty_folder, rounds), check=True,
                                env=self.new_user(), stdout=subprocess.PIPE, text=True).stdout
        times = [named_numbers(line) for line in output.splitlines()]
        return {name: statistics.median(time[name] for time in times) / 1e6 for name in times[0]}

    def rearranging_calls(self, folder, empty_folder):
        """How many system calls concern `folder` while it is listed, and while it is rearranged."""
        with tempfile.NamedTemporaryFile("r", dir=self.workspace, encoding="utf-8") as result:
            command = ["strace", "-f", "-y", "-e", "trace=%file,getdents64,fstat", "-o",
                       result.name, *self.rearranging(folder, empty_folder, 1)]
            subprocess.run(command, check=True, env=self.new_user(), stdout=subprocess.DEVNULL)
            before, _, after = result.read().partition('access("begin"')
        during, _, _ = after.partition('access("end"')
        return tuple(sum(folder in call for call in calls.splitlines())
                     for calls in (before, during))

    def rearranging(self, folder, empty_folder, rounds):
        return [self.benchmarks / "rearranging", folder, empty_folder, str(rounds)]

    def new_user(self):
        """The environment of a user for whom nothing is kept yet but that the tips were shown."""
        config = pathlib.Path(tempfile.mkdtemp(dir=self.workspace))
        (config / "Fennik").mkdir()
        (config / "Fennik" / "Fennik.conf").write_text("[General]\ntips.welcomeShown=true\n",
                                                       encoding="utf-8")
        return os.environ | {"XDG_CONFIG_HOME": str(config)}


def named_numbers(text):
    return {name: int(number) for name, number in re.findall(r"(\w+)=(\d+)", text)}


def memory_once_said(command, environment, errors, said):
    """The proportional share of memory, in MiB, that a program has some time after its output
    matched `said`."""
    with subprocess.Popen(command, env=environment, stdout=subprocess.PIPE,
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


def others_with_toolkit():
    """How many running programs have the toolkit in their memory, and so take a share of it."""
    count = 0
    for maps in pathlib.Path("/proc").glob("[0-9]*/maps"):
        with contextlib.suppress(OSError):
            count += "/libQt6Core.so" in maps.read_text(encoding="utf-8", errors="replace")
    return count


def forget_user(workspace):
    """Takes the user's session, settings and own files out of the environment, so that all machines
    measure the same and nothing of the user's is touched."""
    for name in ("WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "XDG_CURRENT_DESKTOP"):
        os.environ.pop(name, None)
    for name in [name for name in os.environ if name.startswith("QT_")]:
        del os.environ[name]
    for name, folder in (("HOME", "home"), ("XDG_RUNTIME_DIR", "runtime"),
                         ("XDG_CONFIG_HOME", "config"), ("XDG_CACHE_HOME", "cache"),
                         ("XDG_DATA_HOME", "data"), ("XDG_STATE_HOME", "state")):
        os.environ[name] = os.path.join(workspace, "user", folder)
        os.makedirs(os.environ[name], 0o700)


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
