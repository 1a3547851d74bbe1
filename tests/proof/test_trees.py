"""What scripts/prove takes for harm, and what it does not."""

import plistlib
import stat

import pytest

from proof.trees import Entry, harm, harm_to_people

PREFERENCES = "/Users/alex/Library/Preferences/com.apple.Safari.plist"
REGISTRY = "/Users/alex/Library/Application Support/Firefox/Profiles/a.b/extensions.rdf"
DESCRIPTOR = "/Library/descriptor.json"
FOREIGN = "/Users/alex/letter"
OLD = {"Clients": ["ours", {"theirs": 1}], "Home": "x"}
NEW = {"Clients": [{"theirs": 1}], "Home": "y"}


def file(content, mode=0o644):
    return Entry(stat.S_IFREG | mode, (501, 20), content)


def plist(value, mode=0o644):
    return file(plistlib.dumps(value), mode)


def tree(safari, descriptor, **more):
    return {PREFERENCES: safari, DESCRIPTOR: descriptor, FOREIGN: file(b"dear"), **more}


BEFORE = tree(plist(OLD), file(b"old"))
AFTER = tree(plist(NEW), file(b"new"))


def found(some):
    """The tree before the run, but for these paths."""
    return {path: entry for path, entry in {**BEFORE, **some}.items() if entry}


@pytest.mark.parametrize("some", [
    {},
    {PREFERENCES: plist(NEW)},
    {PREFERENCES: plist({"Clients": OLD["Clients"], "Home": "y"})},  # one edit of two
    {PREFERENCES: plist({"Clients": [{"theirs": 1}], "Home": "x"})},
    {DESCRIPTOR: file(b"new")},
    {DESCRIPTOR: None},  # the product's own
    {DESCRIPTOR: file(b"new", 0o600)},
])
def test_old_and_new_are_no_harm(some):
    assert harm(BEFORE, [AFTER], found(some)) == []


@pytest.mark.parametrize("some, words", [
    ({PREFERENCES: None}, "is missing"),
    ({PREFERENCES: file(b"")}, "is torn (0 bytes)"),
    ({PREFERENCES: plist({"Clients": [], "Home": "x"})}, "is torn"),  # what is theirs is gone
    ({PREFERENCES: plist({"Clients": ["ours", {"theirs": 1}, 2], "Home": "x"})}, "is torn"),
    ({PREFERENCES: plist(NEW, 0o600)}, "has mode"),
    ({PREFERENCES: plist(NEW, 0o666)}, "has mode"),
    ({DESCRIPTOR: file(b"ne")}, "is torn (2 bytes)"),
    ({DESCRIPTOR: file(b"new", 0o666)}, "has mode"),
    ({FOREIGN: None}, "is missing"),
    ({FOREIGN: file(b"new")}, "is torn"),
    ({FOREIGN: file(b"dear", 0o600)}, "has mode"),
    ({REGISTRY: file(b"<a/>")}, "is left behind"),
])
def test_everything_else_is(some, words):
    (told,) = harm(BEFORE, [AFTER], found(some))
    assert words in told


def test_parts_of_a_registry_may_be_gone_each_of_them_wholly():
    before, after = {REGISTRY: file(b"<r> <s><a/><b/><c/></s> </r>")}, {REGISTRY: file(b"<r><s><c/></s></r>")}
    assert harm(before, [after], {REGISTRY: file(b"<r><s><b/><c/></s></r>")}) == []
    assert harm(before, [after], {REGISTRY: file(b"<r><s><b/></s></r>")}) != []
    assert harm(before, [after], {REGISTRY: file(b"<r><s><b/><c/>")}) != []


def test_a_killed_run_may_tear_what_is_the_products_alone():
    assert harm_to_people(BEFORE, AFTER, found({DESCRIPTOR: file(b"ne")})) == []
    assert harm_to_people(BEFORE, AFTER, found({PREFERENCES: file(b"")})) != []
    assert harm_to_people(BEFORE, AFTER, found({FOREIGN: None})) != []
