"""Trees: what they are made of, making one in an empty folder, and removing one."""

import os
import shutil
from collections import namedtuple

from macroot.errors import Trouble
from macroot.users import ALEX, ROOT, STAFF, WHEEL, is_alexs

# Folders above an entry need none of their own. Of two entries for one path the later one counts.
Folder = namedtuple("Folder", "path mode", defaults=(0o755,))
File = namedtuple("File", "path content mode", defaults=(0o644,))
Link = namedtuple("Link", "path target")
Absent = namedtuple("Absent", "path")  # takes away what an entry before it brought


def make(tree, entries, host):
    """Makes what is listed; owners as seen inside, where the host can give them."""
    tree = os.path.normpath(tree)
    try:
        os.makedirs(tree, exist_ok=True)
        if os.listdir(tree):
            raise Trouble(f"{tree} is not empty")
    except (FileExistsError, NotADirectoryError):
        raise Trouble(f"{tree} is no folder") from None
    os.chmod(tree, 0o755)
    for entry in entries:
        _add(tree, entry)
    if host.real_users:
        _give(tree)


def _add(tree, entry):
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
