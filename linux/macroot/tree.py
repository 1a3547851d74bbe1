"""Making a machine in an empty folder, and removing one."""

import os
import shutil

from macroot.errors import Trouble
from macroot.machines import MACHINES
from macroot.machines.entries import Absent, File, Link
from macroot.users import ALEX, ROOT, STAFF, WHEEL, is_alexs


def make(tree, machine, host):
    """Makes the machine of that name; owners as seen inside, where the host can give them."""
    if machine not in MACHINES:
        raise Trouble(f"there is no machine {machine!r}; there are: {', '.join(MACHINES)}")
    tree = os.path.normpath(tree)
    try:
        os.makedirs(tree, exist_ok=True)
        if os.listdir(tree):
            raise Trouble(f"{tree} is not empty")
    except (FileExistsError, NotADirectoryError):
        raise Trouble(f"{tree} is no folder") from None
    os.chmod(tree, 0o755)
    for part in MACHINES[machine]:
        for entry in part:
            _add(tree, entry)
    if host.real_users:
        _give(tree)


def _add(tree, entry):
    """Makes one entry and the folders above it; of two for one path the later counts."""
    path = tree + entry.path
    os.makedirs(os.path.dirname(path), exist_ok=True)
    if isinstance(entry, Link):
        os.symlink(entry.target, path)
    elif isinstance(entry, Absent):
        shutil.rmtree(path)
    elif isinstance(entry, File):
        with open(path, "wb") as file:
            file.write(entry.content)
        os.chmod(path, entry.mode)
    else:
        os.makedirs(path, exist_ok=True)
        os.chmod(path, entry.mode)


def _give(tree):
    """Gives everything in it to its owner."""
    for folder, folders, files in os.walk(tree):
        for name in folders + files:
            path = os.path.join(folder, name)
            user, group = (ALEX, STAFF) if is_alexs(path[len(tree):]) else (ROOT, WHEEL)
            os.chown(path, user, group, follow_symlinks=False)


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
