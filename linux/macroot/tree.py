"""Making a machine in an empty folder, and removing one."""

import os
import shutil

from macroot.errors import Trouble
from macroot.machines import MACHINES
from macroot.machines.entries import Absent, File, Link
from macroot.users import ALEX, ROOT, STAFF, WHEEL, is_alexs

_FOLDER_MODE = 0o755


def make(tree, machine, host):
    """Makes the machine of that name; owners as seen inside, where the host can give them."""
    if machine not in MACHINES:
        raise Trouble(f"there is no machine {machine!r}; there are: {', '.join(MACHINES)}")
    try:
        os.makedirs(tree, exist_ok=True)
        if os.listdir(tree):
            raise Trouble(f"{tree} is not empty")
    except (FileExistsError, NotADirectoryError):
        raise Trouble(f"{tree} is no folder") from None
    os.chmod(tree, _FOLDER_MODE)
    builder = _Builder(tree, host.real_users)
    for part in MACHINES[machine]:
        for entry in part:
            builder.add(entry)


class _Builder:
    """Adds entries beneath one tree, missing folders above them included."""

    def __init__(self, tree, real_users):
        self._tree = tree
        self._real_users = real_users

    def add(self, entry):
        """Makes one entry; of two for one path the later counts."""
        path = self._tree + entry.path
        self._make_folders_above(entry.path)
        if isinstance(entry, Link):
            os.symlink(entry.target, path)
        elif isinstance(entry, File):
            with open(path, "wb") as file:
                file.write(entry.content)
            os.chmod(path, entry.mode)
        elif isinstance(entry, Absent):
            self._remove(path)
            return
        else:
            os.makedirs(path, exist_ok=True)
            os.chmod(path, entry.mode)
        self._give(entry.path)

    def _make_folders_above(self, path):
        folder = os.path.dirname(path)
        if folder != "/" and not os.path.isdir(self._tree + folder):
            self._make_folders_above(folder)
            os.mkdir(self._tree + folder, _FOLDER_MODE)
            self._give(folder)

    def _give(self, path):
        if self._real_users:
            user, group = (ALEX, STAFF) if is_alexs(path) else (ROOT, WHEEL)
            os.chown(self._tree + path, user, group, follow_symlinks=False)

    @staticmethod
    def _remove(path):
        if os.path.isdir(path):
            shutil.rmtree(path)
        else:
            os.unlink(path)


def delete(tree):
    """Removes a tree, folders without permissions included."""
    if not os.path.isdir(tree) or os.path.islink(tree):
        raise Trouble(f"{tree} is no folder")
    if os.path.ismount(tree):
        raise Trouble(f"{tree} is a mount point")

    try:
        remove(tree)
    except OSError as error:
        raise Trouble(f"cannot remove {tree}: {error}") from error


def remove(folder):
    """Removes a folder with all in it, folders without permissions included."""
    _open_up(folder)
    shutil.rmtree(folder)


def _open_up(folder):
    os.chmod(folder, 0o700)
    with os.scandir(folder) as entries:
        for entry in entries:
            if entry.is_dir(follow_symlinks=False):
                _open_up(entry.path)
