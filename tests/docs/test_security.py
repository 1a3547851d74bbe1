"""SECURITY.md names tests for what it claims: each is there."""

import re
import subprocess
from pathlib import Path

import pytest

ROOT = Path(__file__).parents[2]
NAMES = re.findall(r"`(test_\w+|(?:[A-Z][a-z]+|[A-Z](?=[A-Z][a-z])){3,})`", (ROOT / "SECURITY.md").read_text())


def test_tests_are_named():
    assert len(NAMES) > 15


@pytest.mark.parametrize("name", sorted(set(NAMES)))
def test_a_named_test_exists(name):
    pattern = rf"def {name}\(" if name.startswith("test_") else rf"^TEST_?F?\(\w+, {name}\)"
    found = subprocess.run(["git", "grep", "-qE", "--untracked", pattern, "--", "tests"], cwd=ROOT)
    assert found.returncode == 0, name
