"""The shell, the clock, the home, owners, the environment and the program of a run."""

import os
import shutil
import subprocess
import time

import pytest

from tests.macroot.conftest import sh
from tests.support.mac import Mac, macroot


def test_fast_makes_sleep_cost_nothing(mac):
    start = time.monotonic()
    result = sh(mac, "sleep 30; /run/macroot/admin 'sleep 30; echo done'", "--fast")
    assert result.stdout == "allow 0\ndone\n"
    assert time.monotonic() - start < 15


def test_without_it_sleep_sleeps(mac):
    start = time.monotonic()
    sh(mac, "sleep 0.5")
    assert time.monotonic() - start >= 0.5


def test_the_time_inside_stands_still(mac):
    now = "date '+%F %T'"
    then = "2024-03-05 09:07:02"
    result = sh(mac, f"{now}; sleep 1.1; {now}; /run/macroot/admin \"{now}\"", "--at", then)
    assert result.stdout == f"{then}\n{then}\nallow 0\n{then}\n"


def test_the_time_is_local(mac):
    result = sh(mac, "date '+%F %T %z'", "--at", "2024-07-01 00:00:00",
                env={**os.environ, "TZ": "Asia/Tokyo"})
    assert result.stdout == "2024-07-01 00:00:00 +0900\n"


@pytest.mark.parametrize("sanitizer", ["address,undefined", "thread"])
def test_the_time_stands_for_programs_with_a_sanitizer_too(mac, tmp_path, sanitizer):
    if not shutil.which("clang++"):
        pytest.skip("clang++ is not installed")
    source, program = tmp_path / "clock.cpp", tmp_path / "clock"
    source.write_text("""#include <cstdio>
                         #include <ctime>
                         #include <string>
                         int main() { printf("%s\\n", std::to_string(time(nullptr)).c_str()); }""")
    subprocess.run(["clang++", f"-fsanitize={sanitizer}", source, "-o", program], check=True)
    tmp_path.chmod(0o755)
    environment = {**os.environ, "TZ": "UTC", "ASAN_OPTIONS": "detect_leaks=0"}
    if mac.run(program=program, env=environment).status != 0:
        pytest.skip("programs with this sanitizer do not run in this host's Mac roots")
    result = mac.run("--at", "2024-03-05 09:07:02", program=program, timeout=20, env=environment)
    assert (result.status, result.stdout) == (0, "1709629622\n")


def test_files_keep_their_real_dates(mac):
    result = sh(mac, "stat -c %Y /run/alex", "--at", "2001-01-01 00:00:00")
    assert abs(int(result.stdout) - time.time()) < 60


@pytest.mark.parametrize("text", ["2024-03-05", "2024-13-05 09:07:02", "now", "@5"])
def test_a_time_that_is_none_is_refused(mac, text):
    assert sh(mac, "true", "--at", text).status == 2


@pytest.mark.parametrize(
    "options, shell", [((), "bash"), (("--sh", "bash"), "bash"), (("--sh", "dash"), "dash")])
def test_the_shell_is_bash_unless_dash_is_asked_for(mac, options, shell):
    script = "test -n \"$BASH_VERSION\" && echo bash || echo dash"
    result = sh(mac, f"{script}; /run/macroot/admin '{script}'", *options)
    assert result.stdout.split() == [shell, "allow", "0", shell]


@pytest.mark.parametrize("home", [
    "/Users/two  words", "/Users/100%", "/Users/%s%n", "/Users/Zoë 東京", "/Users/quo'te\"s",
    "/Users/~tilde", "/Users/a\\b", "/Users/$HOME", "/h"])
def test_any_name_will_do_for_the_home(mac, home):
    mac.path("/Users/alex").rename(mac.path(home))
    try:
        result = sh(mac, "pwd; echo \"$HOME\"; getent passwd alex | cut -d: -f6; "
                         "/run/macroot/admin 'echo \"$HOME\"'; echo mine > made", "--home", home)
        assert result.stdout == f"{home}\n{home}\n{home}\nallow 0\n{home}\n"
        assert mac.path(f"{home}/made").read_text() == "mine\n"
        mac.remove(f"{home}/made")
    finally:
        mac.path(home).rename(mac.path("/Users/alex"))


def test_a_missing_home_is_not_made(mac):
    result = sh(mac, "pwd; echo $HOME; ls -d $HOME 2>/dev/null", "--home", "/Users/nobody/here")
    assert result.stdout == "/\n/Users/nobody/here\n"
    assert not mac.path("/Users/nobody").exists()


def test_a_home_may_be_read_only(mac):
    mac.path("/Users/alex").chmod(0o555)
    try:
        assert "Permission denied" in sh(mac, "echo mine > made").stderr
    finally:
        mac.path("/Users/alex").chmod(0o755)
    assert not mac.path("/Users/alex/made").exists()


@pytest.mark.parametrize("home", ["alex", "/Users/a:b", "/Users/a\nb", ""])
def test_a_home_that_no_account_can_have_is_refused(mac, home):
    assert sh(mac, "true", "--home", home).status == 2


