"""Random machines: what holds after a run on any of them."""

import os
import subprocess
import tempfile
from collections import Counter
from pathlib import Path

from proof.results import INSTALLER, ROOT, Outcome, Table

SOURCES = [*INSTALLER, "tests/support"]
MACHINES, QUICK = 2000, 60


def prove(trial):
    """Runs the installer twice on each machine, and compares the machine with itself before."""
    subprocess.run([ROOT / "scripts/build", "release", "KSExtensionInstaller"], check=True)
    os.environ["KS_BUILD"] = str(ROOT / "build/release")
    seeds = range(trial.seed, trial.seed + (QUICK if trial.quick else MACHINES))
    outcomes = trial.outcomes([str(seed) for seed in seeds], _outcome)
    rows = sorted(Counter(outcome.text.split(":")[0] for outcome in outcomes.values()).items())
    failures = [f"{outcome.text}\n  again: KS_MACHINES={seed} scripts/test tests/run/test_random_machines.py"
                for seed, outcome in outcomes.items() if not outcome.holds]
    return Table(f"machines of the seeds {seeds[0]} to {seeds[-1]}, two runs each", ["what holds", "machines"], rows, failures)


def _outcome(seed):
    from tests.support.invariants import judged
    from tests.support.random_mac import RandomMac
    with tempfile.TemporaryDirectory(prefix="machine-", ignore_cleanup_errors=True) as folder:
        os.chmod(folder, 0o711)
        try:
            faults = judged(RandomMac(int(seed), Path(folder)))
        except subprocess.TimeoutExpired:
            faults = ["a run did not end within a minute"]
    return Outcome("not all: " + "; ".join(faults), False) if faults else Outcome("all")
