"""Trees of files, and what a disturbed run may leave of one: the old, the new, nothing torn."""

import json
import os
import plistlib
import re
import stat
import xml.etree.ElementTree
from dataclasses import dataclass

LOGS = "/Users/Shared/Keystrel/logs"

# People's own files that the run edits; what else it changes is the product's.
_EDITED = re.compile(r"/(?:(?P<json>Default/Preferences)|(?P<xml>Profiles/[^/]+/extensions\.rdf)|"
                     r"(?P<plist>Preferences/com\.apple\.Safari\.plist|Safari/Extensions/Extensions\.plist))$")

# What an atomic write is called until it takes the place of its file: process and number are in its name.
TEMPORARY = re.compile(r"/\.dat\.[0-9a-f]{16}\.\d+\.\d+$")


@dataclass(frozen=True)
class Entry:
    """mode: kind and permissions. content: bytes of a file, target of a link, None of a folder."""

    mode: int
    owner: tuple
    content: object


def read(tree):
    """{path inside: Entry} of everything in a tree but the logs."""
    found = {}
    for folder, folders, files in os.walk(tree):
        for name in folders + files:
            path = os.path.join(folder, name)
            inside = path[len(str(tree)):]
            if not inside.startswith(LOGS):
                status = os.lstat(path)
                found[inside] = Entry(status.st_mode, (status.st_uid, status.st_gid), _content(path, status.st_mode))
    return found


def _content(path, mode):
    if stat.S_ISLNK(mode):
        return os.readlink(path)
    if stat.S_ISREG(mode):
        with open(path, "rb") as file:
            return file.read()
    return None


def harm(old, new, found):
    """What is neither as before the run nor as an undisturbed run leaves it: a list of words, a path each.

    A person's file that takes several edits may have some of them, each of them wholly. The product's own may be
    missing: a run takes it away before it brings the new one.
    """
    return [words for path in sorted(old.keys() | new.keys() | found.keys())
            if (words := _harm(path, old.get(path), new.get(path), found.get(path)))]


def _harm(path, old, new, found):
    if found in (old, new):
        return None
    if not old and not new:
        return f"{path} is left behind"
    if not found:
        return f"{path} is missing" if old == new or _EDITED.search(path) else None
    allowed = [entry for entry in (old, new) if entry]
    if found.mode not in [entry.mode for entry in allowed] or found.owner not in [entry.owner for entry in allowed]:
        return f"{path} has mode {found.mode:o} and owner {found.owner}"
    if found.content not in [entry.content for entry in allowed] and not _is_on_the_way(path, old, new, found):
        return f"{path} is torn ({len(found.content)} bytes)"
    return None


def _is_on_the_way(path, old, new, found):
    """Whether each part of a person's file is as it was or as it is to be."""
    edited = _EDITED.search(path)
    if not edited:
        return False
    parse = {"json": json.loads, "plist": plistlib.loads, "xml": _parsed_xml}[edited.lastgroup]
    try:
        return _is_between(parse(old.content), parse(new.content), parse(found.content))
    except (ValueError, plistlib.InvalidFileException, xml.etree.ElementTree.ParseError):
        return False


def _parsed_xml(content):
    def parsed(element):
        return [element.tag, sorted(element.attrib.items()), element.text, *map(parsed, element)]

    return parsed(xml.etree.ElementTree.fromstring(content))


_NOTHING = object()


def _is_between(old, new, found):
    if found in (old, new):
        return True
    if all(isinstance(value, dict) for value in (old, new, found)):
        return all(_is_between(old.get(key, _NOTHING), new.get(key, _NOTHING), found.get(key, _NOTHING))
                   for key in old.keys() | new.keys() | found.keys())
    if all(isinstance(value, list) for value in (old, new, found)):
        return _is_part(found, old) and _is_part(new, found)
    return False


def _is_part(some, all_of_it):
    """Whether a list is another one with elements left out."""
    rest = iter(all_of_it)
    return all(element in rest for element in some)
