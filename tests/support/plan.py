"""What KSStatus --plan announces, held against what the installer then changes."""

import hashlib
import json
import os
import stat

from tests.support import build
from tests.support.places import LOGS

ADMIN = {"allowed": "allow", "refused": "refuse"}


def status(mac, *arguments, options=()):
    result = mac.run(*options, program=build.program("KSStatus"), args=arguments)
    assert result.stderr == ""
    return result


def report(mac, verdict, *options):
    return json.loads(status(mac, "--json", f"--plan={verdict}", options=options).stdout)


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


def difference(told, happened, hidden):
    """What did not come as announced; below a hidden folder only root knows what there was."""
    return [f"{path}: announced {told.get(path)}, came {happened.get(path)}"
            for path in sorted(told.keys() | happened.keys())
            if told.get(path) != happened.get(path) and not path.startswith(hidden)]


def assert_the_plan_comes_true(mac, verdict, *options, keychain=None):
    """options: of both runs, beside the answer to the prompts; keychain: the file that they name."""
    items = keychain and keychain.read_bytes()
    told = report(mac, verdict, *options)
    planned = told["plan"][verdict]
    hidden = tuple(path + "/" for path in told["closed"] if mac.path(path).is_dir()) if verdict == "allowed" else ()
    expected = announced(mac, planned)
    before = entries(mac)
    result = mac.run("--admin", ADMIN[verdict], *options)
    assert (result.status, result.stderr) == (0, "")
    happened = changes(before, entries(mac))
    wrong = difference(expected, happened, hidden)
    assert not wrong, "\n".join(wrong)
    assert len(result.asked) == planned["prompts"]
    assert planned["keychain"] or items == (keychain and keychain.read_bytes())
