"""What scripts/demo tells of a run."""
import json
import pathlib
import subprocess

import pytest

from tests.support import build
from tests.support.mac import Mac

SHOW_CHANGES = pathlib.Path(__file__).parents[2] / "scripts/show-changes"


@pytest.fixture
def story(tmp_path):
    def told(machine, verdict):
        mac = Mac.new(machine, tmp_path)
        (tmp_path / "before").write_text("".join(line + "\n" for line in mac.manifest()))
        assert mac.run("--admin", verdict).status == 0
        (tmp_path / "after").write_text("".join(line + "\n" for line in mac.manifest()))
        messages = mac.run(program=build.program("KSLogReader"), args=["--json", "--explain"]).stdout
        assert all(json.loads(line) for line in messages.splitlines())
        (tmp_path / "messages").write_text(messages)
        command = [SHOW_CHANGES, "--story", *(tmp_path / name for name in ("messages", "before", "after"))]
        return subprocess.run(command, capture_output=True, text=True, check=True).stdout
    return told


def test_the_story_of_a_refused_run(story):
    told = story("typical", "refuse")
    assert told.count("The files of the integration are there.") == 3
    chrome = told[told.index("Google Chrome:"):told.index("Firefox:")]
    assert "Could not: A file of the integration could not be removed" in chrome
    assert "    /Library/Google/Chrome/NativeMessagingHosts/com.corvendale.kschromena.json\n" in chrome
    assert "Could not" not in told[told.index("Safari:"):]


def test_the_story_of_a_run_without_anything_to_install(story):
    told = story("no-payload", "allow")
    assert told.count("Not in place:") == 3
    assert "    /Applications/Keystrel.app/Contents/Keystrel/Tools/BExtensions" in told[told.index("Firefox:"):]
