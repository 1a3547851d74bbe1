"""Alex is a user, root is root, and the broker stands between them."""

import json
import subprocess

import pytest

from tests.macroot.conftest import sh

ADMIN = "/run/macroot/admin"
ASK = """
import socket, sys
broker = socket.socket(socket.AF_UNIX)
broker.connect("/run/macroot/broker.sock")
broker.sendall(bytes.fromhex(sys.argv[1]))
broker.shutdown(socket.SHUT_WR)
sys.stdout.buffer.write(broker.makefile("rb").read())
"""


def ask(mac, request, *options):
    """The broker's answer to the bytes of a request."""
    return mac.run(*options, program="/usr/bin/python3", args=("-c", ASK, request.hex())).stdout


def test_the_program_runs_as_alex_at_home(mac):
    result = sh(mac, "id -u; id -g; id -G; pwd; echo $HOME; echo ~alex; umask")
    assert result.stdout.split() == ["501", "20", "20", *["/Users/alex"] * 3, "0022"]
    assert (result.status, result.stderr) == (0, "")


@pytest.mark.parametrize(
    "folder", ["", "/Library", "/Applications", "/System/Library", "/Users", "/private"])
def test_alex_cannot_write_where_root_owns(mac, folder):
    result = sh(mac, f"echo mine > {folder}/x; echo $?; mkdir {folder}/y 2>/dev/null; echo $?")
    assert result.stdout == "1\n1\n"
    assert "Permission denied" in result.stderr
    assert not mac.path(f"{folder}/x").exists() and not mac.path(f"{folder}/y").exists()


def test_alex_cannot_change_roots_files(mac, real_users):
    version = "/System/Library/CoreServices/SystemVersion.plist"
    before = mac.manifest()
    result = sh(mac, f"echo mine >> {version}; chmod 777 {version}; rm {version}; mv /Library .")
    assert result.stderr.count("\n") == 4
    assert mac.manifest() == before


def test_alex_cannot_become_root(mac):
    result = sh(mac, "sudo -n id; su -c id </dev/null; unshare --mount true || echo no")
    assert "uid=0" not in result.stdout and result.stdout.endswith("no\n")


def test_an_allowed_command_can(mac):
    result = sh(mac, f"{ADMIN} 'mkdir /Library/made && id -u && echo said >&2'")
    assert (result.stdout, result.stderr) == ("allow 0\n0\n", "said\n")
    owner = next(line for line in mac.manifest() if line.endswith("\t/Library/made")).split("\t")[2]
    assert owner == ("501:20" if result.reduced else "0:0")
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


def test_a_command_runs_with_a_clean_environment(mac):
    result = sh(mac, f"export SECRET=mine; {ADMIN} 'env; pwd; umask; cat'")
    told = dict(line.split("=", 1) for line in result.stdout.splitlines() if "=" in line)
    for added_by_the_shell in ("PWD", "SHLVL", "_", "OLDPWD", "PROOT_TMP_DIR"):
        told.pop(added_by_the_shell, None)
    assert told == {"HOME": "/Users/alex", "LOGNAME": "root", "USER": "root",
                    "PATH": "/usr/bin:/bin:/usr/sbin:/sbin"}
    assert result.stdout.endswith("\n/\n0022\n")


def test_one_verdict_a_prompt_and_the_last_one_stays(mac):
    result = sh(mac, f"{ADMIN} true; {ADMIN} --right a.right; {ADMIN} 'echo 3'; {ADMIN} 'echo 4'",
                "--admin", "refuse", "--admin", "cancel", "--admin", "allow")
    assert result.stdout == "refuse 0\ncancel 0\nallow 0\n3\nallow 0\n4\n"
    assert result.asked == [
        {"command": "true", "verdict": "refuse"},
        {"right": "a.right", "verdict": "cancel"},
        {"command": "echo 3", "verdict": "allow"},
        {"command": "echo 4", "verdict": "allow"},
    ]


def test_a_prompt_is_noted_as_it_was_asked(mac):
    script = "echo \"it's\"\n# Zoë \\ %s\nexit 3"
    result = mac.run(program="/usr/bin/env", args=(ADMIN, script))
    assert result.stdout == "allow 3\nit's\n"
    assert result.asked == [{"command": script, "verdict": "allow"}]


def test_prompts_are_appended_to_what_was_asked_before(mac, tmp_path):
    asked = tmp_path / "asked"
    for word in ("one", "two"):
        sh(mac, f"{ADMIN} 'echo {word}'", "--asked", asked)
    prompts = [json.loads(line) for line in asked.read_text().splitlines()]
    assert [prompt["command"] for prompt in prompts] == ["echo one", "echo two"]


def test_the_brokers_answer_counts_its_bytes(mac):
    assert ask(mac, b"command\nprintf 'a\\n'; printf 'err' >&2; exit 4") == "allow 4 2 3\na\nerr"
    assert ask(mac, b"command\ntrue", "--admin", "cancel") == "cancel 0 0 0\n"
    assert ask(mac, b"right\nsystem.privilege.admin", "--admin", "refuse") == "refuse 0 0 0\n"


def test_large_outputs_arrive_whole(mac):
    answer = ask(mac, b"command\nhead -c 3000000 /dev/zero | tr '\\0' x;"
                      b"head -c 2000000 /dev/zero | tr '\\0' y >&2")
    assert answer == "allow 0 3000000 2000000\n" + "x" * 3000000 + "y" * 2000000


def test_an_unknown_request_is_no_prompt(mac):
    assert ask(mac, b"nonsense\ntrue") == ""
    result = mac.run(program="/usr/bin/python3", args=("-c", ASK, b"nonsense\n".hex()))
    assert result.asked == []


def test_a_command_may_ask_again(mac):
    assert sh(mac, f"""{ADMIN} "{ADMIN} 'id -u'" """).stdout == "allow 0\nallow 0\n0\n"


def test_processes_of_the_host_are_invisible(mac):
    outside = subprocess.Popen(["/usr/bin/sleep", "60.25"])
    try:
        seen = sh(mac, "cat /proc/1/cmdline /proc/[0-9]*/cmdline | tr '\\0' ' '").stdout
    finally:
        outside.kill()
        outside.wait()
    if not seen.startswith("bwrap "):
        pytest.skip("without namespaces, processes of the host are visible")
    assert "60.25" not in seen and "cat /proc" in seen


def test_what_the_program_leaves_running_ends_with_it(mac, tmp_path):
    mark = f"/Users/alex/mark-{tmp_path.name}"
    result = sh(mac, f"(while :; do echo . >> {mark}; sleep 0.02; done) & sleep 0.3", timeout=20)
    assert result.status == 0
    size = mac.path(mark).stat().st_size
    assert size > 2
    sh(mac, "sleep 0.2")
    assert mac.path(mark).stat().st_size == size
    mac.remove(mark)


def test_the_exit_status_is_the_programs(mac):
    statuses = [0, 1, 70, 126, 255]
    assert [sh(mac, f"exit {status}").status for status in statuses] == statuses


@pytest.mark.parametrize("number", [2, 9, 11, 15])
def test_a_program_that_a_signal_ends_gives_128_and_its_number(mac, number):
    assert sh(mac, f"kill -{number} $$").status == 128 + number


def test_standard_streams_are_the_programs(mac):
    result = sh(mac, "cat; echo err >&2", input="in\n")
    assert (result.stdout, result.stderr) == ("in\n", "err\n")
