"""What a run must add to a tree to enter it: mount points, links to them, temporary folders.

A run takes away what it added when it ends. Runs in one tree may overlap, so the last one takes
away what all of them added; a record beside the lock remembers it, even of a run that was killed.
"""

import fcntl
import os
import stat
import zlib

from macroot.errors import Trouble
from macroot.inside import write_bits
from macroot.users import TEMPORARY_FOLDERS

# In the order of making; those of _STAYING are part of the machine once they exist.
_FOLDERS = (("usr", 0o755), ("dev", 0o755), ("proc", 0o755), ("run", 0o755), ("private", 0o755),
            ("private/etc", 0o755), ("private/tmp", 0o1777), ("private/var", 0o755),
            ("private/var/tmp", 0o1777))
_STAYING = ("private", "private/var", *(folder[1:] for folder in TEMPORARY_FOLDERS))
_PRIVATE_LINKS = ("etc", "tmp", "var")
_LIBRARY_LINKS = ("bin", "sbin", "lib", "lib32", "lib64", "libx32")


class MountPoints:
    """Held around a run: `with MountPoints(tree): ...`.

    `notes` is an open file for the permissions that are taken for the time of a run
    (write_bits.py): they are given back with the rest.
    """

    def __init__(self, tree):
        self._tree = tree
        self._locks = _lock_folder()
        self._record_path = os.path.join(self._locks, _name_of(tree))
        self._notes_path = self._record_path + "-permissions"
        self._record = None
        self.notes = None

    def __enter__(self):
        with self._alone():
            self._record = open(self._record_path, "a+", encoding="utf-8")
            self.notes = open(self._notes_path, "ab+", buffering=0)
            if self._is_the_only_one():  # what is there is a killed run's
                write_bits.give_back(self._tree, self.notes)
            fcntl.flock(self._record, fcntl.LOCK_SH)
            try:
                self._make()
            except BaseException:
                self._take_away()
                raise
        return self

    def __exit__(self, *_):
        with self._alone():
            self._take_away()

    def _is_the_only_one(self):
        try:
            fcntl.flock(self._record, fcntl.LOCK_EX | fcntl.LOCK_NB)
            return True
        except BlockingIOError:
            return False

    def _alone(self):
        """A lock over every tree's records, held for moments only."""
        mutex = open(os.path.join(self._locks, "mutex"), "w", encoding="utf-8")
        fcntl.flock(mutex, fcntl.LOCK_EX)
        return mutex

    def _make(self):
        for folder, mode in _FOLDERS:
            self._make_folder(folder, mode)
        for name in _PRIVATE_LINKS:
            self._make_link(name, f"private/{name}")
        for name in _LIBRARY_LINKS:
            if os.path.islink(f"/{name}"):
                self._make_link(name, f"usr/{name}")

    def _make_folder(self, folder, mode):
        path = os.path.join(self._tree, folder)
        try:
            if stat.S_ISDIR(os.lstat(path).st_mode):
                return
            raise Trouble(f"{path} is in the way: it must be a folder")
        except FileNotFoundError:
            pass
        if folder not in _STAYING:
            self._remember(folder)
        os.mkdir(path)
        os.chmod(path, mode)

    def _make_link(self, name, target):
        path = os.path.join(self._tree, name)
        if not os.path.lexists(path):
            self._remember(name)
            os.symlink(target, path)

    def _remember(self, name):
        self._record.write(name + "\n")
        self._record.flush()

    def _take_away(self):
        """Everything, unless another run in this tree goes on."""
        with self._record, self.notes:
            if not self._is_the_only_one():
                return
            write_bits.give_back(self._tree, self.notes)
            self._record.seek(0)
            for name in reversed(self._record.read().splitlines()):
                self._remove(os.path.join(self._tree, name))
            os.unlink(self._record_path)
            os.unlink(self._notes_path)

    @staticmethod
    def _remove(path):
        try:
            if os.path.islink(path):
                os.unlink(path)
            else:
                os.rmdir(path)
        except OSError:
            pass  # the program put something of its own there


def etc_folders(tree):
    """Where /etc lies: behind the Mac's link, and in a tree's own folder of that name too."""
    return ["/private/etc"] + (["/etc"] if _is_real_folder(tree, "etc") else [])


def library_folders(tree):
    """Where a tree brings a folder instead of a link to the host's /usr/bin and the like."""
    return [f"/{name}" for name in _LIBRARY_LINKS
            if os.path.islink(f"/{name}") and _is_real_folder(tree, name)]


def _is_real_folder(tree, name):
    path = os.path.join(tree, name)
    return os.path.isdir(path) and not os.path.islink(path)


def _name_of(tree):
    """Its number, and its path: the number may be another tree's since a run was killed."""
    status = os.stat(tree)
    path = zlib.crc32(os.fsencode(os.path.realpath(tree)))
    return f"{status.st_dev:x}-{status.st_ino:x}-{path:x}"


def _lock_folder():
    """One a user of the host, the same from within each of his user namespaces."""
    folder = f"/tmp/macroot-{_user_of_the_host()}"
    try:
        os.mkdir(folder, 0o700)
    except FileExistsError:
        status = os.lstat(folder)
        if not stat.S_ISDIR(status.st_mode) or status.st_uid != os.geteuid():
            raise Trouble(f"{folder} is somebody else's") from None
    return folder


def _user_of_the_host():
    with open("/proc/self/uid_map", encoding="ascii") as lines:
        ranges = [[int(field) for field in line.split()] for line in lines]
    user = os.geteuid()
    return next((outside + user - inside for inside, outside, count in ranges
                 if inside <= user < inside + count), user)
