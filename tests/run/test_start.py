"""A run that is started in an odd way: without standard streams, without a reader, with a limit on files."""

import plistlib
import re
import signal

import pytest

from tests.support import build, log
from tests.support.mac import Mac

SETTINGS = "/Users/Shared/Keystrel/KSSettings.plist"
FIREFOX = "/Applications/Firefox.app/Contents/MacOS/firefox"
PREFERENCES = "/Users/alex/Library/Application Support/Google/Chrome/Default/Preferences"
PASSWORD = b"correct horse battery staple"


@pytest.fixture
def mac(tmp_path):
    return Mac.new("typical", tmp_path)


def started(mac, how, *files):
    """Runs the installer after a shell command of its own process, such as one that closes stdout."""
    return mac.run("--fast", program=build.program("started"), args=(how, *files))


def enciphered_log(mac):
    (path,) = mac.path("/Users/Shared/Keystrel/logs").iterdir()
    return re.sub(rb"\d\d:\d\d:\d\d", b"HH:MM:SS", log.deciphered(path, PASSWORD))


CLOSED = {
    "stdin": "exec <&-",
    "stdout": "exec >&-",
    "all": "exec <&- >&- 2>&-",
}


@pytest.mark.parametrize("how", CLOSED.values(), ids=CLOSED.keys())
def test_without_a_standard_stream_the_log_and_all_else_are_as_ever(tmp_path, how):
    trees, logs = [], []
    for folder, way in (("usual", "true"), ("odd", how)):
        mac = Mac.new("typical", tmp_path / folder)
        mac.path(SETTINGS).write_bytes(
            plistlib.dumps({"KSLoggingEnabled": "1", "KSLoggingPassword": PASSWORD.decode()}))
        result = started(mac, way)
        assert (result.status, result.stderr) == (0, "")
        logs.append(enciphered_log(mac))  # plain text in it would decipher to noise
        trees.append([line for line in mac.manifest() if "/logs/" not in line])
    assert logs[0].startswith(b"\nHH:MM:SS - ")
    assert logs[1] == logs[0]
    assert trees[1] == trees[0]


def test_a_reader_that_is_gone_ends_nothing(mac):
    # The reader leaves before the first line is written.
    result = started(mac, "mkfifo /tmp/pipe && exec 3<>/tmp/pipe >/tmp/pipe 3<&- && rm /tmp/pipe")
    assert (result.status, result.stdout, result.stderr) == (0, "", "")
    assert log.messages(mac.log_text())[-1] == ("INFO", "Edge extension installed!")


def test_a_limit_on_files_ends_nothing_and_tears_nothing(mac):
    before = b"{" + b" " * 9000 + b'"password_manager_enabled": true}'
    mac.path(PREFERENCES).write_bytes(before)
    result = started(mac, "ulimit -f 8")  # blocks of 512 bytes
    assert (result.status, result.stderr) == (0, "")
    assert result.stdout.endswith("INFO : Edge extension installed!\n")
    assert mac.path(PREFERENCES).read_bytes() == before
    (text,) = mac.path("/Users/Shared/Keystrel/logs").iterdir()
    assert text.stat().st_size == 4096


def test_what_the_run_starts_ignores_neither_signal(mac):
    signals = "/Users/alex/signals"
    mac.path(FIREFOX).write_text(f"#!/bin/sh\ngrep SigIgn /proc/self/status >{signals}.part\n"
                                 f"mv {signals}.part {signals}\n")
    assert started(mac, "true", signals).status == 0
    ignored = int(mac.path(signals).read_text().split()[1], 16)
    assert [name for name in (signal.SIGPIPE, signal.SIGXFSZ) if ignored & 1 << name - 1] == []
