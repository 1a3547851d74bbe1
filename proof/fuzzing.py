"""Fuzz programs: what any input may do to what reads it.

Each program of tests/fuzz requires something of what an input gives. One round of tries begins with the seeds
in tests/fuzz/seeds, of one random seed, so that a build tries the same inputs again; another build, which is
covered otherwise, may grow others.
"""

import os
import re
import shutil
import subprocess
import tempfile
from dataclasses import dataclass
from pathlib import Path

from proof.results import INSTALLER, ROOT, Outcome, Table

SOURCES = (*INSTALLER, "tools", "tests/fuzz", "tests/crypto", "tests/platform/NoPathBridges.cpp", "scripts/fuzz")

SEEDS = ROOT / "tests/fuzz/seeds"
PROGRAMS = ROOT / "build/fuzz/bin"
MACROOT = ROOT / "scripts/macroot"
HOME = "/Users/alex"  # where a program in a Mac root finds its seeds, and leaves what broke it


@dataclass(frozen=True)
class Target:
    """A fuzz program: what it tries; how many inputs take about ten seconds; the sources whose functions it
    should reach, as a pattern; and the machine that it needs, if any.
    """

    name: str
    tries: str
    runs: int
    sources: str
    machine: str = ""


TARGETS = {target.name: target for target in (
    Target("base64_fuzz", "Base64 both ways, against OpenSSL", 20_000, r"crypto/Base64"),
    Target("cipher_fuzz", "the ciphers, against OpenSSL", 5_000, r"crypto/(AesEngine|\w*cryp\w*|Rijndael)"),
    Target("digest_fuzz", "the digest, against OpenSSL", 10_000, r"crypto/SHA256"),
    Target("text_fuzz", "text conversions, against iconv", 20_000, r"crypto/(StringUtils|Utf8)\."),
    Target("cocoa_text_fuzz", "Cocoa strings, against iconv", 10_000, r"crypto/(CocoaStrings|LowerCase|StringUtilsB)"),
    Target("path_rules_fuzz", "path rules, against regular expressions", 10_000, r"platform/PathUtils\."),
    Target("log_reader_fuzz", "the log reader", 10_000, r"tools/Log(Stream|Parser|Printer)"),
    Target("property_list_fuzz", "property lists of every format", 20_000, r"linux/corrections/propertylist/"),
    Target("xml_tree_fuzz", "XML documents", 20_000, r"linux/corrections/xml/XmlTree"),
    Target("logger_fuzz", "NSLogger's formatting, plain and enciphered", 4_000, r"logging/(NSLogger|CLogger)", "clean"),
    Target("settings_fuzz", "the settings file", 2_000, r"settings/LocalSettings", "clean"),
    Target("safari_fuzz", "Safari's lists", 2_000, r"browsers/Safari(Extensions|Install\+)", "typical"),
    Target("firefox_fuzz", "Firefox's registry", 4_000, r"browsers/FFoxInstall\+", "clean"),
    Target("chrome_fuzz", "Chrome's preferences", 4_000, r"browsers/ChromePreferences", "typical"),
)}

_SUPPRESSIONS = f"suppressions={ROOT}/tests/support/lsan.txt:print_suppressions=0"


@dataclass(frozen=True)
class Result:
    """What came of a program: whether all held, how many inputs, how much of its sources they reached."""

    held: bool
    runs: int
    covered: str
    log: str


def build():
    subprocess.run([ROOT / "scripts/build", "fuzz", "fuzz_programs"], check=True)


def try_inputs(target, seed, runs=None, minutes=None, keep=None):
    """Tries so many inputs, or for so long; coverage is told in the second case only, as it takes a while.

    keep: a folder for the inputs that broke the program, None for nowhere.
    """
    limits = [f"-max_total_time={60 * minutes}", "-print_coverage=1"] if minutes else [f"-runs={runs}"]
    options = ["-seed=%d" % seed, "-max_len=4096", "-timeout=60", *limits]
    # Files are flushed with every input: where there is one, on a disk in memory.
    memory = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
    with tempfile.TemporaryDirectory(dir=memory) as work:
        done, left = (_try_in_a_mac if target.machine else _try_here)(target, options, Path(work))
        broken = [path for path in left.iterdir() if re.match(r"(crash|leak|timeout|oom|slow-unit)-", path.name)]
        if keep is not None:
            for path in broken:
                shutil.copy(path, keep)
    counted = re.findall(r"^(?:#|Done )(\d+)", done.stdout, re.MULTILINE)
    return Result(done.returncode == 0, int(counted[-1]) if counted else 0, _covered(done.stdout, target.sources),
                  done.stdout)


def _try_here(target, options, work):
    seeds = shutil.copytree(SEEDS / target.name, work / "seeds")
    command = [PROGRAMS / target.name, *options, f"-artifact_prefix={work}/", seeds]
    return _run(command, LSAN_OPTIONS=_SUPPRESSIONS), work


def _try_in_a_mac(target, options, work):
    tree = work / "mac"
    subprocess.run([MACROOT, "new", tree, "--machine", target.machine], check=True, stdin=subprocess.DEVNULL)
    home = tree / HOME.lstrip("/")
    shutil.copytree(SEEDS / target.name, home / "seeds")
    work.chmod(0o711)
    command = [MACROOT, "run", "--own", HOME, tree, "--", PROGRAMS / target.name, *options,
               f"-artifact_prefix={HOME}/", f"{HOME}/seeds"]
    try:
        done = _run(command, LSAN_OPTIONS=_SUPPRESSIONS)
        broken = shutil.copytree(home, work / "home", symlinks=True)
    finally:
        subprocess.run([MACROOT, "delete", tree], check=True, stdin=subprocess.DEVNULL)
    return done, broken


def _run(command, **environment):
    return subprocess.run(command, env={**os.environ, **environment}, stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, encoding="utf-8", errors="replace")


def _covered(log, sources):
    """How many functions of these sources some input reached."""
    found = re.finditer(rf"^(?P<un>UN)?COVERED_FUNC: .*/(?:{sources})[^/]*:\d+$", log, re.MULTILINE)
    reached = [not function["un"] for function in found]
    return f"{sum(reached)} of {len(reached)}" if reached else ""


def prove(trial):
    """--quick: as many inputs as a commit tries; else each program for 10 minutes."""
    build()
    (ROOT / "build/prove").mkdir(parents=True, exist_ok=True)
    minutes = None if trial.quick else 10

    def attempt(name):
        target = TARGETS[name]
        result = try_inputs(target, trial.seed, target.runs, minutes, ROOT / "build/prove")
        return Outcome(f"{result.runs} {result.covered or '-'}", result.held)

    seed = f"seed {trial.seed}, {minutes or 0} min"
    outcomes = trial.outcomes([f"{name} {seed}" for name in TARGETS], lambda case: attempt(case.split()[0]))
    rows = [[TARGETS[case.split()[0]].tries, *outcome.text.split(" ", 1), "holds" if outcome.holds else "does not"]
            for case, outcome in outcomes.items()]
    failures = [f"{case} (its input is in build/prove)" for case, outcome in outcomes.items() if not outcome.holds]
    sample = "a fixed number of inputs each" if trial.quick else f"each for {minutes} minutes"
    return Table(sample, ["what", "inputs", "functions reached", ""], rows, failures)
