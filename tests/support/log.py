"""Reading the installer's log, as a support engineer would."""

import re
import subprocess

_HEADER = re.compile(r"\n\d\d:\d\d:\d\d - (CRITICAL|FAILURE|WARNING|INFO) : ")


def messages(text):
    """The messages of a plain log, in order, each as (level, text)."""
    parts = _HEADER.split(text)
    assert parts[0] == "", f"the log does not begin with a header: {parts[0]!r}"
    return list(zip(parts[1::2], parts[2::2]))


def deciphered(path, password):
    """The bytes of an enciphered log, deciphered by openssl."""
    key = password[:32].ljust(32, b"\0").hex()
    command = ["openssl", "enc", "-d", "-aes-256-ecb", "-nopad", "-K", key, "-in", str(path)]
    return subprocess.run(command, check=True, capture_output=True).stdout
