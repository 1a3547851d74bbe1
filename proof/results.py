"""What chapters find out, kept so that a stopped run goes on where it was."""

import concurrent.futures
import contextlib
import hashlib
import json
import random
import subprocess
import sys
from dataclasses import dataclass, field
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
KEPT = ROOT / "build/prove"

# What the installer is made of, and the Mac that it runs on.
INSTALLER = ("CMakeLists.txt", "CMakePresets.json", "cmake", "product", "crypto", "logging", "settings", "platform",
             "privileged", "ui", "browsers", "installer", "linux", "scripts/macroot", "tests/machines", "tests/support/mac.py")


@dataclass
class Table:
    """A chapter's result: rows of cells under a head, the words about how much was tried, what does not hold."""

    sample: str
    head: list
    rows: list
    failures: list = field(default_factory=list)


@dataclass(frozen=True)
class Outcome:
    """What came of one case. `holds`: whether that is as required."""

    text: str
    holds: bool = True


class Trial:
    """One run of a chapter.

    quick  whether a fixed sample is enough
    seed   what random cases grow from
    jobs   how many cases may be tried at once
    """

    def __init__(self, chapter, sources, quick, seed, jobs):
        self.quick, self.seed, self.jobs = quick, seed, jobs
        self.tried = 0  # cases that were not known from an earlier run
        self._file = KEPT / f"{chapter}-{_hash(sources)}"
        self._known = {}
        for line in self._file.read_text(encoding="utf-8").splitlines() if self._file.exists() else []:
            with contextlib.suppress(ValueError):  # a killed run's last one may be torn
                case, text = json.loads(line)
                self._known[case] = Outcome(text)

    def outcomes(self, cases, attempt):
        """{case: Outcome}, in the order of the cases (texts), by attempt(case), which several threads call.

        A case that held is known from then on, until the sources change; the others are tried again, and told at once.
        The seed gives the order in which they are tried: what a stopped run has tried is a fair sample.
        """
        found = {case: self._known.get(case) for case in cases}
        missing = [case for case, outcome in found.items() if outcome is None]
        random.Random(self.seed).shuffle(missing)
        self.tried += len(missing)
        with concurrent.futures.ThreadPoolExecutor(self.jobs) as pool:
            attempts = {pool.submit(attempt, case): case for case in missing}
            try:
                for done in concurrent.futures.as_completed(attempts):
                    found[attempts[done]] = done.result()
                    self._keep(attempts[done], done.result())
            except BaseException:
                pool.shutdown(cancel_futures=True)
                raise
        return found

    def _keep(self, case, outcome):
        if not outcome.holds:
            print(f"{case}: {outcome.text}", file=sys.stderr, flush=True)
        else:
            self._known[case] = outcome
            KEPT.mkdir(parents=True, exist_ok=True)
            with self._file.open("a", encoding="utf-8") as file:
                file.write("\n" + json.dumps([case, outcome.text]))


def _hash(sources):
    """Of the names and the bytes of these files and of all in these folders that git does not ignore."""
    listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard", "--", *sources],
                            cwd=ROOT, check=True, capture_output=True, text=True).stdout
    digest = hashlib.sha256()
    for name in sorted(set(listed.split("\0")) - {""}):
        if (ROOT / name).is_file():
            digest.update(name.encode() + b"\0" + hashlib.sha256((ROOT / name).read_bytes()).digest())
    return digest.hexdigest()[:16]
