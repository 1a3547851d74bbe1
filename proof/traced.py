"""The installer on a typical Mac under strace: the calls it makes, and a run in which one of them is disturbed."""

import collections
import contextlib
import itertools
import re
import subprocess
import tempfile
from dataclasses import dataclass
from pathlib import Path

from proof import trees
from proof.results import ROOT
from tests.support.mac import LOGS, Mac

VERDICTS = ["allow", "refuse"]
SECONDS = 30  # until a run counts as hanging: 10 for the installer, the rest for strace and a busy machine

_INSTALLER = ROOT / "build/release/bin/KSExtensionInstaller"
_INSTALLER_INSIDE = "/run/installer/KSExtensionInstaller"
_LINE = re.compile(r"(\w+)\((.*)\) += (\S+.*)")
_PATH = re.compile(r'"(/[^"]*)"|^\d+<([^>]*)>')
_BEGINNING = "/Users/Shared/Keystrel/"  # the product's first file; before it come the loader and the frameworks


@dataclass(frozen=True)
class Call:
    """One system call: the how-manieth of its name it is, its arguments as strace prints them."""

    name: str
    number: int
    arguments: str

    @property
    def path(self):
        found = _PATH.search(self.arguments)
        return found and (found[1] or found[2])

    @property
    def opens_for_writing(self):
        return self.name == "openat" and ("O_WRONLY" in self.arguments or "O_RDWR" in self.arguments)


class Machines:
    """Copies of one typical Mac, and runs of the installer on them."""

    def __init__(self, folder):
        self._folder = Path(folder)
        self._original = Mac.new("typical", self._folder)
        self._numbers = itertools.count()

    @contextlib.contextmanager
    def fresh(self):
        """A copy for the time of a case."""
        folder = self._folder / str(next(self._numbers))
        folder.mkdir()
        subprocess.run(["cp", "-a", self._original.tree, folder], check=True)
        try:
            yield Mac(folder / "mac")
        finally:
            subprocess.run(["rm", "-rf", folder], check=True)


@contextlib.contextmanager
def machines():
    """Machines in a folder of their own, and the release build's installer for them."""
    subprocess.run([ROOT / "scripts/build", "release", "KSExtensionInstaller"], check=True)
    with tempfile.TemporaryDirectory(prefix="prove-") as folder:
        yield Machines(folder)


class Undisturbed:
    """A run that nothing disturbs: the trees before and after it, the calls it makes, the log it leaves.

    verdict: what the administrator says; with commas between, what to each prompt.
    """

    def __init__(self, machines, verdict):
        self.verdict = verdict
        with machines.fresh() as mac:
            self.old = trees.read(mac.tree)
            self.calls = _calls(mac, verdict)
            self.new = trees.read(mac.tree)
            self.log = log(mac)


def run(mac, verdict, at):
    """Runs the installer as it is: the Result, or None for a hang."""
    return _run(mac, verdict, at, _INSTALLER)


def disturb(mac, verdict, call, how):
    """A run in which that call is disturbed, in strace's words: the Result, or None for a hang."""
    return _traced(mac, verdict, f"trace={call.name}", f"inject={call.name}:{how}:when={call.number}")


def log(mac):
    """The log's messages and how often each is there; nothing when there is no log."""
    files = sorted(mac.path(LOGS).glob("*.log"))
    text = files[0].read_text(encoding="utf-8") if files else ""
    return collections.Counter(re.split(r"^\d\d:\d\d:\d\d - ", text, flags=re.MULTILINE)[1:])


def _run(mac, verdict, at, program, *arguments):
    try:
        verdicts = [word for one in verdict.split(",") for word in ("--admin", one)]
        return mac.run("--fast", *verdicts, "--at", at, program=program, args=arguments, timeout=SECONDS)
    except subprocess.TimeoutExpired:
        return None


def _traced(mac, verdict, *expressions):
    words = [word for expression in expressions for word in ("-e", expression)]
    return _run(mac, verdict, "2024-03-05 09:07:02", "/usr/bin/strace", "-qq", "-y", *words, _INSTALLER_INSIDE)


def _calls(mac, verdict):
    """The calls of an undisturbed run on files, from the first that the product makes, in order."""
    result = _traced(mac, verdict, "trace=%file,%desc")
    assert result and result.status == 0, result
    counts = collections.Counter()
    found = []
    for line in result.stderr.splitlines():
        if match := _LINE.match(line):
            name, arguments, _ = match.groups()
            counts[name] += 1
            if found or _BEGINNING in arguments:
                found.append(Call(name, counts[name], arguments))
    return found
