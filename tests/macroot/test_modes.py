"""The Mac root on every kind of host: as root, as a user, with fewer rights, without namespaces.

Each kind is made out of this host, in namespaces of the test's own; nothing changes for others.
"""

import contextlib
import fcntl
import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import time

import pytest

from tests.support.mac import MACROOT

USER = 54321
HELPER = pathlib.Path(__file__).with_name("fewer-rights")

PATIENT = "sleep 59.0625"  # unlike any other

# name -> (what leads there, whether alex and root are two users there, whether it has namespaces)
KINDS = {
    "as we are": ([], None, None),
    "root without the right to mount": (["no-mounts"], True, True),
    "root without namespaces": (["no-namespaces", "no-mounts"], True, False),
    "root without any right": (["no-namespaces", "no-rights"], False, False),
    "user with subordinate ids": (["subordinate-ids", "user"], True, True),
    "user without subordinate ids": (["user"], False, True),
    "user without namespaces": (["no-namespaces", "user"], False, False),
}


class Host:
    """A kind of host, with a typical machine on it."""

    def __init__(self, ways, folder):
        self._prefix = [HELPER, *ways, "--"] if ways else []
        self.folder = folder
        self.tree = folder / "mac"
        # A copy that any user may read: the source may lie in a folder of one user's own.
        source = MACROOT.parents[1]
        self._macroot = folder / "source/scripts/macroot"
        for package in ("linux/macroot", "tests/machines"):
            shutil.copytree(source / package, folder / "source" / package)
        self._macroot.parent.mkdir()
        shutil.copy(MACROOT, self._macroot)

    def macroot(self, *words):
        command = [*self._prefix, self._macroot, *words]
        return subprocess.run(command, capture_output=True, text=True, timeout=60, check=False,
                              cwd=self.folder)

    def start(self, script):
        """A run that goes on beside the test, in a process group of its own."""
        return subprocess.Popen(
            [*self._prefix, self._macroot, "run", self.tree, "--", "/bin/sh", "-c", script],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True,
            cwd=self.folder)

    def sh(self, script, *options):
        return self.macroot("run", *options, self.tree, "--", "/bin/sh", "-c", script)

    def manifest(self):
        lines = self.macroot("manifest", self.tree).stdout.splitlines()
        return {line.split("\t")[3]: line.split("\t")[:3] for line in lines}


# One worker makes a kind for all of its tests. Those without namespaces share one, and see no scratch
# folder of another's in /tmp.
@pytest.fixture(scope="module", params=[
    pytest.param(name, id=name.replace(" ", "-"),
                 marks=pytest.mark.xdist_group("no namespaces" if namespaces is False else name))
    for name, (_, _, namespaces) in KINDS.items()])
def kind(request):
    ways, two_users, has_namespaces = KINDS[request.param]
    if ways and (os.geteuid() != 0 or subprocess.run([HELPER, *ways, "--", "true"], check=False,
                                                     capture_output=True).returncode):
        pytest.skip(f"this host cannot be made into one of the kind: {request.param}")
    # Where everybody can get: alex may be a user of the host like any other.
    folder = pathlib.Path(tempfile.mkdtemp(prefix="macroot-test-", dir="/tmp"))
    folder.chmod(0o777)
    host = Host(ways, folder)
    made = host.macroot("new", host.tree, "--machine", "clean")
    assert made.returncode == 0, made.stderr
    yield host, two_users, has_namespaces
    assert host.macroot("delete", host.tree).returncode == 0
    shutil.rmtree(folder)


def test_the_boundary_holds(kind):
    host, two_users, _ = kind
    before = host.manifest()
    result = host.sh("""
        id -un; touch /Library/x || echo kept out
        mkdir /Applications/x || echo kept out
        echo mine > /Users/alex/mine && cat /Users/alex/mine
        /run/macroot/admin 'id -un; mkdir /Library/made; ls -ld /Library/made | cut -c1-10'
        touch /Library/made/x || echo kept out
    """)
    assert result.stdout.splitlines() == ["alex", "kept out", "kept out", "mine",
                                          "allow 0", "root", "drwxr-xr-x", "kept out"]
    after = host.manifest()
    assert sorted(set(after) - set(before)) == ["/Library/made", "/Users/alex/mine"]
    assert {path: after[path] for path in before} == before
    if two_users is not None:
        assert result.stderr.count("macroot: reduced: ") == (0 if two_users else 1)
        assert after["/Library/made"] == ["d", "0755", "0:0" if two_users else "501:20"]
        assert before["/Library"][2] == ("0:0" if two_users else "501:20")
        assert after["/Users/alex/mine"] == ["f", "0644", "501:20"]


