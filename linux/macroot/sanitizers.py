"""The options of programs that were built with sanitizers."""

import os
import re

_FILE_OPTION = re.compile(r"(?P<name>suppressions=)(?P<path>[^:]+)")
_FOLDER = "/run/macroot/suppressions"


# Their allocators ask the clock at a time when libfaketime, asked for the first time, allocates.
_NO_CLOCK = "allocator_release_to_os_interval_ms=-1"


def bind_their_files(environment, bound):
    """The environment with the files that the options name where they are inside (see `bound`)."""
    def bind(match):
        path = os.path.abspath(match["path"])
        if not os.path.isfile(path):
            return match[0]
        inside = f"{_FOLDER}/{len(bound)}-{os.path.basename(path)}"
        bound[inside] = path
        return match["name"] + inside

    return {name: _FILE_OPTION.sub(bind, value) if name.endswith("SAN_OPTIONS") else value
            for name, value in environment.items()}


def with_standing_time(environment):
    """The environment with what lets programs with a sanitizer start under libfaketime."""
    return {**environment, **{name: ":".join(filter(None, (environment.get(name), _NO_CLOCK)))
                              for name in ("ASAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS")}}
