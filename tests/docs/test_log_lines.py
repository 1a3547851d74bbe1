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
