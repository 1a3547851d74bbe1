"""A run leaves nothing in the tree but what the program and its scripts did."""

import os
import signal
import subprocess
import time

import pytest

from tests.macroot.conftest import sh
from tests.support.mac import MACROOT, Mac

TEMPORARY = ["private", "private/tmp", "private/var", "private/var/tmp"]


def entries(tree):
    """Every entry of a tree with its kind, mode, owner and target, mount points included."""
    found = {}
    for path in sorted(tree.rglob("*")):
        status = path.lstat()
        target = os.readlink(path) if path.is_symlink() else None
        found[str(path.relative_to(tree))] = (status.st_mode, status.st_uid, status.st_gid, target)
    return found


def wait_for(path):
    """Until a program has said by a file that it runs."""
    end = time.monotonic() + 20
    while not path.exists():
        assert time.monotonic() < end, f"{path} never came"
        time.sleep(0.01)
    path.unlink()


@pytest.fixture
def empty(tmp_path):
    (tmp_path / "mac").mkdir()
    return Mac(tmp_path / "mac")


def test_a_run_that_does_nothing_changes_nothing(mac):
    before = entries(mac.tree)
    sh(mac, "true", "--display", "--at", "2024-03-05 09:07:02", "--fast",
       "--keychain", mac.tree.parent / "keychain")
    assert entries(mac.tree) == before


def test_an_empty_tree_gets_the_temporary_folders_alone(empty):
    links = [name for name in ("bin", "sbin", "lib", "lib32", "lib64", "libx32")
             if os.path.islink(f"/{name}")]
    assert sh(empty, "ls /").stdout.split() == sorted(
        ["dev", "etc", "private", "proc", "run", "tmp", "usr", "var", *links])
    assert sorted(entries(empty.tree)) == TEMPORARY
    for name in ("private/tmp", "private/var/tmp"):
        assert (empty.tree / name).stat().st_mode & 0o7777 == 0o1777


def test_mount_points_and_links_that_were_there_stay(empty):
    for name in ("usr", "private/etc", "proc"):
        (empty.tree / name).mkdir(parents=True)
    (empty.tree / "usr/mine").touch()
    (empty.tree / "bin").symlink_to("usr/bin")
    before = entries(empty.tree)
    assert sh(empty, "true").status == 0
    after = entries(empty.tree)
    assert {name: after[name] for name in before} == before
    assert sorted(set(after) - set(before)) == sorted(set(TEMPORARY) - {"private"})


def test_a_tree_may_bring_folders_where_a_mac_has_links(empty):
    for name in ("etc", "tmp", "var/tmp", "bin"):
        (empty.tree / name).mkdir(parents=True)
    (empty.tree / "etc/mine").write_text("mine")
    (empty.tree / "bin/mine").write_text("mine")
    (empty.tree / "tmp").chmod(0o1777)
    before = entries(empty.tree)
    result = sh(empty, "getent passwd alex | cut -d: -f3; cat /etc/mine; /usr/bin/touch /tmp/x",
                "--own", "/tmp")
    assert result.stdout == "501\n"  # the host's part lies over it
    assert (empty.tree / "tmp/x").exists()
    (empty.tree / "tmp/x").unlink()
    after = entries(empty.tree)
    assert {name for name in before if after.get(name) != before[name]} <= {"tmp"}
    assert (empty.tree / "etc/mine").read_text() == "mine"


@pytest.mark.parametrize("name", ["usr", "private", "private/tmp", "run"])
def test_a_mount_point_that_leads_out_of_the_tree_is_refused(empty, tmp_path, name):
    outside = tmp_path / "outside"
    outside.mkdir()
    (empty.tree / name).parent.mkdir(exist_ok=True)
    (empty.tree / name).symlink_to(outside)
    before = entries(empty.tree)
    result = sh(empty, "true")
    assert result.status == 70 and name in result.stderr
    assert entries(empty.tree) == before and list(outside.iterdir()) == []


def test_what_the_program_did_to_the_tree_is_there(mac, real_users):
    before = mac.manifest()
    sh(mac, "echo hi > made; /run/macroot/admin 'mkdir -m 700 /Library/made'; "
            "touch /tmp/made /etc/none /run/none")
    assert [line.split("\t")[:4] for line in mac.manifest() if line not in before] == [
        ["d", "0700", "0:0", "/Library/made"],
        ["f", "0644", "501:20", "/Users/alex/made"],
        ["f", "0644", "501:20", "/private/tmp/made"]]
    for made in ("/Library/made", "/Users/alex/made", "/private/tmp/made"):
        mac.remove(made)


