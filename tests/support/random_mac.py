"""A Mac in a state that nobody thought of, grown from a seed: the same seed, the same Mac."""

import os
import plistlib
import random
import shutil

from tests.support.mac import Mac
from tests.support.places import (
    APPLICATIONS, BUTTON_ITEM, CACHES, CHROME_PREFERENCES, FIREFOX_IDENTIFIERS, KEYCHAIN_ITEM, LIST, NAME, PROFILES,
    REGISTRY, SAFARI_CACHE, SAFARI_PREFERENCES, SETTINGS, TOOLBAR, TOOLBAR_ITEMS, leftovers, payload)

ALEX, STAFF = 501, 20

_MACHINES = ["typical"] * 5 + ["fresh", "clean", "shipped", "no-payload", "no-settings", "no-product"]
_HOMES = ["alex"] * 6 + ["two words", "100% %n %s %@", "Zo\u00eb \u6771\u4eac", "quo'te\"s", "back\\slash", "..\\..\\Victim"]
_PROFILES = ["plain.default", "two words", "100% %@", "Zo\u00eb", ".hidden", "..\\up", "C:\\x", "line\nbreak", "x" * 200, "\ufeffm",
             "quo'te\"s", "*?[a]", "~", "-rf"]
_FOREIGN_NAMES = ["foreign.json", "com.corvendale.other.json", "Keystrel.crx.bak", "MyKeystrel.crx", "keystrel.crx",
                  "KeystrelButton2.crx", ".DS_Store", "100% %@.json", "x;rm -rf ~"]
_TEXTS = ["", "plain", "100% %@ %n", "Zo\u00eb \u6771\u4eac \U0001f511", "<&>\"'", " blank ", "x" * 3000]


