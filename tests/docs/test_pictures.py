"""The documents' pictures of a terminal: the script that draws them works, and they show what the programs print today."""
import re
import runpy
import types
from pathlib import Path
from xml.etree import ElementTree

import pytest

from tests.support import build

ROOT = Path(__file__).parents[2]
PICTURES = sorted((ROOT / "docs").glob("terminal-*.svg"))


script = types.SimpleNamespace(**runpy.run_path(str(ROOT / "scripts/terminal-pictures")))


@pytest.fixture(scope="module")
def mac(tmp_path_factory):
    folder = tmp_path_factory.mktemp("pictures")
    for above in (folder, folder.parent, folder.parent.parent):
        above.chmod(above.stat().st_mode | 0o011)
    for name in ("KSExtensionInstaller", "KSStatus", "KSLogReader"):
        build.program(name)
    return script.SampleMac(folder, build.folder() / "bin")


def texts(picture):
    return [each.text for each in ElementTree.parse(picture).iter("{http://www.w3.org/2000/svg}text")]


@pytest.mark.parametrize("name", script.ON_THE_MAC)
def test_a_picture_shows_what_the_program_prints_in_colour(mac, tmp_path, name):
    line = script.ON_THE_MAC[name]
    output = mac.told(line)
    assert "\x1b[" in output
    script.draw(tmp_path / name, line, output)
    assert texts(tmp_path / name) == texts(ROOT / "docs" / name), "scripts/terminal-pictures draws it again"


def test_the_picture_of_the_demo_ends_well():
    assert "KSExtensionInstaller\xa0ended\xa0with\xa00" in texts(ROOT / "docs/terminal-demo.svg")


def test_there_is_a_picture_of_each():
    assert [each.name for each in PICTURES] == sorted(["terminal-demo.svg", *script.ON_THE_MAC])


@pytest.mark.parametrize("picture", PICTURES, ids=lambda path: path.name)
def test_a_picture_needs_nothing_from_elsewhere_and_a_document_shows_it(picture):
    assert not re.search(r"url\((?!#)|href=|@import", picture.read_text())
    shown = [each for each in (ROOT / "README.md", *(ROOT / "docs").glob("*.md"))
             if re.search(rf"!\[[^]]+\]\((docs/)?{re.escape(picture.name)}\)", each.read_text())]
    assert shown
