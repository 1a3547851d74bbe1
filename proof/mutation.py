"""Small changes of the product's code: which of them the tests miss."""

import contextlib
import functools
import hashlib
import json
import os
import re
import shlex
import shutil
import signal
import subprocess
from collections import Counter
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from proof.results import INSTALLER, ROOT, Outcome, Table

SOURCES = [*INSTALLER, "tests", "proof/mutants.py", "proof/mutant.h", "proof/equivalents.txt"]
QUICK = 100
REQUIRED = 0.95

_ROOMS = ("crypto", "logging", "settings", "platform", "ui", "privileged", "browsers", "installer")
# Here nothing runs before main, so a table of constants may become one that is filled before main.
_WITHOUT_START_UP = ("ui", "privileged", "browsers", "installer")
_FOLDER = ROOT / "build/mutation"
_TREE, _BUILD = _FOLDER / "tree", _FOLDER / "build"
# Whole runs, for what no unit test kills: those about what the source's name begins with.
_SCENARIOS = {"platform/SafeStart": "start", "browsers/Chrome": "chrome", "browsers/Edge": "edge", "browsers/FFox": "firefox", "browsers/Safari": "safari",
              "browsers/": "typical_mac", "installer/": "typical_mac", "privileged/": "chrome", "logging/": "logging",
              "settings/": "logging"}
_SECONDS = 10  # beyond five times of what the tests take without a mutant
_WHOLE_FILE = 900  # seconds for a file of scenarios
_SLOW = 300  # seconds for a program's slow tests, which are tried last
_LONGEST = 2  # seconds that a quick test may take


def prove(trial):
    """Tries mutants with the tests that come by them, the quickest program first."""
    mutants = _write_tree(trial.jobs)
    tests = _Tests(trial.jobs)
    names = sorted(mutants, key=lambda name: hashlib.sha256(name.encode()).digest())
    chosen = names[:QUICK] if trial.quick else names
    equivalent = _equivalents()

    def attempt(name):
        text = tests.verdict(name, mutants[name].number, thorough=name not in equivalent)
        return Outcome(text, text.startswith("killed") or name in equivalent)

    outcomes = trial.outcomes(chosen, attempt)
    killed, missed, named = Counter(), Counter(), Counter()
    failures = [f"proof/equivalents.txt names no mutant: {name}" for name in equivalent if name not in mutants]
    for name, outcome in outcomes.items():
        is_missed = outcome.text.startswith("missed")
        for key in (name.split("/")[0], mutants[name].kind):
            (killed if not is_missed else named if name in equivalent else missed)[key] += 1
        if is_missed != (name in equivalent):
            missing = "" if is_missed else ", though proof/equivalents.txt names it"
            failures.append(f"{name} (line {mutants[name].line}): {outcome.text}{missing}")
    rooms = [room for room in _ROOMS if killed[room] + missed[room] + named[room]]
    kinds = sorted({mutants[name].kind for name in outcomes})

    def row(title, keys):
        k, m, n = (sum(counter[key] for key in keys) for counter in (killed, missed, named))
        return [title, k + m + n, k, m, n, f"{_share(k, m):.1%}"]

    rows = [*(row(key, [key]) for key in (*rooms, *kinds)), row("together", rooms)]
    if _share(sum(killed[room] for room in rooms), sum(missed[room] for room in rooms)) < REQUIRED:
        failures.append(f"less than {REQUIRED:.0%} are killed")
    sample = f"{len(chosen)} of {len(names)} mutants" + (", a fixed sample" if trial.quick else "")
    return Table(sample, ["room or kind", "tried", "killed", "missed", "equivalent", "killed of the others"], rows,
                 failures)


def _share(killed, missed):
    return killed / (killed + missed) if killed + missed else 1


# ---- the mutants


def _write_tree(jobs):
    """Copies the repository to build/, with the mutants in it, and builds that; {name: Mutant}."""
    subprocess.run([ROOT / "scripts/setup", "proof/packages"], cwd=ROOT, check=True)
    from proof.mutants import Source  # it needs what was installed
    arguments = _compiler_arguments()
    listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=ROOT, check=True,
                            capture_output=True, text=True).stdout.split("\0")
    mutants, alike = {}, Counter()
    for name in sorted(set(listed) - {""}):
        path = ROOT / name
        if not path.is_file():
            continue
        if name.split("/")[0] in _ROOMS and path.suffix in (".mm", ".cpp"):
            source = Source(path, arguments[str(path)], len(mutants) + 1, name.split("/")[0] in _WITHOUT_START_UP)
            _write(_TREE / name, source.text().encode(), path)
            for mutant in source.mutants():
                # Its function and not its line, which is another one after each edit above it.
                place = f"{name}: {mutant.function or 'a table'}"
                shown = f"{place}: {mutant.kind}: {mutant.before} => {mutant.after or 'nothing'}"
                alike[shown] += 1
                mutants[shown if alike[shown] == 1 else f"{shown} #{alike[shown]}"] = mutant
        else:
            _write(_TREE / name, path.read_bytes(), path)
    if not (_BUILD / "build.ninja").exists():
        _quietly("cmake", "-S", _TREE, "-B", _BUILD, "-G", "Ninja", "-DCMAKE_CXX_COMPILER=clang++",
                 "-DCMAKE_CXX_FLAGS=-O1 -w -D_GLIBCXX_ASSERTIONS")
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