@pytest.fixture
def foreign(tmp_path):
    """A tree that `new` did not make."""
    foreign = Mac(tmp_path / "foreign")
    for folder in ("/Users/alex/Library", "/Data/deep", "/Data 2"):
        foreign.path(folder).mkdir(parents=True)
    foreign.path("/Data/deep/file").touch()
    foreign.path("/Data/link").symlink_to("/Data 2")
    return foreign


def owners(mac):
    return {line.split("\t")[3]: line.split("\t")[2] for line in mac.manifest()}


def test_owners_stay_as_they_are(foreign, real_users):
    assert sh(foreign, "touch /Users/alex/x /Data/x").status == 1
    assert sh(foreign, "touch /Users/alex/x", "--own", "none").status == 1
    assert set(owners(foreign).values()) == {"0:0"}


def test_what_is_given_to_alex_is_his_with_all_below(foreign, real_users):
    result = sh(foreign, "touch /Data/x /Data/deep/file /Users/alex/x; touch '/Data 2/x'",
                "--own", "/Data", "--own", "/Users/alex")
    assert result.status == 1
    assert {path for path, owner in owners(foreign).items() if owner == "501:20"} == {
        "/Data", "/Data/deep", "/Data/deep/file", "/Data/link", "/Data/x",
        "/Users/alex", "/Users/alex/Library", "/Users/alex/x"}


def test_everything_can_be_given_but_the_hosts_part(foreign, real_users):
    result = sh(foreign, "touch /x && stat -c %u /usr /run /private/etc /dev", "--own", "/")
    assert result.status == 0 and "501" not in result.stdout
    assert set(owners(foreign).values()) == {"501:20"}


def test_giving_what_is_not_there_is_refused(foreign, real_users):
    result = sh(foreign, "true", "--own", "/nowhere")
    assert result.status == 70 and "/nowhere" in result.stderr


def test_only_a_few_variables_reach_the_program(mac):
    passed = {"LANG": "de_DE.UTF-8", "LC_ALL": "C", "TZ": "UTC", "GTEST_FILTER": "a",
              "UBSAN_OPTIONS": "print_stacktrace=1"}
    others = {"SECRET": "mine", "LD_LIBRARY_PATH": "/nowhere", "XDG_RUNTIME_DIR": "/nowhere",
              "HOME": "/nowhere"}
    result = sh(mac, "env", env={**os.environ, **passed, **others})
    told = dict(line.split("=", 1) for line in result.stdout.splitlines())
    assert {name: told.get(name) for name in passed} == passed
    assert "SECRET" not in told and "LD_LIBRARY_PATH" not in told
    assert (told["HOME"], told["XDG_RUNTIME_DIR"]) == ("/Users/alex", "/run/alex/runtime")


def test_a_sanitizers_files_come_along(mac, tmp_path):
    (tmp_path / "rules.txt").write_text("leak:nothing\n")
    tmp_path.chmod(0o755)
    result = sh(mac, "f=${LSAN_OPTIONS#*suppressions=}; cat ${f%%:*}; echo ${LSAN_OPTIONS##*:}",
                env={**os.environ, "LSAN_OPTIONS": f"a=1:suppressions={tmp_path}/rules.txt:b=2"})
    assert result.stdout == "leak:nothing\nb=2\n"


def test_a_program_brings_the_folder_that_it_lies_in(mac, tmp_path):
    program = tmp_path / "my program"
    program.write_text("#!/bin/sh\ncat \"$(dirname \"$0\")/beside\"; echo \"$@\"\n")
    program.chmod(0o755)
    (tmp_path / "beside").write_text("beside\n")
    tmp_path.chmod(0o755)
    result = mac.run(program=program, args=("one", "--", "--two", ""))
    assert result.stdout == "beside\none -- --two \n"


@pytest.mark.parametrize("make", ["missing", "a folder", "not executable", "no program"])
def test_a_program_that_cannot_start_is_said_to(mac, tmp_path, make):
    program = tmp_path / "program"
    if make == "a folder":
        program.mkdir()
    elif make != "missing":
        program.write_bytes(b"\x7fELF nonsense")
        program.chmod(0o755 if make == "no program" else 0o644)
    tmp_path.chmod(0o755)
    result = mac.run(program=program)
    assert result.status == 70 and "program" in result.stderr


def test_the_platform_identifier_is_a_fixed_one(mac):
    told = sh(mac, "cat /run/macroot/platform-uuid /etc/machine-id").stdout.split()
    assert told == ["8F1C2A7E-5D3B-4E96-A0C4-7B2D9E6F1A35", "8f1c2a7e5d3b4e96a0c47b2d9e6f1a35"]


@pytest.mark.parametrize("words", [(), ("run",), ("run", "/nowhere", "--nonsense"), ("nonsense",),
                                   ("run", "--admin", "perhaps", "/"), ("new",)])
def test_wrong_usage_ends_with_2(words):
    assert macroot(*words).returncode == 2


def test_a_tree_that_is_none_is_refused(tmp_path):
    assert macroot("run", tmp_path / "missing", "--", "/bin/true").returncode == 70
