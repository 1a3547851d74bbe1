"""Every call may fail: the installer on a typical Mac, each call on a file failing once with each error that fits.

Required of each run: status 0 within its time; each of people's files wholly old or wholly a correct new version,
nothing left beside it; where the result is another, the log tells so.
"""

import collections
import re

from proof import traced, trees
from proof.results import INSTALLER, Outcome, Table

SOURCES = [*INSTALLER, "proof/traced.py", "proof/trees.py"]

_QUICK = 90  # a quick run tries one case of so many

# Meant to fail without a line: writing and removing descriptors, writing Chrome's preferences, removing what Edge
# has (browsers/ExternalExtension.h, ChromePreferences.h, ChromeInstall.h, EdgeInstall.h) ...
_SILENT_FILES = re.compile(r"/[a-p]{32}\.json$|/Default/Preferences$|/Microsoft Edge/NativeMessagingHosts/[^/]+$")
# ... and giving rights and times to copies and to new folders, as on a Mac.
_SILENT_CALLS = {"chmod", "fchmod", "utimensat"}

# Interrupted, these must be made again: nothing may tell the run from an undisturbed one.
_TRIED_AGAIN = {"read", "pread64", "write", "writev"}

# A call that fails on the way to a prompt has the prompt's refusal as its effect.
_MIXED = ["allow,refuse,allow", "refuse,allow"]

_FIT = {
    "access": "EACCES EIO", "newfstatat": "EACCES EIO", "readlink": "EACCES EIO", "statfs": "EACCES EIO",
    "openat": "EACCES EIO EMFILE EINTR",
    "read": "EIO EINTR", "pread64": "EIO EINTR", "getdents64": "EIO", "close": "EIO EINTR",
    "write": "ENOSPC EIO EINTR", "writev": "ENOSPC EIO EINTR", "fsync": "ENOSPC EIO EINTR",
    "fchmod": "EACCES EIO EROFS", "chmod": "EACCES EIO EROFS", "utimensat": "EACCES EIO EROFS",
    "mkdir": "EACCES EIO EROFS ENOSPC", "rename": "EACCES EIO EROFS ENOSPC",
    "unlink": "EACCES EIO EROFS", "rmdir": "EACCES EIO EROFS",
    "memfd_create": "EMFILE", "dup": "EMFILE", "pipe2": "EMFILE",
    # These only ask or tell the kernel something of an open file.
    "fcntl": "", "lseek": "", "mmap": "", "ioctl": "", "poll": "", "getcwd": "",
}


def errors(call):
    """The errors that a call may end with. A call that is not known is a KeyError: it wants its line in the table."""
    if call.opens_for_writing:
        return _FIT[call.name].split() + ["EROFS", "ENOSPC"]
    if call.name == "newfstatat" and "AT_EMPTY_PATH" in call.arguments:
        return ["EIO"]
    return _FIT[call.name].split()


def prove(trial):
    with traced.machines() as machines:
        known = {verdict: traced.Undisturbed(machines, verdict) for verdict in traced.VERDICTS}
        results = [one.new for one in known.values()]
        results += [traced.Undisturbed(machines, mixed).new for mixed in _MIXED]
        cases = {f"{verdict} {call.name} {call.number} {error}": (verdict, call, error)
                 for verdict in traced.VERDICTS for call in known[verdict].calls for error in errors(call)}
        chosen = list(cases)[::_QUICK] if trial.quick else list(cases)

        def attempt(case):
            verdict, call, error = cases[case]
            return _attempt(machines, known[verdict], results, call, error)

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


def _attempt(machines, undisturbed, results, call, error):
    """A run in which that call fails so. It may leave what any of the results has."""
    with machines.fresh() as mac:
        run = traced.disturb(mac, undisturbed.verdict, call, f"error={error}")
        if not run:
            return Outcome("hangs", False)
        if "INJECTED" not in run.stderr:
            return Outcome(f"the call was not made: {run.stderr[-200:]}", False)
        if run.status != 0:
            return Outcome(f"ends with {run.status}: {run.stderr[-200:]}", False)
        tree = trees.read(mac.tree)
        if harm := trees.harm(undisturbed.old, results, tree):
            return Outcome("harm: " + "; ".join(harm), False)
        other = trees.difference(tree, undisturbed.new)
        if error == "EINTR" and call.name in _TRIED_AGAIN and (other or traced.log(mac) != undisturbed.log):
            return Outcome("not tried again: " + "; ".join(other), False)
        if traced.log(mac) - undisturbed.log:
            return Outcome("told")
        if not other:
            return Outcome("no effect")
        if call.name in _SILENT_CALLS or all(map(_SILENT_FILES.search, other)):
            return Outcome("silent, as meant")
        return Outcome("not told: " + "; ".join(other), False)