def test_a_prompt_that_is_not_allowed_does_nothing(kind):
    host, _, _ = kind
    ask = "/run/macroot/admin 'mkdir /Library/never'"
    result = host.sh(f"{ask}; {ask}; ls -d /Library/never || echo none",
                     "--admin", "cancel", "--admin", "refuse")
    assert result.stdout == "cancel 0\nrefuse 0\nnone\n"


def test_the_options_work_or_say_that_they_cannot(kind):
    host, _, has_namespaces = kind
    for option, value in (("--full", "/Users/alex/Library=4096"), ("--web", "200")):
        result = host.sh("echo ran", option, value)
        if result.returncode == 70:
            assert not has_namespaces and option in result.stderr and result.stdout == ""
        else:
            assert has_namespaces in (True, None) and result.stdout == "ran\n"
    result = host.sh("date +%F; sleep 30; test -n \"$DISPLAY\" && cd ~/Library && pwd; exit 5",
                     "--at", "2020-02-02 02:02:02", "--fast", "--display", "--own", "/Users/alex",
                     "--keychain", host.folder / "keychain", "--pre", "id -u; ls -d /Users/alex")
    assert (result.returncode, result.stdout) == (5, "2020-02-02\n/Users/alex/Library\n")
    assert result.stderr.endswith("0\n/Users/alex\n")
    assert (host.folder / "keychain").exists()


def test_the_run_ends_with_its_program(kind):
    host, _, _ = kind
    result = host.sh("sleep 50 & trap '' TERM; (sleep 50 &) ; kill -9 $$")
    assert result.returncode == 128 + 9
    assert result.stdout == "" and "proot" not in result.stderr


def test_a_killed_run_leaves_the_host_nothing_that_the_next_one_does_not_remove(kind):
    host, _, has_namespaces = kind
    shared = host.tree / "Users/Shared/Keystrel"
    run = host.start(f": > /Users/Shared/Keystrel/runs; exec {PATIENT}")
    while not (shared / "runs").exists():
        assert run.poll() is None
        time.sleep(0.01)
    os.killpg(run.pid, signal.SIGKILL)
    run.wait()
    left = set(pathlib.Path("/tmp").glob("macroot-run-*"))
    end = time.monotonic() + 10
    while is_running(PATIENT):
        assert time.monotonic() < end, "the killed run's program goes on"
        time.sleep(0.02)
    assert host.sh("rm /Users/Shared/Keystrel/runs").returncode == 0
    if has_namespaces is not False:
        return  # it makes no such folder, and others' are theirs
    owner = host.tree.stat().st_uid
    still_there = left & set(pathlib.Path("/tmp").glob("macroot-run-*"))
    assert [path for path in still_there if path.stat().st_uid == owner and not in_use(path)] == []


def is_running(command):
    """Whether a process of this host has exactly that command line."""
    wanted = command.replace(" ", "\0").encode() + b"\0"
    for process in pathlib.Path("/proc").glob("[0-9]*/cmdline"):
        with contextlib.suppress(OSError):
            if process.read_bytes() == wanted:
                return True
    return False


def in_use(scratch):
    """Whether a run that goes on elsewhere holds it."""
    descriptor = os.open(scratch, os.O_RDONLY)
    try:
        fcntl.flock(descriptor, fcntl.LOCK_SH | fcntl.LOCK_NB)
        return False
    except BlockingIOError:
        return True
    finally:
        os.close(descriptor)


def test_alex_has_folders_of_his_own_outside_the_tree(kind):
    host, _, _ = kind
    before = host.manifest()
    result = host.sh("touch /run/alex/x /run/alex/tmp/x && echo his; "
                     "rm -rf /run/macroot; touch /etc/x; "
                     "mv /run/macroot /run/x; touch /run/x; ls /run/macroot/admin")
    assert result.stdout == "his\n/run/macroot/admin\n"
    assert result.stderr.count("Permission denied") >= 3
    assert host.manifest() == before


def test_nobody_can_make_one_without_bwrap_and_proot(tmp_path):
    """Where neither is installed, or neither may work."""
    if os.geteuid() != 0 or subprocess.run([HELPER, "no-tools", "--", "true"], check=False,
                                           capture_output=True).returncode:
        pytest.skip("this host does not let us hide its programs")
    (tmp_path / "mac").mkdir()
    words = ["run", tmp_path / "mac", "--", "/bin/true"]
    result = subprocess.run([HELPER, "no-tools", "--", MACROOT, *words],
                            capture_output=True, text=True, check=False)
    assert result.returncode == 70
    assert "bubblewrap" in result.stderr and "proot" in result.stderr