def _equivalents():
    """{name of a mutant: why no test tells it from the product}: blocks of two lines."""
    lines = [line for line in (ROOT / "proof/equivalents.txt").read_text(encoding="utf-8").splitlines()
             if line and not line.startswith("#")]
    return dict(zip(lines[::2], lines[1::2]))


# ---- the tests


class _Tests:
    """The unit tests of the rooms, which of them comes by which mutant, and how long they take."""

    def __init__(self, jobs):
        shown = subprocess.run(["ctest", "--test-dir", _BUILD, "--show-only=json-v1"], check=True, capture_output=True)
        self._programs = {}  # of ctest: name -> (command, environment, which tests)
        for test in json.loads(shown.stdout)["tests"]:
            properties = {each["name"]: each["value"] for each in test.get("properties", [])}
            if {*_ROOMS, "product"} & set(properties.get("LABELS", [])):
                environment = dict(word.split("=", 1) for word in properties.get("ENVIRONMENT", []))
                filters = [word.split("=")[1] for word in test["command"] if word.startswith("--gtest_filter=")]
                command = [word for word in test["command"] if not word.startswith("--gtest_filter=")]
                self._programs[test["name"]] = command, environment, (filters or ["*"])[0]
        self._reached = {}  # mutant -> program -> tests
        self._seconds = {}  # program -> of its quick tests
        self._quick = {}  # program -> its tests
        with ThreadPoolExecutor(jobs) as pool:
            list(pool.map(self._try_without, self._programs))
        for name in self._programs:
            self._read(name)

    def _kept(self, program):
        return _FOLDER / "reached" / program

    def _try_without(self, program):
        """Runs all tests of a program as they are, and the quick ones once more to see which mutants they come by."""
        kept = self._kept(program)
        stamp = max(Path(word).stat().st_mtime for word in self._programs[program][0] if word.startswith(f"{_BUILD}/bin/"))
        if not kept.exists() or kept.stat().st_mtime < stamp:
            status, output = self._run(program, {"GTEST_FILTER": self._programs[program][2]}, 600)
            if status != 0:  # the time is up, or a test fails
                raise RuntimeError(f"{program} fails without a mutant:\n{output[-3000:]}")
            took = [(name, int(time)) for name, time in re.findall(r"^\[       OK \] (\S+) \((\d+) ms\)", output, re.MULTILINE)]
            quick = [name for name, time in took if time <= 1000 * _LONGEST]
            _, output = self._run(program, {"GTEST_MUTANT": "reached", "GTEST_FILTER": ":".join(quick) or "-*"}, 600)
            kept.parent.mkdir(parents=True, exist_ok=True)
            kept.write_text(json.dumps([sum(time for name, time in took if name in quick) / 1000, output]))

    def _read(self, program):
        self._seconds[program], output = json.loads(self._kept(program).read_text())
        test, self._quick[program] = "*", []
        for line in re.finditer(r"^\[ RUN      \] (\S+)|^reached (\d+)$", output, re.MULTILINE):
            if line[1]:
                test = line[1]
                self._quick[program].append(test)
            else:
                self._reached.setdefault(int(line[2]), {}).setdefault(program, {})[test] = True

    def _run(self, program, environment, seconds):
        command, own, _ = self._programs[program]
        return _run(command, {**os.environ, **own, **environment}, seconds, _BUILD)

    def _tried(self, program, number, tests, seconds):
        """What kills the mutant of these tests of a program, or None."""
        status, output = self._run(program, {"GTEST_MUTANT": str(number), "GTEST_FILTER": tests, "GTEST_FAIL_FAST": "1"}, seconds)
        if status == 0:
            return None
        failed = re.search(r"^\[  FAILED  \] (\S+)", output, re.MULTILINE)
        return "killed by " + (failed[1] if failed else f"{program}, which {'ends' if status is not None else 'takes too long'}")

    def verdict(self, name, number, thorough):
        """What the tests say of a mutant. thorough: also those that take long, when the quick ones miss it."""
        programs = self._reached.get(number, {})
        for program in sorted(programs, key=self._seconds.get):
            tests = self._quick[program] if "*" in programs[program] else programs[program]
            found = self._tried(program, number, ":".join(tests), _SECONDS + 5 * self._seconds[program])
            if found:
                return found
        if not thorough:
            return "missed by its quick tests"
        for program in programs:  # nobody looked which mutants the slow tests come by
            slow = self._programs[program][2] + "-" + ":".join(self._quick[program])
            found = self._tried(program, number, slow, _SLOW)
            if found:
                return found
        scenarios = next((each for start, each in _SCENARIOS.items() if name.startswith(start)), None)
        if scenarios and _run_scenarios(scenarios, 0) is None:
            failed = _run_scenarios(scenarios, number)
            if failed:
                return f"killed by {failed}"
        return f"missed by {sum(map(len, programs.values()))} unit tests and {scenarios or 'no'} scenarios"


@functools.cache
def _run_scenarios(name, number):
    """What fails of a file of scenarios with a mutant, or None."""
    command = ["/usr/bin/python3", "-m", "pytest", "-xq", "-p", "no:cacheprovider", "-m", "not large",
               f"tests/run/test_{name}.py"]
    status, output = _run(command, {**os.environ, "KS_BUILD": str(_BUILD), "GTEST_MUTANT": str(number)}, _WHOLE_FILE, _TREE)
    if status == 0:
        return None
    failed = re.search(r"^FAILED (\S+)", output, re.MULTILINE)
    if number == 0:
        raise RuntimeError(f"scenarios fail without a mutant:\n{output[-3000:]}")
    return failed[1] if failed else f"the time that test_{name}.py takes"


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
