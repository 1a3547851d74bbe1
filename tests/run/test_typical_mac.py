"""The whole run on a typical Mac: four browsers and everything that earlier versions left.

What it changes and what it logs stand in tests/run/typical/, to be read by people: `.changes` holds
the lines of the manifests before (-, without the content) and after (+) that differ, `.log` the log.
`scripts/test --renew-pins` writes them anew.
"""

import difflib
import pathlib

import pytest

from tests.support.mac import Mac

PINNED = pathlib.Path(__file__).parent / "typical"
LOG = "/Users/Shared/Keystrel/logs/2024_3_5_9_7_2.log"


@pytest.fixture
def mac(tmp_path):
    return Mac.new("typical", tmp_path)


def changes(before, after):
    """The lines that differ, but the log's."""
    for line in difflib.unified_diff(before, after, n=0, lineterm=""):
        if line.startswith(("---", "+++", "@@")) or LOG in line:
            continue
        yield "\t".join(line.split("\t")[:4]) if line.startswith("-") else line


@pytest.fixture
def pinned(renew_pins):
    """The text of a pin, which is what was found where pins are renewed."""
    def text(name, found):
        if renew_pins:
            (PINNED / name).write_text(found, encoding="utf-8")
        return (PINNED / name).read_text(encoding="utf-8")

    return text


@pytest.mark.parametrize(
    "verdict, outcome, prompts",
    [("allow", "allowed", 2), ("refuse", "refused", 2), ("cancel", "refused", 2)],
)
def test_a_typical_mac(mac, pinned, verdict, outcome, prompts):
    before = mac.manifest()
    result = mac.run("--admin", verdict, "--at", "2024-03-05 09:07:02")
    assert (result.status, result.stderr) == (0, "")
    changed = "".join(line + "\n" for line in changes(before, mac.manifest()))
    assert changed == pinned(outcome + ".changes", changed)
    logged = mac.path(LOG).read_text(encoding="utf-8")
    assert logged == pinned(outcome + ".log", logged)
    assert result.asked == [{"command": "'/var/tmp/script.sh' ", "verdict": verdict}] * prompts


@pytest.mark.parametrize("verdict", ["allow", "refuse"])
def test_a_second_run_changes_nothing_but_the_log(mac, verdict):
    mac.run("--admin", verdict, "--at", "2024-03-05 09:07:02")
    once = mac.manifest()
    result = mac.run("--admin", verdict, "--at", "2024-03-06 10:11:12")
    assert (result.status, result.stderr) == (0, "")
    assert [line[:1] + line.split("\t")[3] for line in changes(once, mac.manifest())] == [
        "+/Users/Shared/Keystrel/logs/2024_3_6_10_11_12.log"
    ]
