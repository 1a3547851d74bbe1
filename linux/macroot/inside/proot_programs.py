"""How commands are started in a Mac root that proot makes; the supervisor itself stays outside."""

import contextlib
import os
import signal
import subprocess
import time

from macroot.errors import Trouble
from macroot.inside.programs import UMASK, Programs
from macroot.inside.old_system_calls import filter_young_calls
from macroot.users import ALEX, STAFF, is_beneath

_INSIDE = "/run/macroot/lib/macroot/inside"
_PATIENCE = 2  # seconds that proot has to end after the last process that it traced


class _Program:
    """A running program: `end` is a descriptor that becomes readable when it has ended."""

    def __init__(self, start, command, environment, folder, **more):
        self.end, reporting = os.pipe()
        reporter = ["/usr/bin/python3", "-ISXutf8", f"{_INSIDE}/reporter.py", str(reporting)]
        self.process = start([*reporter, *command], environment, folder,
                             pass_fds=[reporting], **more)
        self.group = self.process.pid
        os.close(reporting)

    def status(self):
        """The exit status, 128+N when signal N ended it."""
        with open(self.end, encoding="utf-8") as report:
            text = report.read()
        self.process.wait()
        if not text:  # killed together with the one that reports
            return 128 + signal.SIGKILL
        if not text.isdecimal():
            raise Trouble(text)
        return int(text)


class ProotPrograms(Programs):
    """Where the host gives no second user, proot shows each side the user that it should be."""

    program = _Program

    def __init__(self, plan, options, scratch, channels):
        self._tree = plan["tree"]
        self._options = options
        self._scratch = scratch
        self._etc_folders = plan["etc_folders"]
        self._started = []
        super().__init__(plan, channels)
        os.mkdir(self._glue)
        os.chmod(self._glue, 0o1777)

    @property
    def _glue(self):
        """Where proot keeps what it needs for its bindings."""
        return f"{self._scratch}/glue"

    def path(self, inside):
        """Where the supervisor finds a path of the inside."""
        for number, folder in enumerate(self._etc_folders):
            if is_beneath(inside, folder):
                return f"{self._scratch}/etc{number}{inside[len(folder):]}"
        return (self._scratch if is_beneath(inside, "/run") else self._tree) + inside

    def start_as_root(self, command, environment, folder="/", **more):
        shown = [] if self._real_users else ["-0"]
        return self._start([*shown, "-w", folder], command, environment, **more)

    def start_as_alex(self, command, environment, folder="/", **more):
        if self._real_users:
            more.update(user=ALEX, group=STAFF, extra_groups=[])
            return self._start(["-w", folder], command, environment, **more)
        return self._start(["-i", f"{ALEX}:{STAFF}", "-w", folder], command, environment, **more)

    def start_beside(self, command, environment, **more):
        """Outside, as the user of the host."""
        more.setdefault("start_new_session", True)  # the terminal's signals are for the supervisor
        return subprocess.Popen(command, env=environment, umask=UMASK, **more)

    def _start(self, options, command, environment, **more):
        process = self.start_beside(["proot", "--verbose=-1", *self._options, *options, *command],
                                    {**environment, "PROOT_TMP_DIR": self._glue},
                                    preexec_fn=filter_young_calls, **more)
        self._started.append(process)
        return process

    def end_everything(self):
        """Kills what is still running of all that was started."""
        for process in self._started:
            patience = time.monotonic() + _PATIENCE
            while process.poll() is None:
                doomed = _traced_by(process.pid)
                if time.monotonic() > patience:
                    doomed.append(process.pid)
                for number in doomed:
                    with contextlib.suppress(ProcessLookupError):
                        os.kill(number, signal.SIGKILL)
                time.sleep(0.001)


def _traced_by(tracer):
    """The processes that a process traces."""
    traced = []
    for number in filter(str.isdecimal, os.listdir("/proc")):
        with contextlib.suppress(OSError), open(f"/proc/{number}/status", "rb") as file:
            if b"\nTracerPid:\t%d\n" % tracer in file.read():
                traced.append(int(number))
    return traced
