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

# Written for a moment of the run. Where it cannot be removed, a line of the log says so.
_SCRIPT = "/private/var/tmp/script.sh"

# An earlier version's, which root's script for Chrome's host folders removes. Whether a run asks for that script depends
# on the folders that another run at the same time has made by then.
_REMOVED_BY_ROOT = "/private/tmp/createDirChrome.sh"

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


def harm(old, undisturbed, found):
    """What is neither as before the run nor as an undisturbed run leaves it: a list of words, a path each.

    undisturbed: the trees that a run may leave, one or several. A person's file that takes several edits may have some
    of them, each of them wholly. The product's own may be missing: a run takes it away before it brings the new one.
    """
    paths = sorted(old.keys() | found.keys() | {path for tree in undisturbed for path in tree})
    return [words for path in paths
            if (words := _harm(path, old.get(path), [tree.get(path) for tree in undisturbed], found.get(path)))]


def harm_to_people(old, new, found):
    """Of `harm`, what people's own files take: for a run that could not end. What it puts beside them may be torn."""
    return [words for path in sorted(old.keys() | new.keys())
            if (old.get(path) == new.get(path) or _EDITED.search(path))
            and (words := _harm(path, old.get(path), [new.get(path)], found.get(path)))]


def difference(one, other):
    """The paths at which two trees differ."""
    return sorted(path for path in one.keys() | other.keys() if one.get(path) != other.get(path))


def _harm(path, old, new, found):
    if found == old or found in new:
        return None
    allowed = [entry for entry in (old, *new) if entry]
    untouched = all(entry == old for entry in new)
    if not allowed:
        return None if path == _SCRIPT else f"{path} is left behind"
    if not found:
        must_stay = untouched and path != _REMOVED_BY_ROOT or _EDITED.search(path)
        return f"{path} is missing" if must_stay else None
    if not _has_fitting_rights(found, allowed, of_the_product=not untouched and not _EDITED.search(path)):
        return f"{path} has mode {found.mode:o} and owner {found.owner}"
    if found.content not in [entry.content for entry in allowed] and not _is_on_the_way(path, allowed, found):
        return f"{path} is torn ({len(found.content)} bytes)"
    return None


def _has_fitting_rights(found, allowed, of_the_product):
    """The product's own may be closed to others where rights are refused, as copies are on a Mac."""
    return any(found.owner == entry.owner and (found.mode == entry.mode or of_the_product and
                                               found.mode | entry.mode == entry.mode) for entry in allowed)


def _is_on_the_way(path, allowed, found):
    """Whether each part of a person's file is as it was or as it is to be."""
    edited = _EDITED.search(path)
    if not edited:
        return False
    parse = {"json": json.loads, "plist": plistlib.loads, "xml": _parsed_xml}[edited.lastgroup]
    try:
        content = parse(found.content)
        old, *new = [parse(entry.content) for entry in allowed]
        return any(_is_between(old, one, content) for one in new)
    except (ValueError, plistlib.InvalidFileException, xml.etree.ElementTree.ParseError):
        return False


def _parsed_xml(content):
    def parsed(element):
        return [element.tag, sorted(element.attrib.items()), (element.text or "").strip(), *map(parsed, element)]

    return parsed(xml.etree.ElementTree.fromstring(content))


_NOTHING = object()


def _is_between(old, new, found):
    if found in (old, new):
        return True
    if all(isinstance(value, dict) for value in (old, new, found)):
        return all(_is_between(old.get(key, _NOTHING), new.get(key, _NOTHING), found.get(key, _NOTHING))
                   for key in old.keys() | new.keys() | found.keys())
    return _is_part(found, old) and _is_part(new, found)


def _is_part(some, whole):
    """Whether a value is another one with elements of its lists left out."""
    if isinstance(some, list) and isinstance(whole, list):
        rest = iter(whole)
        return all(any(_is_part(element, other) for other in rest) for element in some)
    return some == whole
