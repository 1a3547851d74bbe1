"""Moving this process into a user namespace of its own."""

import ctypes
import os

_CLONE_NEWUSER = 0x10000000
_EVERY_ID = "0 0 65536"

_libc = ctypes.CDLL(None, use_errno=True)


def enter_with_every_id():
    """Every id is itself inside. For root: a child that stays outside writes the maps.

    unshare(1) would ask newuidmap, which needs a range in /etc/subuid even for root.
    """
    process = os.getpid()
    entered, entering = os.pipe()
    child = os.fork()
    if child == 0:
        try:
            os.close(entering)
            if os.read(entered, 1):
                _write_maps(process)
                os._exit(0)
        finally:
            os._exit(1)
    try:
        if _libc.unshare(_CLONE_NEWUSER) != 0:
            raise OSError(ctypes.get_errno(), "unshare")
        os.write(entering, b".")
    finally:
        os.close(entering)
        _, failed = os.waitpid(child, 0)
    if failed:
        raise PermissionError("no user namespace with every id")


def _write_maps(process):
    for name in ("uid_map", "gid_map"):
        with open(f"/proc/{process}/{name}", "w", encoding="ascii") as file:
            file.write(_EVERY_ID)
