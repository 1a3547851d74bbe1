"""The command line of `scripts/macroot`."""

import argparse
import os
import sys

from macroot import host
from macroot.errors import Trouble
from macroot.inside.programs import PATH
from macroot.users import HOME

CANNOT_WORK = 70
VERDICTS = ("allow", "cancel", "refuse")


def main(arguments):
    """Runs one command; the result is the exit status."""
    os.umask(0o022)
    os.environ["PATH"] = PATH  # the host's own programs, nobody's private ones
    own, program = _split(arguments[1:] if arguments[:1] == [host.ENTERED] else arguments)
    options = _parser().parse_args(own)
    options.program = program
    try:
        return options.command(options, host.settle(arguments)) or 0
    except (Trouble, OSError) as trouble:
        print(f"macroot: {trouble}", file=sys.stderr)
        return CANNOT_WORK


def _split(arguments):
    """What stands before the first `--`, and the program and its arguments after it (or None)."""
    if "--" not in arguments:
        return arguments, None
    at = arguments.index("--")
    return arguments[:at], arguments[at + 1:] or None


def _new(options, found):
    from macroot import tree
    from tests.machines import MACHINES
    if options.machine not in MACHINES:
        raise Trouble(f"there is no machine {options.machine!r}; there are: {', '.join(MACHINES)}")
    found.say_if_reduced()
    tree.make(options.tree, MACHINES[options.machine], found)


def _run(options, found):
    from macroot import run
    return run.run(options, found)


def _manifest(options, found):
    from macroot import manifest
    sys.stdout.writelines(line + "\n" for line in manifest.lines(options.tree, found))


def _delete(options, _):
    from macroot import tree
    tree.delete(options.tree)


def _checked(fits, form):
    """An argument's type: a text that fits, as it is."""
    def check(text):
        if not fits(text):
            raise argparse.ArgumentTypeError(f"not {form}: {text!r}")
        return text
    return check


def _disk(text):
    path, _, room = text.rpartition("=")
    if not path.startswith("/") or not room.isdecimal():
        raise argparse.ArgumentTypeError(f"not PATH=BYTES: {text!r}")
    return path, int(room)


def _is_time(text):
    import time
    try:
        return time.strptime(text, "%Y-%m-%d %H:%M:%S")
    except ValueError:
        return None


_home = _checked(lambda text: text.startswith("/") and not set(text) & set(":\n\r"),
                 "a path without ':' and line breaks")
_own = _checked(lambda text: text == "none" or text.startswith("/"), "a path inside or `none`")
_time = _checked(_is_time, "YYYY-MM-DD HH:MM:SS")
_status = _checked(lambda text: text.isdecimal() and 200 <= int(text) <= 599,
                   "a status of a final answer, 200 to 599")


def _layout(prog):
    """Of help texts; asking for the terminal's width would cost every run some milliseconds."""
    return argparse.HelpFormatter(prog, width=100)


def _parser():
    parser = argparse.ArgumentParser(
        prog="macroot", allow_abbrev=False, formatter_class=_layout,
        description="A folder tree that looks like a Mac's, and programs run in it.")
    commands = parser.add_subparsers(metavar="COMMAND", required=True)

    def command(name, function, text, **more):
        added = commands.add_parser(name, help=text, description=text, allow_abbrev=False,
                                    formatter_class=_layout, **more)
        added.set_defaults(command=function)
        return added

    new = command("new", _new, "make a machine in an empty folder")
    new.add_argument("tree", metavar="TREE")
    new.add_argument("--machine", metavar="NAME", default="typical",
                     help="which machine (default: typical)")

    run = command("run", _run, "run PROGRAM as alex in TREE; the exit status is the program's",
                  usage="macroot run [OPTIONS] TREE [-- PROGRAM ARG...]")
    run.add_argument("tree", metavar="TREE")
    run.add_argument("--admin", metavar="VERDICT", choices=VERDICTS, action="append", default=[],
                     help="allow, cancel or refuse an administrator prompt; repeatable, "
                          "one a prompt, the last one stays (default: allow)")
    run.add_argument("--asked", metavar="FILE", help="append one JSON object a prompt to FILE")
    run.add_argument("--fast", action="store_true", help="`sleep` in scripts costs nothing")
    run.add_argument("--at", metavar="'YYYY-MM-DD HH:MM:SS'", type=_time,
                     help="the local time inside, standing still")
    run.add_argument("--display", action="store_true", help="a private X display inside")
    run.add_argument("--screenshot", metavar="FILE", help="the display's picture at the end, a PNG")
    run.add_argument("--keychain", metavar="FILE",
                     help="the login keychain: a property list, item label -> data; read before, "
                          "written after")
    run.add_argument("--keychain-locked", action="store_true",
                     help="the keychain is there but refuses")
    run.add_argument("--sh", choices=("bash", "dash"), default="bash",
                     help="what /bin/sh is inside (default: bash)")
    run.add_argument("--full", metavar="PATH=BYTES", type=_disk, action="append", default=[],
                     help="PATH is a disk of its own with that much room left")
    run.add_argument("--web", metavar="STATUS", type=_status,
                     help="a web server on port 80 inside that answers every host name with STATUS")
    run.add_argument("--pre", metavar="SCRIPT",
                     help="run as root inside, before PROGRAM: a file, or shell text")
    run.add_argument("--home", metavar="PATH", type=_home, default=HOME,
                     help=f"alex's home inside (default: {HOME})")
    run.add_argument("--own", metavar="PATH", type=_own, action="append", default=[],
                     help="give PATH and all below it to alex first; repeatable; "
                          "`none` gives nothing")

    manifest = command("manifest", _manifest, "one line an entry of TREE, sorted by path")
    manifest.add_argument("tree", metavar="TREE")

    delete = command("delete", _delete, "remove TREE, whoever owns what is in it")
    delete.add_argument("tree", metavar="TREE")
    return parser
