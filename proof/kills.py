"""Killed anywhere: the installer on a typical Mac, killed at each call that changes a file, then run undisturbed.

Required: after the kill, each of people's files is there and whole; after the second run the tree is that of an
undisturbed run. Temporary files that carry the killed process are left out, and counted.
"""

import collections

from proof import traced, trees
from proof.results import INSTALLER, Outcome, Table

SOURCES = [*INSTALLER, "proof/traced.py", "proof/trees.py"]

_OTHERS = 20  # of the calls that change nothing, one of so many: killed there, a run leaves what the next change finds
_QUICK = 24  # a quick run tries one case of so many

_CHANGING = {"write", "fsync", "fchmod", "chmod", "utimensat", "mkdir", "rename", "unlink", "rmdir"}
_LATER = "2024-03-06 10:11:12"


def prove(trial):
    with traced.machines() as machines:
        known = {verdict: traced.Undisturbed(machines, verdict) for verdict in traced.VERDICTS}
        cases = {f"{verdict} {call.name} {call.number}": (verdict, call)
                 for verdict in traced.VERDICTS for call in _chosen(known[verdict].calls)}
        chosen = list(cases)[::_QUICK] if trial.quick else list(cases)

        def attempt(case):
            verdict, call = cases[case]
            return _attempt(machines, known[verdict], call)

        found = trial.outcomes(chosen, attempt)
    rows = collections.defaultdict(collections.Counter)
    for case, outcome in found.items():
        rows[cases[case][1].name][outcome.text.split(":")[0]] += 1
    columns = list(dict.fromkeys(kind for row in rows.values() for kind in row))
    return Table(
        f"{'1 case of ' + str(_QUICK) if trial.quick else 'all cases'}: {len(chosen)} of {len(cases)}, at each call "
        f"that changes a file and at 1 of {_OTHERS} others",
        ["killed at", *columns],
        [[name, *(row[column] or "" for column in columns)] for name, row in sorted(rows.items())],
        [f"{case} ({cases[case][1].path}): {outcome.text}" for case, outcome in found.items() if not outcome.holds],
    )


def _chosen(calls):
    changing = [call for call in calls if call.name in _CHANGING or call.opens_for_writing]
    others = [call for call in calls if call not in set(changing)]
    return changing + others[::_OTHERS]


def _attempt(machines, undisturbed, call):
    """A run that is killed at that call, and the next one."""
    with machines.fresh() as mac:
        killed = traced.disturb(mac, undisturbed.verdict, call, "signal=KILL")
        if not killed or killed.status != 128 + 9:
            return Outcome(f"not killed: {killed}", False)
        if torn := trees.harm_to_people(undisturbed.old, undisturbed.new, trees.read(mac.tree)):
            return Outcome("harm: " + "; ".join(torn), False)
        again = traced.run(mac, undisturbed.verdict, _LATER)
        if not again or again.status != 0:
            return Outcome(f"the next run fails: {again}", False)
        tree = trees.read(mac.tree)
        left = [path for path in tree if trees.TEMPORARY.search(path)]
        for path in left:
            del tree[path]
        if wrong := trees.difference(tree, undisturbed.new):
            return Outcome("not repaired: " + "; ".join(wrong), False)
        return Outcome("repaired, a temporary file left" if left else "repaired")
