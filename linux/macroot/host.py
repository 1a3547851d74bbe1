"""What this host lets a Mac root be, found out by trying.

From the best to the least:
  as root                          bwrap, real users 0 and 501
  as a user with subordinate ids   the same, inside `unshare --user --map-root-user --map-auto`
  as a user without them           the same, but one kernel user stands for both: reduced
  where namespaces are refused     proot; as root with real users, as a user reduced
"""

import os
import subprocess
import sys

from macroot.errors import Trouble
from macroot.people import ALEX, STAFF

NAMESPACES = "namespaces"
PROOT = "proot"

# Given to the copy of this program that runs inside a user namespace of its own.
ENTERED = "--entered"

_USER_NAMESPACES = (
    ["unshare", "--user", "--map-root-user", "--map-auto"],
    ["unshare", "--user", "--map-root-user"],
)
_TRIAL = ["bwrap", "--unshare-pid", "--unshare-ipc", "--unshare-uts", "--ro-bind", "/", "/",
          "--dev", "/dev", "--proc", "/proc", "--tmpfs", "/run", "true"]
_PROOT_TRIAL = ["proot", "-r", "/", "-b", "/proc", "true"]

_CAPABILITY_CHOWN, _CAPABILITY_SETGID, _CAPABILITY_SETUID = 0, 6, 7


class Host:
    """What was found: `kind` is NAMESPACES or PROOT, `real_users` whether alex and root are two users."""

    def __init__(self, kind):
        self.kind = kind
        self.real_users = _can_be_two_users()

    def say_if_reduced(self):
        """Tells people what this host cannot give."""
        if not self.real_users:
            print(f"macroot: reduced: {self._lack()}", file=sys.stderr)

    def _lack(self):
        if self.kind == NAMESPACES:
            return ("alex and root are one user of this host (no subordinate ids in /etc/subuid), "
                    "kept apart by missing write permissions alone")
        return ("namespaces are refused here and alex and root are one user of this host, "
                "kept apart by missing write permissions alone")


def settle(arguments):
    """The host, after entering a user namespace where that is needed: then this program starts anew."""
    if ENTERED in arguments[:1]:
        return Host(NAMESPACES)
    if os.geteuid() == 0 and _works(_TRIAL):
        return Host(NAMESPACES)
    for namespace in _USER_NAMESPACES:
        if _works(namespace + _TRIAL):
            program = [sys.executable, "-ISXutf8", sys.argv[0], ENTERED, *arguments]
            os.execvp(namespace[0], namespace + program)
    if _works(_PROOT_TRIAL):
        return Host(PROOT)
    raise Trouble("this host lets nobody make a Mac root: neither bwrap (Debian packages bubblewrap and "
                  "uidmap) nor proot (package proot) can run here")


def _works(command):
    try:
        return subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, check=False).returncode == 0
    except OSError:
        return False


def _can_be_two_users():
    return (os.geteuid() == 0
            and _is_mapped("/proc/self/uid_map", ALEX) and _is_mapped("/proc/self/gid_map", STAFF)
            and all(_has_capability(number) for number in
                    (_CAPABILITY_CHOWN, _CAPABILITY_SETGID, _CAPABILITY_SETUID)))


def _is_mapped(map_file, number):
    with open(map_file, encoding="ascii") as lines:
        ranges = [[int(field) for field in line.split()] for line in lines]
    return any(first <= number < first + count for first, _, count in ranges)


def _has_capability(number):
    with open("/proc/self/status", encoding="ascii", errors="replace") as lines:
        effective = next(int(line.split()[1], 16) for line in lines if line.startswith("CapEff:"))
    return bool(effective >> number & 1)
