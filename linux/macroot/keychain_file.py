"""The login keychain as a file of the host: a property list, item label -> data."""

import base64
import os

from macroot.errors import Trouble


def read(path):
    """The items, their data in Base64; a file that is missing is an empty keychain."""
    import plistlib  # not at the top: few runs have a keychain, and it takes its time
    try:
        with open(path, "rb") as file:
            items = plistlib.load(file)
    except FileNotFoundError:
        return {}
    except Exception as error:  # plistlib raises whatever its parsers raise
        raise Trouble(f"{path} is no property list: {error}") from error
    if not isinstance(items, dict) or not all(isinstance(data, bytes) for data in items.values()):
        raise Trouble(f"{path} is no keychain: it must map labels to data")
    return {label: base64.b64encode(data).decode() for label, data in items.items()}


def write(path, items):
    """Replaces the file by the items, in one step."""
    import plistlib
    content = plistlib.dumps({label: base64.b64decode(data) for label, data in items.items()})
    temporary = f"{path}.{os.getpid()}"
    with open(temporary, "wb") as file:
        file.write(content)
    os.replace(temporary, path)
