"""`run`: plans a run, has it carried out, and leaves the tree as the program left it."""

import os
import signal

from macroot import keychain_file, mountpoints, sanitizers
from macroot.errors import Trouble
from macroot.host import NAMESPACES
from macroot.inside import layout

_REPOSITORY = os.path.normpath(os.path.join(os.path.dirname(__file__), "..", ".."))
_INSTALLER = os.path.join(_REPOSITORY, "build/release/bin/KSExtensionInstaller")

# Where a Mac root keeps what is not the machine's.
_PROGRAM_FOLDER = "/run/program"
_PRE_SCRIPT = "/run/macroot/pre"
_COMMON_FOLDERS = {"/run/installer": os.path.dirname(_INSTALLER),
                   layout.FONT_CACHE: "/var/cache/fontconfig"}

# What the host has in the same place.
_SAME_INSIDE = ("/usr/", "/bin/", "/sbin/", "/lib/", "/lib64/")

# Variables that reach the program; every other one is cleared.
_PASSED = ("LANG", "LANGUAGE", "TZ",
           "ASAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS", "UBSAN_OPTIONS")
_PASSED_PREFIXES = ("LC_", "GTEST_")

_ENDING_SIGNALS = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP)


def run(options, host):
    """Runs the program; the result is its exit status, 128+N when signal N ended it."""
    tree = os.path.realpath(options.tree)
    if not os.path.isdir(tree):
        raise Trouble(f"{options.tree} is no folder")
    host.say_if_reduced()
    if host.kind == NAMESPACES:
        from macroot import namespaces as way
    else:
        from macroot import proot as way
    bound = {}
    plan = _plan(options, host, tree, bound)
    way.check(plan)
    channels = _channels(options)
    with mountpoints.MountPoints(tree) as entered:
        if not host.real_users:
            channels["write_bits"] = entered.notes.fileno()
        outcome = way.carry_out(plan, bound, channels)
    if "trouble" in outcome:
        raise Trouble(outcome["trouble"])
    if options.keychain and not options.keychain_locked:
        keychain_file.write(options.keychain, outcome["keychain"])
    return outcome["status"]


def _channels(options):
    """The open files between the outside and the supervisor, by name; -1 where there is none.

    control     a byte a signal that this process gets, read by the supervisor
    asked       where each prompt is noted
    screenshot  where the display's picture goes
    write_bits  where the permissions are noted that what is root's loses, where one user of the
                host stands for alex and root
    """
    control, signalled = os.pipe()
    os.set_blocking(signalled, False)
    for number in _ENDING_SIGNALS:
        if signal.getsignal(number) is not signal.SIG_IGN:
            signal.signal(number, lambda number, _: os.write(signalled, bytes([number])))
    return {"control": control, "asked": _open(options.asked, os.O_APPEND),
            "screenshot": _open(options.screenshot, os.O_TRUNC), "write_bits": -1}


def _open(path, how):
    if path is None:
        return -1
    try:
        return os.open(path, os.O_WRONLY | os.O_CREAT | how, 0o666)
    except OSError as error:
        raise Trouble(f"cannot write {path}: {error.strerror}") from error


def _plan(options, host, tree, bound):
    """Everything that the supervisor must know, as JSON can carry it.

    bound: gets what of the host must be seen inside, a path inside -> a path of the host.
    """
    bound.update((inside, folder) for inside, folder in _COMMON_FOLDERS.items()
                 if os.path.isdir(folder))
    return {
        "tree": tree,
        "etc_folders": mountpoints.etc_folders(tree),
        "library_folders": mountpoints.library_folders(tree),
        "real_users": host.real_users,
        "home": options.home,
        "program": _program(options.program or [_INSTALLER], bound),
        "verdicts": options.admin or ["allow"],
        "own": [path for path in options.own if path != "none"],
        "fast": options.fast,
        "sh": options.sh,
        "at": options.at,
        "full": options.full,
        "web": options.web,
        "display": options.display or options.screenshot is not None,
        "keychain": keychain_file.read(options.keychain) if options.keychain else {},
        "keychain_locked": options.keychain_locked,
        "pre": _pre(options.pre, bound),
        "environment": _environment(options, bound),
    }


def _program(words, bound):
    """The program and its arguments as they are called inside; its folder comes along."""
    name, *arguments = words
    if "/" not in name and not os.path.exists(name):
        import shutil  # it takes its time
        name = shutil.which(name) or name
    path = os.path.abspath(name)
    if not os.path.isfile(path):
        raise Trouble(f"there is no program {path}")
    if path.startswith(_SAME_INSIDE):
        return [path, *arguments]
    path = os.path.realpath(path)
    bound[_PROGRAM_FOLDER] = os.path.dirname(path)
    return [os.path.join(_PROGRAM_FOLDER, os.path.basename(path)), *arguments]


def _pre(script, bound):
    """The command before the program: a file of the host, or shell text."""
    if script is None:
        return None
    if not os.path.isfile(script):
        return ["/bin/sh", "-c", script]
    bound[_PRE_SCRIPT] = os.path.realpath(script)
    with open(script, "rb") as file:
        can_be_called = file.read(2) == b"#!" and os.access(script, os.X_OK)
    return [_PRE_SCRIPT] if can_be_called else ["/bin/sh", _PRE_SCRIPT]


def _environment(options, bound):
    """What of this environment reaches the program."""
    passed = {name: value for name, value in os.environ.items()
              if name in _PASSED or name.startswith(_PASSED_PREFIXES)}
    passed = sanitizers.bind_their_files(passed, bound)
    return sanitizers.with_standing_time(passed) if options.at else passed
