"""How commands are started inside a Mac root, as root and as alex."""

import contextlib
import os
import signal
import subprocess

from macroot.people import ALEX, STAFF

_UMASK = 0o022
PATH = "/usr/bin:/bin:/usr/sbin:/sbin"

_SECOND_USER = ["unshare", "--user", f"--map-user={ALEX}", f"--map-group={STAFF}"]


class Namespaces:
    """The supervisor itself is inside and root there; paths are what they are.

    Without a second user of the host, alex is the same kernel user in a user namespace of his own,
    where root's capabilities do not reach.
    """

    alex = f"{ALEX}:{STAFF}"

    def __init__(self, real_users, outer_process_namespace):
        self._real_users = real_users
        self._outer_process_namespace = outer_process_namespace

    def path(self, inside):
        """Where the supervisor finds a path of the inside."""
        return inside

    def start_as_root(self, command, environment, folder="/", **more):
        return subprocess.Popen(command, env=environment, cwd=folder, umask=_UMASK, **more)

    def start_as_alex(self, command, environment, folder="/", **more):
        if self._real_users:
            more.update(user=ALEX, group=STAFF, extra_groups=[])
        else:
            command = _SECOND_USER + command
        return subprocess.Popen(command, env=environment, cwd=folder, umask=_UMASK, **more)

    def start_with_private_tmp(self, command, environment, **more):
        """As root, with a /tmp that nobody else sees."""
        script = 'mount -t tmpfs tmpfs /private/tmp && exec "$0" "$@"'
        return self.start_as_root(["unshare", "--mount", "/bin/sh", "-c", script, *command],
                                  environment, **more)

    def give_to_alex(self, path):
        """Makes alex the owner of one path of the inside."""
        if self._real_users:
            os.chown(self.path(path), ALEX, STAFF, follow_symlinks=False)

    def end_everything(self):
        """Kills whatever runs inside beside the supervisor."""
        if process_namespace() != self._outer_process_namespace:
            with contextlib.suppress(ProcessLookupError):
                os.kill(-1, signal.SIGKILL)


def process_namespace():
    """The number of the process namespace that this process lives in."""
    return os.stat("/proc/self/ns/pid").st_ino
