"""`run`: plans a run, has it carried out, and leaves the tree as the program left it."""

import os
import shutil
import signal

from macroot import keychain_file, mountpoints, namespaces, proot, sanitizers
from macroot.errors import Trouble
from macroot.host import NAMESPACES
from macroot.inside.write_bits import give_back

_REPOSITORY = os.path.normpath(os.path.join(os.path.dirname(__file__), "..", ".."))
_INSTALLER = os.path.join(_REPOSITORY, "build/release/bin/KSExtensionInstaller")
_FONT_CACHE = "/var/cache/fontconfig"

# Where a Mac root keeps what is not the machine's.
PROGRAM_FOLDER = "/run/program"
INSTALLER_FOLDER = "/run/installer"
PRE_SCRIPT = "/run/macroot/pre"

# What the host has in the same place.
_COMMON_FOLDERS = ("/usr/", "/bin/", "/sbin/", "/lib/", "/lib64/")

# Variables that reach the program; every other one is cleared.
_PASSED = ("LANG", "LANGUAGE", "TZ", "ASAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS", "UBSAN_OPTIONS")
_PASSED_PREFIXES = ("LC_", "GTEST_")

_ENDING_SIGNALS = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP)


def run(options, host):
    """Runs the program; the result is its exit status, 128+N when signal N ended it."""
    tree = os.path.realpath(options.tree)
    if not os.path.isdir(tree):
        raise Trouble(f"{options.tree} is no folder")
    host.say_if_reduced()
    way = namespaces if host.kind == NAMESPACES else proot
    files = _Files()
    plan = _plan(options, host, tree, files)
    way.check(plan)
    channels = _Channels(options, host)
    with mountpoints.MountPoints(tree):
        try:
            outcome = way.carry_out(plan, files, channels)
        finally:
            channels.finish(tree)
    if "trouble" in outcome:
        raise Trouble(outcome["trouble"])
    if options.keychain and not options.keychain_locked:
        keychain_file.write(options.keychain, outcome["keychain"])
    return outcome["status"]


class _Files:
    """What of the host a run needs inside: `bound` maps a path inside to a path of the host."""

    def __init__(self):
        self.bound = {}

    def bind(self, inside, host_path):
        self.bound[inside] = host_path
        return inside


class _Channels:
    """The open files between the outside and the supervisor, by name; -1 where there is none.

    control     a byte a signal that the run got, read by the supervisor
    asked       where each prompt is noted
    screenshot  where the display's picture goes
    write_bits  where the permissions are noted that alex and root lose as one user of the host
    """

    def __init__(self, options, host):
        self.control, self._signalled = os.pipe()
        os.set_blocking(self._signalled, False)
        for number in _ENDING_SIGNALS:
            if signal.getsignal(number) is not signal.SIG_IGN:
                signal.signal(number, self._pass_on)
        self.asked = _open(options.asked, os.O_APPEND)
        self.screenshot = _open(options.screenshot, os.O_TRUNC)
        self.write_bits = -1 if host.real_users else os.memfd_create("write bits", 0)

    def numbers(self):
        """By name, as the supervisor is told."""
        return {"control": self.control, "asked": self.asked, "screenshot": self.screenshot,
                "write_bits": self.write_bits}

    def finish(self, tree):
        """After the supervisor, however it ended."""
        if self.write_bits >= 0:
            give_back(tree, self.write_bits)

    def _pass_on(self, number, _):
        os.write(self._signalled, bytes([number]))


def _open(path, how):
    if path is None:
        return -1
    try:
        return os.open(path, os.O_WRONLY | os.O_CREAT | how, 0o666)
    except OSError as error:
        raise Trouble(f"cannot write {path}: {error.strerror}") from error


def _plan(options, host, tree, files):
    """Everything that the supervisor must know, as JSON can carry it."""
    return {
        "tree": tree,
        "etc_folders": mountpoints.etc_folders(tree),
        "library_folders": mountpoints.library_folders(tree),
        "real_users": host.real_users,
        "home": options.home,
        "program": _program(options.program or [_INSTALLER], files),
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
        "pre": _pre(options.pre, files),
        "environment": sanitizers.bind_their_files(_passed_environment(), files),
    }


def _program(words, files):
    """The program and its arguments as they are called inside; its folder comes along."""
    if os.path.isdir(_FONT_CACHE):
        files.bind("/run/macroot/font-cache", _FONT_CACHE)
    if os.path.isdir(os.path.dirname(_INSTALLER)):
        files.bind(INSTALLER_FOLDER, os.path.dirname(_INSTALLER))
    name, *arguments = words
    if "/" not in name and not os.path.exists(name):
        name = shutil.which(name) or name
    path = os.path.abspath(name)
    if not os.path.isfile(path):
        raise Trouble(f"there is no program {path}")
    if path.startswith(_COMMON_FOLDERS):
        return [path, *arguments]
    path = os.path.realpath(path)
    files.bind(PROGRAM_FOLDER, os.path.dirname(path))
    return [os.path.join(PROGRAM_FOLDER, os.path.basename(path)), *arguments]


def _pre(script, files):
    """The command before the program: a file of the host, or shell text."""
    if script is None:
        return None
    if not os.path.isfile(script):
        return ["/bin/sh", "-c", script]
    inside = files.bind(PRE_SCRIPT, os.path.realpath(script))
    with open(script, "rb") as file:
        names_its_interpreter = file.read(2) == b"#!"
    return [inside] if names_its_interpreter and os.access(script, os.X_OK) else ["/bin/sh", inside]


def _passed_environment():
    return {name: value for name, value in os.environ.items()
            if name in _PASSED or name.startswith(_PASSED_PREFIXES)}
