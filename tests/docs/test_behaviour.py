"""docs/behaviour.md, the table of oddities that are meant: held against the code's comments and against the tests."""
import re
from pathlib import Path

import pytest

ROOT = Path(__file__).parents[2]
ROOMS = re.search(r"set\(KS_ROOMS ([^)]*)\)", (ROOT / "cmake/Product.cmake").read_text())[1].split()
COMMENT = re.compile(r"//+ ?(.*)")
# What a comment says is meant: up to the next stop, comma or parenthesis.
MEANT = re.compile(r"[Mm]eant: ([^.,;)]+)")
TEST = re.compile(r"^(?:TYPED_)?TEST(?:_F|_P)?\(\s*\w+\s*,\s*(\w+)\s*\)|^def (test_\w+)\(", re.MULTILINE)
PINS = re.compile(r"([\w/]+\.(?:mm|cpp|py))((?: `\w+`)+)")


def plain(text):
    return " ".join(text.replace("`", "").lower().split())


def rows():
    """The cells of every row that is no head."""
    lines = (ROOT / "docs/behaviour.md").read_text().splitlines()
    cells = [[cell.strip() for cell in line.strip("|").split("|")] for line in lines if line.startswith("| ")]
    return [row for row in cells if row[0] != "What is odd"]


def sources():
    return sorted(path for room in [*ROOMS, "tools"] for path in (ROOT / room).iterdir()
                  if path.suffix in (".h", ".cpp", ".mm"))


def comments(path):
    """The file's comments, lines that follow each other as one."""
    block = []
    for line in path.read_text().splitlines():
        comment = COMMENT.search(line)
        alone = comment and not line[:comment.start()].strip()
        if block and not alone:
            yield " ".join(block)
            block = []
        if comment:
            block.append(comment[1])
        if comment and not alone:
            yield " ".join(block)
            block = []
    if block:
        yield " ".join(block)


def meant():
    """(file, what is meant) of every such comment."""
    return [(str(path.relative_to(ROOT)), plain(what)) for path in sources() for comment in comments(path)
            for what in MEANT.findall(" ".join(comment.split()))]


def test_there_are_comments_that_say_so():
    assert len(meant()) > 65


@pytest.mark.parametrize("file,what", sorted(set(meant())))
def test_what_a_comment_says_has_a_row(file, what):
    found = [row for row in rows() if what in plain(row[0])]
    assert found, f"no row of docs/behaviour.md says: {what}"
    places = [place for row in found for place in row[1].split(", ")]
    assert any(file.startswith(place) for place in places), f"the row says {places}, not {file}"


def test_no_comment_says_it_otherwise():
    loose = re.compile(r"(?:is|are|was) meant\b|on purpose|\(sic\)|// meant$")
    said = [f"{path.relative_to(ROOT)}: {comment}" for path in sources() for comment in comments(path)
            if loose.search(comment)]
    assert not said, "write \"Meant: …\""


@pytest.mark.parametrize("row", rows(), ids=lambda row: row[0][:40])
def test_a_row_is_whole(row):
    _, places, reason, _ = row
    assert reason
    for place in places.split(", "):
        assert list((ROOT / place).parent.glob(Path(place).name + "*")), place


@pytest.mark.parametrize("row", rows(), ids=lambda row: row[0][:40])
def test_the_tests_of_a_row_exist(row):
    pins = PINS.findall(row[3])
    assert pins and PINS.sub("", row[3]).strip(", ") == "", row[3]
    for file, names in pins:
        there = {name for names in TEST.findall((ROOT / "tests" / file).read_text()) for name in names}
        for name in re.findall(r"`(\w+)`", names):
            assert name in there, f"tests/{file} has no {name}"
