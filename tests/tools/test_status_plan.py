"""KSStatus --plan announces what the installer then changes: path by path, on machines of many kinds."""
import os

import pytest

from tests.support.mac import Mac
from tests.support.plan import assert_the_plan_comes_true

HOME = "/Users/alex"
SUPPORT = f"{HOME}/Library/Application Support"
CHROME = f"{SUPPORT}/Google/Chrome"
EDGE = f"{SUPPORT}/Microsoft Edge"
FIREFOX = f"{SUPPORT}/Firefox/Profiles"
BUNDLE = "/Applications/Keystrel.app"
PAYLOAD = f"{BUNDLE}/Contents/Keystrel/Tools/BExtensions"
REGISTRY = f"{HOME}/Library/Safari/Extensions/Extensions.plist"
PREFERENCES = f"{HOME}/Library/Preferences/com.apple.Safari.plist"
ALEX = (501, 20)


# Machines that differ from the sample ones.

def write(path, content=b"x", mode=0o644, owner=ALEX):
    def change(mac):
        file = mac.path(path)
        for folder in reversed(file.parents):
            if not folder.exists():
                folder.mkdir()
                os.chown(folder, *owner)
        file.unlink(missing_ok=True)
        file.write_bytes(content)
        file.chmod(mode)
        mac.chown(path, *owner)
    return change


def remove(*paths):
    return lambda mac: [mac.remove(path) for path in paths]


def mode(path, bits):
    return lambda mac: mac.path(path).chmod(bits)


def link(path, target):
    def change(mac):
        mac.remove(path)
        mac.path(path).symlink_to(target)
        mac.chown(path, *ALEX)
    return change


def run_before(verdict):
    return lambda mac: mac.run("--admin", verdict, "--at", "2024-03-05 09:07:02")


MACHINES = {
    "typical": ("typical",),
    "clean": ("clean",),
    "fresh": ("fresh",),
    "shipped": ("shipped",),
    "no payload": ("no-payload",),
    "no settings": ("no-settings",),
    "no product": ("no-product",),
    "after an allowed run": ("typical", run_before("allow")),
    "after a refused run": ("shipped", run_before("refuse")),
    "no Chrome": ("typical", remove("/Applications/Google Chrome.app")),
    "no Edge, no Firefox": ("typical", remove("/Applications/Microsoft Edge.app", "/Applications/Firefox.app")),
    "compact preferences": ("shipped", write(f"{CHROME}/Default/Preferences", b'{"credentials_enable_service":true}', 0o600)),
    "preferences that are not UTF-8": ("typical", write(f"{CHROME}/Default/Preferences", b"\xa9", 0o600)),
    "broken lists of Safari": ("typical", write(REGISTRY, b"<plist"), write(PREFERENCES, b"[]")),
    "no lists of Safari": ("typical", remove(REGISTRY, PREFERENCES)),
    "registries of Firefox": (
        "typical", write(f"{FIREFOX}/ab12cd34.default/extensions.rdf", b"<RDF:RDF"),
        write(f"{FIREFOX}/zz.default/extensions.rdf", b'<?xml version="1.0"?><r><a b="c"/></r>')),
    "folders beside Chrome's": ("typical", write(f"{CHROME}/External/x"), write("/Extensions/Keystrel.crx", owner=(0, 0))),
    "a closed folder of Edge": ("typical", mode(f"{EDGE}/NativeMessagingHosts", 0o555)),
    "a closed bundle": ("shipped", mode(f"{PAYLOAD}/edge", 0o555), mode(f"{PAYLOAD}/chrome", 0o555)),
    "links in the place of files": (
        "shipped", link(f"{CHROME}/External Extensions/Keystrel.crx", "/nowhere"),
        link(f"{EDGE}/External Extensions", "/private/tmp")),
}


@pytest.mark.parametrize("verdict", ["allowed", pytest.param("refused", marks=pytest.mark.large)])
@pytest.mark.parametrize("machine", MACHINES)
def test_the_plan_is_what_the_installer_changes(tmp_path, machine, verdict):
    sample, *edits = MACHINES[machine]
    mac = Mac.new(sample, tmp_path)
    for edit in edits:
        edit(mac)
    assert_the_plan_comes_true(mac, verdict)
