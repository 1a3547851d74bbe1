"""Scripts tell how they are used, and do nothing else when they are asked to or used wrongly."""
import subprocess
from pathlib import Path

import pytest

ROOT = Path(__file__).parents[2]
SCRIPTS = ["check-macos", "demo", "format", "macroot", "package-macos", "setup", "show-changes"]


def run(script, option):
    return subprocess.run([ROOT / "scripts" / script, option], capture_output=True, text=True)


@pytest.mark.parametrize("script", SCRIPTS)
def test_help_is_a_usage_text_and_no_error(script):
    told = run(script, "--help")
    assert told.returncode == 0 and "usage: " in told.stdout and script in told.stdout and told.stderr == ""


@pytest.mark.parametrize("script", SCRIPTS)
def test_an_unknown_option_is_wrong_usage(script):
    told = run(script, "--no-such-option")
    assert told.returncode == 2 and "usage: " in told.stdout + told.stderr
