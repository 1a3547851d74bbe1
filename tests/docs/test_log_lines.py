"""What a room's code logs stands in a header of the room, word for word: who reads a log finds the operation there."""
import re
from pathlib import Path

import pytest

ROOT = Path(__file__).parents[2]
ROOMS = re.search(r"set\(KS_ROOMS ([^)]*)\)", (ROOT / "cmake/Product.cmake").read_text())[1].split()
LOGGED = re.compile(r'\bLog(?:Critical|Failure|Warning|Information|Success):\s*@"((?:[^"\\]|\\.)+)"')


def lines():
    """(file, text) of every line that is logged."""
    return sorted({(str(path.relative_to(ROOT)), text) for room in ROOMS for path in (ROOT / room).glob("*.mm")
                   for text in LOGGED.findall(path.read_text())})


def words_of_headers(room):
    texts = [path.read_text() for path in sorted((ROOT / room).glob("*.h"))]
    return " ".join(" ".join(re.sub(r"^\s*///?", "", text, flags=re.MULTILINE).split()) for text in texts)


def test_there_are_lines():
    assert len(lines()) > 40


@pytest.mark.parametrize("file,text", lines())
def test_a_line_stands_in_a_header(file, text):
    # The header may say what an object is.
    words = '"' + re.escape(text).replace("%@", '[^"]+') + '"'
    assert re.search(words, words_of_headers(file.partition("/")[0]))


DOCUMENT = re.compile(r"^\| `(.+?)` \|", re.MULTILINE)
LITERAL = re.compile(r'@"((?:[^"\\]|\\.)+)"')
# A line that is nothing but the description of an error.
DESCRIPTION = ("%@", "Error Domain=%@")


def documented():
    """The messages of docs/log-messages.md; the tool that tells them is held against it elsewhere."""
    return DOCUMENT.findall((ROOT / "docs/log-messages.md").read_text())


@pytest.mark.parametrize("file,text", lines())
def test_a_line_is_explained(file, text):
    assert text in documented() or text == DESCRIPTION[0] and DESCRIPTION[1] in documented()


def test_what_is_explained_is_logged():
    literals = {text for room in ROOMS for path in (ROOT / room).glob("*.mm") for text in LITERAL.findall(path.read_text())}
    shown = {text.replace("(null)", "%@") for text in documented()} - {DESCRIPTION[1]}
    assert len(shown) > 50 and shown - literals == set()
