"""Macs with real browsers."""

import json
import pathlib
import shutil
import subprocess

import pytest

from tests.support import build
from tests.support.mac import Mac

HERE = pathlib.Path(__file__).parent
PROGRAMS = ("KSExtensionInstaller", "product_calls")
BESIDE_THEM = ("libmacos-standins.so", "QWSyleAlert.xib", "QWBrowsersAlert.xib")

# The applications' programs, by their names in a Mac root (see places).
APPLICATIONS = {
    "/Applications/Google Chrome.app/Contents/MacOS/Google Chrome":
        '"/run/browsers/Google Chrome/Google Chrome" --no-first-run --disable-gpu'
        ' --user-data-dir="$HOME/Library/Application Support/Google/Chrome"',
    "/Applications/Microsoft Edge.app/Contents/MacOS/Microsoft Edge":
        '"/run/browsers/Microsoft Edge/Microsoft Edge" --no-first-run --disable-gpu'
        ' --user-data-dir="$HOME/Library/Application Support/Microsoft Edge"',
    "/Applications/Firefox.app/Contents/MacOS/firefox":
        '/run/browsers/firefox'
        ' --profile "$HOME/Library/Application Support/Firefox/Profiles/ab12cd34.default"',
}


class BrowserMac(Mac):
    """A Mac on which the browsers' programs are real ones."""

    def play(self, scenario, *arguments, options=()):
        """Plays a function of inside/ as alex; the result is what it found."""
        result = self.run("--fast", "--web", "200", "--pre", HERE / "places", *options,
                          program=HERE / "scenario", args=(scenario, *arguments), timeout=300)
        assert result.status == 0, result.stderr
        return json.loads(result.stdout)

    def make_applications_real(self):
        """From then on the applications start the real browsers, instead of waiting for ever."""
        for path, command in APPLICATIONS.items():
            self.path(path).write_text(f'#!/bin/bash\nexec -a "$0" {command} "$@"\n')


def furnish(mac):
    """Puts the build's programs on a Mac."""
    folder = mac.path("/opt/product")
    folder.mkdir(parents=True)
    for source in (*map(build.program, PROGRAMS), *(build.folder() / "bin" / name for name in BESIDE_THEM)):
        (shutil.copytree if source.is_dir() else shutil.copy)(source, folder / source.name)


@pytest.fixture(scope="session", autouse=True)
def host(tmp_path_factory):
    """Says what this host lacks; nothing is skipped."""
    for line in (HERE / "packages").read_text().splitlines():
        package = line.split()[0]
        state = subprocess.run(["dpkg-query", "-W", "-f", "${db:Status-Status}", package],
                               capture_output=True, text=True, check=False).stdout
        if package != "#" and state != "installed":
            pytest.fail(f"the package {package} is missing: scripts/test --real-browsers installs it")
    mac = Mac.new("clean", tmp_path_factory.mktemp("host"))
    if mac.run(program="/usr/bin/unshare", args=("--user", "true")).status != 0:
        pytest.fail("browsers need namespaces for their sandboxes, and this host refuses them to alex")


@pytest.fixture
def mac(tmp_path):
    mac = BrowserMac.new("shipped", tmp_path)
    furnish(mac)
    return mac
