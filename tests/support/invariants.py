"""What holds after every run, whatever the Mac looked like before it.

The rules stand here a second time, written for reading and without a line of the product, as a judge of it.
"""

import io
import os
import plistlib
import re
import stat
from collections import namedtuple
from xml.dom import minidom
from xml.etree import ElementTree

from tests.support import log
from tests.support.places import (
    BUTTON_ITEM, CACHES, CHROME_DESCRIPTORS, CHROME_PACKAGES, CHROME_PREFERENCES, EXTENSIONS, FIREFOX_IDENTIFIERS,
    KEYCHAIN_ITEM, LIST, LOGS, NAME, PROFILES, REGISTRY, SAFARI_PREFERENCES, TOOLBAR, TOOLBAR_ITEMS, leftovers)

Entry = namedtuple("Entry", "kind mode owner content")

# ---- the paths


def _stated():
    """A pattern of all paths that a run may change, alex's home being /Users/alex."""
    whole = [re.escape(path) + "(/.*)?" for path in leftovers()]
    for folder in ("/Users/alex/Library/Application Support", "/Library/Application Support"):
        whole.append(re.escape(folder) + r"/Mozilla/Extensions/\{ec8030f7-c20a-464f-9b0e-13a3a9e97384\}(/.*)?")
    caches = "|".join(map(re.escape, ["extensions.rdf", *CACHES]))
    whole += [re.escape(PROFILES) + rf"/[^/]*/({caches})(/.*)?",
              r"/Users/alex/Library/Caches/com\.apple\.Safari/Extensions/Keystrel[^/]*(/.*)?",
              *map(re.escape, (CHROME_PREFERENCES, SAFARI_PREFERENCES, REGISTRY)),
              re.escape(LOGS) + r"(/\d+_\d+_\d+_\d+_\d+_\d+\.log)?", r"/Users/Shared/Keystrel(/Vaults)?",
              # The installing script does not escape a blank.
              "/Users/alex/Library/Application Support/Google/Chrome/External(/.*)?",
              *(f"/Extensions/{name}(/.*)?" for name in (*CHROME_PACKAGES, *CHROME_DESCRIPTORS)),
              r"/private/tmp/createDir(Uninstall|Chrome)\.sh"]
    return re.compile("|".join(whole), re.DOTALL)


def _made_folders():
    """Folders that a run may make: those above what it writes."""
    found = set()
    for path in (*leftovers(), LOGS + "/x", "/private/tmp/x", "/private/var/tmp/x"):
        while path := path.rpartition("/")[0]:
            found.add(path)
    return found


_STATED, _MADE = _stated(), _made_folders()

# ---- the lines of the log

_ERROR = r"(Error Domain=.*|\(null\))"
_SENTENCES = {
    "FAILURE": [rf" Error uninstalling FFox extension: {_ERROR}", r"An error occurred: \d+", r"Error .* writting to file: .*",
                rf"Error installing FFox: {_ERROR}", rf"Error reading plist: {_ERROR}", rf"Error writing to file: {_ERROR}",
                rf"Fail to copy files: {_ERROR}", r"Missing Extensions\.plist\.", r"Missing com\.apple\.Safari\.plist",
                r"missing Extensions\.plist", rf"Couldn't convert with error: {_ERROR}!",
                rf"Error (creating Edge (Native|External) directory|copying Edge (created )?JSON): {_ERROR}"],
    "WARNING": [r"App not found", r"An error occurred: \d+", rf"Clear CacheError: {_ERROR}",
                r"Couldn't delete\. File not present: /.*", rf"ERROR deactivate password manager in chrome: /.*\. Error: {_ERROR}",
                rf"Error deleting file: {_ERROR}", rf"Error install for current user: {_ERROR}",
                rf"Error removing file: {_ERROR}", r"Missing com\.apple\.Safari\.plist", r"No copy[,:] file not present: /.*",
                r"No delete, file not present: /.*", rf"Can't delete saved script\. Error: {_ERROR}",
                r"No display for the alert: .*"],
    "INFO": [_ERROR, r"Application URL is: file:///.*/", r"The app's URL is: file:///.*/",
             r"(Edge|Firefox) application not found!", r"Can't delete, file not present /.*",
             r"Can't delete\. File not present /.*", rf"Error clearing files cache: {_ERROR}",
             rf"Error deleting FFox extension directory: {_ERROR}", r"Extension already removed!",
             r"File at: /.*, not present", r"Edge extension (un)?installed!", r"Safari uninstalled successfully\."],
    "CRITICAL": [],
}
_KNOWN = {level: re.compile("|".join(f"(?:{each})" for each in texts) or "(?!)", re.DOTALL)
          for level, texts in _SENTENCES.items()}


