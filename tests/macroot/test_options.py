"""Each option of a run does what it says."""

import os
import plistlib
import shutil
import subprocess
import time

import pytest

from tests.macroot.conftest import sh
from tests.support.mac import Mac, macroot

STORE = "/usr/bin/python3 -ISXutf8 /run/macroot/lib/macroot/inside/keychain_store.py"
PAINT_THE_DISPLAY_RED = """
from ctypes import CDLL, c_ulong, c_void_p
x = CDLL("libX11.so.6")
x.XOpenDisplay.restype = c_void_p
x.XDefaultRootWindow.restype = c_ulong
display = c_void_p(x.XOpenDisplay(None))
root = c_ulong(x.XDefaultRootWindow(display))
x.XSetWindowBackground(display, root, c_ulong(0xFF0000))
x.XClearWindow(display, root)
x.XSync(display, 0)
"""


@pytest.fixture(scope="module")
def namespaces(mac):
    """Skips what cannot be had without namespaces."""
    if mac.run("--web", "200", program="/bin/true").status == 70:
        pytest.skip("this host refuses namespaces: no disk and no network of its own")


# ---- scripts and time

def test_fast_makes_sleep_cost_nothing(mac):
    start = time.monotonic()
    assert sh(mac, "sleep 30; /run/macroot/admin 'sleep 30; echo done'", "--fast").stdout == "allow 0\ndone\n"
    assert time.monotonic() - start < 15


def test_without_it_sleep_sleeps(mac):
    start = time.monotonic()
    sh(mac, "sleep 0.5")
    assert time.monotonic() - start >= 0.5


def test_the_time_inside_stands_still(mac):
    now = "date '+%F %T'"
    result = sh(mac, f"{now}; sleep 1.1; {now}; /run/macroot/admin \"{now}\"", "--at", "2024-03-05 09:07:02")
    assert result.stdout == "2024-03-05 09:07:02\n2024-03-05 09:07:02\nallow 0\n2024-03-05 09:07:02\n"


def test_the_time_is_local(mac):
    result = sh(mac, "date '+%F %T %z'", "--at", "2024-07-01 00:00:00", env={**os.environ, "TZ": "Asia/Tokyo"})
    assert result.stdout == "2024-07-01 00:00:00 +0900\n"


@pytest.mark.parametrize("sanitizer", ["address,undefined", "thread"])
def test_the_time_stands_for_programs_with_a_sanitizer_too(mac, tmp_path, sanitizer):
    if not shutil.which("clang++"):
        pytest.skip("clang++ is not installed")
    source = tmp_path / "clock.cpp"
    source.write_text("""#include <cstdio>
                         #include <ctime>
                         #include <string>
                         int main() { printf("%s\\n", std::to_string(time(nullptr)).c_str()); }""")
    subprocess.run(["clang++", f"-fsanitize={sanitizer}", source, "-o", tmp_path / "clock"], check=True)
    tmp_path.chmod(0o755)
    result = mac.run("--at", "2024-03-05 09:07:02", program=tmp_path / "clock", timeout=20,
                     env={**os.environ, "TZ": "UTC", "ASAN_OPTIONS": "detect_leaks=0"})
    assert (result.status, result.stdout) == (0, "1709629622\n")


def test_files_keep_their_real_dates(mac):
    result = sh(mac, "stat -c %Y /run/alex", "--at", "2001-01-01 00:00:00")
    assert abs(int(result.stdout) - time.time()) < 60


@pytest.mark.parametrize("text", ["2024-03-05", "2024-13-05 09:07:02", "now", "@5"])
def test_a_time_that_is_none_is_refused(mac, text):
    assert sh(mac, "true", "--at", text).status == 2


@pytest.mark.parametrize("options, shell", [((), "bash"), (("--sh", "bash"), "bash"), (("--sh", "dash"), "dash")])
def test_the_shell_is_bash_unless_dash_is_asked_for(mac, options, shell):
    script = "test -n \"$BASH_VERSION\" && echo bash || echo dash"
    assert sh(mac, script, *options).stdout.split() == [shell]
    assert sh(mac, f"/run/macroot/admin '{script}'", *options).stdout.split() == ["allow", "0", shell]


# ---- home and owners

@pytest.mark.parametrize("home", ["/Users/two  words", "/Users/100%", "/Users/%s%n", "/Users/Zoë 東京",
                                  "/Users/quo'te\"s", "/Users/~tilde", "/Users/a\\b", "/Users/$HOME", "/h"])
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
    assert {owner for path, owner in owners(foreign).items() if path != "/private/tmp"} == {"501:20"}


def test_giving_what_is_not_there_is_refused(foreign, real_users):
    result = sh(foreign, "true", "--own", "/nowhere")
    assert result.status == 70 and "/nowhere" in result.stderr


# ---- faults

