"""reporter FILE PROGRAM ARG...: runs a program and writes to an open file how it ended.

proot tells neither when the first of its programs ends nor which signal ended it. What is written
is the exit status, 128+N for signal N, or the reason why the program could not be started.
"""

import os
import signal
import subprocess
import sys

# Signals are for the program; a handler, unlike ignoring, does not reach it.
for _number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGQUIT):
    signal.signal(_number, lambda *_: None)

# As it was handed over: Python adds to its own.
with open("/proc/self/environ", "rb") as _file:
    _entries = _file.read().split(b"\0")
_environment = dict(entry.split(b"=", 1) for entry in _entries if b"=" in entry)

_report = int(sys.argv[1])
os.set_inheritable(_report, False)
try:
    _status = subprocess.call(sys.argv[2:], env=_environment)
    _text = str(_status if _status >= 0 else 128 - _status)
except OSError as error:
    _text = str(error)
os.write(_report, os.fsencode(_text))
