"""How commands are started inside a Mac root, as root and as alex."""

import contextlib
import os
import signal
import subprocess

from macroot.inside.write_bits import write_bits
from macroot.users import ALEX, STAFF

UMASK = 0o022
PATH = "/usr/bin:/bin:/usr/sbin:/sbin"
_BECOME_ALEX = ("unshare", "--user", f"--map-user={ALEX}", f"--map-group={STAFF}")


class Programs:
    """What both ways of starting them share; `path` tells where the supervisor finds a path, and
    `program` is the class of programs that run in a session of their own, so that a signal reaches
    all of it.
    """

    def __init__(self, plan, channels):
        self._real_users = plan["real_users"]
        self._bits = write_bits(self.path("/"), plan, channels["write_bits"])

    def give_to_alex(self, path):
        """Makes alex the owner of one path of the inside."""
        if self._real_users:
            os.chown(self.path(path), ALEX, STAFF, follow_symlinks=False)

    def run_as_root(self, command, environment):
        """Runs a command to its end; the result is its status, its output and its errors."""
        program = self.program(self.start_as_root, command, environment, "/",
                               stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                               stderr=subprocess.PIPE)
        output, errors = program.process.communicate()
        return program.status(), output, errors

    def start_program(self, command, environment, folder):
        """The program as alex."""
        return self.program(self.start_as_alex, command, environment, folder)

    def part_users(self, since=0):
        """Where alex and root are one: keeps alex from what is root's, or became so since then."""
        if self._bits:
            self._bits.take(since)

    def close_to_alex(self, folders):
        """Where alex and root are one: keeps alex from changing folders of the host's part."""
        if self._bits:
            for folder in folders:
                os.chmod(self.path(folder), 0o555)


class _Program:
    """A running program: `end` is a descriptor that becomes readable when it has ended."""

    def __init__(self, start, command, environment, folder, **more):
        self.process = start(command, environment, folder, start_new_session=True, **more)
        self.group = self.process.pid
        self.end = os.pidfd_open(self.process.pid)

    def status(self):
        """The exit status, 128+N when signal N ended it."""
        os.close(self.end)
        status = self.process.wait()
        return status if status >= 0 else 128 - status


class NamespacePrograms(Programs):
    """The supervisor itself is inside and root there; paths are what they are.

    Without a second user of the host, alex is the same kernel user in a user namespace of his own,
    where root's capabilities do not reach.
    """

    program = _Program

    def __init__(self, plan, channels):
        super().__init__(plan, channels)
        self._outer_process_namespace = plan["process_namespace"]

    def path(self, inside):
        """Where the supervisor finds a path of the inside."""
        return inside

    def start_as_root(self, command, environment, folder="/", **more):
        return subprocess.Popen(command, env=environment, cwd=folder, umask=UMASK, **more)

    def start_as_alex(self, command, environment, folder="/", **more):
        if self._real_users:
            more.update(user=ALEX, group=STAFF, extra_groups=[])
        else:
            command = [*_BECOME_ALEX, *command]
        return subprocess.Popen(command, env=environment, cwd=folder, umask=UMASK, **more)

    def start_beside(self, command, environment, **more):
        """As root, but with a /tmp that nobody else sees."""
        script = 'mount -t tmpfs tmpfs /private/tmp && exec "$0" "$@"'
        return self.start_as_root(["unshare", "--mount", "/bin/sh", "-c", script, *command],
                                  environment, **more)

    def end_everything(self):
        """Kills whatever runs inside beside the supervisor."""
        if process_namespace() != self._outer_process_namespace:
            with contextlib.suppress(ProcessLookupError):
                os.kill(-1, signal.SIGKILL)


def process_namespace():
    """The number of the process namespace that this process lives in."""
    return os.stat("/proc/self/ns/pid").st_ino
