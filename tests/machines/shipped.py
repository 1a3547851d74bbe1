"""The product's payload as it is shipped: browsers can use what it holds."""

from tests.machines import chrome, edge
from tests.machines.entries import native_host, text
from tests.machines.product import CHROME_HOST, EXTENSIONS, FIREFOX_HOST, HOST_PROGRAM

TEST_EXTENSION = "pjdcndnkbknfcniononfheehpbplflgf"  # of tests/real_browsers, by its key
FIREFOX_EXTENSION = "Keystrel@corvendale.com"

# Answers each message with the same message.
_ECHO = """\
#!/usr/bin/python3 -IS
import sys
while len(size := sys.stdin.buffer.read(4)) == 4:
    message = sys.stdin.buffer.read(int.from_bytes(size, sys.byteorder))
    sys.stdout.buffer.write(size + message)
    sys.stdout.buffer.flush()
"""


def _origins(identifier):
    return [f"chrome-extension://{admitted}/" for admitted in (identifier, TEST_EXTENSION)]


PAYLOAD = [
    text(HOST_PROGRAM, _ECHO, 0o755),
    native_host(f"{EXTENSIONS}/chrome", CHROME_HOST, HOST_PROGRAM,
                allowed_origins=_origins(chrome.EXTENSION)),
    native_host(f"{EXTENSIONS}/edge", CHROME_HOST, HOST_PROGRAM,
                allowed_origins=_origins(edge.EXTENSION)),
    native_host(EXTENSIONS, FIREFOX_HOST, HOST_PROGRAM, allowed_extensions=[FIREFOX_EXTENSION]),
]