class RandomMac:
    """The machine of a seed.

    mac      the Mac, which lies in the folder
    home     alex's home inside
    options  of the runs: prompts, shell, home, keychain
    keychain the file with its items, or None
    password of the log, or None
    """

    def __init__(self, seed, folder):
        self._random = random.Random(seed)
        self.mac = Mac.new(self._random.choice(_MACHINES), folder)
        self.home, self.keychain, self.password = "/Users/alex", None, None
        self.options = ["--admin", "refuse"]
        for step in (self._browsers, self._chrome_preferences, self._safari_preferences, self._safari_registry,
                     self._safari_cache, self._profiles, self._earlier_forms, self._payload, self._foreign_files,
                     self._settings, self._folders, self._keychain, self._prompts, self._move_home):
            step(folder)

    def options_without_answers(self):
        """Those that do not answer a prompt."""
        return self.options[2 * self.options.count("--admin"):]

    # ---- what the steps are made of

    def _chance(self, share):
        return self._random.random() < share

    def _host(self, path):
        return self.mac.path(path)

    def _own(self, path):
        """Gives an entry and all in it to its owner, as on a new machine."""
        ours = path.startswith(("/Users/", "/Applications/Keystrel.app"))
        user, group = (ALEX, STAFF) if ours else (0, 0)
        found = self._host(path)
        inside = [] if found.is_symlink() or not found.is_dir() else found.rglob("*")
        for each in [found, *inside]:
            os.chown(each, user, group, follow_symlinks=False)

    def _clear(self, path):
        """Makes room for an entry; its new folders are its owner's."""
        self.mac.remove(path)
        folder, missing = path.rpartition("/")[0], []
        while folder and not os.path.lexists(self._host(folder)):
            missing.append(folder)
            folder = folder.rpartition("/")[0]
        for each in reversed(missing):
            self._host(each).mkdir()
            self._own(each)

    def _file(self, path, content, mode=0o644):
        self._clear(path)
        self._host(path).write_bytes(content if isinstance(content, bytes) else content.encode())
        self._host(path).chmod(mode)
        self._own(path)

    def _folder(self, path):
        self._clear(path)
        self._host(path).mkdir()
        self._own(path)

    def _link(self, path, target):
        self._clear(path)
        self._host(path).symlink_to(target)
        self._own(path)

    def _place(self, path, content):
        """A file that a run edits: as it should be, or in the wrong shape."""
        shape = self._random.choice(["file"] * 12 + ["missing", "empty", "folder", "link", "dangling", "closed", "read-only",
                                                     "root's", "cut", "damaged"])
        if shape == "missing":
            self.mac.remove(path)
        elif shape == "folder":
            self._folder(path)
            self._file(path + "/inside", "kept")
        elif shape in ("link", "dangling"):
            target = "/Users/alex/elsewhere " + str(self._random.randrange(1000))
            if shape == "link":
                self._file(target, content)
            self._link(path, target)
        else:
            at = self._random.randrange(len(content) + 1)
            content = {"empty": b"", "cut": content[:at], "damaged": content[:at] + b"\xff\0<" + content[at + 3:]}.get(
                shape, content)
            self._file(path, content, {"closed": 0, "read-only": 0o444}.get(shape, self._random.choice([0o644, 0o600, 0o777])))
            if shape == "root's":
                os.chown(self._host(path), 0, 0)

    # ---- the steps

    def _browsers(self, _):
        for application in APPLICATIONS:
            if self._chance(0.25):
                self.mac.remove(application)
            elif self._host(application).is_dir() and self._chance(0.12):
                self._place(application + "/Contents/Info.plist", plistlib.dumps(self._random.choice([
                    {"CFBundleIdentifier": 7}, {"CFBundleIdentifier": "org.example.other"}, ["no", "dictionary"],
                    {"CFBundleIdentifier": "com.google.Chrome", "CFBundleName": ["x"]}])))

    def _chrome_preferences(self, _):
        lines = [f'"name": "{self._random.choice(_TEXTS[:4])}"', '"exit_type": "Normal"']
        for key, share in (("exited_cleanly", 0.7), ("password_manager_enabled", 0.5)):
            for _ in range(self._random.choice([1, 1, 1, 2, 3]) if self._chance(share) else 0):
                colon = self._random.choice([": ", ": ", ": ", ":", " : ", ":  "])
                lines.append(f'"{key}"{colon}{self._random.choice(["true", "false", "1"])}')
        if self._chance(0.2):
            lines.append('"note": "of password_manager_enabled"')
        self._random.shuffle(lines)
        end = self._random.choice(["\n", "\n", "\r\n", ""])
        text = "{" + end + ("," + end).join("   " + line for line in lines) + end + "}" + end
        content = text.encode()
        if self._chance(0.1):
            content = self._random.choice([b"\xef\xbb\xbf" + content, text.encode("utf-16"), content + b"\xe9", content + b"\0x",
                                           content + b" " * 300_000])
        if self._chance(0.9):
            self._place(CHROME_PREFERENCES, content)

    def _value(self, depth=0):
        """Anything that a property list holds."""
        kinds = [lambda: self._random.choice(_TEXTS), lambda: self._random.choice([True, False]),
                 lambda: self._random.choice([0, -1, 2**40, -2**62]), lambda: self._random.choice([0.0, 1.5, -2.25e100]),
                 lambda: self._random.randbytes(9), lambda: plistlib.datetime.datetime(2001 + self._random.randrange(99), 2, 28)]
        if depth < 3:
            kinds += [lambda: [self._value(depth + 1) for _ in range(self._random.randrange(4))],
                      lambda: {key: self._value(depth + 1) for key in self._random.sample(_TEXTS[1:6], 2)}]
        return self._random.choice(kinds)()

    def _dumped(self, value):
        return plistlib.dumps(value, fmt=self._random.choice([plistlib.FMT_BINARY, plistlib.FMT_XML]))

    def _safari_preferences(self, _):
        value = {f"Foreign {number}": self._value() for number in range(self._random.randrange(6))}
        for key in ("AutoFillPasswords", "TabCreationPolicy"):
            if self._chance(0.6):
                value[key] = self._value(3)
        if self._chance(0.8):
            items = [self._random.choice([BUTTON_ITEM, "Back", "Input", BUTTON_ITEM + "2"])
                     for _ in range(self._random.randrange(6))]
            items += [self._value()] if self._chance(0.2) else []
            value[TOOLBAR] = {"TB Display Mode": 2, TOOLBAR_ITEMS: items}
            if self._chance(0.2):
                value[TOOLBAR] = self._random.choice([self._value(), {TOOLBAR_ITEMS: self._value()}])
        if self._chance(0.9):
            self._place(SAFARI_PREFERENCES, self._dumped(value if self._chance(0.95) else self._value()))

    def _entry(self):
        name = self._random.choice(["Keystrel", "Keystrel", "Keystrel Button", "Weather", "keystrel", "My Keystrel", "Keystrel2",
                                    "Keystrel Button 2", "Key", ""]) + ".safariextz"
        entry = {NAME: name, "Enabled": self._chance(0.5)}
        if self._chance(0.3):
            entry["more"] = self._value()
        if self._chance(0.1):
            entry = self._random.choice([{"Enabled": True}, {NAME: self._value()}, self._value()])
        return entry

    def _extensions_list(self):
        value = {LIST: [self._entry() for _ in range(self._random.randrange(7))], "Version": 1, "Foreign": self._value()}
        if self._chance(0.1):
            value[LIST] = self._value()
        if self._chance(0.1):
            del value[LIST]
        return self._dumped(value if self._chance(0.95) else self._value())

    def _safari_registry(self, _):
        if self._chance(0.9):
            self._place(REGISTRY, self._extensions_list())

    def _safari_cache(self, _):
        for name in ("Keystrel", "Keystrel Button.safariextension", "keystrel", "Weather.safariextension", "KeystrelOld"):
            path = SAFARI_CACHE + "/" + name
            if self._chance(0.4):
                self._place(path, self._random.choice(_TEXTS).encode())
        if self._chance(0.1):
            shutil.rmtree(self._host(SAFARI_CACHE), ignore_errors=True)

    def _registry_of_profile(self):
        identifiers = [self._random.choice([*FIREFOX_IDENTIFIERS, "weather@example.org", "x" + FIREFOX_IDENTIFIERS[0] + "y"])
                       for _ in range(self._random.randrange(6))]
        lines = []
        for number, identifier in enumerate(identifiers):
            target = f"rdf:#${self._random.randrange(number + 1)}"
            inner = f'<NS1:targetApplication RDF:resource="{target}"/>' if self._chance(0.7) else "<NS1:name>x</NS1:name>"
            lines += [f'<RDF:Description RDF:about="urn:mozilla:item:{identifier}" NS1:v="1">{inner}</RDF:Description>',
                      f'<RDF:Description RDF:about="rdf:#${number}" NS1:minVersion="2"/>']
        items = "".join(f'<RDF:li RDF:resource="urn:mozilla:item:{identifier}"/>' for identifier in identifiers)
        lines += [f'<RDF:Seq RDF:about="urn:mozilla:item:root"><!-- kept: {len(items)} -->{items}</RDF:Seq>',
                  "<!-- a comment of alex -->", '<RDF:Other RDF:about="Keystrel">Zo\u00eb &amp; \u6771</RDF:Other>']
        self._random.shuffle(lines)
        text = ('<?xml version="1.0"?>\n<RDF:RDF xmlns:NS1="http://www.mozilla.org/2004/em-rdf#" '
                'xmlns:RDF="http://www.w3.org/1999/02/22-rdf-syntax-ns#">\n  ' + "\n  ".join(lines) + "\n</RDF:RDF>\n")
        return text.encode(self._random.choice(["utf-8"] * 6 + ["utf-16", "latin-1"]), "xmlcharrefreplace")

    def _profiles(self, _):
        for name in self._random.sample(_PROFILES, self._random.randrange(5)):
            folder = f"{PROFILES}/{name}"
            if self._chance(0.15):
                self._place(folder, b"no folder")
                continue
            self._folder(folder)
            self._file(folder + "/prefs.js", "// kept\n", 0o600)
            self._place(folder + "/extensions.rdf", self._registry_of_profile())
            for cache in CACHES:
                if self._chance(0.6):
                    self._place(f"{folder}/{cache}", b"rebuilt by the browser\n")
        if self._chance(0.05):
            self.mac.remove(PROFILES)

    def _earlier_forms(self, _):
        for path in leftovers():
            draw = self._random.random()
            if draw < 0.3:
                self.mac.remove(path)
            elif draw < 0.5 and self._parent_is_folder(path):
                self._place(path, b"an earlier version\n")

    def _parent_is_folder(self, path):
        return self._host(path.rpartition("/")[0]).is_dir()

    def _payload(self, _):
        for path in payload():
            if self._parent_is_folder(path) and self._chance(0.15):
                self._place(path, b"payload\n")

    def _foreign_files(self, _):
        folders = sorted({path.rpartition("/")[0] for path in (*leftovers(), CHROME_PREFERENCES, REGISTRY)})
        for folder in self._random.sample(folders, 4):
            path = f"{folder}/{self._random.choice(_FOREIGN_NAMES)}"
            if self._host(folder).is_dir() and not self._host(folder).is_symlink():
                self._file(path, self._random.choice(_TEXTS))

    def _settings(self, _):
        if self._chance(0.1) or not self._parent_is_folder(SETTINGS):
            return
        value = {"KSLoggingEnabled": self._random.choice(["1"] * 8 + ["0", "", 1, True]), "Foreign": self._value()}
        if self._chance(0.2):
            self._place(SETTINGS, self._dumped(value))
            return
        if self._chance(0.3):
            self.password = value["KSLoggingPassword"] = self._random.choice(["secret", "p\u00e4ssword", "0123456789" * 5])
        self._file(SETTINGS, self._dumped(value))

    def _folders(self, _):
        """Some folders of a run are closed, read-only or another user's."""
        folders = sorted({path.rpartition("/")[0] for path in (
            *leftovers(), *payload(), CHROME_PREFERENCES, REGISTRY, SAFARI_PREFERENCES, SAFARI_CACHE + "/x", SETTINGS)})
        for folder in self._random.sample(folders, self._random.choice([0, 0, 1, 2])):
            if self._host(folder).is_dir():
                if self._chance(0.3):
                    os.chown(self._host(folder), 0, 0)
                else:
                    self._host(folder).chmod(self._random.choice([0o555, 0, 0o300, 0o777]))

    def _keychain(self, folder):
        if not self._chance(0.3):
            return
        self.keychain = folder / "keychain"
        items = {"Mail": b"secret"}
        if self._chance(0.8):
            items[KEYCHAIN_ITEM] = self._extensions_list() if self._chance(0.9) else b"no property list"
        self.keychain.write_bytes(plistlib.dumps(items))
        self.options += ["--keychain", self.keychain]
        if self._chance(0.15):
            self.options.append("--keychain-locked")

    def _prompts(self, _):
        self.options[:2] = [word for _ in range(self._random.choice([1, 1, 2, 3]))
                            for word in ("--admin", self._random.choice(["allow", "refuse", "cancel"]))]
        if self._chance(0.3):
            self.options += ["--sh", "dash"]

    def _move_home(self, _):
        name = self._random.choice(_HOMES)
        if name != "alex":
            self.home = "/Users/" + name
            self._host("/Users/alex").rename(self._host(self.home))
            self.options += ["--home", self.home]