def test_pre_runs_as_root_before_the_program(mac, real_users):
    try:
        result = sh(mac, "touch made; ls -d /Library/pre", "--pre",
                    "id -u; mkdir /Library/pre; chmod 500 /Users/alex; chown 0 /Users/alex")
        assert (result.status, result.stdout) == (0, "/Library/pre\n")
        assert result.stderr.startswith("0\n") and "made" in result.stderr
    finally:
        sh(mac, "true", "--pre", "rmdir /Library/pre; chown 501 /Users/alex; chmod 755 /Users/alex")


@pytest.mark.parametrize("content, mode", [("#!/usr/bin/python3\nprint(1 + 1)\n", 0o755),
                                           ("#!/usr/bin/python3\necho 2\n", 0o644), ("echo 2\n", 0o755)])
def test_pre_may_be_a_file(mac, tmp_path, content, mode):
    script = tmp_path / "a script"
    script.write_text(content)
    script.chmod(mode)
    tmp_path.chmod(0o755)
    assert sh(mac, "true", "--pre", script).stderr == "2\n"


def test_a_pre_script_that_fails_ends_the_run(mac):
    result = sh(mac, "echo ran", "--pre", "exit 3")
    assert (result.status, result.stdout) == (70, "")
    assert "status 3" in result.stderr


def test_a_full_disk_has_that_much_room_beside_what_it_holds(mac, namespaces):
    result = sh(mac, "head -c 8192 /dev/zero > a && echo fits; cat Documents/*; "
                     "head -c 1 /dev/zero > b; wc -c < b; rm b", "--full", "/Users/alex=8192")
    assert result.stdout == "fits\nBread\nApples\n0\n"
    assert "No space left on device" in result.stderr
    assert mac.path("/Users/alex/a").stat().st_size == 8192
    mac.remove("/Users/alex/a")


@pytest.mark.parametrize("folder", ["/Users/Shared/Keystrel/Vaults", "/Users/Shared/Keystrel", "/tmp"])
def test_a_disk_may_have_no_room_at_all(mac, namespaces, folder):
    result = sh(mac, f"echo x > {folder}/x || rm {folder}/x", "--full", f"{folder}=0")
    assert "No space left on device" in result.stderr


def test_what_a_disk_holds_is_kept_as_it_is(mac, namespaces):
    mac.path("/Users/alex/kept").mkdir()
    mac.path("/Users/alex/kept/link").symlink_to("nowhere")
    os.mkfifo(mac.path("/Users/alex/kept/pipe"))
    mac.path("/Users/alex/kept").chmod(0o2701)
    before = mac.manifest()
    sh(mac, "rm -r Documents; mkdir made", "--full", "/Users/alex=65536", "--full", "/Users/Shared=4096")
    after = mac.manifest()
    assert [line.split("\t")[3] for line in before if line not in after] == [
        "/Users/alex/Documents", "/Users/alex/Documents/Shopping list.txt"]
    assert [line.split("\t")[3] for line in after if line not in before] == ["/Users/alex/made"]


def test_a_disk_within_a_disk(mac, namespaces):
    result = sh(mac, "echo 1 > one; echo 2 > Library/two; df --output=avail -B1 . Library | tail -n 2",
                "--full", "/Users/alex/Library=12288", "--full", "/Users/alex=8192")
    assert result.stdout.split() == ["4096", "8192"]
    assert mac.path("/Users/alex/Library/two").read_text() == "2\n"
    assert mac.path("/Users/alex/one").read_text() == "1\n"


def test_a_missing_folder_may_be_a_disk_and_goes_when_it_stays_empty(mac, namespaces):
    assert sh(mac, "test -d /Library/disk", "--full", "/Library/disk=4096").status == 0
    assert not mac.path("/Library/disk").exists()
    sh(mac, "/run/macroot/admin 'echo hi > /Library/disk/x'", "--full", "/Library/disk=4096")
    assert mac.path("/Library/disk/x").read_text() == "hi\n"
    mac.remove("/Library/disk")


@pytest.mark.parametrize("text", ["/Users/alex", "alex=5", "/Users/alex=5k", "/Users/alex=-1"])
def test_a_disk_without_a_size_is_refused(mac, text):
    assert sh(mac, "true", "--full", text).status == 2


# ---- the web

def test_every_host_name_leads_to_a_server_that_answers_with_the_status(mac, namespaces):
    ask = """
import sys, urllib.request, urllib.error
for method, url in ("HEAD", "http://www.google.com/"), ("GET", "http://a.b.c.example:80/x?y"), ("HEAD", "http://single/"):
    try:
        print(urllib.request.urlopen(urllib.request.Request(url, method=method)).status)
    except urllib.error.HTTPError as error:
        print(error.code)
"""
    for status in ("200", "204", "404", "500"):
        result = mac.run("--web", status, program="/usr/bin/python3", args=("-c", ask))
        assert result.stdout.split() == [status] * 3, result.stderr


