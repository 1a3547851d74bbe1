"""A Mac to run programs on, in the words of the tests that use it."""

import functools
import json
import os
import pathlib
import shutil
import subprocess
import tempfile
from collections import namedtuple

import pytest

from macroot.host import PROOT, Host
from macroot.manifest import lines
from tests.support import build

MACROOT = pathlib.Path(__file__).resolve().parents[2] / "scripts" / "macroot"
LOGS = "/Users/Shared/Keystrel/logs"

# What a run gave: the program's exit status and output, the administrator prompts in order, and
# whether alex and root were one user of the host (macroot's own word about it is not in stderr).
Result = namedtuple("Result", "status stdout stderr asked reduced")

_REDUCED = "macroot: reduced: "


class Mac:
    """A Mac in a folder of this host, a path on it is a path inside."""

    templates = None  # a folder for the machines that further ones are copied from

    def __init__(self, tree):
        self.tree = pathlib.Path(tree)

    @classmethod
    def new(cls, machine, tmp_path):
        """A fresh machine of that name (see tests/machines/) beneath tmp_path."""
        mac = cls(tmp_path / "mac")
        if cls.templates is None or not _sees_owners():
            macroot("new", mac.tree, "--machine", machine, check=True)
            return mac
        template = cls.templates / machine
        if not template.exists():
            macroot("new", template, "--machine", machine, check=True)
        tmp_path.mkdir(parents=True, exist_ok=True)
        subprocess.run(["cp", "-R", "--no-dereference", "--preserve=mode,ownership",
                        template, mac.tree], check=True)
        return mac

    def run(self, *options, program=None, args=(), timeout=60, **more):
        """Runs a program of this host (default: the installer, whose scripts then never sleep) as alex.

        options: those of `scripts/macroot run`. more: as subprocess.run takes them (input, env).
        """
        _let_everybody_pass(self.tree.parent)
        if program is None:
            options = ("--fast", *options)
        asked = self.tree.with_name(self.tree.name + ".asked")
        asked.unlink(missing_ok=True)
        if "--asked" not in options:
            options = ("--asked", asked, *options)
        done = macroot("run", *options, self.tree, "--",
                       program or build.program("KSExtensionInstaller"), *args,
                       timeout=timeout, **more)
        lines = done.stderr.splitlines(keepends=True)
        theirs = [line for line in lines if not line.startswith(_REDUCED)]
        noted = asked.read_text().splitlines() if asked.exists() else []
        return Result(done.returncode, done.stdout, "".join(theirs),
                      [json.loads(line) for line in noted], theirs != lines)

    def measured_run(self, *options):
        """What a run of the installer took: bytes at its peak, seconds of processor."""
        result = self.run(*options, program=build.program("measured-run"), timeout=300)
        assert (result.status, result.stderr) == (0, "")
        return json.loads(result.stdout)

    def path(self, inside):
        """Where this host finds a path of the Mac."""
        return self.tree / inside.lstrip("/")

    def remove(self, inside):
        """Removes a file, a link or a folder with all in it; nothing when it is not there."""
        path = self.path(inside)
        if path.is_dir() and not path.is_symlink():
            shutil.rmtree(path)
        else:
            path.unlink(missing_ok=True)

    def chown(self, inside, user, group):
        """Gives one entry to a user and a group, as numbers; skips the test where nobody can."""
        try:
            os.chown(self.path(inside), user, group, follow_symlinks=False)
        except OSError:
            pytest.skip("this host lets these tests give nothing to another user")

    def manifest(self):
        """The manifest's lines: type, mode, owner, path, content, parted by tabs."""
        if _sees_owners():
            return list(lines(str(self.tree), Host(PROOT)))
        return macroot("manifest", self.tree, check=True).stdout.splitlines()

    def log_text(self):
        """The one log of this Mac."""
        (log,) = self.path(LOGS).iterdir()
        return log.read_text(encoding="utf-8")


@functools.cache
def _sees_owners():
    """Whether these tests are root with every right over owners: then much can be done without a command."""
    return Host(PROOT).real_users


def _let_everybody_pass(folder):
    """Where namespaces are refused, alex is a user of the host and must be able to get here."""
    temporary = pathlib.Path(tempfile.gettempdir())
    for closed in (folder, *folder.parents):
        if temporary in closed.parents and closed.stat().st_uid == os.geteuid():
            closed.chmod(closed.stat().st_mode | 0o011)


def macroot(*words, timeout=60, check=False, **more):
    """One call of scripts/macroot; its output is text, whatever bytes it holds."""
    if "input" not in more:
        more.setdefault("stdin", subprocess.DEVNULL)
    return subprocess.run([MACROOT, *words], capture_output=True, text=True, encoding="utf-8",
                          errors="surrogateescape", timeout=timeout, check=check, **more)
