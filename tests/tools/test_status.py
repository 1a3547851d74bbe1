"""KSStatus: what it tells of a machine, in what form, and that it changes nothing by telling."""
import contextlib
import json
import os
import pty
import re
import subprocess
from pathlib import Path

import jsonschema
import pytest

from tests.support import build
from tests.support.mac import LOGS, Mac

ROOT = Path(__file__).parents[2]
SCHEMA = json.loads((ROOT / "docs/ksstatus.schema.json").read_text())

SUPPORT = "/Users/alex/Library/Application Support"
CHROME = f"{SUPPORT}/Google/Chrome"
PREFERENCES = f"{CHROME}/Default/Preferences"
HOST = "/Library/Google/Chrome/NativeMessagingHosts/com.corvendale.kschromena.json"
DESCRIPTOR = "/Library/Application Support/Google/Chrome/External Extensions/kmcoedhplnbajgfiehkcpamdobnlgjie.json"
EDGE_HOST = f"{SUPPORT}/Microsoft Edge/NativeMessagingHosts/com.corvendale.kschromena.json"
FIREFOX_HOST = f"{SUPPORT}/Mozilla/NativeMessagingHosts/com.corvendale.ksnative.json"
REGISTRY = "/Users/alex/Library/Safari/Extensions/Extensions.plist"
SAFARI = "/Users/alex/Library/Preferences/com.apple.Safari.plist"
SETTINGS = "/Users/Shared/Keystrel/KSSettings.plist"
AT = "2024-03-05 09:07:02"


def tell(mac, *arguments, status=None):
    result = mac.run("--at", AT, program=build.program("KSStatus"), args=arguments)
    assert result.stderr == ""
    assert status is None or result.status == status, result.stdout
    return result.stdout


def report(mac, *arguments, status=None):
    """The report as an object that the schema admits, and whose status is the program's."""
    result = mac.run("--at", AT, program=build.program("KSStatus"), args=("--json", *arguments))
    assert result.stderr == ""
    told = json.loads(result.stdout)
    jsonschema.validate(told, SCHEMA, cls=jsonschema.Draft7Validator)
    assert told["status"] == result.status
    assert status is None or result.status == status, result.stdout
    return told


def browsers(told):
    return {each["name"]: each for each in told["browsers"]}


def faults(told, browser, role):
    return [fault for file in browsers(told)[browser]["files"] if file["role"] == role for fault in file["faults"]]


def here(*arguments, **options):
    """On this host, which is no Mac."""
    return subprocess.run([build.program("KSStatus"), *arguments], capture_output=True, text=True, timeout=60, **options)


def run_on_shipped(folder):
    mac = Mac.new("shipped", folder)
    assert mac.run("--at", AT).status == 0
    return mac


@pytest.fixture(scope="module")
def well(tmp_path_factory):
    """A machine where a run has made all well: for tests that leave it as it is."""
    return run_on_shipped(tmp_path_factory.mktemp("well"))


@pytest.fixture
def shipped(tmp_path):
    """The same, for a test to change."""
    return run_on_shipped(tmp_path)


@contextlib.contextmanager
def holding(mac, content, *files):
    """Files that hold something else for a while."""
    before = {file: mac.path(file).read_bytes() for file in files}
    try:
        for file in files:
            mac.path(file).write_bytes(content)
        yield
    finally:
        for file, was in before.items():
            mac.path(file).write_bytes(was)


# The command line.

def test_the_version_is_the_projects():
    version = re.search(r"^project\(\w+ VERSION ([\d.]+)", (ROOT / "CMakeLists.txt").read_text(), re.MULTILINE)[1]
    told = here("--version")
    assert (told.returncode, told.stdout, told.stderr) == (0, f"KSStatus {version}\n", "")


def test_help_is_no_error():
    told = here("--help")
    assert (told.returncode, told.stderr) == (0, "") and told.stdout.startswith("usage: KSStatus [OPTION...]\n")


@pytest.mark.parametrize("arguments", [("",), ("chrome",), ("--unknown",), ("-j",), ("--plan=both",), ("--plan=",),
                                       ("--plan", "allowed"), ("--json=1",)], ids=" ".join)
