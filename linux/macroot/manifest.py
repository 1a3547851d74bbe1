"""What a tree holds, one line an entry."""

import hashlib
import os
import stat

from macroot.errors import Trouble
from macroot.users import ALEX, HOSTS_FOLDERS, STAFF, is_beneath

_TYPES = {stat.S_IFDIR: "d", stat.S_IFREG: "f", stat.S_IFLNK: "l", stat.S_IFIFO: "p",
          stat.S_IFSOCK: "s", stat.S_IFCHR: "c", stat.S_IFBLK: "b"}


def lines(tree, host):
    """The manifest's lines, sorted by path as it is printed."""
    if not os.path.isdir(tree):
        raise Trouble(f"{tree} is no folder")
    entries = sorted((_printable(path), path, status) for path, status in _walk(os.fsencode(tree)))
    for shown, path, status in entries:
        fields = [_TYPES[stat.S_IFMT(status.st_mode)], f"{stat.S_IMODE(status.st_mode):04o}",
                  _owner(status, host), shown]
        content = _content(os.fsencode(tree) + path, status.st_mode)
        yield "\t".join(fields if content is None else fields + [content])


def _walk(tree, folder=b""):
    """(path, status) of each entry beneath a folder, the host's part left out."""
    with os.scandir(tree + b"/" + folder) as entries:
        for entry in entries:
            path = folder + b"/" + entry.name
            if _is_the_hosts(path, entry):
                continue
            yield path, entry.stat(follow_symlinks=False)
            if entry.is_dir(follow_symlinks=False):
                yield from _walk(tree, path)


def _is_the_hosts(path, entry):
    inside = os.fsdecode(path)
    if not entry.is_symlink():
        return inside in HOSTS_FOLDERS
    if os.path.dirname(inside) != "/":
        return False
    target = os.path.normpath(os.path.join("/", os.fsdecode(os.readlink(entry.path))))
    return any(is_beneath(target, folder) for folder in HOSTS_FOLDERS)


def _owner(status, host):
    """Where one user of the host stands for everybody inside, alex sees all of it as his."""
    if not host.real_users and status.st_uid == os.geteuid():
        return f"{ALEX}:{STAFF}"
    return f"{status.st_uid}:{status.st_gid}"


def _content(path, mode):
    if stat.S_ISLNK(mode):
        return _printable(os.readlink(path))
    if not stat.S_ISREG(mode):
        return None
    digest = hashlib.sha256()
    try:
        with open(path, "rb") as file:
            while piece := file.read(1 << 20):
                digest.update(piece)
    except PermissionError:
        return "unreadable"
    return digest.hexdigest()


def _printable(path):
    r"""UTF-8 text stays; bytes that are none, control characters and the backslash become \xNN."""
    text = path.decode("utf-8", "surrogateescape")
    return "".join(
        char if char.isprintable() and char != "\\"
        else "".join(f"\\x{byte:02x}" for byte in char.encode("utf-8", "surrogateescape"))
        for char in text)
