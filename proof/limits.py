"""Load: two installers at once, ten in a row, browsers that write meanwhile, and one run under valgrind.

Required: status 0, and each of people's files is as it was, or as a run leaves it, or between them edit by edit. What is
scarce or odd (descriptors, stack, rights of new files, years) tests/run/test_limits.py tries at each commit.
"""

import collections
import contextlib
import json
import os
import plistlib
import threading
import time
import xml.etree.ElementTree
from concurrent.futures import ThreadPoolExecutor

from proof import traced, trees
from proof.results import INSTALLER, ROOT, Outcome, Table

SOURCES = [*INSTALLER, "proof/traced.py", "proof/trees.py"]

_AT = "2024-03-05 09:07:02"
_SUPPRESSIONS = "tests/support/valgrind.txt"
_LIBRARY = "/Users/alex/Library/"


def prove(trial):
    times = 2 if trial.quick else 20
    with traced.machines() as machines:
        known = {verdict: traced.Undisturbed(machines, verdict) for verdict in traced.VERDICTS}
        kinds = {"two at once": _two_at_once, "ten in a row": _ten_in_a_row, "browsers write": _browsers_write,
                 "browsers write in place": _browsers_write_in_place, "valgrind": _valgrind}
        counts = {"two at once": times, "ten in a row": 1, "browsers write": times,
                  "browsers write in place": times, "valgrind": 1}
        cases = [f"{verdict}, {kind}, {number}" for kind in kinds for verdict in traced.VERDICTS
                 for number in range(counts[kind])]

        def attempt(case):
            verdict, kind, _ = case.split(", ")
            with machines.fresh() as mac:
                wrong = kinds[kind](mac, verdict, known)
            return Outcome("; ".join(wrong) or "held", not wrong)

        found = trial.outcomes(cases, attempt)
    rows = collections.defaultdict(collections.Counter)
    for case, outcome in found.items():
        rows[case.split(", ")[1]]["held" if outcome.holds else "failed"] += 1
    return Table(f"{times} times each verdict, ten runs in a row and valgrind once", ["load", "held", "failed"],
                 [[kind, row["held"], row["failed"]] for kind, row in rows.items()],
                 [f"{case}: {outcome.text}" for case, outcome in found.items() if not outcome.holds])


def _ended_badly(*results):
    return [f"a run ended with {result and result.status}: {result and result.stderr}"
            for result in results if not result or result.status != 0 or result.stderr]


def _two_at_once(mac, verdict, known):
    """One may run the other's script, or find none: then it installs for the user. Nothing may be torn."""
    with ThreadPoolExecutor(2) as pool:
        results = pool.map(lambda _: traced.run(mac, verdict, _AT), range(2))
    tree = trees.read(mac.tree)
    return _ended_badly(*results) + trees.harm(known[verdict].old, [one.new for one in known.values()], tree)


def _ten_in_a_row(mac, verdict, known):
    wrong = _ended_badly(*(traced.run(mac, verdict, _AT) for _ in range(10)))
    return wrong + [f"{path} differs" for path in trees.difference(trees.read(mac.tree), known[verdict].new)]


def _browsers_write(mac, verdict, known, in_place=False):
    """A file is a browser's last or an earlier one, edited or not, but never a part of one."""
    files = {"Application Support/Google/Chrome/Default/Preferences": (json.loads, _json),
             "Preferences/com.apple.Safari.plist": (plistlib.loads, plistlib.dumps),
             "Safari/Extensions/Extensions.plist": (plistlib.loads, plistlib.dumps)}
    paths = {mac.path(_LIBRARY + name): both for name, both in files.items()}
    with _browsers(paths, in_place) as written:
        wrong = _ended_badly(traced.run(mac, verdict, _AT))
    for path, (parse, _) in paths.items():
        try:
            content = parse(path.read_bytes())
            whole = 0 <= content["Written"] <= written[path] and len(content["Padding"]) == 200_000
        except (ValueError, KeyError, plistlib.InvalidFileException) as error:
            content, whole = error, False
        wrong += [] if whole else [f"{path.name} is torn: {str(content)[:200]}"]
    for path in mac.path(_LIBRARY).rglob("extensions.rdf"):
        xml.etree.ElementTree.parse(path)
    others = {path for path in known[verdict].old if not any(path.endswith(name) for name in files)}
    tree = trees.read(mac.tree)
    return wrong + trees.harm({path: known[verdict].old[path] for path in others},
                              [{path: entry for path, entry in one.new.items() if not path.endswith(tuple(files))}
                               for one in known.values()],
                              {path: entry for path, entry in tree.items() if not path.endswith(tuple(files))})


def _browsers_write_in_place(mac, verdict, known):
    return _browsers_write(mac, verdict, known, in_place=True)


@contextlib.contextmanager
def _browsers(paths, in_place):
    """While it lasts, files are written again and again, as browsers do it: beside, then renamed. How often.

    in_place: as browsers of earlier years did it, more seldom: a file is empty for a moment.
    """
    written = dict.fromkeys(paths, 0)
    stop = threading.Event()

    def write(path):
        parse, dump = paths[path]
        content = {**parse(path.read_bytes()), "Padding": "x" * 200_000}
        status = path.stat()
        beside = path.with_name("." + path.name + ".new")
        while not stop.is_set():
            text = dump({**content, "Written": written[path]})
            if in_place:
                path.write_bytes(text)
            else:
                beside.write_bytes(text)
                os.chown(beside, status.st_uid, status.st_gid)
                beside.chmod(status.st_mode & 0o777)
                beside.rename(path)
            written[path] += 1
            time.sleep(0.02 if in_place else 0.002)

    threads = [threading.Thread(target=write, args=(path,)) for path in paths]
    for thread in threads:
        thread.start()
    try:
        while not all(written.values()):
            time.sleep(0.01)
        yield written
    finally:
        stop.set()
        for thread in threads:
            thread.join()


def _json(content):
    return json.dumps(content, indent=3).encode()


def _valgrind(mac, verdict, known):
    suppressions = mac.path("/Users/Shared/valgrind.txt")
    suppressions.write_bytes((ROOT / _SUPPRESSIONS).read_bytes())
    result = mac.run("--fast", "--admin", verdict, program="/usr/bin/valgrind", timeout=600,
                     args=["-q", "--error-exitcode=9", "--suppressions=/Users/Shared/valgrind.txt",
                           "/run/installer/KSExtensionInstaller"])
    suppressions.unlink()
    wrong = _ended_badly(result)
    return wrong + [f"{path} differs" for path in trees.difference(trees.read(mac.tree), known[verdict].new)]