def test_wrong_usage_is_told_on_standard_error(arguments):
    told = here(*arguments)
    assert (told.returncode, told.stdout) == (2, "")
    assert re.fullmatch(r"KSStatus: .+", told.stderr.partition("\n")[0]) and "usage: KSStatus" in told.stderr


def test_an_output_that_cannot_be_written_is_no_report():
    with open("/dev/full", "w") as full:
        told = subprocess.run([build.program("KSStatus"), "--help"], stdout=full, stderr=subprocess.PIPE, text=True)
    assert (told.returncode, told.stderr) == (3, "KSStatus: the output could not be written\n")


@pytest.mark.parametrize("environment, coloured", [({}, True), ({"NO_COLOR": "1"}, False)])
def test_colour_is_for_terminals(tmp_path, environment, coloured):
    terminal, slave = pty.openpty()
    surroundings = {key: value for key, value in os.environ.items() if key != "NO_COLOR"}
    subprocess.run([build.program("KSStatus")], stdout=slave, env={**surroundings, "HOME": str(tmp_path), **environment},
                   timeout=60)
    os.close(slave)
    assert (b"\x1b[" in os.read(terminal, 1 << 16)) == coloured
    assert "\x1b" not in here(env={**surroundings, "HOME": str(tmp_path)}).stdout


# It looks, and touches nothing.

def stamps(mac):
    """Every time stamp but that of the last look, and all else that lstat tells."""
    found = {}
    for folder, folders, files in os.walk(mac.tree):
        for path in (os.path.join(folder, name) for name in folders + files):
            info = os.lstat(path)
            found[path] = (info.st_mode, info.st_uid, info.st_gid, info.st_ino, info.st_size, info.st_mtime_ns, info.st_ctime_ns)
    return found


@pytest.mark.parametrize("machine", ["typical", "no-product"])
@pytest.mark.parametrize("arguments", [(), ("--json", "--plan")], ids=["report", "plan"])
def test_nothing_is_changed_not_even_a_time_stamp(tmp_path, machine, arguments):
    mac = Mac.new(machine, tmp_path)
    mac.run(program="/bin/true")  # makes the mount points
    before = stamps(mac)
    mac.run(program="/bin/true")
    by_the_mac = {path for path, stamp in stamps(mac).items() if stamp != before.get(path)}
    before = stamps(mac)
    tell(mac, *arguments)
    after = stamps(mac)
    assert before.keys() == after.keys()
    changed = {path for path in before if before[path] != after[path]}
    assert changed <= by_the_mac
    assert not [path for path in by_the_mac if "/Users" in path.removeprefix(str(mac.tree))]


# Browsers.

def test_all_is_well_after_a_run(well):
    told = report(well, status=0)
    assert {name: (each["verdict"], each["installed"], each["integrated"], each["wouldChange"], each["leftovers"])
            for name, each in browsers(told).items()} == {
        name: ("well", True, True, False, [])
        for name in ("Safari", "Firefox", "Google Chrome", "Microsoft Edge")}
    assert told["closed"] == []


def test_all_is_well_after_a_run_that_was_refused(tmp_path):
    mac = Mac.new("shipped", tmp_path)
    mac.path(HOST).parent.chmod(0o777)  # else Chrome's host manifest needs rights
    mac.run("--admin", "refuse")
    told = browsers(report(mac))
    assert told["Google Chrome"]["verdict"] == "well"
    assert told["Google Chrome"]["files"][1]["path"].startswith(CHROME)


def test_browsers_are_told_with_place_and_version(shipped):
    shipped.remove("/Applications/Microsoft Edge.app")
    told = browsers(report(shipped))
    assert (told["Firefox"]["path"], told["Firefox"]["version"]) == ("/Applications/Firefox.app", "1.0")
    assert (told["Microsoft Edge"]["installed"], told["Microsoft Edge"]["verdict"]) == (False, "not installed")
    assert not any(each["running"] for each in told.values())


