"""KSLogReader: what it makes of logs, of command lines and of what is no log."""
import json
import os
import pty
import re
import subprocess
import time
from pathlib import Path

import pytest

from tests.support import build

ROOT = Path(__file__).parents[2]
PASSWORD = b"correct horse battery staple"
MESSAGES = [
    ("09:07:02", "INFO", "The app's URL is: /Applications/Google Chrome.app"),
    ("09:07:02", "FAILURE", " Error uninstalling FFox extension: closed"),
    ("09:07:03", "WARNING", "Error install for current user: (null)"),
    ("09:08:00", "WARNING", "two\nlines"),
    ("10:00:00", "CRITICAL", "höchst kritisch"),
]


def plain(messages=tuple(MESSAGES)):
    return "".join(f"\n{at} - {level} : {text}" for at, level, text in messages).encode()


def padded(piece):
    return piece.ljust(-(-len(piece) // 16) * 16)


def enciphered(messages=tuple(MESSAGES), password=PASSWORD):
    text = b"".join(padded(f"\n{at} - {level} : ".encode()) + padded(text.encode()) for at, level, text in messages)
    command = ["openssl", "enc", "-aes-256-ecb", "-nopad", "-K", password[:32].ljust(32, b"\0").hex()]
    return subprocess.run(command, input=text, capture_output=True, check=True).stdout


def shown(messages=tuple(MESSAGES)):
    return "".join(f"{at} - {level} : {text}\n" for at, level, text in messages)


def reader(*arguments, given=PASSWORD + b"\n", **options):
    return subprocess.run([build.program("KSLogReader"), *map(str, arguments)], input=given, capture_output=True,
                          timeout=60, **options)


def told(*arguments, **options):
    """(status, standard output, standard error)"""
    result = reader(*arguments, **options)
    return result.returncode, result.stdout.decode(), result.stderr.decode()


@pytest.fixture
def log(tmp_path):
    path = tmp_path / "2024_3_5_9_7_2.log"
    path.write_bytes(enciphered())
    return path


# The command line.

def test_the_version_is_the_projects():
    version = re.search(r"^project\(\w+ VERSION ([\d.]+)", (ROOT / "CMakeLists.txt").read_text(), re.MULTILINE)[1]
    assert told("--version") == (0, f"KSLogReader {version}\n", "")


def test_help_is_no_error():
    status, out, err = told("--help")
    assert (status, err) == (0, "") and out.startswith("usage: KSLogReader [OPTION...] [LOG...]\n")


@pytest.mark.parametrize("arguments", [
    ("",), ("--unknown",), ("-h",), ("--help", "log"), ("--level",), ("--level", "loud"), ("--level", ""),
    ("--since", "noon"), ("--since", "9"), ("--since", "2024-03-05x"), ("--since", "2024-03-05", "log"),
    ("--grep", "("), ("--follow", "one", "two"), ("--follow", "--since", "2024-03-05"), ("--list", "log"),
], ids=" ".join)
def test_wrong_usage_is_told_on_standard_error(arguments):
    status, out, err = told(*arguments)
    assert (status, out) == (2, "")
    assert re.fullmatch(r"KSLogReader: .+", err.partition("\n")[0]) and "usage: KSLogReader" in err


def test_a_log_may_have_a_name_like_an_option(tmp_path):
    (tmp_path / "--help").write_bytes(plain())
    assert told("./--help", cwd=tmp_path) == told("--", "--help", cwd=tmp_path) == (0, shown(), "")


# Plain and enciphered logs.

def test_a_plain_log_needs_no_password(tmp_path):
    path = tmp_path / "log"
    path.write_bytes(plain())
    assert told(path, given=b"") == (0, shown(), "")


def test_an_enciphered_log_shows_the_same(log):
    assert told(log) == (0, shown(), "")


@pytest.mark.parametrize("password", [b"x", b"x" * 32, b"0123456789" * 5, "pässword".encode()])
def test_passwords_of_any_length(log, password):
    log.write_bytes(enciphered(password=password))
    assert told(log, given=password + b"\n") == (0, shown(), "")


def test_the_password_may_come_from_a_file_of_windows(log, tmp_path):
    (tmp_path / "password").write_bytes(PASSWORD + b"\r\nanother line\r\n")
    assert told("--password-file", tmp_path / "password", log, given=b"") == (0, shown(), "")


def test_the_password_is_asked_for_on_a_terminal_and_not_shown(log):
    terminal, its = pty.openpty()
    child = subprocess.Popen([build.program("KSLogReader"), log], stdin=its, stdout=subprocess.PIPE,
                             stderr=subprocess.PIPE, start_new_session=True,
                             preexec_fn=lambda: os.close(os.open(os.ttyname(0), os.O_RDWR)))
    os.close(its)
    seen = os.read(terminal, 100)
    assert b"Logging password: " in seen
    os.write(terminal, PASSWORD + b"\n")
    out, err = child.communicate(timeout=60)
    assert (child.returncode, out.decode(), err) == (0, shown(), b"")
    assert PASSWORD not in seen + os.read(terminal, 100)


def test_one_password_serves_several_logs(log, tmp_path):
    other = tmp_path / "2024_3_6_0_0_0.log"
    other.write_bytes(enciphered(MESSAGES[:1]))
    assert told(log, other) == (0, f"== {log}\n{shown()}== {other}\n{shown(MESSAGES[:1])}", "")


def test_the_blanks_of_the_blocks_are_taken_away_and_no_others(log):
    messages = [("01:02:03", "INFO", text) for text in (" begins with one", "x" * 16, "ends", "a  b", "y" * 10_000)]
    log.write_bytes(enciphered(messages))
    assert told(log) == (0, shown(messages), "")


def test_messages_across_the_pieces_in_which_it_reads(log):
    messages = [("01:02:03", ("INFO", "FAILURE")[n % 2], "m" * (n % 97)) for n in range(9_000)]
    log.write_bytes(enciphered(messages))
    assert log.stat().st_size > 8 * 64 * 1024
    assert told(log) == (0, shown(messages), "")
    log.write_bytes(plain(messages))
    assert told(log) == (0, shown(messages), "")


# What is no log, or no longer a whole one.

def test_a_wrong_password(log):
    assert told(log, given=b"wrong\n") == (
        1, "", f"KSLogReader: {log}: no log, or one that is enciphered under another password\n")


def test_a_wrong_password_whose_first_byte_happens_to_fit(log):
    first_block = enciphered()[:16]

    def deciphered(password):
        command = ["openssl", "enc", "-d", "-aes-256-ecb", "-nopad", "-K", password.ljust(32, b"\0").hex()]
        return subprocess.run(command, input=first_block, capture_output=True, check=True).stdout
    fitting = next(password for password in (b"wrong %d" % n for n in range(5_000))
                   if deciphered(password)[:1] == b"\n")
    status, out, err = told(log, given=fitting + b"\n")
    assert (status, out) == (1, "") and "another password" in err


def test_a_log_that_is_cut(log):
    log.write_bytes(enciphered()[:-5])
    status, out, err = told(log)
    assert (status, err) == (1, f"KSLogReader: {log}: the log is cut, its last 11 bytes are left out\n")
    assert out == shown(MESSAGES[:-1] + [("10:00:00", "CRITICAL", "")])


def test_a_log_whose_beginning_is_damaged(log):
    log.write_bytes(b"no cipher text. " + enciphered()[16:])
    status, out, err = told(log)
    assert status == 1 and "the beginning is damaged" in err
    assert out.endswith(shown(MESSAGES[1:]))


@pytest.mark.parametrize("content,complaint", [
    (b"", "the log is empty"), (b"hello\n" * 99, "no log, or one that is enciphered"),
    (b"short", "no log, or one that is enciphered"), (bytes(range(256)) * 300, "no log, or one that is enciphered"),
], ids=["empty", "a text", "less than a block", "any bytes"])
def test_a_file_that_is_no_log(log, content, complaint):
    log.write_bytes(content)
    status, out, err = told(log)
    assert (status, out) == (1, "") and complaint in err


def test_what_cannot_be_read(tmp_path):
    assert told(tmp_path) == (1, "", f"KSLogReader: {tmp_path}: Is a directory\n")
    assert told("/proc/self/mem") == (1, "", "KSLogReader: /proc/self/mem: Input/output error\n")
    assert told(tmp_path / "missing") == (1, "", f"KSLogReader: {tmp_path / 'missing'}: No such file or directory\n")


def test_the_readable_logs_are_shown_when_another_is_not(log, tmp_path):
    status, out, err = told(tmp_path / "missing", log)
    assert status == 1 and "No such file" in err and out.endswith(shown())


def test_a_missing_password_file(log, tmp_path):
    status, out, err = told("--password-file", tmp_path / "missing", log)
    assert (status, out, err) == (1, "", f"KSLogReader: {tmp_path / 'missing'}: No such file or directory\n")


def test_a_full_disk_is_told(log):
    with open("/dev/full", "wb") as full:
        result = subprocess.run([build.program("KSLogReader"), log], input=PASSWORD, stdout=full, stderr=subprocess.PIPE)
    assert (result.returncode, result.stderr) == (1, b"KSLogReader: the output could not be written\n")


# What is shown.

@pytest.mark.parametrize("level,count", [("critical", 1), ("failure", 2), ("Warning", 4), ("INFO", 5)])
def test_a_level_and_what_is_more_severe(log, level, count):
    kept = {"CRITICAL": 1, "FAILURE": 2, "WARNING": 3, "INFO": 4}
    expected = [message for message in MESSAGES if kept[message[1]] <= kept[level.upper()]]
    assert len(expected) == count
    assert told("--level", level, log) == (0, shown(expected), "")


@pytest.mark.parametrize("since,first", [("00:00", 0), ("09:07:03", 2), ("09:08", 3), ("9:8", 3), ("23:59:59", 5)])
def test_since_a_time(log, since, first):
    assert told("--since", since, log) == (0, shown(MESSAGES[first:]), "")


def test_a_pattern(log):
    assert told("--grep", "^two|kritisch$", log) == (0, shown(MESSAGES[3:]), "")
    assert told("--grep", "no such text", log) == (0, "", "")


def test_json_is_one_object_a_line(log):
    status, out, _ = told("--json", "--explain", log)
    objects = [json.loads(line) for line in out.splitlines()]
    assert status == 0
    assert [(each["time"], each["level"], each["text"]) for each in objects] == MESSAGES
    assert {each["log"] for each in objects} == {log.name}
    assert objects[0]["source"] == "ChromeInstall"
    assert objects[0]["meaning"] == "Chrome is installed at this address." and objects[0]["advice"] == "Nothing."
    assert "meaning" not in objects[3]


def test_json_of_bytes_that_are_no_text(tmp_path):
    (tmp_path / "log").write_bytes(b'\n01:02:03 - INFO : \x00\x1b"\\\xff\xc3\xa9\t\x7f')
    status, out, _ = told("--json", tmp_path / "log")
    assert status == 0 and json.loads(out)["text"] == '\x00\x1b"\\\ufffd\xe9\t\x7f'


def test_explanations_stand_below_each_message(log):
    status, out, _ = told("--explain", "--level", "warning", "--grep", "null", log)
    assert (status, out) == (0, shown(MESSAGES[2:3]) + "    It means: The extension's package was copied without an "
                             "error. The line stands after each copy.\n    To do: Nothing.\n")


MEASURED = """
import resource, subprocess, sys
subprocess.run(sys.argv[1:], stdout=subprocess.DEVNULL, check=True)
print(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss * 1024)
"""


def memory_for(log, password):
    done = subprocess.run(["/usr/bin/python3", "-c", MEASURED, build.program("KSLogReader"), "--explain", "--password-file",
                           password, log], stdout=subprocess.PIPE, timeout=300, check=True)
    return int(done.stdout)


@pytest.mark.large
@pytest.mark.parametrize("make, pieces, length", [(plain, 64, 1000), (enciphered, 4, 60_000)], ids=["plain", "enciphered"])
def test_memory_does_not_grow_with_the_log(tmp_path, make, pieces, length):
    log, password = tmp_path / "2024_3_5_9_7_2.log", tmp_path / "password"
    piece = make([("09:07:02", "FAILURE", "x" * length)] * (1_000_000 // length))
    password.write_bytes(PASSWORD)
    log.write_bytes(piece)
    at_first = memory_for(log, password)
    log.write_bytes(piece * pieces)
    at_last = memory_for(log, password)
    assert build.is_sanitized() or (at_last - at_first <= 2 << 20 and at_last <= 32 << 20)


def test_a_message_cannot_steer_the_terminal(tmp_path):
    (tmp_path / "log").write_bytes("\n01:02:03 - INFO : \x1b]0;x\x07\r\x9b31m é\t\n.".encode() + b"\xff\x00")
    assert told(tmp_path / "log") == (
        0, "01:02:03 - INFO : \\x1b]0;x\\x07\\x0d\\xc2\\x9b31m é\t\n.\\xff\\x00\n", "")


def test_colour_on_a_terminal_only(log):
    def on_a_terminal(**environment):
        terminal, its = pty.openpty()
        subprocess.run([build.program("KSLogReader"), "--level", "failure", log], input=PASSWORD, stdout=its, check=True,
                       env={**os.environ, **environment})
        os.close(its)
        return os.read(terminal, 10_000).decode().replace("\r", "")
    expected = [MESSAGES[1], MESSAGES[4]]
    coloured = "".join(f"\x1b[31m{shown([message])[:-1]}\x1b[0m\n" for message in expected)
    assert on_a_terminal() == coloured
    assert on_a_terminal(NO_COLOR="1") == shown(expected)


# Which logs.

@pytest.fixture
def folder(tmp_path):
    for name, text in [("2023_12_31_23_59_59", "old"), ("2024_3_5_9_7_2", "one"), ("2024_3_5_10_0_0", "two"),
                       ("2024_11_1_0_0_0", "new")]:
        (tmp_path / f"{name}.log").write_bytes(plain([("01:02:03", "INFO", text)]))
    (tmp_path / "2025_1_1_1_1_1.log.bak").write_bytes(b"no log's name")
    (tmp_path / "2025_1_1_1_1_1.log").mkdir()
    return tmp_path


def texts(*arguments):
    status, out, _ = told(*arguments)
    assert status == 0
    return re.findall(r"INFO : (\w+)", out)


def test_the_newest_is_read_when_none_is_named(folder):
    assert texts("--folder", folder) == ["new"]


def test_a_day_picks_logs_by_their_names(folder):
    assert texts("--folder", folder, "--since", "2024-03-05") == ["one", "two", "new"]
    assert texts("--folder", folder, "--since", "2024-3-6") == ["new"]


def test_the_list_has_date_and_size(folder):
    assert told("--folder", folder, "--list") == (0, "".join(
        f"{start}  22 bytes  {folder}/{name}.log\n" for start, name in [
            ("2023-12-31 23:59:59", "2023_12_31_23_59_59"), ("2024-03-05 09:07:02", "2024_3_5_9_7_2"),
            ("2024-03-05 10:00:00", "2024_3_5_10_0_0"), ("2024-11-01 00:00:00", "2024_11_1_0_0_0")]), "")


def test_a_folder_that_is_empty_or_missing(tmp_path):
    assert told("--folder", tmp_path) == (1, "", f"KSLogReader: {tmp_path}: there are no logs\n")
    assert told("--folder", tmp_path, "--list") == (0, "", "")
    status, out, err = told("--folder", tmp_path / "missing", "--list")
    assert (status, out) == (1, "") and "No such file" in err


# A log that is being written.

class Follower:
    def __init__(self, path):
        self.program = subprocess.Popen([build.program("KSLogReader"), "--follow", path], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE)
        self.program.stdin.write(PASSWORD + b"\n")
        self.program.stdin.close()

    def see(self, messages):
        expected = shown(messages).encode()
        seen = b""
        while len(seen) < len(expected):
            seen += os.read(self.program.stdout.fileno(), 10_000)
        assert seen == expected


@pytest.mark.parametrize("content", [plain, enciphered], ids=["plain", "enciphered"])
def test_messages_are_shown_as_they_come(tmp_path, content):
    path = tmp_path / "log"
    path.write_bytes(b"")
    follower = Follower(path)
    try:
        for message in MESSAGES:
            with open(path, "ab") as log:
                log.write(content([message]))
            follower.see([message])
            time.sleep(0.01)
        assert follower.program.poll() is None
    finally:
        follower.program.kill()
        follower.program.wait()


# The table of messages.

def test_the_document_of_messages_is_what_the_program_tells():
    assert told("--messages") == (0, (ROOT / "docs/log-messages.md").read_text(), "")