def heed_signals():
    """Who runs the tests may have had them ignored, as nohup does, and so would what they start."""
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, signal.SIG_DFL)


def start(mac, script, *options):
    command = [MACROOT, "run", *options, mac.tree, "--", "/bin/sh", "-c", script]
    return subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                            start_new_session=True, preexec_fn=heed_signals)


@pytest.mark.parametrize("number", [signal.SIGINT, signal.SIGTERM, signal.SIGHUP])
def test_a_signal_ends_the_program_and_leaves_nothing(empty, number):
    (empty.tree / "Shared").mkdir()
    (empty.tree / "Shared").chmod(0o777)
    run = start(empty, ": > /Shared/runs; exec sleep 60")
    wait_for(empty.tree / "Shared/runs")
    run.send_signal(number)
    assert run.wait(20) == 128 + number
    assert sorted(entries(empty.tree)) == sorted(["Shared", *TEMPORARY])


def test_a_program_may_end_its_own_way_at_a_signal(empty):
    (empty.tree / "Shared").mkdir()
    (empty.tree / "Shared").chmod(0o777)
    run = start(empty, "trap 'echo tidied; exit 5' TERM; : > /Shared/runs; "
                       "while :; do sleep 0.05; done")
    wait_for(empty.tree / "Shared/runs")
    run.terminate()
    assert run.communicate(timeout=20)[0] == b"tidied\n"
    assert run.returncode == 5


def test_a_program_that_heeds_no_signal_is_killed_by_the_second(empty):
    (empty.tree / "Shared").mkdir()
    (empty.tree / "Shared").chmod(0o777)
    run = start(empty, "trap '' TERM INT; : > /Shared/runs; while :; do sleep 0.05; done")
    wait_for(empty.tree / "Shared/runs")
    run.terminate()
    time.sleep(0.3)
    run.terminate()
    assert run.wait(20) == 128 + signal.SIGKILL
    assert sorted(entries(empty.tree)) == sorted(["Shared", *TEMPORARY])


def test_a_run_in_which_everything_is_killed_leaves_nothing(empty):
    if int(sh(empty, "ls /proc | grep -c '^[0-9]*$'").stdout) > 20:
        pytest.skip("without namespaces, this would reach processes of the host")
    result = sh(empty, "/run/macroot/admin 'kill -9 -1'; sleep 5")
    assert result.status == 128 + signal.SIGKILL
    assert sorted(entries(empty.tree)) == TEMPORARY


def test_what_a_killed_run_left_the_next_one_takes_away(empty):
    (empty.tree / "Shared").mkdir()
    (empty.tree / "Shared").chmod(0o777)
    run = start(empty, ": > /Shared/runs; exec sleep 60")
    wait_for(empty.tree / "Shared/runs")
    os.killpg(run.pid, signal.SIGKILL)
    run.wait(20)
    assert (empty.tree / "usr").is_dir()
    assert sh(empty, "true").status == 0
    assert sorted(entries(empty.tree)) == sorted(["Shared", *TEMPORARY])


def test_runs_in_one_tree_may_overlap(empty):
    (empty.tree / "Shared").mkdir()
    (empty.tree / "Shared").chmod(0o777)
    runs = [start(empty, f"touch /Shared/{number}; "
                         f"until test -e /Shared/go{number}; do sleep 0.02; done; "
                         "ls /usr/bin/env && touch /Shared/done") for number in (1, 2)]
    for number in (1, 2):
        wait_for(empty.tree / f"Shared/{number}")
    for number, run in enumerate(runs, 1):
        (empty.tree / f"Shared/go{number}").touch()
        assert run.communicate(timeout=20)[0] == b"/usr/bin/env\n"
        assert run.returncode == 0
        wait_for(empty.tree / "Shared/done")
        (empty.tree / f"Shared/go{number}").unlink()
    assert sorted(entries(empty.tree)) == sorted(["Shared", *TEMPORARY])


def test_gnustep_does_not_litter(mac):
    if not os.path.exists("/usr/bin/defaults"):
        pytest.skip("GNUstep's tool `defaults` is not installed")
    before = entries(mac.tree)
    result = sh(mac, "defaults write NSGlobalDomain KS mine && defaults read NSGlobalDomain KS")
    assert result.stdout.strip() == "NSGlobalDomain KS mine"
    assert entries(mac.tree) == before
