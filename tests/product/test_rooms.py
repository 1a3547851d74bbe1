"""Who includes whom: held against what each room's CMakeLists.txt allows, and against ARCHITECTURE.md."""
import re
from collections import defaultdict
from pathlib import Path

import pytest

ROOT = Path(__file__).parents[2]
INCLUDE = re.compile(r'^\s*#\s*(?:include|import)\s*"([^"]+)"', re.MULTILINE)
ROOM = re.compile(r"^room\((\w+)(.*?)\)", re.MULTILINE | re.DOTALL)
ROW = re.compile(r"^\| `(\w+)/` \| [^|]* \| ([^|]*) \|", re.MULTILINE)
MUTUAL = re.compile(r"^- `(\w+)` and `(\w+)`: \w", re.MULTILINE)


def rooms():
    names = re.search(r"set\(KS_ROOMS ([^)]*)\)", (ROOT / "cmake/Product.cmake").read_text())
    return names[1].split()


def known():
    """What room(… KNOWS …) lists, by room."""
    lists = {}
    for room in rooms():
        name, rest = ROOM.search((ROOT / room / "CMakeLists.txt").read_text()).groups()
        assert name == room
        lists[room] = set(rest.partition("KNOWS")[2].split())
    return lists


def includes(room):
    """The paths that the room's files include, by file."""
    files = [path for path in (ROOT / room).iterdir() if path.suffix in (".h", ".cpp", ".mm")]
    assert files, f"{room} holds no source"
    return {path: INCLUDE.findall(path.read_text()) for path in files}


def used(room):
    """The other rooms that the room's files include, each with the places where."""
    uses = defaultdict(list)
    for path, headers in includes(room).items():
        for header in headers:
            if not header.startswith(f"{room}/"):
                uses[header.partition("/")[0]].append(f"{path.relative_to(ROOT)}: {header}")
    return uses


def test_the_rooms_are_all_the_folders_with_product_code():
    others = {"tools", "tests", "linux", "bench", "proof"}
    folders = {path.parent.name for path in ROOT.glob("*/*") if path.suffix in (".h", ".cpp", ".mm")}
    assert folders - others == set(rooms())


@pytest.mark.parametrize("room", rooms())
def test_every_include_names_a_file_from_the_root(room):
    for path, headers in includes(room).items():
        for header in headers:
            assert (ROOT / header).is_file(), f"{path}: {header}"


@pytest.mark.parametrize("room", rooms())
def test_a_room_includes_whom_it_may_know_and_no_other(room):
    uses = used(room)
    strangers = set(uses) - known()[room]
    assert not strangers, "\n".join(place for name in strangers for place in uses[name])
    assert not known()[room] - set(uses), "listed and never included"


def test_the_tools_include_what_stands_apart_and_nothing_else():
    assert set(used("tools")) == {"browsers", "crypto", "logging", "platform", "product", "settings"}


def test_the_table_of_the_architecture_is_the_builds():
    rows = ROW.findall((ROOT / "ARCHITECTURE.md").read_text())
    assert {room: set(re.findall(r"\w+", who)) for room, who in rows} == known()


def test_the_architecture_says_why_two_rooms_know_each_other():
    lists = known()
    mutual = {frozenset((a, b)) for a in lists for b in lists[a] if a in lists[b]}
    told = [frozenset(pair) for pair in MUTUAL.findall((ROOT / "ARCHITECTURE.md").read_text())]
    assert sorted(map(sorted, told)) == sorted(map(sorted, mutual))
