"""Carries a run out by proot, where namespaces are refused.

proot shows a program another root by tracing its system calls. The kernel's permissions still hold
for the process's real user, so as root outside alex and root stay two users. There is no process
namespace and no mount: processes of the host are visible, and a disk or a network of its own cannot
be had.
"""

import contextlib
import fcntl
import os
import shutil
import stat
import sys
import tempfile

from macroot.errors import Trouble
from macroot.inside.supervisor import supervise
from macroot.inside.proot_programs import ProotPrograms
from macroot.namespaces import ETC_FROM_HOST, swapped_programs
from macroot.tree import remove

_SCRATCH_FOLDER = "/tmp"
_SCRATCH, _NEW_SCRATCH = "macroot-run-", "macroot-new-"
_INSIDE = os.path.join(os.path.dirname(os.path.realpath(__file__)), "inside")


def check(plan):
    """Says which option cannot work here."""
    for name, lack in (("full", "a disk"), ("web", "a network")):
        if plan[name]:
            raise Trouble(f"--{name} cannot work here: namespaces are refused, and {lack} "
                          "of its own needs one")


def carry_out(plan, bound, channels):
    """Supervises the run from the outside; the result is what the supervisor reports."""
    if plan["real_users"] and (closed := _closed_to_alex(plan["tree"])):
        print(f"macroot: reduced: alex cannot enter {closed} (no search permission for others), "
              "so he runs with root's powers", file=sys.stderr)
        plan = {**plan, "real_users": False}
    _remove_scratch_of_killed_runs()
    scratch, in_use = _new_scratch()
    try:
        os.chmod(scratch, 0o755)
        return supervise(plan, ProotPrograms(plan, _options(plan, bound, scratch), scratch, channels),
                         channels)
    finally:
        remove(scratch)
        os.close(in_use)


def _new_scratch():
    """A folder of the run's own and the lock on it; it gets its name when it is locked."""
    folder = tempfile.mkdtemp(prefix=_NEW_SCRATCH, dir=_SCRATCH_FOLDER)
    in_use = _locked(folder)
    scratch = folder.replace(_NEW_SCRATCH, _SCRATCH)
    os.rename(folder, scratch)
    return scratch, in_use


def _remove_scratch_of_killed_runs():
    for name in os.listdir(_SCRATCH_FOLDER):
        folder = os.path.join(_SCRATCH_FOLDER, name)
        with contextlib.suppress(OSError):  # in use, or just gone
            if name.startswith(_SCRATCH) and os.lstat(folder).st_uid == os.geteuid():
                abandoned = _locked(folder)
                remove(folder)
                os.close(abandoned)


def _locked(folder):
    """An open folder under a lock that ends with this process, however it ends."""
    descriptor = os.open(folder, os.O_RDONLY | os.O_DIRECTORY)
    try:
        fcntl.flock(descriptor, fcntl.LOCK_EX | fcntl.LOCK_NB)
    except OSError:
        os.close(descriptor)
        raise
    return descriptor


def _options(plan, bound, scratch):
    """proot's options: the tree as root, the host's part and what the run brings over it."""
    shown = [("/usr", "/usr"), ("/dev", "/dev"), ("/proc", "/proc"), (f"{scratch}/run", "/run")]
    shown += [(f"/usr{folder}", folder) for folder in plan["library_folders"]]
    for number, folder in enumerate(plan["etc_folders"]):
        os.mkdir(f"{scratch}/etc{number}")
        shown.append((f"{scratch}/etc{number}", folder))
        shown += [(f"/etc/{name}", f"{folder}/{name}") for name in ETC_FROM_HOST
                  if os.path.exists(f"/etc/{name}")]
    shown += [(source, inside) for inside, source in swapped_programs(plan)]
    shown += [(_reachable(host_path, scratch) if plan["real_users"] else host_path, inside)
              for inside, host_path in bound.items()]
    os.makedirs(f"{scratch}/run/macroot/lib/macroot")
    shutil.copytree(_INSIDE, f"{scratch}/run/macroot/lib/macroot/inside")
    shutil.copy(f"{_INSIDE}/admin", f"{scratch}/run/macroot/admin")
    bindings = (word for source, inside in shown for word in ("-b", f"{source}:{inside}"))
    return ["-r", plan["tree"], *bindings]


def _reachable(path, scratch):
    """The path, or a copy of it where alex can get at it."""
    if not _closed_to_alex(path):
        return path
    copy = os.path.join(tempfile.mkdtemp(dir=scratch), os.path.basename(path))
    os.chmod(os.path.dirname(copy), 0o755)
    return shutil.copytree(path, copy) if os.path.isdir(path) else shutil.copy(path, copy)


def _closed_to_alex(path):
    """The folder on the way to a path that others may not search, if there is one."""
    folder = os.path.realpath(path if os.path.isdir(path) else os.path.dirname(path))
    while folder != "/":
        if not os.stat(folder).st_mode & stat.S_IXOTH:
            return folder
        folder = os.path.dirname(folder)
    return None
