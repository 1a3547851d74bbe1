"""One run from the inside: makes everything ready, runs the program, sets everything back."""

import contextlib
import os
import selectors
import signal
import subprocess

from macroot.errors import Trouble
from macroot.inside import web
from macroot.inside.broker import Broker
from macroot.inside.disks import Disk
from macroot.inside.display import Display
from macroot.inside.furniture import alexs_environment, furnish, roots_environment
from macroot.inside.keychain import Keychain

_GRACE = 5  # seconds that a program has to end after a signal

# Never given to alex, whatever lies above them.
_HOSTS_FOLDERS = ("/usr", "/dev", "/proc", "/run", "/private/etc")


def supervise(plan, cell, channels):
    """Carries the plan out; the result is `{"status": N, "keychain": items}` or `{"trouble": text}`."""
    try:
        with contextlib.ExitStack() as ending:
            return _supervise(plan, cell, channels, ending)
    except (Trouble, OSError, subprocess.SubprocessError) as trouble:
        return {"trouble": str(trouble)}


def _supervise(plan, cell, channels, ending):
    furnish(plan, cell)
    root, alex = roots_environment(plan), alexs_environment(plan)
    _own(plan["own"], cell, root)
    _insert_disks(plan["full"], ending)
    if plan["web"]:
        web.start(plan["web"], cell, plan["etc_folders"])
    keychain = Keychain(plan, cell, alex)
    keychain.fill()
    display = _start_display(plan["display"], cell, root, alex, ending)
    Broker(plan, cell, channels["asked"]).start()
    _run_pre(plan["pre"], cell, root)
    program = _Program(plan, cell, alex)

    def at_the_end():
        if channels["screenshot"] >= 0:
            display.save_picture(channels["screenshot"])

    status = program.run(channels["control"], at_the_end)
    at_the_end()
    cell.end_everything()
    return {"status": status, "keychain": keychain.read()}


def _own(paths, cell, environment):
    for path in paths:
        kept = [word for folder in _HOSTS_FOLDERS for word in ("-path", folder, "-o")][:-1]
        _finish(cell.start_as_root(
            ["find", path, "(", *kept, ")", "-prune", "-o", "-exec", "chown", "-h", cell.alex, "{}", "+"],
            environment, stderr=subprocess.PIPE), f"--own {path}")


def _insert_disks(disks, ending):
    """The outer ones first; they are removed in reverse."""
    for path, room in sorted(disks):
        disk = Disk(path, room)
        disk.insert()
        ending.callback(disk.remove)


def _start_display(wanted, cell, root, alex, ending):
    if not wanted:
        return None
    display = Display(cell, root)
    display.start()
    ending.callback(display.stop)
    display.wait()
    alex["DISPLAY"] = display.name
    return display


def _run_pre(command, cell, environment):
    """Its output goes to standard error: standard output is the program's alone."""
    if command:
        _finish(cell.start_as_root(command, environment, stdin=subprocess.DEVNULL, stdout=2), "--pre")


def _finish(process, what):
    _, errors = process.communicate()
    if process.returncode != 0:
        reason = os.fsdecode(errors or b"").strip() or f"it ended with status {process.returncode}"
        raise Trouble(f"{what}: {reason}")


class _Program:
    """The program as alex, in a session of its own, so that a signal reaches all of it."""

    def __init__(self, plan, cell, environment):
        home = plan["home"]
        folder = home if os.path.isdir(cell.path(home)) else "/"
        self._process = cell.start_as_alex(plan["program"], environment, folder, start_new_session=True)

    def run(self, control, before_signal):
        """Waits for the end, passing on what signals come in by `control`; the result is the status."""
        with selectors.DefaultSelector() as selector:
            ended = selector.register(os.pidfd_open(self._process.pid), selectors.EVENT_READ)
            selector.register(control, selectors.EVENT_READ)
            patience = None
            while True:
                ready = [key for key, _ in selector.select(patience)]
                if ended in ready:
                    status = self._process.wait()
                    return status if status >= 0 else 128 - status
                impatient = patience is not None
                number = os.read(control, 1)[0] if ready else signal.SIGKILL
                before_signal()
                self._signal(signal.SIGKILL if impatient else number)
                patience = _GRACE

    def _signal(self, number):
        with contextlib.suppress(ProcessLookupError):
            os.killpg(self._process.pid, number)
