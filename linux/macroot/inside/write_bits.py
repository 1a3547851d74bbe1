"""The boundary where one user of the host stands for both alex and root: missing write permissions.

What is not alex's loses its owner's write permission for the time of the run; root's capabilities
do not need it. What everybody may write stays so. Each loss is noted in a file that outlives the
run, so that it can be made good whatever happened.
"""

import contextlib
import json
import os
import stat
import time

from macroot.users import BUNDLE, HOSTS_FOLDERS, SHARED, TEMPORARY_FOLDERS, is_beneath

_CLOCK_REALTIME_COARSE = 5  # Linux's number; Python has no name for it
_OWNER_WRITES, _OTHERS_WRITE = 0o200, 0o002


def write_bits(top, plan, notes):
    """What keeps alex out where the Mac's root lies, or None where nothing needs to (no notes)."""
    if notes < 0:
        return None
    alexs = (plan["home"], SHARED, BUNDLE, *TEMPORARY_FOLDERS, *plan["own"])
    hosts = (*HOSTS_FOLDERS, *plan["etc_folders"], *plan["library_folders"])
    return _WriteBits(top.rstrip("/"), (*alexs, *hosts), notes)


class _WriteBits:
    """Takes the permissions; `notes` is an open file."""

    def __init__(self, top, left_alone, notes):
        self._top = top
        self._left_alone = left_alone
        self._notes = notes

    def take(self, since=0):
        """From everything that changed at that time or later."""
        taken = {}
        for path, status in self._entries("/"):
            mode = stat.S_IMODE(status.st_mode)
            if status.st_ctime >= since and mode & _OWNER_WRITES and not mode & _OTHERS_WRITE:
                taken[path] = mode
        # Noted before it happens.
        os.write(self._notes, "".join(json.dumps(entry) + "\n" for entry in taken.items()).encode())
        for path, mode in taken.items():
            os.chmod(self._top + path, mode & ~_OWNER_WRITES)

    def _entries(self, folder):
        """(path, status) of what is not alex's, links left out."""
        if any(is_beneath(folder, alone) for alone in self._left_alone):
            return
        yield folder, os.lstat(self._top + folder)
        with os.scandir(self._top + folder) as entries:
            for entry in entries:
                path = os.path.join(folder, entry.name)
                if entry.is_dir(follow_symlinks=False):
                    yield from self._entries(path)
                elif entry.is_file(follow_symlinks=False) and path not in self._left_alone:
                    yield path, entry.stat(follow_symlinks=False)


def now():
    """The earliest time of a change after this call, by the clock that file times come from."""
    return time.clock_gettime(_CLOCK_REALTIME_COARSE)


def give_back(tree, notes):
    """Restores what was taken, where nobody changed it since, and empties the notes."""
    notes.seek(0)
    for path, mode in dict(json.loads(line) for line in notes).items():
        with contextlib.suppress(OSError):  # gone, or in a folder that was closed since
            now_is = os.lstat(tree + path).st_mode
            if not stat.S_ISLNK(now_is) and stat.S_IMODE(now_is) == mode & ~_OWNER_WRITES:
                os.chmod(tree + path, mode)
    notes.truncate(0)
