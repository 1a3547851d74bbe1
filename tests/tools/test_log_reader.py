"""KSLogReader's usage. What it makes of a log stands in tests/run/test_logging.py."""
import re
import subprocess
from pathlib import Path

import pytest

from tests.support import build

ROOT = Path(__file__).parents[2]


def reader(*arguments):
    return subprocess.run([build.program("KSLogReader"), *arguments], capture_output=True, text=True, input="password\n")


def test_the_version_is_the_projects():
    version = re.search(r"^project\(\w+ VERSION ([\d.]+)", (ROOT / "CMakeLists.txt").read_text(), re.MULTILINE)[1]
    told = reader("--version")
    assert (told.returncode, told.stdout, told.stderr) == (0, f"KSLogReader {version}\n", "")


def test_help_is_no_error():
    told = reader("--help")
    assert told.returncode == 0 and told.stdout.startswith("usage: KSLogReader LOG") and told.stderr == ""


@pytest.mark.parametrize("arguments", [(), ("",), ("--unknown",), ("-h",), ("one", "two"), ("--help", "two")])
def test_wrong_usage_is_told_on_standard_error(arguments):
    told = reader(*arguments)
    assert told.returncode == 2 and told.stderr.startswith("usage: KSLogReader LOG") and told.stdout == ""


def test_a_log_that_cannot_be_read(tmp_path):
    for path in (tmp_path / "missing.log", tmp_path, "/proc/self/mem"):
        told = reader(str(path))
        assert (told.returncode, told.stdout, told.stderr) == (1, "", f"KSLogReader: cannot read {path}\n")


def test_a_log_may_have_a_name_like_an_option(tmp_path):
    (tmp_path / "--help").write_bytes(b"")
    program = build.program("KSLogReader")
    told = subprocess.run([program, "./--help"], cwd=tmp_path, capture_output=True, text=True, input="password\n")
    assert (told.returncode, told.stdout) == (0, "\n")
