"""Small changes of the product's code: which of them the tests miss."""

import contextlib
import hashlib
import json
import os
import re
import shlex
import shutil
import signal
import subprocess
import time
from collections import Counter

from proof.results import INSTALLER, ROOT, Outcome, Table

SOURCES = [*INSTALLER, "tests", "proof/mutants.py", "proof/mutant.h", "proof/equivalents.txt"]
QUICK = 100
REQUIRED = 0.95

_ROOMS = ("crypto", "logging", "settings", "platform", "ui", "privileged", "browsers", "installer")
# Here nothing runs before main, so a table of constants may become one that is filled before main.
_WITHOUT_START_UP = ("ui", "privileged", "browsers", "installer")
_FOLDER = ROOT / "build/mutation"
_TREE, _BUILD = _FOLDER / "tree", _FOLDER / "build"
# For what no unit test comes by.
_SCENARIOS = ["tests/run/test_typical_mac.py", "tests/run/test_run.py::test_an_empty_machine"]
_SECONDS = 10  # beyond five times of what the tests take without a mutant
_LARGE = "-*Large*"


def prove(trial):
    """Tries mutants with the tests that come by them, the quickest program first."""
    mutants = _write_tree(trial.jobs)
    tests = _Tests()
    names = sorted(mutants, key=lambda name: hashlib.sha256(name.encode()).digest())
    chosen = names[:QUICK] if trial.quick else names
    outcomes = trial.outcomes(chosen, lambda name: tests.verdict(mutants[name].number))
    equivalent = _equivalents()
    killed, missed, named = Counter(), Counter(), Counter()
    failures = []
    for name, outcome in outcomes.items():
        room, kind = name.split("/")[0], mutants[name].kind
        for key in (room, kind):
            if outcome.text.startswith("missed"):
                (named if _key(name) in equivalent else missed)[key] += 1
            else:
                killed[key] += 1
        if outcome.text.startswith("missed") and _key(name) not in equivalent:
            failures.append(f"{name}: {outcome.text}")
    rooms = [room for room in _ROOMS if killed[room] + missed[room] + named[room]]
    kinds = sorted({mutants[name].kind for name in outcomes})

    def row(title, keys):
        k, m, n = (sum(counter[key] for key in keys) for counter in (killed, missed, named))
        return [title, k + m + n, k, n, m, f"{100 * k / (k + m + n):.1f} %"]

    rows = [*(row(key, [key]) for key in (*rooms, *kinds)), row("together", rooms)]
    if sum(killed[room] for room in rooms) < REQUIRED * len(outcomes):
        failures.append(f"less than {REQUIRED:.0%} are killed")
    sample = f"{len(chosen)} of {len(names)} mutants" + (", a fixed sample" if trial.quick else "")
    return Table(sample, ["room or kind", "tried", "killed", "missed with a reason", "missed", "killed"], rows, failures)


# ---- the mutants


def _write_tree(jobs):
    """Copies the repository to build/, with the mutants in it, and builds that; {name: Mutant}."""
    subprocess.run([ROOT / "scripts/setup", "proof/packages"], cwd=ROOT, check=True)
    from proof.mutants import Source  # it needs what was installed
    arguments = _compiler_arguments()
    listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=ROOT, check=True,
                            capture_output=True, text=True).stdout.split("\0")
    mutants = {}
    for name in sorted(set(listed) - {""}):
        path = ROOT / name
        if not path.is_file():
            continue
        if name.split("/")[0] in _ROOMS and path.suffix in (".mm", ".cpp"):
            source = Source(path, arguments[str(path)], len(mutants) + 1, name.split("/")[0] in _WITHOUT_START_UP)
            _write(_TREE / name, source.text().encode(), path)
            for mutant in source.mutants():
                shown = f"{name}:{mutant.line}: {mutant.kind}: {mutant.before} => {mutant.after}"
                while shown in mutants:
                    shown += " (another one)"
                mutants[shown] = mutant
        else:
            _write(_TREE / name, path.read_bytes(), path)
    if not (_BUILD / "build.ninja").exists():
        _quietly("cmake", "-S", _TREE, "-B", _BUILD, "-G", "Ninja", "-DCMAKE_CXX_COMPILER=clang++",
                 "-DCMAKE_CXX_FLAGS=-O1 -w")
    targets = [f"{room}_tests" for room in (*_ROOMS, "product") if room != "installer"]
    _quietly("cmake", "--build", _BUILD, "-j", str(jobs), "--target", "scenario_programs", *targets)
    return mutants


def _compiler_arguments():
    """{source: what clang is told when it is compiled}."""
    folder = ROOT / "build/dev"
    if not (folder / "compile_commands.json").exists():
        _quietly("cmake", "--preset", "dev")
    commands = json.loads((folder / "compile_commands.json").read_text())
    found = {}
    for command in commands:
        words = shlex.split(command["command"])[1:]
        found[command["file"]] = [*words[:words.index("-o")], "-w", "-Wno-error", "-ferror-limit=0"]
    return found


