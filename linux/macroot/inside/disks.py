"""Disks with little room: a folder becomes a file system of its own for the time of a run."""

import os
import subprocess

from macroot.errors import Trouble

_WHAT_THEY_HIDE = "/run/macroot/disks"  # closed to alex
_AMPLE = "size=90%"


class Disk:
    """One folder as a disk: what it held is on it, `room` bytes beside that are free.

    A folder that was missing is made, and goes again when nothing was left in it.
    """

    def __init__(self, path, room):
        self._path = os.path.realpath(path)
        self._room = room
        self._was_missing = not os.path.lexists(self._path)
        self._hidden = None
        self._filler = None

    def insert(self):
        if self._was_missing:
            os.makedirs(self._path)
        elif not os.path.isdir(self._path):
            raise Trouble(f"--full {self._path}: it is no folder")
        os.makedirs(_WHAT_THEY_HIDE, 0o700, exist_ok=True)
        self._hidden = os.path.join(_WHAT_THEY_HIDE, str(len(os.listdir(_WHAT_THEY_HIDE))))
        os.mkdir(self._hidden)
        _do("mount", "--bind", self._path, self._hidden)
        _do("mount", "-t", "tmpfs", "-o", f"{_AMPLE},mode=0755", "tmpfs", self._path)
        _copy(self._hidden, self._path)
        self._leave_room()

    def remove(self):
        """What the disk holds goes back where it came from."""
        self._resize(_AMPLE)
        _do("find", self._hidden, "-mindepth", "1", "-delete")
        _copy(self._path, self._hidden)
        if self._filler is not None:
            os.close(self._filler)
        _do("umount", "--lazy", self._path)
        _do("umount", "--lazy", self._hidden)
        if self._was_missing and not os.listdir(self._path):
            os.rmdir(self._path)

    def _leave_room(self):
        status = os.statvfs(self._path)
        page = status.f_frsize
        used = (status.f_blocks - status.f_bfree) * page
        if used + self._room == 0:
            # A size of 0 would mean no limit: one page goes to a file without a name.
            self._filler = os.open(self._path, os.O_TMPFILE | os.O_RDWR, 0o600)
            os.write(self._filler, b"\0" * page)
            used = page
        size = used + -(-self._room // page) * page
        self._resize(f"size={size}")

    def _resize(self, size):
        # The other options as the kernel tells them may name users that are unknown here.
        _do("mount", "--options-mode", "ignore", "-o", f"remount,{size}", self._path)


def _copy(source, target):
    _do("cp", "--archive", "--no-target-directory", f"{source}/.", f"{target}/.")


def _do(*command):
    done = subprocess.run(command, stderr=subprocess.PIPE, check=False)
    if done.returncode != 0:
        raise Trouble(f"--full: {os.fsdecode(done.stderr).strip()}")
