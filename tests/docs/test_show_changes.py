"""What scripts/show-changes says of two manifests."""
import subprocess
from pathlib import Path

import pytest

SHOW_CHANGES = Path(__file__).parents[2] / "scripts/show-changes"


def difference(tmp_path, before, after):
    (tmp_path / "before").write_text(before)
    (tmp_path / "after").write_text(after)
    return subprocess.run([SHOW_CHANGES, tmp_path / "before", tmp_path / "after"], capture_output=True, text=True)


def test_equal_manifests_do_not_differ(tmp_path):
    told = difference(tmp_path, "d\t0755\t0:0\t/a\n", "d\t0755\t0:0\t/a\n")
    assert told.returncode == 0
    assert told.stdout == """\
Microsoft Edge: unchanged
Google Chrome: unchanged
Firefox: unchanged
Safari: unchanged
Keystrel: unchanged
"""


def test_every_browser_has_what_was_added_removed_and_changed(tmp_path):
    told = difference(tmp_path, """\
d\t0755\t0:0\t/Library/Safari
f\t0644\t0:0\t/Library/Safari/gone with its folder\taaaa
f\t0644\t0:0\t/content\taaaa
f\t0644\t0:0\t/mode and owner\taaaa
l\t0777\t0:0\t/target\tone
f\t0644\t0:0\t/kind\taaaa
f\t0644\t0:0\t/same\taaaa
""", """\
f\t0777\t501:20\t/Users/alex/Firefox/new\tbbbb
l\t0777\t501:20\t/new link\tnew
f\t0644\t0:0\t/content\tbbbb
f\t0600\t501:20\t/mode and owner\taaaa
l\t0777\t0:0\t/target\ttwo
d\t0644\t0:0\t/kind
f\t0644\t0:0\t/same\taaaa
""")
    assert told.returncode == 0
    assert told.stdout == """\
Microsoft Edge: unchanged
Google Chrome: unchanged
Firefox
  + ~/Firefox/new
Safari
  - /Library/Safari/
Keystrel
  ~ /content  (new content)
  ~ /kind/  (a file became a folder)
  ~ /mode and owner  (mode 0644 became 0600, owner 0:0 became 501:20)
  + /new link
  ~ /target  (target one became two)
"""


@pytest.mark.parametrize("text", ["nonsense\n", "a\tb\n"])
def test_what_is_no_manifest_is_refused(tmp_path, text):
    told = difference(tmp_path, text, "")
    assert told.returncode == 1 and "is no manifest" in told.stderr


def test_a_missing_manifest_is_named(tmp_path):
    told = subprocess.run([SHOW_CHANGES, tmp_path / "missing", tmp_path / "after"], capture_output=True, text=True)
    assert told.returncode == 1 and "missing" in told.stderr