def test_a_browser_that_is_open_is_running(shipped, tmp_path):
    opening = tmp_path / "open-chrome"
    opening.write_text('#!/bin/sh\n"/Applications/Google Chrome.app/Contents/MacOS/Google Chrome" >/dev/null 2>&1 &\n')
    opening.chmod(0o755)
    result = shipped.run("--pre", opening, program=build.program("KSStatus"), args=("--json",))
    running = {name for name, each in browsers(json.loads(result.stdout)).items() if each["running"]}
    assert running == {"Google Chrome"}


def test_what_earlier_versions_left_is_named(tmp_path):
    mac = Mac.new("typical", tmp_path)
    told = browsers(report(mac, status=1))
    assert told["Google Chrome"]["verdict"] == "dead"
    left = {name: {each["path"] for each in browser["leftovers"]} for name, browser in told.items()}
    assert "/Library/Internet Plug-Ins/npKSPlugin.bundle" in left["Google Chrome"]
    assert f"{SUPPORT}/Firefox/Profiles/ab12cd34.default/extensions.rdf" in left["Firefox"]
    assert "/Users/alex/Library/Internet Plug-Ins/KeystrelSafari64.webplugin" in left["Safari"]


def test_people_read_short_paths_and_one_line_for_a_folder_that_goes(tmp_path):
    told = tell(Mac.new("typical", tmp_path), status=1)
    assert "      removed  ~/Library/Internet Plug-Ins/KeystrelSafari64.webplugin\n" in told
    assert "KeystrelSafari64.webplugin/" not in told and "/Users/alex/Library/Internet" not in told


def edited(mac, file, edit):
    """The bytes that `edit` makes of a JSON file: bytes as they are, else members to set or (...) to take out."""
    if isinstance(edit, bytes):
        return edit
    members = {**json.loads(mac.path(file).read_text()), **edit}
    return json.dumps({key: value for key, value in members.items() if value is not ...}).encode()


ORIGIN = "chrome-extension://kmcoedhplnbajgfiehkcpamdobnlgjie/"
DEAD = {
    "no JSON": (HOST, b"{", "it holds no JSON object"),
    "a list": (HOST, b"[]", "it holds no JSON object"),
    "another name": (HOST, {"name": "com.example"}, '"name" is not the file\'s'),
    "a number for a name": (HOST, {"name": 7}, '"name" is not the file\'s'),
    "no description": (HOST, {"description": ...}, '"description" is no text'),
    "another type": (HOST, {"type": "pipe"}, '"type" is not "stdio"'),
    "a relative path": (HOST, {"path": "Keystrel"}, '"path" is no absolute path'),
    "a list for a path": (HOST, {"path": []}, '"path" is no absolute path'),
    "a program that is not there": (HOST, {"path": "/nowhere"}, "the program is not there: /nowhere"),
    "a program that is not for this user": (HOST, {"path": SETTINGS}, f"this user may not execute the program: {SETTINGS}"),
    "origins that are none": (HOST, {"allowed_origins": {}}, '"allowed_origins" is no list'),
    "a malformed origin": (HOST, {"allowed_origins": [ORIGIN, "chrome-extension://*/"]},
                           'an entry of "allowed_origins" is malformed: chrome-extension://*/'),
    "origins of others": (HOST, {"allowed_origins": [ORIGIN.replace("k", "a")]},
                          f'"allowed_origins" does not name the extension {ORIGIN}'),
    "extensions of others": (FIREFOX_HOST, {"allowed_extensions": []},
                             '"allowed_extensions" does not name the extension Keystrel@corvendale.com'),
    "a descriptor without an address": (DESCRIPTOR, b'{ "external_update_url": "http://example.org" }',
                                        '"external_update_url" is no https address'),
    "a descriptor with another key": (DESCRIPTOR, b'{ "external_update_url": "https://example.org", "x": 1 }',
                                      'it has other keys than "external_update_url"'),
}


