"""Alex is a user, root is root, and the broker stands between them."""

import json

import pytest

from tests.support.mac import Mac

ADMIN = "/run/macroot/admin"


@pytest.fixture(scope="module")
def mac(tmp_path_factory):
    return Mac.new("clean", tmp_path_factory.mktemp("boundary"))


def sh(mac, script, *options):
    return mac.run(*options, program="/bin/sh", args=("-c", script))


def test_the_program_runs_as_alex_at_home(mac):
    result = sh(mac, "id -u; id -g; id -G; pwd; echo $HOME; echo ~alex; umask")
    assert result.stdout.split() == ["501", "20", "20", "/Users/alex", "/Users/alex", "/Users/alex", "0022"]
    assert (result.status, result.stderr) == (0, "")


@pytest.mark.parametrize("folder", ["/", "/Library", "/Applications", "/System/Library", "/Users", "/private"])
def test_alex_cannot_write_where_root_owns(mac, folder):
    result = sh(mac, f"echo mine > {folder}/x; echo $?; mkdir {folder}/y 2>/dev/null; echo $?")
    assert result.stdout == "1\n1\n"
    assert "Permission denied" in result.stderr
    assert not mac.path(f"{folder}/x").exists() and not mac.path(f"{folder}/y").exists()


def test_an_allowed_command_can(mac):
    result = sh(mac, f"{ADMIN} 'mkdir /Library/made && id -u && echo said >&2'")
    assert (result.stdout, result.stderr) == ("allow 0\n0\n", "said\n")
    line = next(line for line in mac.manifest() if "\t/Library/made" in line)
    assert line.split("\t")[:3] == ["d", "0755", "0:0"] or result.reduced
    mac.remove("/Library/made")


@pytest.mark.parametrize("verdict", ["cancel", "refuse"])
def test_a_command_that_was_not_allowed_does_nothing(mac, verdict):
    result = sh(mac, f"{ADMIN} 'mkdir /Library/made'", "--admin", verdict)
    assert result.stdout == f"{verdict} 0\n"
    assert not mac.path("/Library/made").exists()


@pytest.mark.parametrize("status", [1, 126, 127, 255])
def test_the_verdict_is_told_apart_from_the_commands_own_status(mac, status):
    assert sh(mac, f"{ADMIN} 'exit {status}'").stdout == f"allow {status}\n"


def test_a_command_that_a_signal_ends_says_which(mac):
    assert sh(mac, f"{ADMIN} 'kill -9 $$'").stdout == "allow 137\n"


def test_one_verdict_a_prompt_and_the_last_one_stays(mac):
    result = sh(mac, f"{ADMIN} true; {ADMIN} --right some.right; {ADMIN} 'echo 3'; {ADMIN} 'echo 4'",
                "--admin", "refuse", "--admin", "cancel", "--admin", "allow")
    assert result.stdout == "refuse 0\ncancel 0\nallow 0\n3\nallow 0\n4\n"
    assert result.asked == [
        {"command": "true", "verdict": "refuse"},
        {"right": "some.right", "verdict": "cancel"},
        {"command": "echo 3", "verdict": "allow"},
        {"command": "echo 4", "verdict": "allow"},
    ]


def test_prompts_are_appended_to_what_was_asked_before(mac, tmp_path):
    asked = tmp_path / "asked"
    for word in ("one", "two"):
        sh(mac, f"{ADMIN} 'echo {word}'", "--asked", asked)
    prompts = [json.loads(line) for line in asked.read_text().splitlines()]
    assert [prompt["command"] for prompt in prompts] == ["echo one", "echo two"]
