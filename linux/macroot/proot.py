"""Carries a run out by proot, where namespaces are refused.

proot shows a program another root by tracing its system calls. The kernel's permissions still hold
for the process's real user, so as root outside alex and root stay two users. There is no process
namespace and no mount: processes of the host are visible, and a disk or a network of its own cannot
be had.
"""

import os
import shutil
import stat
import sys
import tempfile

from macroot.errors import Trouble
from macroot.inside.supervisor import supervise
from macroot.inside.traced import Traced
from macroot.namespaces import ETC_FROM_HOST, swapped_programs
from macroot.tree import remove

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
    scratch = tempfile.mkdtemp(prefix="macroot-run-", dir="/tmp")
    try:
        os.chmod(scratch, 0o755)
        return supervise(plan, Traced(plan, _options(plan, bound, scratch), scratch, channels),
                         channels)
    finally:
        remove(scratch)


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
