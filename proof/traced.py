"""The installer on a typical Mac under strace: the calls it makes, and a run in which one of them is disturbed."""

import collections
import contextlib
import itertools
import re
import subprocess
import tempfile
from dataclasses import dataclass
from pathlib import Path

from proof.results import ROOT
from tests.support.mac import LOGS, Mac

SECONDS = 30  # until a run counts as hanging: 10 for the installer, the rest for strace and a busy machine

_LINE = re.compile(r"(\w+)\((.*)\) += (\S+.*)")
_PATH = re.compile(r'"(/[^"]*)"|^\d+<([^>]*)>')
_BEGINNING = "/Users/Shared/Keystrel/"  # the product's first file; what comes before is the loader's and the frameworks'


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


def run(mac, verdict, *options, at="2024-03-05 09:07:02"):
    """Runs the installer under strace with these options (without any, as it is); the Result, or None for a hang."""
    words = ("--fast", "--admin", verdict, "--at", at)
    program, *arguments = ["/usr/bin/strace", "-qq", "-y", *options, "/run/installer/KSExtensionInstaller"]
    if not options:
        program, arguments = "/run/installer/KSExtensionInstaller", []
    try:
        return mac.run(*words, program=program, args=arguments, timeout=SECONDS)
    except subprocess.TimeoutExpired:
        return None


def calls(mac, verdict):
    """The calls of an undisturbed run on files, from the first that the product makes, in order."""
    result = run(mac, verdict, "-e", "trace=%file,%desc")
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


def disturb(mac, verdict, call, how):
    """A run in which that call is disturbed, in strace's words: the Result, or None for a hang."""
    result = run(mac, verdict, "-e", f"trace={call.name}", "-e", f"inject={call.name}:{how}:when={call.number}")
    return result


def log(mac):
    """The log's messages and how often each is there; nothing when there is no log."""
    files = sorted(mac.path(LOGS).glob("*.log"))
    text = files[0].read_text(encoding="utf-8") if files else ""
    return collections.Counter(re.split(r"^\d\d:\d\d:\d\d - ", text, flags=re.MULTILINE)[1:])