def test_without_a_web_there_is_no_server(mac, namespaces):
    ask = "import socket; socket.create_connection(('127.0.0.1', 80), 1)"
    outside = subprocess.run(["/usr/bin/python3", "-c", ask], capture_output=True, check=False)
    assert mac.run(program="/usr/bin/python3", args=("-c", ask)).status == outside.returncode


@pytest.mark.parametrize("status", ["100", "600", "ok"])
def test_a_status_that_ends_no_request_is_refused(mac, status):
    assert sh(mac, "true", "--web", status).status == 2


# ---- the display

def test_a_private_display(mac):
    result = mac.run("--display", program="/usr/bin/python3", args=("-c", PAINT_THE_DISPLAY_RED))
    assert (result.status, result.stderr) == (0, "")


def test_a_display_on_a_network_of_its_own(mac, namespaces):
    result = mac.run("--display", "--web", "200", program="/usr/bin/python3", args=("-c", PAINT_THE_DISPLAY_RED))
    assert (result.status, result.stderr) == (0, "")


def test_without_one_there_is_no_display(mac):
    assert sh(mac, "echo \"<$DISPLAY>\"", env={**os.environ, "DISPLAY": ":0"}).stdout == "<>\n"


def test_a_screenshot_shows_what_was_there_at_the_end(mac, tmp_path):
    picture = tmp_path / "picture.png"
    mac.run("--screenshot", picture, program="/usr/bin/python3", args=("-c", PAINT_THE_DISPLAY_RED))
    shown = subprocess.run(["convert", picture, "-format", "%wx%h %[pixel:p{10,10}]", "info:"],
                           capture_output=True, text=True, check=True).stdout
    assert shown == "1280x1024 srgb(255,0,0)" or shown == "1280x1024 red"


# ---- the keychain

def test_the_keychain_is_read_before_and_written_after(mac, tmp_path):
    items = {"Safari Extensions List": bytes(range(256)), "Zoë": b"", "big": os.urandom(100_000)}
    keychain = tmp_path / "keychain.plist"
    keychain.write_bytes(plistlib.dumps(items))
    result = sh(mac, f"{STORE} read > /tmp/read && wc -c < /tmp/read && rm /tmp/read && "
                     f"echo '{{\"Zoë\": \"bmV3\", \"added\": \"AP8=\"}}' | {STORE} fill",
                "--keychain", keychain)
    assert (result.status, result.stderr) == (0, "")
    assert int(result.stdout) > 100_000
    assert plistlib.loads(keychain.read_bytes()) == {**items, "Zoë": b"new", "added": b"\0\xff"}


def test_libsecret_finds_an_item_by_its_label(mac, tmp_path):
    keychain = tmp_path / "keychain.plist"
    keychain.write_bytes(plistlib.dumps({"A label": b"its data"}))
    result = sh(mac, f"{STORE} read", "--keychain", keychain)
    assert result.stdout == '{"A label": "aXRzIGRhdGE="}'


def test_a_missing_keychain_file_is_an_empty_keychain(mac, tmp_path):
    keychain = tmp_path / "keychain.plist"
    assert sh(mac, f"{STORE} read", "--keychain", keychain).stdout == "{}"
    assert plistlib.loads(keychain.read_bytes()) == {}
    assert sh(mac, f"{STORE} read").stdout == "{}"


@pytest.mark.parametrize("items", [{}, {"A label": b"its data"}])
def test_a_locked_keychain_refuses_and_stays_as_it_is(mac, tmp_path, items):
    keychain = tmp_path / "keychain.plist"
    keychain.write_bytes(plistlib.dumps(items, fmt=plistlib.FMT_BINARY))
    before = keychain.read_bytes()
    result = sh(mac, f"{STORE} read", "--keychain", keychain, "--keychain-locked")
    assert (result.status, result.stdout) == (1, "")
    assert keychain.read_bytes() == before
    assert sh(mac, f"{STORE} read", "--keychain-locked").status == 1


@pytest.mark.parametrize("content", [b"nonsense", plistlib.dumps(["array"]), plistlib.dumps({"a": "text"})])
def test_a_file_that_is_no_keychain_is_refused(mac, tmp_path, content):
    (tmp_path / "keychain").write_bytes(content)
    result = sh(mac, "true", "--keychain", tmp_path / "keychain")
    assert result.status == 70 and "keychain" in result.stderr
    assert (tmp_path / "keychain").read_bytes() == content


# ---- the environment and the program

def test_only_a_few_variables_reach_the_program(mac):
    passed = {"LANG": "de_DE.UTF-8", "LC_ALL": "C", "TZ": "UTC", "GTEST_FILTER": "a", "UBSAN_OPTIONS": "print_stacktrace=1"}
    others = {"SECRET": "mine", "LD_LIBRARY_PATH": "/nowhere", "XDG_RUNTIME_DIR": "/nowhere", "HOME": "/nowhere"}
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
    assert mac.run(program=program, args=("one", "--", "--two", "")).stdout == "beside\none -- --two \n"


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
