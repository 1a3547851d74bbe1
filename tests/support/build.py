"""The programs of a build tree, for tests that run them.

The tree is the one that KS_BUILD names, else build/asan, build/dev or build/release, whichever is there
first.
"""

import os
from pathlib import Path

_SOURCE = Path(__file__).resolve().parents[2]
_PRESETS = ("asan", "dev", "release")

# What GNUstep itself leaves allocated for good is not ours to report.
os.environ.setdefault(
    "LSAN_OPTIONS",
    f"suppressions={_SOURCE / 'tests/support/lsan.txt'}:print_suppressions=0",
)
# AddressSanitizer would ask for the time inside malloc, and libfaketime's answer needs malloc.
os.environ.setdefault("ASAN_OPTIONS", "allocator_release_to_os_interval_ms=-1")


def folder():
    """The build tree."""
    if "KS_BUILD" in os.environ:
        return Path(os.environ["KS_BUILD"]).resolve()
    for preset in _PRESETS:
        candidate = _SOURCE / "build" / preset
        if candidate.is_dir():
            return candidate
    raise FileNotFoundError("nothing is built: configure and build a preset, or set KS_BUILD")


def program(name):
    """The path of a program of the build tree."""
    path = folder() / "bin" / name
    if not path.is_file():
        raise FileNotFoundError(f"{path} is missing: build it, or set KS_BUILD to another build")
    return path
