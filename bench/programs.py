"""Sources of figures.

A source has one operation, measure(series, quick): it runs every contestant of these series once more and
gives {series: {contestant: [figure, ...]}}, more being better and our own contestant being called "ours".
Sources are asked in turn, round after round, so that what disturbs the machine disturbs all alike. A result
that is wrong raises WrongResult. `quick` asks for right results only; how long it takes does not matter then.
"""

import contextlib
import json
import os
import plistlib
import random
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
PROGRAMS = ROOT / "build/release/bin"
INSIDE = "/run/installer/"  # where a Mac root shows them

# Keeps the peers from what a processor has beyond the basic instructions of its kind. The libraries read this
# when they are loaded, which is why it takes a process of its own.
PORTABLE = {"OPENSSL_ia32cap": "0:0", "NETTLE_FAT_OVERRIDE": "none", "KS_BENCH_PORTABLE": "1"}

REPETITIONS = 11  # a round; their order is drawn by lot
SECONDS = 0.004  # a repetition: short ones share the good and the bad moments of the machine evenly


class WrongResult(Exception):
    pass


class BenchmarkProgram:
    """A program of Google Benchmark, whose benchmarks are called SERIES/CONTESTANT."""

    def __init__(self, name, environment=None):
        self.name = name
        self.environment = environment or {}

    def measure(self, series, quick):
        arguments = [
            f"--benchmark_filter=^({'|'.join(series)})/",
            f"--benchmark_repetitions={1 if quick else REPETITIONS}",
            f"--benchmark_min_time={0.0001 if quick else SECONDS}",
            "--benchmark_enable_random_interleaving=true",
            "--benchmark_out_format=json",
        ]
        figures = {one: {} for one in series}
        for turns in json.loads(self._output(arguments))["benchmarks"]:
            if turns["run_type"] != "iteration":  # a mean, a median ...
                continue
            if turns.get("error_occurred"):
                raise WrongResult(f"{self.name}: {turns['name']}: {turns['error_message']}")
            one, contestant = turns["run_name"].split("/")
            bytes_a_second = turns.get("bytes_per_second")
            figure = bytes_a_second / 1e6 if bytes_a_second else turns["items_per_second"] / 1e3
            figures[one].setdefault(contestant, []).append(figure)
        return figures

    def _output(self, arguments):
        with tempfile.NamedTemporaryFile() as out:
            command = [PROGRAMS / self.name, *arguments, f"--benchmark_out={out.name}"]
            run(command, env=os.environ | self.environment)
            return out.read()


class MacBenchmarkProgram(BenchmarkProgram):
    """One that needs a Mac. What it prints, logs that are echoed among it, goes to a file."""

    def _output(self, arguments):
        with mac() as tree, tempfile.TemporaryFile(dir=tree) as echo:
            out = "/Users/alex/figures"
            program = [PROGRAMS / self.name, *arguments, f"--benchmark_out={out}"]
            run([MACROOT, "run", tree, "--", *program], stdout=echo)
            return Path(f"{tree}{out}").read_bytes()


class WholeRun:
    """The installer on a typical Mac, against an empty program. A run a round, in an order drawn by lot."""

    CONTESTANTS = {"ours": "KSExtensionInstaller", "an empty program": "bench_nothing"}
    MANIFEST = "Users/alex/Library/Application Support/Mozilla/NativeMessagingHosts/com.corvendale.ksnative.json"

    def measure(self, series, quick):
        figures = {}
        for contestant, program in shuffled(self.CONTESTANTS.items()):
            with mac() as tree:
                arguments = ["run", "--fast", "--admin", "refuse", tree, "--", sys.executable, "-c", SECONDS_OF]
                seconds = float(run([MACROOT, *arguments, INSIDE + program]).stdout)
                if contestant == "ours" and not (tree / self.MANIFEST).exists():
                    raise WrongResult("the run installed nothing")
            figures[contestant] = [1 / seconds]
        return {one: figures for one in series}


class SafariList:
    """A list of 5 MB, read and written back, in time and in memory. `extension` gives its entry number n."""

    BYTES = 5_000_000

    def __init__(self, extension):
        self.extension = extension

    def measure(self, series, quick):
        with tempfile.TemporaryDirectory() as folder:
            source, result = Path(folder, "source"), Path(folder, "result")
            source.write_bytes(self._list(100_000 if quick else self.BYTES))
            ways = {"ours": [PROGRAMS / "bench_list"], "plistlib": [sys.executable, "-c", LIST_BY_PLISTLIB]}
            grown = {}
            seconds = {}
            for contestant, command in shuffled(ways.items()):
                seconds[contestant], grown[contestant] = map(float, run([*command, source, result]).stdout.split())
                if plistlib.loads(result.read_bytes()) != plistlib.loads(source.read_bytes()):
                    raise WrongResult(f"{contestant}: another list")
            size = source.stat().st_size
            figures = {
                "time": {who: [size / 1e6 / taken] for who, taken in seconds.items()},
                "memory": {"ours": [1e9 / max(grown["ours"], 1)], "the file": [1e9 / size]},
            }
        return {one: figures[one] for one in series}

    def _list(self, length):
        """A list of about so many bytes. The more entries, the longer the references to them."""
        sample = length // 50
        per_entry = len(self._encoded(sample)) / sample
        return self._encoded(int(length / per_entry))

    def _encoded(self, count):
        root = {"Installed Extensions": [self.extension(n) for n in range(count)]}
        return plistlib.dumps(root, fmt=plistlib.FMT_BINARY)


MACROOT = ROOT / "scripts/macroot"

# The processor time of a program and of those that it waited for.
SECONDS_OF = """
import resource, subprocess, sys
subprocess.run(sys.argv[1:], check=True, stdout=subprocess.DEVNULL)
used = resource.getrusage(resource.RUSAGE_CHILDREN)
print(used.ru_utime + used.ru_stime)
"""

# As bench_list does it.
LIST_BY_PLISTLIB = """
import plistlib, sys, time
start = time.process_time()
with open(sys.argv[1], "rb") as file:
    root = plistlib.load(file)
with open(sys.argv[2], "wb") as file:
    plistlib.dump(root, file, fmt=plistlib.FMT_BINARY)
print(time.process_time() - start, 0)
"""


@contextlib.contextmanager
def mac():
    """A typical Mac on a file system in memory; gone at the end."""
    with tempfile.TemporaryDirectory(dir="/dev/shm") as folder:
        os.chmod(folder, 0o711)  # alex passes through it
        tree = Path(folder, "mac")
        run([MACROOT, "new", tree, "--machine", "typical"])
        yield tree
        run([MACROOT, "delete", tree])


def run(command, stdout=subprocess.PIPE, **more):
    return subprocess.run(command, check=True, stdout=stdout, stderr=subprocess.PIPE, timeout=600, **more)


def shuffled(items):
    items = list(items)
    return random.sample(items, len(items))