def _write(path, content, like):
    if not path.exists() or path.read_bytes() != content:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)
    shutil.copymode(like, path)


def _quietly(*command):
    done = subprocess.run(command, cwd=ROOT, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
    if done.returncode != 0:
        raise RuntimeError(f"{command[0]} {command[1]} failed:\n{done.stdout[-4000:]}")


def _key(name):
    """Of a mutant, wherever its line is by now."""
    return re.sub(r":\d+: ", ": ", name, count=1)


def _equivalents():
    """{key: reason}: blocks of two lines, the mutant without its line's number and the reason."""
    lines = [line for line in (ROOT / "proof/equivalents.txt").read_text(encoding="utf-8").splitlines()
             if line and not line.startswith("#")]
    return dict(zip(lines[::2], lines[1::2]))


# ---- the tests


class _Tests:
    """The unit tests of the rooms, which of them comes by which mutant, and how long they take."""

    def __init__(self):
        shown = subprocess.run(["ctest", "--test-dir", _BUILD, "--show-only=json-v1"], check=True, capture_output=True)
        self._programs = {}  # of ctest: name -> (command, environment)
        for test in json.loads(shown.stdout)["tests"]:
            properties = {each["name"]: each["value"] for each in test.get("properties", [])}
            if {*_ROOMS, "product"} & set(properties.get("LABELS", [])):
                environment = dict(word.split("=", 1) for word in properties.get("ENVIRONMENT", []))
                self._programs[test["name"]] = test["command"], environment
        self._reached = {}  # mutant -> program -> tests
        self._seconds = {}  # program -> of all its tests
        for name in self._programs:
            self._come_by(name)

    def _come_by(self, program):
        kept = _FOLDER / "reached" / program
        stamp = max(path.stat().st_mtime for path in (_BUILD / "bin").iterdir() if path.name != "__pycache__")
        if not kept.exists() or kept.stat().st_mtime < stamp:
            start = time.monotonic()
            status, output = self._run(program, {"GTEST_FILTER": _LARGE}, 600)
            if status != 0:
                raise RuntimeError(f"{program} fails without a mutant:\n{output[-3000:]}")
            seconds = time.monotonic() - start
            _, output = self._run(program, {"GTEST_MUTANT": "reached", "GTEST_FILTER": _LARGE}, 600)
            kept.parent.mkdir(parents=True, exist_ok=True)
            kept.write_text(json.dumps([seconds, output]))
        self._seconds[program], output = json.loads(kept.read_text())
        test = "*"
        for line in re.finditer(r"^\[ RUN      \] (\S+)|^reached (\d+)$", output, re.MULTILINE):
            if line[1]:
                test = line[1]
            else:
                self._reached.setdefault(int(line[2]), {}).setdefault(program, {})[test] = True

    def _run(self, program, environment, seconds):
        command, own = self._programs[program]
        return _run(command, {**os.environ, **own, **environment}, seconds, _BUILD)

    def verdict(self, number):
        """What the tests say of a mutant."""
        programs = self._reached.get(number, {})
        for program in sorted(programs, key=self._seconds.get):
            tests = programs[program]
            wanted = ("*" if "*" in tests else ":".join(tests)) + _LARGE
            status, output = self._run(program, {"GTEST_MUTANT": str(number), "GTEST_FILTER": wanted, "GTEST_FAIL_FAST": "1"},
                                       _SECONDS + 5 * self._seconds[program])
            if status is None:
                return Outcome(f"killed by the time that {program} takes")
            if status != 0:
                failed = re.search(r"^\[  FAILED  \] (\S+)", output, re.MULTILINE)
                return Outcome(f"killed by {failed[1] if failed else program + ', which ends'}")
        if not programs or number in _scenario_mutants():
            status, _ = _run(["/usr/bin/python3", "-m", "pytest", "-xq", "-p", "no:cacheprovider", *_SCENARIOS],
                             {**os.environ, "KS_BUILD": str(_BUILD), "GTEST_MUTANT": str(number)}, 120, _TREE)
            if status != 0:
                return Outcome("killed by a scenario")
            return Outcome("missed, no unit test comes by")
        return Outcome(f"missed by {sum(map(len, programs.values()))} tests")


def _scenario_mutants():
    return ()


def _run(command, environment, seconds, folder):
    """(exit status or None where the time was up, output)."""
    with subprocess.Popen(command, env=environment, cwd=folder, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, start_new_session=True) as process:
        try:
            output, _ = process.communicate(timeout=seconds)
        except subprocess.TimeoutExpired:
            for number in (signal.SIGTERM, signal.SIGKILL):
                with contextlib.suppress(ProcessLookupError, subprocess.TimeoutExpired):
                    os.killpg(process.pid, number)
                    process.communicate(timeout=10)
            return None, ""
    return process.returncode, output.decode("utf-8", "replace")
