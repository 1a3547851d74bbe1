"""Carries a run out in namespaces of its own, made by bwrap."""

import json
import os
import subprocess
import sys

from macroot.errors import Trouble
from macroot.inside.programs import process_namespace

_PACKAGE = os.path.dirname(os.path.realpath(__file__))
_PACKAGE_INSIDE = "/run/macroot/lib/macroot"
_ADMIN = "/run/macroot/admin"
_SUPERVISOR = f"{_PACKAGE_INSIDE}/inside"

# What of the host's /etc programs need to start, to find fonts and to know the time.
ETC_FROM_HOST = ("ld.so.cache", "GNUstep", "fonts", "localtime", "timezone", "alternatives")


def check(_):
    """Every option works here."""


def carry_out(plan, bound, channels):
    """Runs the supervisor inside; the result is what it reports."""
    _compile_the_inside()
    report, reporting = os.pipe()
    plan = {**plan, "process_namespace": process_namespace(),
            "channels": {**channels, "report": reporting}}
    written_plan = os.memfd_create("plan")
    os.write(written_plan, json.dumps(plan).encode())
    os.lseek(written_plan, 0, os.SEEK_SET)

    handed_on = [written_plan, *(number for number in plan["channels"].values() if number >= 0)]
    command = ["bwrap", *_walls(plan, bound), "--",
               "/usr/bin/python3", "-ISXutf8", _SUPERVISOR, str(written_plan)]
    # A session of its own: the terminal's signals come by way of the supervisor alone.
    with subprocess.Popen(command, pass_fds=handed_on, env={}, start_new_session=True) as sandbox:
        os.close(reporting)
        with open(report, encoding="utf-8") as reported:
            outcome = reported.read()
        status = sandbox.wait()
    if outcome:
        return json.loads(outcome)
    if status < 0 or status > 128:  # all of it was killed, the supervisor too
        return {"status": 128 - status if status < 0 else status, "keychain": plan["keychain"]}
    raise Trouble(f"bwrap could not make the Mac root (status {status})")


def _compile_the_inside():
    """Here, where the result can be kept; only what changed."""
    folder = f"{_PACKAGE}/inside"
    for name in os.listdir(folder):
        module, extension = os.path.splitext(name)
        compiled = f"{folder}/__pycache__/{module}.{sys.implementation.cache_tag}.pyc"
        if extension == ".py" and (not os.path.exists(compiled) or
                                   os.stat(compiled).st_mtime < os.stat(f"{folder}/{name}").st_mtime):
            import compileall
            compileall.compile_dir(folder, quiet=2)
            return


def _walls(plan, bound):
    """bwrap's options: the tree as one bind, the host's part over it, the rest beneath /run."""
    walls = ["--unshare-pid", "--unshare-ipc", "--unshare-uts", "--hostname", "mac",
             "--die-with-parent", "--new-session",
             "--bind", plan["tree"], "/", "--ro-bind", "/usr", "/usr",
             "--dev", "/dev", "--chmod", "1777", "/dev/shm", "--proc", "/proc",
             "--perms", "0755", "--tmpfs", "/run"]
    if plan["web"]:
        walls += ["--unshare-net"]
    for folder in plan["library_folders"]:
        walls += ["--ro-bind", f"/usr{folder}", folder]
    for folder in plan["etc_folders"]:
        walls += ["--perms", "0755", "--tmpfs", folder]
        for name in ETC_FROM_HOST:
            walls += ["--ro-bind-try", f"/etc/{name}", f"{folder}/{name}"]
    for inside, source in swapped_programs(plan):
        walls += ["--ro-bind", source, inside]
    shown = {**bound, _PACKAGE_INSIDE: _PACKAGE, _ADMIN: f"{_PACKAGE}/inside/admin"}
    for folder in sorted({os.path.dirname(inside) for inside in shown} - {"/run"}):
        walls += ["--perms", "0755", "--dir", folder]
    for inside, host_path in shown.items():
        walls += ["--ro-bind", host_path, inside]
    return walls


def swapped_programs(plan):
    """(path inside, program of the host that takes its place)."""
    shell, wanted = os.path.realpath("/bin/sh"), os.path.realpath(f"/usr/bin/{plan['sh']}")
    if shell != wanted:
        yield shell, wanted
    if plan["fast"]:
        yield os.path.realpath("/usr/bin/sleep"), os.path.realpath("/usr/bin/true")