def unknown_lines(messages):
    """Of (level, text), those that no run of the installer writes."""
    return [message for message in messages if not _KNOWN[message[0]].fullmatch(message[1])]


# ---- the tree


def entries(mac):
    """{path inside: Entry} of a Mac, without what the host lends it."""
    found = {}
    for folder, folders, files in os.walk(mac.tree):
        inside = folder[len(str(mac.tree)):]
        folders[:] = [name for name in folders if f"{inside}/{name}" not in (
            "/usr", "/dev", "/proc", "/run", "/private/etc")]
        for name in folders + files:
            path = os.path.join(folder, name)
            status = os.lstat(path)
            content = None
            if stat.S_ISLNK(status.st_mode):
                content = os.readlink(path)
            elif stat.S_ISREG(status.st_mode):
                with open(path, "rb") as file:
                    content = file.read()
            found[f"{inside}/{name}"] = Entry(stat.S_IFMT(status.st_mode), stat.S_IMODE(status.st_mode),
                                             (status.st_uid, status.st_gid), content)
    return found


def changed(before, after):
    """The paths that differ."""
    return sorted(path for path in before.keys() | after.keys() if before.get(path) != after.get(path))


# ---- what the run does to the files that it edits


def preferences_of_chrome(text, installed):
    """The text after the removals, and after the installation where Chrome is installed."""
    def edited(text, on):
        old, new, indent = ("false", "true", " " * 8) if on else ("true", "false", "\t\t")
        if "password_manager_enabled" in text:
            return text.replace(f'"password_manager_enabled": {old}', f'"password_manager_enabled": {new}')
        clean = '"exited_cleanly": true' if '"exited_cleanly": true' in text else '"exited_cleanly": false'
        return text.replace(clean, f'{clean}, \n{indent}"password_manager_enabled": {new}')

    text = edited(text, True)
    return edited(text, False) if installed else text


def _same(one, other):
    """Equal as a property list's values, where 1, 1.0 and True are three."""
    return type(one) is type(other) and (
        one.keys() == other.keys() and all(_same(one[key], other[key]) for key in one) if isinstance(one, dict)
        else len(one) == len(other) and all(map(_same, one, other)) if isinstance(one, list) else one == other)


def _list_of(value):
    found = value.get(LIST) if isinstance(value, dict) else None
    return found if isinstance(found, list) else []


def _name_of(entry):
    name = entry.get(NAME) if isinstance(entry, dict) else None
    return name if isinstance(name, str) else ""


def registry_of_safari(value):
    """The registry after the two removals of a run."""
    for _ in range(2):
        for prefix in ("Keystrel Button", "Keystrel"):
            ours = [entry for entry in _list_of(value) if _name_of(entry).startswith(prefix)]
            if ours:
                value = {**value, LIST: [entry for entry in _list_of(value) if not _same(entry, ours[-1])]}
    return value


def keychain_of_safari(value):
    """The keychain's item after the two removals."""
    for _ in range(2):
        for index, entry in enumerate(_list_of(value)):
            if _name_of(entry) in ("Keystrel.safariextz", "Keystrel Button.safariextz"):
                value = {**value, LIST: value[LIST][:index] + value[LIST][index + 1:]}
                break
    return value


def preferences_of_safari(value, has_registry):
    """Safari's preferences after a run; the button goes only where the registry can be read."""
    value = {**value, "AutoFillPasswords": "1"}
    toolbar = value.get(TOOLBAR)
    items = toolbar.get(TOOLBAR_ITEMS) if isinstance(toolbar, dict) else None
    if has_registry and isinstance(items, list):
        value[TOOLBAR] = {**toolbar, TOOLBAR_ITEMS: [item for item in items if item != BUTTON_ITEM]}
    return value


def registry_of_firefox(content):
    """A profile's registry without our extensions, as canonical XML."""
    document = minidom.parseString(content)
    root = document.documentElement
    for identifier in FIREFOX_IDENTIFIERS:
        away, target = [], None
        for child in _elements(root):
            if child.nodeName == "RDF:Description" and identifier in child.getAttribute("RDF:about"):
                away.append(child)
                for inner in _elements(child):
                    if inner.nodeName == "NS1:targetApplication" and inner.hasAttribute("RDF:resource"):
                        target = inner.getAttribute("RDF:resource")
            elif child.nodeName == "RDF:Seq":
                away += [item for item in _elements(child) if identifier in item.getAttribute("RDF:resource")]
        if target:
            away += [child for child in _elements(root)
                     if child.nodeName == "RDF:Description" and child.getAttribute("RDF:about") == target]
        for node in away:
            if node.parentNode is not None:
                node.parentNode.removeChild(node)
    return canonical(document.toxml().encode())


