"""Scripts tell how they are used, and do nothing else when they are asked to or used wrongly."""
import os
import re
import subprocess
from pathlib import Path

import pytest

ROOT = Path(__file__).parents[2]
SCRIPTS = sorted(path.name for path in (ROOT / "scripts").iterdir() if os.access(path, os.X_OK))


def run(script, option):
    return subprocess.run([ROOT / "scripts" / script, option], capture_output=True, text=True)


@pytest.mark.parametrize("script", SCRIPTS)
def test_help_is_a_usage_text_and_no_error(script):
    told = run(script, "--help")
    assert told.returncode == 0 and "usage: " in told.stdout and script in told.stdout and told.stderr == ""


# An option makes scripts/build show its usage, whichever it is.
@pytest.mark.parametrize("script", [name for name in SCRIPTS if name != "build"])
def test_an_unknown_option_is_wrong_usage(script):
    told = run(script, "--no-such-option")
    assert told.returncode in (2, 64) and "usage: " in told.stdout + told.stderr


def test_the_table_of_scripts_is_whole():
    listed = re.findall(r"^\| `([\w-]+)` \|", (ROOT / "scripts/README.md").read_text(), re.MULTILINE)
    assert sorted(listed) == SCRIPTS
