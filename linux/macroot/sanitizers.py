"""The sanitizers' options name files of the host: those come along, and the options follow them."""

import os
import re

_FILE_OPTION = re.compile(r"(?P<name>suppressions=)(?P<path>[^:]+)")
_FOLDER = "/run/macroot/suppressions"


def bind_their_files(environment, bound):
    """The environment with the paths as they are inside."""
    def bind(match):
        path = os.path.abspath(match["path"])
        if not os.path.isfile(path):
            return match[0]
        inside = f"{_FOLDER}/{len(bound)}-{os.path.basename(path)}"
        bound[inside] = path
        return match["name"] + inside

    return {name: _FILE_OPTION.sub(bind, value) if name.endswith("SAN_OPTIONS") else value
            for name, value in environment.items()}
