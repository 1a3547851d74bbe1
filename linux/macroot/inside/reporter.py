"""reporter FILE PROGRAM ARG...: runs a program and writes to an open pipe how it ended.

proot tells neither when the first of its programs ends nor which signal ended it. What is written
is the exit status, 128+N for signal N, or the reason why the program could not be started. When
nobody is left to read it, the program ends with the run.
"""

import os
import select
import signal
import subprocess
import sys

# Signals are for the program; a handler, unlike ignoring, does not reach it.
for _number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGQUIT):
    signal.signal(_number, lambda *_: None)


def _given_environment():
    """As it was handed over: Python adds to its own."""
    with open("/proc/self/environ", "rb") as file:
        entries = file.read().split(b"\0")
    return dict(entry.split(b"=", 1) for entry in entries if b"=" in entry)


def _run(command, report):
    """How the command ended, as text."""
    try:
        process = subprocess.Popen(command, env=_given_environment())
    except OSError as error:
        return str(error)
    waiting = select.poll()
    waiting.register(os.pidfd_open(process.pid), select.POLLIN)
    waiting.register(report, 0)  # tells of nothing but the end of its reader
    if report in dict(waiting.poll()):
        os.killpg(0, signal.SIGKILL)
    status = process.wait()
    return str(status if status >= 0 else 128 - status)


_report = int(sys.argv[1])
os.set_inheritable(_report, False)
os.write(_report, os.fsencode(_run(sys.argv[2:], _report)))
