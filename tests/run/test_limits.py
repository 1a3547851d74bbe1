"""The run where something is scarce or odd: it ends with status 0, and leaves what it always leaves."""

import pytest

from tests.support import build, log
from tests.support.mac import LOGS, Mac

STANDING_TIME = "2024-03-05 09:07:02"

# Four folders, as a name may have 255 bytes only.
LONG_HOME = "/Users" + "".join("/" + letter * 222 for letter in "wxyz")


def run(mac, commands="true", at=STANDING_TIME, home="/Users/alex"):
    """A run after shell commands; what it wrote to the console."""
    result = mac.run("--fast", "--at", at, "--home", home, program=build.program("limited-run"), args=(commands,))
    assert (result.status, result.stderr) == (0, "")
    return result.stdout


def files(mac, home="/Users/alex"):
    """All but the logs, as the manifest tells it of a usual home."""
    lines = [line.replace("\t" + home, "\t/Users/alex") for line in mac.manifest()]
    above = {"/".join(home.split("/")[:depth]) for depth in range(3, home.count("/") + 1)}
    return sorted(line for line in lines if line.split("\t")[3] not in above and LOGS not in line)


def messages(mac):
    return log.messages(mac.log_text())


@pytest.fixture(scope="module")
def usual(tmp_path_factory):
    """A Mac after a run that nothing limits."""
    mac = Mac.new("typical", tmp_path_factory.mktemp("usual"))
    run(mac)
    return mac


@pytest.fixture
def mac(tmp_path):
    return Mac.new("typical", tmp_path)


# LeakSanitizer needs more descriptors than that, where the build has it.
FEW_DESCRIPTORS = "export ASAN_OPTIONS=$ASAN_OPTIONS:detect_leaks=0; ulimit -n 8"


@pytest.mark.parametrize("commands", [FEW_DESCRIPTORS, "ulimit -s 512", "exec >/dev/full"],
                         ids=["8 descriptors", "a stack of 512 kB", "a full device as stdout"])
def test_a_limit_changes_nothing(usual, mac, commands):
    run(mac, commands)
    assert files(mac) == files(usual)
    assert messages(mac) == messages(usual)


def test_a_umask_that_takes_everything_takes_the_log_only(usual, mac):
    assert run(mac, "umask 0777") == ""
    assert files(mac) == files(usual)
    assert (mac.path(LOGS).stat().st_mode & 0o777, list(mac.path(LOGS).iterdir())) == (0, [])


@pytest.mark.parametrize("at, name", [("1970-01-01 00:00:00", "1970_1_1_0_0_0"), ("2040-02-29 23:59:59", "2040_2_29_23_59_59")])
def test_a_clock_of_long_ago_or_far_away(usual, mac, at, name):
    run(mac, at=at)
    assert files(mac) == files(usual)
    assert [path.name for path in mac.path(LOGS).iterdir()] == [name + ".log"]
    assert messages(mac) == messages(usual)


def test_without_a_shared_folder_there_is_no_log_and_the_rest_is_done(usual, mac):
    mac.remove("/Users/Shared")
    assert run(mac) == ""
    assert files(mac) == [line for line in files(usual) if "/Users/Shared" not in line]


def test_a_home_of_900_characters(usual, mac):
    assert len(LONG_HOME) == 898
    home = mac.path(LONG_HOME)
    home.parent.mkdir(parents=True)
    mac.path("/Users/alex").rename(home)
    run(mac, home=LONG_HOME)
    assert files(mac, LONG_HOME) == files(usual)
    assert [(level, text.replace(LONG_HOME, "/Users/alex")) for level, text in messages(mac)] == messages(usual)
