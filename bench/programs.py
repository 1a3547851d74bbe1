"""Sources of figures.

A source has one operation, measure(series, quick): it runs every contestant of these series once more and
gives {series: {contestant: [figure, ...]}}, more being better and our own contestant being called "ours".
Sources are asked in turn, round after round, so that what disturbs the machine disturbs all alike. A result
that is wrong raises WrongResult. `quick` asks for right results only; how long it takes does not matter then.
"""

import json
import os
import subprocess
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent

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
        command = [
            ROOT / "build/release/bin" / self.name,
            f"--benchmark_filter=^({'|'.join(series)})/",
            f"--benchmark_repetitions={1 if quick else REPETITIONS}",
            f"--benchmark_min_time={0.0001 if quick else SECONDS}",
            "--benchmark_enable_random_interleaving=true",
            "--benchmark_format=json",
        ]
        done = subprocess.run(
            command, env=os.environ | self.environment, check=True, stdout=subprocess.PIPE, stderr=subprocess.PIPE
        )
        figures = {one: {} for one in series}
        for run in json.loads(done.stdout)["benchmarks"]:
            if run["run_type"] != "iteration":  # a mean, a median ...
                continue
            if run.get("error_occurred"):
                raise WrongResult(f"{self.name}: {run['name']}: {run['error_message']}")
            one, contestant = run["run_name"].split("/")
            figure = run["bytes_per_second"] / 1e6 if run.get("bytes_per_second") else run["items_per_second"] / 1e3
            figures[one].setdefault(contestant, []).append(figure)
        return figures
