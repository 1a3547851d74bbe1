"""The programs of a build tree, for tests that run them.

The tree is the one that KS_BUILD names, else build/dev; a program that is older than its sources is
refused.
"""

import functools
import os
import subprocess
from pathlib import Path

_SOURCE = Path(__file__).resolve().parents[2]

# What GNUstep itself leaves allocated for good is not ours to report.
os.environ.setdefault(
    "LSAN_OPTIONS",
    f"suppressions={_SOURCE / 'tests/support/lsan.txt'}:print_suppressions=0",
)
# AddressSanitizer would ask for the time inside malloc, and libfaketime's answer needs malloc.
os.environ.setdefault("ASAN_OPTIONS", "allocator_release_to_os_interval_ms=-1")


def folder():
    """The build tree."""
    return Path(os.environ.get("KS_BUILD", _SOURCE / "build/dev")).resolve()


@functools.cache
def program(name):
    """The path of a program of the build tree."""
    path = folder() / "bin" / name
    if not path.is_file():
        raise FileNotFoundError(f"{path} is missing: scripts/build {folder().name} {name}")
    # A rehearsal: says what would be built.
    rehearsal = ["ninja", "-n", "-C", folder(), f"bin/{name}"]
    left = subprocess.run(rehearsal, stdout=subprocess.PIPE, check=True, text=True).stdout
    if "no work to do" not in left:
        raise RuntimeError(f"{path} is older than its sources: scripts/build {folder().name} {name}")
    return path


def is_sanitized():
    """Whether the programs were built with AddressSanitizer, which takes memory of its own."""
    return b"__asan_init" in program("KSExtensionInstaller").read_bytes()
