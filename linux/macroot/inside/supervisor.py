"""One run from the inside: makes everything ready, runs the program, sets everything back."""

import contextlib
import os
import selectors
import signal
import subprocess

from macroot.errors import Trouble
from macroot.inside.broker import Broker
from macroot.inside.layout import MACROOT, alexs_environment, lay_out, roots_environment
from macroot.inside.keychain import Keychain
from macroot.users import ALEX, HOSTS_FOLDERS, STAFF

_GRACE = 5  # seconds that a program has to end after a signal


def supervise(plan, programs, channels):
    """Carries the plan out; gives `{"status": N, "keychain": items}` or `{"trouble": text}`."""
    try:
        with contextlib.ExitStack() as ending:
            return _supervise(plan, programs, channels, ending)
    except (Trouble, OSError, subprocess.SubprocessError) as trouble:
        return {"trouble": str(trouble)}


def _supervise(plan, programs, channels, ending):
    lay_out(plan, programs)
    root, alex = roots_environment(plan), alexs_environment(plan)
    if plan["real_users"]:
        _own(plan["own"], programs, root)
    _insert_disks(plan["full"], ending)
    if plan["web"]:
        from macroot.inside import web  # these three are for few runs, and take their time
        web.start(int(plan["web"]), programs, plan["etc_folders"])
    keychain = Keychain(plan, programs, alex)
    keychain.fill()
    display = _start_display(plan["display"], programs, root, alex, ending)
    Broker(plan, programs, channels["asked"]).start()
    _run_pre(plan["pre"], programs, root)
    programs.close_to_alex([*plan["etc_folders"], "/run", MACROOT])
    programs.part_users()
    home = plan["home"] if os.path.isdir(programs.path(plan["home"])) else "/"
    program = programs.start_program(plan["program"], alex, home)
    take_picture = contextlib.nullcontext if channels["screenshot"] < 0 else (
        lambda: display.save_picture(channels["screenshot"]))
    _wait(program, channels["control"], take_picture)
    take_picture()
    programs.end_everything()
    return {"status": program.status(), "keychain": keychain.read()}


def _own(paths, programs, environment):
    """Gives alex what lies at and below the paths, but never the host's part."""
    for path in paths:
        kept = [word for folder in HOSTS_FOLDERS for word in ("-path", folder, "-o")][:-1]
        give = ["-exec", "chown", "-h", f"{ALEX}:{STAFF}", "{}", "+"]
        _finish(programs.start_as_root(["find", path, "(", *kept, ")", "-prune", "-o", *give],
                                   environment, stderr=subprocess.PIPE), f"--own {path}")


def _insert_disks(disks, ending):
    """The outer ones first; they are removed in reverse."""
    from macroot.inside.disks import Disk
    for path, room in sorted(disks):
        disk = Disk(path, room)
        disk.insert()
        ending.callback(disk.remove)


def _start_display(wanted, programs, root, alex, ending):
    if not wanted:
        return None
    from macroot.inside.display import Display
    display = Display(programs, root)
    display.start()
    ending.callback(display.stop)
    display.wait()
    alex["DISPLAY"] = display.name
    return display


def _run_pre(command, programs, environment):
    """Its output goes to standard error: standard output is the program's alone."""
    if command:
        _finish(programs.start_as_root(command, environment, stdin=subprocess.DEVNULL, stdout=2),
                "--pre")


def _finish(process, what):
    _, errors = process.communicate()
    if process.returncode != 0:
        reason = os.fsdecode(errors or b"").strip() or f"it ended with status {process.returncode}"
        raise Trouble(f"{what}: {reason}")


def _wait(program, control, before_signal):
    """Waits for the program's end; passes on the signals whose numbers come in by `control`.

    A program that does not heed the first one in time is killed, and so it is by a second one.
    """
    with selectors.DefaultSelector() as selector:
        ended = selector.register(program.end, selectors.EVENT_READ)
        selector.register(control, selectors.EVENT_READ)
        patience = None
        while True:
            ready = [key for key, _ in selector.select(patience)]
            if ended in ready:
                return
            number = os.read(control, 1)[0] if ready and patience is None else signal.SIGKILL
            before_signal()
            with contextlib.suppress(ProcessLookupError):
                os.killpg(program.group, number)
            patience = _GRACE