def _elements(node):
    return [child for child in node.childNodes if child.nodeType == child.ELEMENT_NODE]


def canonical(content):
    """Canonical XML with its comments, without text of nothing but white space."""
    return ElementTree.canonicalize(from_file=io.BytesIO(content), with_comments=True, strip_text=True)


def _plist(content):
    try:
        return plistlib.loads(content)
    except Exception:  # plistlib raises whatever its parsers raise
        return None


class Judge:
    """Compares a Mac before and after runs; `faults` gets a sentence for whatever does not hold."""

    def __init__(self, machine):
        self._machine, self._mac = machine, machine.mac
        self.faults = []
        self._before = self._entries()
        self._keychain = machine.keychain.read_bytes() if machine.keychain else None
        self._with_chrome = None

    def _entries(self):
        """Those of the Mac, as if alex's home were /Users/alex."""
        home = self._machine.home
        return {"/Users/alex" + path[len(home):] if path == home or path.startswith(home + "/") else path: entry
                for path, entry in entries(self._mac).items()}

    def after_a_run(self, result):
        """What holds after each run."""
        if (result.status, result.stderr) != (0, ""):
            self.faults.append(f"status {result.status}, stderr {result.stderr[-500:]!r}")
        after = self._entries()
        for path in changed(self._before, after):
            old, new = self._before.get(path), after.get(path)
            made = old is None and new.kind == stat.S_IFDIR and path in _MADE
            if not made and not _STATED.fullmatch(path):
                self.faults.append(f"{path} was {_shown(old)} and is {_shown(new)}")
        if len(result.asked) > 3:
            self.faults.append(f"{len(result.asked)} prompts")
        self._log(after, result)
        self._edits(after)
        return after

    def after_a_second_run(self, once):
        """Whether the second one left all as it was, but a log."""
        twice = self._entries()
        for path in changed(once, twice):
            if not (path.startswith(LOGS) or self._has_more(path, once) or self._was_no_descriptor(path)):
                self.faults.append(f"a second run: {path} was {_shown(once.get(path))} and is {_shown(twice.get(path))}")

    @staticmethod
    def _has_more(path, once):
        """One removal takes one entry of Safari's registry: the next run takes more of them."""
        left = _plist(once[path].content) if path == REGISTRY and once[path].kind == stat.S_IFREG else None
        return any(_name_of(entry).startswith("Keystrel") for entry in _list_of(left))

    def _was_no_descriptor(self, path):
        """The script copies what is in the descriptor's place in the bundle, and takes it away: a folder comes once."""
        name = next((name for name in CHROME_DESCRIPTORS if name in path), None)
        bundled = self._before.get(f"{EXTENSIONS}/chrome/{name}")
        return bundled is not None and bundled.kind != stat.S_IFREG

    def _log(self, after, result):
        new = [path for path in after if path.startswith(LOGS + "/") and after[path] != self._before.get(path)]
        console = result.stdout.replace("\r", "")
        if not new:
            return
        if self._machine.password:
            pieces = log.deciphered(self._mac.path(new[0]), self._machine.password.encode())
            if not pieces.startswith(b"\n") or b" - " not in pieces[:16]:
                self.faults.append("the log cannot be deciphered")
            messages = log.messages(re.sub(r"\n?\n(\n\d\d:\d\d:\d\d - [A-Z]+ : )", r"\1", console)[:-1])
        else:
            text = after[new[0]].content.decode()
            messages = log.messages(text)
        self.faults += [f"the line {level} {text!r}" for level, text in unknown_lines(messages)]
        self._with_chrome = any(text.startswith("The app's URL is: ") for _, text in messages)
        if not messages:
            self.faults.append("an empty log")

    # ---- files that are edited

    def _editable(self, path):
        """Whether alex could read the regular file and replace it; else it may stay as it was."""
        entry = self._before[path]
        if entry.kind != stat.S_IFREG or not self._allows(entry, 4):
            return False
        folder = path.rpartition("/")[0]
        if not self._allows(self._before[folder], 3):
            return False
        while folder := folder.rpartition("/")[0]:
            if not self._allows(self._before[folder], 1):
                return False
        return True

    @staticmethod
    def _allows(entry, wanted):
        user, group = entry.owner
        bits = entry.mode >> 6 if user == 501 else entry.mode >> 3 if group == 20 else entry.mode
        return bits & wanted == wanted

    def _edits(self, after):
        for path in self._before:
            profile = re.fullmatch(re.escape(PROFILES) + "/[^/]*/extensions.rdf", path, re.DOTALL)
            if path in (CHROME_PREFERENCES, SAFARI_PREFERENCES, REGISTRY) or profile:
                self._edit(path, self._before[path], after.get(path), self._firefox if profile else {
                    CHROME_PREFERENCES: self._chrome, SAFARI_PREFERENCES: self._safari, REGISTRY: self._registry}[path])
        if self._keychain is not None:
            self._keychain_item()

    def _edit(self, path, old, new, judge):
        if old.kind != stat.S_IFREG:
            if old.kind == stat.S_IFDIR and old != new:
                self.faults.append(f"{path}, a folder, became {_shown(new)}")
            return
        if new is None or new.kind != stat.S_IFREG:
            self.faults.append(f"{path} became {_shown(new)}")
        elif not self._editable(path):
            if old != new:
                self.faults.append(f"{path} could not be edited and was")
        elif not judge(path, old.content, new.content):
            self.faults.append(f"{path} was {old.content[:3000]!r} and is {new.content[:3000]!r}")
        elif old.owner == (501, 20) and old.mode != new.mode:
            self.faults.append(f"{path} had the mode {old.mode:o} and has {new.mode:o}")

    def _chrome(self, _, old, new):
        try:
            text = old.decode()
        except UnicodeDecodeError:
            return new == old
        if text.startswith("\ufeff"):
            return new in (old, old[3:]) or new.decode().replace("true", "false") == text.replace("true", "false")
        choices = {preferences_of_chrome(text, installed).encode() for installed in (True, False)
                   if self._with_chrome in (None, installed)}
        return new in choices

    def _safari(self, _, old, new):
        value = _plist(old)
        if not isinstance(value, dict):
            return new == old or value is None
        registry = self._before.get(REGISTRY)
        possible = [preferences_of_safari(value, True), preferences_of_safari(value, False)]
        if registry is not None and registry.kind == stat.S_IFREG and self._editable(REGISTRY):
            possible.pop()
        return any(_same(_plist(new), each) for each in possible)

    def _registry(self, _, old, new):
        value = _plist(old)
        if not isinstance(value, dict):
            return new == old or value is None
        return _same(_plist(new), registry_of_safari(value))

    def _firefox(self, _, old, new):
        try:
            expected = registry_of_firefox(old)
        except Exception:  # minidom raises whatever its parser raises
            return new == old
        return canonical(new) == expected

    def _keychain_item(self):
        old, new = _plist(self._keychain), _plist(self._machine.keychain.read_bytes())
        if "--keychain-locked" in self._machine.options:
            if old != new:
                self.faults.append("a locked keychain changed")
            return
        if {**old, KEYCHAIN_ITEM: None} != {**new, KEYCHAIN_ITEM: None}:
            self.faults.append(f"the keychain's other items were {old.keys()} and are {new.keys()}")
        if old.get(KEYCHAIN_ITEM) == new.get(KEYCHAIN_ITEM):
            return
        value = _plist(old[KEYCHAIN_ITEM])
        if not isinstance(value, dict) or not _same(_plist(new[KEYCHAIN_ITEM]), keychain_of_safari(value)):
            self.faults.append(f"the keychain's item was {old[KEYCHAIN_ITEM]!r} and is {new[KEYCHAIN_ITEM]!r}")


def _shown(entry):
    if entry is None:
        return "not there"
    kind = {stat.S_IFDIR: "a folder", stat.S_IFREG: "a file", stat.S_IFLNK: "a link"}.get(entry.kind, "something")
    content = f" {entry.content[:200]!r}" if entry.content is not None else ""
    return f"{kind} {entry.mode:04o} {entry.owner}{content}"


def judged(machine):
    """Runs the installer twice on a random Mac; the sentences of what does not hold."""
    judge = Judge(machine)
    once = judge.after_a_run(machine.mac.run(*machine.options))
    if not judge.faults:
        result = machine.mac.run(*machine.options)
        if (result.status, result.stderr) != (0, ""):
            judge.faults.append(f"the second run: status {result.status}, stderr {result.stderr[-500:]!r}")
        judge.after_a_second_run(once)
    return judge.faults