@pytest.mark.parametrize("case", DEAD)
def test_a_file_that_a_browser_would_refuse_is_dead(well, case):
    path, edit, fault = DEAD[case]
    with holding(well, edited(well, path, edit), path):
        told = report(well, status=1)
    (dead,) = [each for each in told["browsers"] if each["verdict"] == "dead"]
    assert [file["path"] for file in dead["files"] if file["faults"]] == [path]
    assert fault in [fault for file in dead["files"] for fault in file["faults"]]


def test_a_manifest_that_others_may_write_is_a_fault(shipped):
    shipped.path(EDGE_HOST).chmod(0o666)
    assert faults(report(shipped, status=1), "Microsoft Edge", "host manifest") == ["the file can be written by other users"]


def test_a_missing_file_is_no_integration(shipped):
    shipped.remove(DESCRIPTOR)
    assert browsers(report(shipped, status=1))["Google Chrome"]["verdict"] == "not integrated"


@pytest.mark.parametrize("content, passwords", [
    (b'{"credentials_enable_service":false}', "off"),
    (b'{"profile":{"password_manager_enabled":true}}', "on"),
    (b'{"profile":[]}', "not set"),
    (b'{"credentials_enable_service":[]}', "not set"),
    (b"[" * 100, "unreadable"),
])
def test_chromes_password_manager_is_told_as_it_stands(well, content, passwords):
    with holding(well, content, PREFERENCES):
        assert browsers(report(well))["Google Chrome"]["passwords"] == passwords


def test_safaris_autofill_is_told_as_it_stands(tmp_path):
    mac = Mac.new("fresh", tmp_path)
    assert browsers(report(mac))["Safari"]["passwords"] == "off"
    mac.run("--at", AT)
    assert browsers(report(mac))["Safari"]["passwords"] == "on"
    mac.remove(SAFARI)
    assert browsers(report(mac))["Safari"]["passwords"] == "not set"


def test_channels_and_profiles_out_of_reach_are_named(shipped):
    beta = shipped.path("/Applications/Google Chrome Beta.app/Contents")
    beta.mkdir(parents=True)
    (beta / "Info.plist").write_bytes(shipped.path("/Applications/Google Chrome.app/Contents/Info.plist").read_bytes()
                                      .replace(b"com.google.Chrome", b"com.google.Chrome.beta"))
    profile = shipped.path(f"{CHROME}/Profile 1")
    profile.mkdir()
    (profile / "Preferences").write_text("{}")
    told = browsers(report(shipped, status=0))["Google Chrome"]
    assert [each["path"] for each in told["channels"]] == ["/Applications/Google Chrome Beta.app"]
    assert told["profiles"] == [f"{CHROME}/Profile 1"]
    assert "not reached by a run: Google Chrome Beta, " in tell(shipped)


@pytest.mark.parametrize("content", [b"", b"\0", b"\xff\xfe", b"<plist", b"bplist00", b"[]", b'{"a": ' * 100_000, b"null"],
                         ids=["empty", "NUL", "UTF-16", "XML", "binary", "list", "deep", "null"])
def test_files_that_hold_anything_are_no_danger(well, content):
    with holding(well, content, HOST, DESCRIPTOR, EDGE_HOST, FIREFOX_HOST, PREFERENCES, REGISTRY, SAFARI, SETTINGS,
                 "/Applications/Firefox.app/Contents/Info.plist"):
        report(well, "--plan", status=1)


def test_folders_in_the_place_of_files_are_no_danger(shipped):
    for path in (HOST, DESCRIPTOR, PREFERENCES, REGISTRY, SAFARI, SETTINGS):
        shipped.remove(path)
        shipped.path(path).mkdir()
    told = report(shipped, "--plan", status=1)
    assert faults(told, "Google Chrome", "descriptor") == ["it is no file"]


def test_pipes_in_the_place_of_files_are_not_waited_for(shipped):
    for path in (HOST, DESCRIPTOR, PREFERENCES, REGISTRY, SAFARI):
        shipped.remove(path)
        os.mkfifo(shipped.path(path))
    told = browsers(report(shipped, "--plan", status=1))
    assert (told["Google Chrome"]["passwords"], told["Safari"]["passwords"]) == ("unreadable", "unreadable")


