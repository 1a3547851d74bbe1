"""Macs with real browsers."""

import json
import pathlib
import shutil
import subprocess

import pytest

from tests.support import build
from tests.support.mac import Mac

HERE = pathlib.Path(__file__).parent
PROGRAMS = ("KSExtensionInstaller", "product_calls", "libmacos-standins.so", "Resources")


class BrowserMac(Mac):
    """A Mac on which the browsers' programs are real ones."""

    def play(self, scenario, *arguments, options=()):
        """Plays a function of inside/ as alex; the result is what it found."""
        result = self.run("--fast", "--web", "200", "--pre", HERE / "places", *options,
                          program=HERE / "scenario", args=(scenario, *arguments), timeout=300)
        assert result.status == 0, result.stderr
        return json.loads(result.stdout)


def furnish(mac):
    """Puts the build's programs on a Mac."""
    for name in PROGRAMS:
        source, target = build.folder() / "bin" / name, mac.path("/opt/product") / name
        target.parent.mkdir(parents=True, exist_ok=True)
        (shutil.copytree if source.is_dir() else shutil.copy)(source, target)


@pytest.fixture
def mac(tmp_path):
    mac = BrowserMac.new("shipped", tmp_path)
    furnish(mac)
    return mac
