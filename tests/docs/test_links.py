"""Links of the documents lead somewhere: to files of the repository, and to headings of theirs."""
import re
import subprocess
from pathlib import Path

import pytest

ROOT = Path(__file__).parents[2]
LINK = re.compile(r"\]\(([^)\s]+)\)")
CODE = re.compile(r"```.*?```|`[^`\n]*`", re.DOTALL)
# A path from the root, as documents write it in code: at least one folder, and a file's name with its end.
PATH = re.compile(r"`((?:[\w.+-]+/)+[\w.+-]+\.(?:h|mm|cpp|md|py|cmake|txt|xib))`")
TREES = {"build"}  # made by building


def documents():
    listed = subprocess.run(["git", "ls-files", "-co", "--exclude-standard", "*.md"], cwd=ROOT, check=True,
                            capture_output=True, text=True)
    return listed.stdout.split()


def anchors(path):
    """The names of a document's headings, as a link to one spells them."""
    heads = re.findall(r"^#+ (.*)$", path.read_text(), re.MULTILINE)
    return {re.sub(r"[^\w\- ]", "", head.lower()).replace(" ", "-") for head in heads}


def test_there_are_documents():
    assert "README.md" in documents()


@pytest.mark.parametrize("document", documents())
def test_links_lead_somewhere(document):
    for link in LINK.findall(CODE.sub("", (ROOT / document).read_text())):
        if re.match(r"\w+:", link):
            continue
        place, _, heading = link.partition("#")
        target = (ROOT / document).parent / place if place else ROOT / document
        assert target.exists(), f"{document}: {link}"
        assert not heading or heading in anchors(target), f"{document}: {link}"


@pytest.mark.parametrize("document", documents())
def test_paths_that_are_spelled_from_the_root_exist(document):
    folder = (ROOT / document).parent
    for path in PATH.findall((ROOT / document).read_text()):
        if path.partition("/")[0] not in TREES:
            assert (ROOT / path).exists() or (folder / path).exists(), f"{document}: {path}"
