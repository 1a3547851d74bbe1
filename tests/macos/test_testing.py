"""scripts/test as on a Mac, with stand-ins for the programs that it starts."""
import os
import subprocess
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]
TESTS = "Test project /build/mac\n  Test #1: file_facts\n\nTotal Tests: 1"
NONE = "Test project /build/mac\n\nTotal Tests: 0"


@pytest.fixture
def mac(tmp_path):
    """A copy of the script among programs that only note how they are called."""
    scripts = tmp_path / "tree/scripts"
    scripts.mkdir(parents=True)
    (scripts / "test").write_text((ROOT / "scripts/test").read_text())
    programs = tmp_path / "programs"
    programs.mkdir()
    for path in [programs / "uname", programs / "ctest", scripts / "build", scripts / "setup"]:
        path.write_text('#!/bin/sh\n[ "${0##*/}" != uname ] || { echo Darwin; exit; }\n'
                        'echo "${0##*/} $*" >>"$CALLS"\n'
                        'case "${0##*/} $*" in *--show-only*) echo "$LISTED" ;; ctest*) exit "${STATUS:-0}" ;; esac\n')
        path.chmod(0o755)

    def run(*arguments, **variables):
        calls = tmp_path / "calls"
        done = subprocess.run(
            ["sh", scripts / "test", *arguments], capture_output=True, text=True,
            env={"PATH": f"{programs}:{os.environ['PATH']}", "CALLS": calls, "LISTED": TESTS, **variables})
        return done, calls.read_text().splitlines() if calls.exists() else []

    return run


def test_a_mac_builds_its_preset_and_runs_what_was_built(mac):
    done, calls = mac("-R", "file_facts")
    assert done.returncode == 0, done.stderr
    jobs = os.sysconf("SC_NPROCESSORS_ONLN")
    assert calls == ["build mac", "ctest --preset mac --show-only",
                     f"ctest --preset mac --parallel {jobs} -R file_facts"]


def test_a_failed_test_fails_the_script(mac):
    done, _ = mac(STATUS="8")
    assert done.returncode == 8


def test_without_googletest_it_fails_and_says_how_to_get_it(mac):
    done, calls = mac(LISTED=NONE)
    assert done.returncode == 1
    assert "brew install googletest" in done.stderr
    assert calls == ["build mac", "ctest --preset mac --show-only"]
