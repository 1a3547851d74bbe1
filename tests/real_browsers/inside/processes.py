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


def is_alone(number):
    """Whether that is the only main process, once those have ended that only hand an address on."""
    for other in main_processes():
        if other != number:
            _has_ended(other)
    return main_processes() == [number]


def wait_until_none():
    """Waits until all have ended that run, and those that they start meanwhile."""
    while commands := running():
        for number, command in commands.items():
            if not _has_ended(number):
                raise TimeoutError(f"still running: {command}")


def _has_ended(number):
    """Waits for that, but not for ever."""
    try:
        end = os.pidfd_open(number)
    except ProcessLookupError:
        return True
    try:
        return bool(select.select([end], [], [], PATIENCE)[0])
    finally:
        os.close(end)