def test_what_may_not_be_read_is_told_with_a_status_of_its_own(shipped):
    shipped.path(SAFARI).chmod(0)
    assert report(shipped, status=3)["closed"] == [SAFARI]
    assert f"This process may not read {SAFARI}" in tell(shipped, status=3)


def test_a_folder_that_hides_what_a_run_with_rights_would_change_is_told(shipped):
    folder = "/Library/Internet Plug-Ins"
    shipped.path(folder).chmod(0o700)
    assert report(shipped, status=3)["closed"] == [folder]
    shipped.path(folder).chmod(0o711)  # what it holds can be found, if the name is known
    assert report(shipped)["closed"] == []



# Plans.

def test_without_a_word_both_plans_are_told_and_each_is_marked(tmp_path):
    mac = Mac.new("typical", tmp_path)
    plan = report(mac, "--plan")["plan"]
    assert plan["allowed"] != plan["refused"]
    assert plan["allowed"]["keychain"] and plan["allowed"]["page"] and plan["allowed"]["prompts"] == 2
    told = tell(mac, "--plan")
    assert told.count("Administrator rights allowed: ") == told.count("Administrator rights refused: ") == 1
    assert report(mac, "--plan=refused")["plan"] == {"refused": plan["refused"]}
    assert "plan" not in report(mac)


def test_what_needs_rights_is_what_only_an_allowed_run_changes(tmp_path):
    told = report(Mac.new("typical", tmp_path))
    assert "/Library/Internet Plug-Ins/npKSPlugin.bundle" in told["needsRights"]
    assert [path for path in told["needsRights"] if path.startswith("/Users/")] == [
        f"{SUPPORT}/Mozilla/NativeMessagingHosts/com.corvendale.ksnative.manifest.json"]


# Logs.

def test_logs_are_told_with_what_failed_and_what_to_do(shipped):
    shipped.remove(REGISTRY)
    shipped.run("--at", "2024-03-06 10:11:12")
    logs = report(shipped)["logs"]
    assert [(each["path"], each["started"]) for each in logs["kept"]] == [
        (f"{LOGS}/2024_3_5_9_7_2.log", "2024-03-05 09:07:02"),
        (f"{LOGS}/2024_3_6_10_11_12.log", "2024-03-06 10:11:12")]
    assert [each["bytes"] for each in logs["kept"]] == [
        shipped.path(each["path"]).stat().st_size for each in logs["kept"]]
    assert "Missing Extensions.plist." in {each["text"] for each in logs["failures"]}
    assert all(each["meaning"] and each["advice"] for each in logs["failures"])
    assert logs["enabled"]


def test_people_read_what_a_failure_means_once_with_the_files_of_all(tmp_path):
    mac = Mac.new("typical", tmp_path)
    mac.run("--admin", "refuse", "--at", AT)
    told = tell(mac)
    assert told.count("FAILURE  An old extension of the product could not be removed.") == 1
    folder = "/Library/Application Support/Mozilla/Extensions/{ec8030f7-c20a-464f-9b0e-13a3a9e97384}"
    assert f"\n          09:07:02  {folder}/js-ctypes\n" in told and f"\n          09:07:02  {folder}/ks@corvendale.com\n" in told


def test_a_failure_that_comes_again_is_told_once(shipped):
    text = "".join(f"\n09:07:02 - FAILURE : number {number % 500}" for number in range(1500))
    shipped.path(f"{LOGS}/2024_3_7_1_1_1.log").write_text(text)
    assert [each["text"] for each in report(shipped)["logs"]["failures"]] == [f"number {number}" for number in range(500)]


def test_a_log_under_another_password_is_told_to_be_unreadable(shipped):
    shipped.path(f"{LOGS}/2024_3_7_1_1_1.log").write_bytes(bytes(64))
    logs = report(shipped)["logs"]
    assert logs["unreadable"].startswith(f"{LOGS}/2024_3_7_1_1_1.log: no log, or one that is enciphered")
    assert logs["failures"] == []
