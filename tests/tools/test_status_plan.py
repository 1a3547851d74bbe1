"""KSStatus --plan announces what the installer then changes: path by path, on machines of many kinds."""
import hashlib
import json
import os
import stat

import pytest

from tests.support import build
from tests.support.mac import LOGS, Mac

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


def status(mac, *arguments, **options):
    result = mac.run(program=build.program("KSStatus"), args=arguments, **options)
    assert result.stderr == ""
    return result


def plan(mac, verdict):
    report = json.loads(status(mac, "--json", f"--plan={verdict}").stdout)
    return report["plan"][verdict]


def entries(mac):
    """What each path of the machine is, for an own eye: type, mode, owner, bytes, and the file itself."""
    found = {}
    for folder, folders, files in os.walk(mac.tree):
        if folder == str(mac.tree):
            folders[:] = [name for name in folders if name not in ("dev", "proc", "run", "usr")]
        for name in folders + files:
            path = os.path.join(folder, name)
            info = os.lstat(path)
            kind = stat.S_IFMT(info.st_mode)
            what = os.readlink(path) if stat.S_ISLNK(kind) else (
                hashlib.sha256(open(path, "rb").read()).hexdigest() if stat.S_ISREG(kind) else "")
            found["/" + os.path.relpath(path, mac.tree)] = {
                "type": kind, "mode": info.st_mode, "owner": info.st_uid, "bytes": what,
                # Of a folder it tells what was in it; a new file may get an old one's number, and a copy its time.
                "since": 0 if stat.S_ISDIR(kind) else info.st_ctime_ns}
    return found


def is_announced(path):
    """Logs, and the script file that administrators run, apart."""
    return not path.startswith((f"{LOGS}/", "/private/var/tmp/", "/private/etc")) and path not in (
        "/private/tmp", "/private/var/tmp", "/private/var", "/private")


def announced(mac, planned):
    """{path: (kind, what)} of a plan. A folder that is made anew alike cannot be told from one that stayed."""
    return {each["path"]: (each["kind"], each["what"]) for each in planned["changes"]
            if each["kind"] != "touched" or not mac.path(each["path"]).is_dir()}


def changes(before, after):
    """The same of what happened."""
    found = {}
    for path in filter(is_announced, before.keys() | after.keys()):
        if path not in after:
            found[path] = ("removed", [])
        elif path not in before:
            found[path] = ("created", [])
        else:
            was, is_now = before[path], after[path]
            differs = [key for key in ("mode", "owner", "bytes") if was[key] != is_now[key]]
            if was["type"] != is_now["type"]:
                found[path] = ("changed", ["type"])
            elif differs:
                found[path] = ("changed", differs)
            elif was["since"] != is_now["since"]:
                found[path] = ("touched", [])
    return found


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


@pytest.mark.parametrize("verdict, admin", [("allowed", "allow"), pytest.param("refused", "refuse", marks=pytest.mark.large)])
@pytest.mark.parametrize("machine", MACHINES)
def test_the_plan_is_what_the_installer_changes(tmp_path, machine, verdict, admin):
    sample, *edits = MACHINES[machine]
    mac = Mac.new(sample, tmp_path)
    for edit in edits:
        edit(mac)
    planned = plan(mac, verdict)
    told = announced(mac, planned)
    before = entries(mac)
    result = mac.run("--admin", admin)
    assert (result.status, result.stderr) == (0, "")
    assert told == changes(before, entries(mac))
    assert len(result.asked) == planned["prompts"]
