"""The browsers' processes."""

import contextlib
import os
import select

PATIENCE = 30  # seconds that a process has to end
_PLACES = (b"/run/browsers/", b"/usr/lib/firefox-esr/", b"/Applications/")


def running():
    """The real browsers' processes, those that they start included: by number, the command line as
    one text.
    """
    found = {}
    for number in filter(str.isdecimal, os.listdir("/proc")):
        with contextlib.suppress(OSError), open(f"/proc/{number}/cmdline", "rb") as file:
            command = file.read().replace(b"\0", b" ")
            if command.startswith(_PLACES):
                found[int(number)] = os.fsdecode(command)
    return found


def main_processes():
    """Those that no other process of the same browser started."""
    return [number for number, command in running().items()
            if " --type=" not in command and " -contentproc" not in command
            and "crash" not in command]


def wait_until_none():
    """Waits until all have ended that run, and those that they start meanwhile."""
    while numbers := running():
        for number in numbers:
            with contextlib.suppress(ProcessLookupError):
                ended = os.pidfd_open(number)
                is_there = select.select([ended], [], [], PATIENCE)[0]
                os.close(ended)
                if not is_there:
                    raise TimeoutError(f"still running: {numbers[number]}")
