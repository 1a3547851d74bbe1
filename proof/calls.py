"""Every call may fail: the installer on a typical Mac, each call on a file failing once with each error that fits.

Required of each run: status 0 within its time; each of people's files wholly old or wholly a correct new version,
nothing left beside it; where the result is another, the log tells so.
"""

import collections

from proof import traced, trees
from proof.results import INSTALLER, Outcome, Table

SOURCES = [*INSTALLER, "proof/traced.py", "proof/trees.py"]
VERDICTS = ["allow", "refuse"]
ERRORS = ["EACCES", "EIO", "EMFILE", "EROFS", "ENOSPC", "EINTR"]

_QUICK = 45  # a quick run tries one case of so many

_FIT = {
    "access": "EACCES EIO", "newfstatat": "EACCES EIO", "readlink": "EACCES EIO", "statfs": "EACCES EIO",
    "openat": "EACCES EIO EMFILE EINTR",
    "read": "EIO EINTR", "pread64": "EIO EINTR", "getdents64": "EIO", "close": "EIO EINTR",
    "write": "ENOSPC EIO EINTR", "fsync": "ENOSPC EIO EINTR",
    "fchmod": "EACCES EIO EROFS", "chmod": "EACCES EIO EROFS", "utimensat": "EACCES EIO EROFS",
    "mkdir": "EACCES EIO EROFS ENOSPC", "rename": "EACCES EIO EROFS ENOSPC",
    "unlink": "EACCES EIO EROFS", "rmdir": "EACCES EIO EROFS",
    "memfd_create": "EMFILE",
    # These only ask or tell the kernel something of an open file.
    "fcntl": "", "lseek": "", "mmap": "", "ioctl": "", "poll": "", "getcwd": "",
}


def errors(call):
    """The errors that a call may end with."""
    if call.name == "openat" and ("O_WRONLY" in call.arguments or "O_RDWR" in call.arguments):
        return _FIT[call.name].split() + ["EROFS", "ENOSPC"]
    if call.name == "newfstatat" and "AT_EMPTY_PATH" in call.arguments:
        return ["EIO"]
    return _FIT[call.name].split()


def prove(trial):
    with traced.machines() as machines:
        known = {verdict: _Undisturbed(machines, verdict) for verdict in VERDICTS}
        cases = {f"{verdict} {call.name} {call.number} {error}": (verdict, call, error)
                 for verdict in VERDICTS for call in known[verdict].calls for error in errors(call)}
        chosen = list(cases)[::_QUICK] if trial.quick else list(cases)

        def attempt(case):
            verdict, call, error = cases[case]
            return known[verdict].attempt(call, error)

        found = trial.outcomes(chosen, attempt)
    rows = collections.defaultdict(collections.Counter)
    for case, outcome in found.items():
        _, call, error = cases[case]
        rows[call.name, error][outcome.text.split(":")[0]] += 1
    columns = list(dict.fromkeys(kind for row in rows.values() for kind in row))
    return Table(
        f"{'1 case of ' + str(_QUICK) if trial.quick else 'all cases'}: {len(chosen)} of {len(cases)}, on "
        + " and ".join(f"{len(one.calls)} calls ({verdict})" for verdict, one in known.items()),
        ["call", "error", *columns],
        [[name, error, *(row[column] or "" for column in columns)] for (name, error), row in sorted(rows.items())],
        [f"{case} ({cases[case][1].path}): {outcome.text}" for case, outcome in found.items() if not outcome.holds],
    )


class _Undisturbed:
    """A run that nothing disturbs: what it does, what it leaves, what it logs; and runs against it."""

    def __init__(self, machines, verdict):
        self._machines, self._verdict = machines, verdict
        with machines.fresh() as mac:
            self._old = trees.read(mac.tree)
            self.calls = traced.calls(mac, verdict)
            self._new = trees.read(mac.tree)
            self._log = traced.log(mac)

    def attempt(self, call, error):
        with self._machines.fresh() as mac:
            result = traced.disturb(mac, self._verdict, call, f"error={error}")
            if not result:
                return Outcome("hangs", False)
            if "INJECTED" not in result.stderr:
                return Outcome(f"the call was not made: {result.stderr[-200:]}", False)
            if result.status != 0:
                return Outcome(f"ends with {result.status}: {result.stderr[-200:]}", False)
            tree = trees.read(mac.tree)
            if harm := trees.harm(self._old, self._new, tree):
                return Outcome("harm: " + "; ".join(harm), False)
            if traced.log(mac) - self._log:
                return Outcome("told")
            if tree == self._new:
                return Outcome("made up for")
            return Outcome("not told: " + "; ".join(sorted(
                path for path in tree.keys() | self._new.keys() if tree.get(path) != self._new.get(path))), False)
