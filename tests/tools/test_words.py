"""Manual pages and completions say what the programs' usages say."""
import re
import subprocess
from pathlib import Path

import pytest

from tests.support import build

ROOT = Path(__file__).parents[2]
PAGES = sorted((ROOT / "docs/man").glob("*.1"))
TOOLS = [page.stem for page in PAGES if page.stem != "KSExtensionInstaller"]  # that one has no options


def options(text):
    return set(re.findall(r"(?<![\w-])--[a-z]+(?:-[a-z]+)*", text))


def usage(tool):
    return options(subprocess.run([build.program(tool), "--help"], capture_output=True, text=True, check=True).stdout)


def completed(tool, *words):
    script = (f". {ROOT}/tools/completions/{tool}.bash; COMP_WORDS=(\"$@\"); COMP_CWORD=$((${{#COMP_WORDS[@]}} - 1)); "
              f"_{tool}; printf '%s\\n' \"${{COMPREPLY[@]}}\"")
    told = subprocess.run(["bash", "-c", script, "bash", tool, *words], capture_output=True, text=True, check=True)
    return set(told.stdout.split())


def test_there_are_pages():
    assert {"KSExtensionInstaller", "KSLogReader", "KSStatus"} == {page.stem for page in PAGES}


@pytest.mark.parametrize("page", PAGES, ids=lambda page: page.stem)
def test_a_page_is_well_formed(page):
    told = subprocess.run(["mandoc", "-Tlint", "-Wwarning", page], capture_output=True, text=True)
    assert (told.returncode, told.stdout) == (0, "")


@pytest.mark.parametrize("tool", TOOLS)
def test_a_page_has_the_options_of_the_usage(tool):
    page = subprocess.run(["mandoc", "-Tmarkdown", ROOT / f"docs/man/{tool}.1"], capture_output=True, text=True, check=True)
    assert options(re.sub(r"[*\\]", "", page.stdout)) == usage(tool)


@pytest.mark.parametrize("tool", TOOLS)
def test_bash_completes_the_options_of_the_usage(tool):
    assert options(" ".join(completed(tool, "--"))) == usage(tool)


@pytest.mark.parametrize("tool", TOOLS)
def test_zsh_completes_the_options_of_the_usage(tool):
    path = ROOT / f"tools/completions/_{tool}"
    subprocess.run(["zsh", "-n", path], check=True)
    assert options(path.read_text()) == usage(tool)


def test_bash_completes_levels_and_files(tmp_path):
    assert completed("KSLogReader", "--level", "") == {"critical", "failure", "warning", "info"}
    assert completed("KSLogReader", "--level", "w") == {"warning"}
    (tmp_path / "one.log").touch()
    assert completed("KSLogReader", f"{tmp_path}/o") == {f"{tmp_path}/one.log"}
    assert completed("KSLogReader", "--grep", "") == set()
