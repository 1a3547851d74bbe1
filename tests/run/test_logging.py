"""The log of a whole run, as the settings ask for it."""

import json
import plistlib
import subprocess

import pytest

from tests.support import build, log
from tests.support.mac import Mac

SETTINGS = "/Users/Shared/Keystrel/KSSettings.plist"
LOGS = "/Users/Shared/Keystrel/logs"
STANDING_TIME = "2024-03-05 09:07:02"
LOG_OF_THE_STANDING_TIME = LOGS + "/2024_3_5_9_7_2.log"
PASSWORD = b"correct horse battery staple"


@pytest.fixture
def mac(tmp_path):
    return Mac.new("clean", tmp_path)


def write_settings(mac, **settings):
    mac.path(SETTINGS).write_bytes(plistlib.dumps(settings))


def log_files(mac):
    return sorted(path.name for path in mac.path(LOGS).iterdir())


def run_at_the_standing_time(mac):
    result = mac.run("--at", STANDING_TIME)
    assert result.status == 0
    return result


def padded(piece):
    return piece.ljust(-(-len(piece) // 16) * 16)


def test_the_file_is_named_after_the_local_time_without_leading_zeros(mac):
    write_settings(mac, KSLoggingEnabled="1")
    run_at_the_standing_time(mac)
    assert log_files(mac) == ["2024_3_5_9_7_2.log"]
    text = mac.path(LOG_OF_THE_STANDING_TIME).read_text()
    assert text.startswith("\n09:07:02 - INFO : ")
    assert not text.endswith("\n")
    assert log.messages(text)


def test_two_runs_in_one_second_append_to_one_file(mac):
    write_settings(mac, KSLoggingEnabled="1")
    run_at_the_standing_time(mac)
    once = mac.path(LOG_OF_THE_STANDING_TIME).read_text()
    run_at_the_standing_time(mac)
    assert mac.path(LOG_OF_THE_STANDING_TIME).read_text() == once + once


def test_the_console_shows_what_the_log_holds(mac):
    write_settings(mac, KSLoggingEnabled="1")
    console = run_at_the_standing_time(mac).stdout
    messages = log.messages(mac.path(LOG_OF_THE_STANDING_TIME).read_text())
    assert console == "".join(
        f"\n\n09:07:02 - {level} : {text}\n" for level, text in messages
    )


@pytest.mark.parametrize(
    "password",
    [PASSWORD, b"short", b"x" * 32, b"0123456789" * 5, "pässword".encode()],
    ids=["ordinary", "short", "32 bytes", "longer than a key", "non-ASCII"],
)
def test_an_enciphered_log_is_the_plain_one_in_padded_pieces(mac, password):
    write_settings(mac, KSLoggingEnabled="1")
    plain_console = run_at_the_standing_time(mac).stdout
    plain = mac.path(LOG_OF_THE_STANDING_TIME).read_bytes().decode()
    mac.path(LOG_OF_THE_STANDING_TIME).unlink()

    write_settings(mac, KSLoggingEnabled="1", KSLoggingPassword=password.decode())
    console = run_at_the_standing_time(mac).stdout
    assert console == plain_console

    expected = b"".join(
        padded(f"\n09:07:02 - {level} : ".encode()) + padded(text.encode())
        for level, text in log.messages(plain)
    )
    assert log.deciphered(mac.path(LOG_OF_THE_STANDING_TIME), password) == expected

    reader = subprocess.run(
        [build.program("KSLogReader"), mac.path(LOG_OF_THE_STANDING_TIME)],
        input=password + b"\n", capture_output=True, check=True,
    )
    assert reader.stdout.decode() == "".join(
        f"09:07:02 - {level} : {text}\n" for level, text in log.messages(plain)
    )


def test_the_log_reader_finds_the_newest_log_and_its_password_by_itself(mac):
    write_settings(mac, KSLoggingEnabled="1", KSLoggingPassword=PASSWORD.decode())
    console = run_at_the_standing_time(mac).stdout
    reader = mac.run(program=build.program("KSLogReader"), args=["--level", "info"])
    assert (reader.status, reader.stderr) == (0, "")
    assert reader.stdout == console.replace("\n\n", "")
    listed = mac.run(program=build.program("KSLogReader"), args=["--list"])
    size = mac.path(LOG_OF_THE_STANDING_TIME).stat().st_size
    assert listed.stdout == f"2024-03-05 09:07:02  {size} bytes  {LOG_OF_THE_STANDING_TIME}\n"


def test_every_message_of_a_run_is_explained(mac):
    write_settings(mac, KSLoggingEnabled="1")
    run_at_the_standing_time(mac)
    reader = mac.run(program=build.program("KSLogReader"), args=["--json", "--explain"])
    messages = [json.loads(line) for line in reader.stdout.splitlines()]
    assert messages and [each["text"] for each in messages if "meaning" not in each] == []


@pytest.mark.parametrize(
    "settings",
    [
        {},
        {"KSLoggingEnabled": ""},
        {"KSLoggingEnabled": "0"},
        {"KSLoggingEnabled": "true"},
        {"KSLoggingEnabled": "11"},
        {"KSLoggingEnabled": 1},
        {"KSLoggingEnabled": True},
        {"KSLoggingEnabled": ["1"]},
        {"KSLoggingPassword": "secret"},
    ],
    ids=str,
)
def test_anything_but_the_text_1_leaves_logging_off(mac, settings):
    write_settings(mac, **settings)
    result = mac.run()
    assert (result.status, result.stdout, result.stderr) == (0, "", "")
    assert log_files(mac) == []


def test_a_password_that_is_no_text_counts_as_none(mac):
    write_settings(mac, KSLoggingEnabled="1", KSLoggingPassword=12345)
    run_at_the_standing_time(mac)
    assert log.messages(mac.path(LOG_OF_THE_STANDING_TIME).read_text())


def test_the_products_folders_appear_even_when_logging_is_off(mac):
    for gone in (SETTINGS, LOGS):
        mac.remove(gone)
    mac.remove("/Users/Shared/Keystrel")
    before = mac.manifest()
    assert mac.run().status == 0
    added = [line.split("\t") for line in mac.manifest() if line not in before]
    assert [(kind, mode, path) for kind, mode, _, path, *_ in added if "/Users/Shared/" in path] == [
        ("d", "0777", "/Users/Shared/Keystrel"),
        ("d", "0777", "/Users/Shared/Keystrel/Vaults"),
        ("d", "0755", "/Users/Shared/Keystrel/logs"),  # POSIX mkdir: the umask counts
    ]


BROKEN_SETTINGS = {
    "empty": b"",
    "truncated": plistlib.dumps({"KSLoggingEnabled": "1"})[:-60],
    "truncated binary": plistlib.dumps({"KSLoggingEnabled": "1"}, fmt=plistlib.FMT_BINARY)[:-9],
    "an array": plistlib.dumps(["KSLoggingEnabled", "1"]),
    "a string": plistlib.dumps("1"),
    "no property list": b"\0\1\2 no list at all",
    "another encoding": plistlib.dumps({"KSLoggingEnabled": "1"}).decode().encode("utf-16")[:-7],
}


@pytest.mark.parametrize("content", BROKEN_SETTINGS.values(), ids=BROKEN_SETTINGS.keys())
def test_broken_settings_count_as_none_and_stay_as_they_are(mac, content):
    mac.path(SETTINGS).write_bytes(content)
    result = mac.run()
    assert (result.status, result.stdout, result.stderr) == (0, "", "")
    assert mac.path(SETTINGS).read_bytes() == content


def test_unreadable_settings_count_as_none(mac):
    write_settings(mac, KSLoggingEnabled="1")
    mac.path(SETTINGS).chmod(0)
    before = [line for line in mac.manifest() if "KSSettings" in line]
    result = mac.run()
    assert (result.status, result.stdout, result.stderr) == (0, "", "")
    assert [line for line in mac.manifest() if "KSSettings" in line] == before


def test_a_folder_in_place_of_the_settings_counts_as_none(mac):
    mac.remove(SETTINGS)
    mac.path(SETTINGS).mkdir()
    result = mac.run()
    assert (result.status, result.stdout, result.stderr) == (0, "", "")


def test_binary_settings_are_read(mac):
    mac.path(SETTINGS).write_bytes(
        plistlib.dumps({"KSLoggingEnabled": "1"}, fmt=plistlib.FMT_BINARY)
    )
    run_at_the_standing_time(mac)
    assert log_files(mac) == ["2024_3_5_9_7_2.log"]


@pytest.mark.large
def test_settings_of_1_megabyte_are_read(mac):
    many = {f"key {number:06}": "x" * 200 for number in range(4200)}
    write_settings(mac, KSLoggingEnabled="1", **many)
    assert mac.path(SETTINGS).stat().st_size > 1_000_000
    run_at_the_standing_time(mac)
    assert log_files(mac) == ["2024_3_5_9_7_2.log"]


def test_a_file_in_place_of_the_log_folder_leaves_logging_off(mac):
    write_settings(mac, KSLoggingEnabled="1")
    mac.remove(LOGS)
    mac.path(LOGS).write_text("mine")
    result = mac.run()
    assert (result.status, result.stdout, result.stderr) == (0, "", "")
    assert mac.path(LOGS).read_text() == "mine"
