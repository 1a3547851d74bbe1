"""What this host lets a Mac root be, found out by trying: README.md has the ways, best first."""

import os
import subprocess
import sys

from macroot.errors import Trouble
from macroot.users import ALEX, STAFF

NAMESPACES = "namespaces"
PROOT = "proot"

# Given to the copy of this program that runs inside a user namespace of its own.
ENTERED = "--entered"

_SUBORDINATE_IDS = ["unshare", "--user", "--map-root-user", "--map-auto"]
_ONE_ID = ["unshare", "--user", "--map-root-user"]
_BWRAP_TRIAL = ["bwrap", "--unshare-pid", "--unshare-ipc", "--unshare-uts", "--ro-bind", "/", "/",
                "--dev", "/dev", "--proc", "/proc", "--tmpfs", "/run", "true"]
_PROOT_TRIAL = ["proot", "-r", "/", "-b", "/proc", "true"]

_CAPABILITY_CHOWN, _CAPABILITY_SETGID, _CAPABILITY_SETUID = 0, 6, 7
_ADVICE = " (the package uidmap and a range for you in /etc/subuid and /etc/subgid would part them)"


class Host:
    """What was found: the kind (NAMESPACES or PROOT), and whether alex and root are two users."""

    def __init__(self, kind):
        self.kind = kind
        self.real_users = _can_be_two_users()

    def say_if_reduced(self):
        """Tells people what this host cannot give."""
        if not self.real_users:
            advice = _ADVICE if self.kind == NAMESPACES else ""
            print("macroot: reduced: alex and root are one user of this host, kept apart by "
                  f"missing write permissions alone{advice}", file=sys.stderr)


def settle(arguments):
    """The host; where it takes a user namespace, this program starts anew inside one first."""
    if ENTERED in arguments[:1]:
        return Host(NAMESPACES)
    again = [sys.executable, "-ISXutf8", sys.argv[0], ENTERED, *arguments]
    if os.geteuid() == 0 and _works(_BWRAP_TRIAL):
        return Host(NAMESPACES)
    from macroot.user_namespace import enter_with_every_id  # it takes its time
    two_users = _can_be_two_users()
    if two_users and _works(_BWRAP_TRIAL, enter_with_every_id):
        enter_with_every_id()
        os.execv(again[0], again)
    if _works(_SUBORDINATE_IDS + _BWRAP_TRIAL):
        os.execvp(_SUBORDINATE_IDS[0], _SUBORDINATE_IDS + again)
    if two_users and _works(_PROOT_TRIAL):
        return Host(PROOT)
    if _works(_ONE_ID + _BWRAP_TRIAL):
        os.execvp(_ONE_ID[0], _ONE_ID + again)
    if _works(_PROOT_TRIAL):
        return Host(PROOT)
    raise Trouble("this host lets nobody make a Mac root: neither bwrap (Debian's packages "
                  "bubblewrap and uidmap) nor proot (package proot) can run here")


def _works(command, before=None):
    try:
        trial = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL, preexec_fn=before, check=False)
        return trial.returncode == 0
    except (OSError, subprocess.SubprocessError):
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
