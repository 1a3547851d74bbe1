"""The command line of `scripts/prove`."""

import argparse
import contextlib
import importlib
import os
import random
import signal
import shutil
import subprocess
import sys
import tempfile
import time

from proof.results import Trial

CHAPTERS = [
    "calls",
    "kills",
    "fuzzing",
    "limits",
    "machines",
    "mutation",
]


def main(arguments):
    """Runs chapters and prints a table each; 0 when everything holds, else 1."""
    parser = argparse.ArgumentParser(
        prog="prove", allow_abbrev=False, formatter_class=argparse.RawDescriptionHelpFormatter,
        description="Tries what may go wrong, and prints a table a chapter: docs/reliability.md.",
        epilog="Cases that held are kept in build/prove and not tried again until a source of theirs changes;\n"
               "a stopped run goes on where it was. The status is 0 when everything holds.")
    parser.add_argument("--quick", action="store_true", help="a fixed sample of each chapter, named in its table")
    parser.add_argument("--seed", metavar="N", type=int,
                        help="what random cases and their order grow from (default: a new one; 1 for --quick)")
    parser.add_argument("--jobs", metavar="N", type=int, default=os.cpu_count(),
                        help="cases tried at once (default: one a processor)")
    parser.add_argument("chapters", metavar="CHAPTER", nargs="*", help=f"of {', '.join(CHAPTERS)} (default: all)")
    options = parser.parse_args(arguments)
    unknown = set(options.chapters) - set(CHAPTERS)
    if unknown:
        parser.error(f"no such chapter: {', '.join(sorted(unknown))}")
    if options.seed is None:
        options.seed = 1 if options.quick else random.randrange(1, 1_000_000)

    _become_root()
    signal.signal(signal.SIGTERM, signal.default_int_handler)  # which tidies up
    print(f"scripts/prove --seed {options.seed}")
    with _work_in_memory():
        # Every chapter is tried, also after one that does not hold.
        failed = [name for name in options.chapters or CHAPTERS if not _holds(name, options)]
    print(f"\nprove: {'does not hold: ' + ', '.join(failed) if failed else 'everything holds'}")
    return 1 if failed else 0


def _become_root():
    """Chapters copy what is root's and what is alex's, which an ordinary user may do in a user namespace."""
    inside = ["unshare", "--user", "--map-root-user", "--map-auto"]
    if os.geteuid() != 0 and subprocess.run([*inside, "true"], stderr=subprocess.DEVNULL).returncode == 0:
        os.execvp(inside[0], [*inside, sys.executable, *sys.argv])


@contextlib.contextmanager
def _work_in_memory():
    """The program flushes each file that it writes: on a disk its runs would wait for that more than for all else."""
    memory = "/dev/shm"
    if "TMPDIR" in os.environ or not os.path.isdir(memory) or shutil.disk_usage(memory).free < 4 << 30:
        yield
        return
    with tempfile.TemporaryDirectory(prefix="keystrel-prove-", dir=memory, ignore_cleanup_errors=True) as folder:
        os.chmod(folder, 0o1777)
        os.environ["TMPDIR"] = tempfile.tempdir = folder
        yield


def _holds(name, options):
    """Runs one chapter and prints its table; whether everything in it holds."""
    chapter = importlib.import_module(f"proof.{name}")
    title = chapter.__doc__.splitlines()[0].rstrip(".")
    trial = Trial(name, [f"proof/{name}.py", *chapter.SOURCES], options.quick, options.seed, options.jobs)
    start = time.monotonic()
    table = chapter.prove(trial)
    seconds = time.monotonic() - start
    print(f"\n== {name}: {title}\n{table.sample}; {trial.tried} tried now, in {seconds:.0f} s\n")
    print(_drawn([table.head, *table.rows]))
    for failure in table.failures:
        print(f"does not hold: {failure}")
    return not table.failures


def _drawn(lines):
    lines = [[str(cell) for cell in line] for line in lines]
    widths = [max(map(len, column)) for column in zip(*lines)]
    lines.insert(1, ["-" * width for width in widths])
    return "\n".join("| " + " | ".join(map(str.ljust, line, widths)) + " |" for line in lines)
