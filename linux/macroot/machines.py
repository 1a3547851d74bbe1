"""The sample machines, each a list of parts, each part a list of files, folders and links.

Owners follow from the path: alex's home, /Users/Shared and the product's bundle are alex's, the
rest is root's. Folders above an entry need no entry of their own.
"""

import json
import os
import plistlib
from collections import namedtuple

from macroot import executable
from macroot.people import BUNDLE, HOME, SHARED

Folder = namedtuple("Folder", "path mode", defaults=(0o755,))
File = namedtuple("File", "path content mode", defaults=(0o644,))
Link = namedtuple("Link", "path target")
Absent = namedtuple("Absent", "path")  # takes away what a part before it brought


def text(path, content, mode=0o644):
    return File(path, content.encode(), mode)


def plist(path, value, binary=False, mode=0o644):
    form = plistlib.FMT_BINARY if binary else plistlib.FMT_XML
    return File(path, plistlib.dumps(value, fmt=form), mode)


def external_extension(folder, identifier, url):
    """What makes a browser fetch an extension from its store."""
    return text(f"{folder}/{identifier}.json", f'{{ "external_update_url": "{url}" }}')


def native_host(path, name, program):
    """What lets an extension speak to a program of the machine."""
    manifest = {"name": name, "description": name, "path": program, "type": "stdio"}
    return text(path, json.dumps(manifest, indent=2) + "\n")


def application(path, identifier, name=None):
    """An application in Apple's layout; its program runs until it is ended."""
    name = name or os.path.basename(path).removesuffix(".app")
    return [
        plist(f"{path}/Contents/Info.plist", {
            "CFBundleIdentifier": identifier,
            "CFBundleName": name,
            "CFBundleExecutable": name,
            "CFBundlePackageType": "APPL",
            "CFBundleShortVersionString": "1.0",
        }),
        text(f"{path}/Contents/PkgInfo", "APPL????"),
        File(f"{path}/Contents/MacOS/{name}", executable.waiting_program(), 0o755),
    ]


LIBRARY = "/Library"
USERS_LIBRARY = f"{HOME}/Library"
LIBRARIES = (LIBRARY, USERS_LIBRARY)


# ---- the bare machine

SYSTEM = [
    *(Folder(f"/{name}") for name in ("usr", "dev", "proc", "run", "private/etc", "Volumes")),
    Folder("/private/tmp", 0o1777),
    Folder("/private/var/tmp", 0o1777),
    Folder("/private/var/root", 0o700),
    *(Link(f"/{name}", f"private/{name}") for name in ("etc", "tmp", "var")),
    *(Link(f"/{name}", f"usr/{name}") for name in ("bin", "sbin", "lib", "lib64")),
    Folder("/Applications"),
    Folder("/Library/Application Support"),
    Folder("/Library/Internet Plug-Ins"),
    plist("/System/Library/CoreServices/SystemVersion.plist", {
        "ProductBuildVersion": "18G103",
        "ProductCopyright": "1983-2019 Apple Inc.",
        "ProductName": "Mac OS X",
        "ProductUserVisibleVersion": "10.14.6",
        "ProductVersion": "10.14.6",
    }),
    Folder(SHARED, 0o1777),
]

ALEX = [
    *(Folder(f"{HOME}/{name}", 0o700) for name in ("Desktop", "Documents", "Library")),
    text(f"{HOME}/Documents/Shopping list.txt", "Bread\nApples\n"),
    Folder(f"{USERS_LIBRARY}/Application Support"),
    Folder(f"{USERS_LIBRARY}/Caches"),
    Folder(f"{USERS_LIBRARY}/Preferences"),
    plist(f"{USERS_LIBRARY}/Preferences/com.apple.finder.plist", {"ShowStatusBar": True}, binary=True),
]


# ---- the product

EXTENSIONS = f"{BUNDLE}/Contents/Keystrel/Tools/BExtensions"
CHROME_HOST = "com.corvendale.kschromena"
FIREFOX_HOST = "com.corvendale.ksnative"
HOST_PROGRAM = f"{BUNDLE}/Contents/Keystrel/Bin/KSNativeHost"

PRODUCT = [
    *application(BUNDLE, "com.corvendale.keystrel"),
    *application(f"{BUNDLE}/Contents/Keystrel/Keystrel.app", "com.corvendale.keystrel.main"),
    *application(f"{BUNDLE}/Contents/Keystrel/Bin/KSUpdater.app", "com.corvendale.keystrel.updater"),
    File(HOST_PROGRAM, executable.waiting_program(), 0o755),
    Folder(EXTENSIONS),
]

PAYLOAD = [
    native_host(f"{EXTENSIONS}/chrome/{CHROME_HOST}.json", CHROME_HOST, HOST_PROGRAM),
    text(f"{EXTENSIONS}/chrome/Keystrel.crx", "Cr24 Keystrel, this version\n"),
    text(f"{EXTENSIONS}/chrome/KeystrelButton.crx", "Cr24 Keystrel Button, this version\n"),
    native_host(f"{EXTENSIONS}/edge/{CHROME_HOST}.json", CHROME_HOST, HOST_PROGRAM),
    native_host(f"{EXTENSIONS}/{FIREFOX_HOST}.json", FIREFOX_HOST, HOST_PROGRAM),
]

SETTINGS_FOLDER = f"{SHARED}/Keystrel"
SETTINGS = [
    Folder(SETTINGS_FOLDER, 0o777),
    Folder(f"{SETTINGS_FOLDER}/Vaults", 0o777),
    plist(f"{SETTINGS_FOLDER}/KSSettings.plist", {"KSLoggingEnabled": "1"}),
    plist(f"{SETTINGS_FOLDER}/Vaults/Personal", {"AutoLock": "10"}),
]


# ---- Safari

SAFARI_EXTENSIONS = f"{USERS_LIBRARY}/Safari/Extensions"
SAFARI_CACHE = f"{USERS_LIBRARY}/Caches/com.apple.Safari/Extensions"
SAFARI_PREFERENCES = f"{USERS_LIBRARY}/Preferences/com.apple.Safari.plist"
SAFARI_TOOLBAR = "NSToolbar Configuration BrowserWindowToolbarIdentifier"
SAFARI_BUTTON = "com.corvendale.keystrel.button.safari-7QJX2RM5TB ksbutton"
FOREIGN_ARCHIVE = "Weather.safariextz"


def safari_preferences(*toolbar_items):
    items = ["BackForwardToolbarIdentifier", *toolbar_items, "InputFieldsToolbarIdentifier"]
    return plist(SAFARI_PREFERENCES, {
        "AutoFillPasswords": False,
        "HomePage": "http://www.apple.com/",
        "LastSafariVersionWithWelcomePage-v2": 12.1,
        SAFARI_TOOLBAR: {"TB Display Mode": 2, "TB Item Identifiers": items},
    }, binary=True, mode=0o600)


def safari_registry(*archives):
    return plist(f"{SAFARI_EXTENSIONS}/Extensions.plist", {
        "Available Updates": {"Updates List": []},
        "Installed Extensions": [
            {"Archive File Name": name, "Bundle Directory Name": name[:-1] + "ension", "Enabled": True}
            for name in archives],
        "Version": 1,
    }, binary=True)


SAFARI = [
    *application("/Applications/Safari.app", "com.apple.Safari"),
    safari_preferences(),
    safari_registry(FOREIGN_ARCHIVE),
    text(f"{SAFARI_EXTENSIONS}/{FOREIGN_ARCHIVE}", "xar! Weather\n"),
    text(f"{SAFARI_CACHE}/Weather.safariextension/Info.plist", "weather\n"),
]

SAFARI_LEFTOVERS = [
    safari_preferences(SAFARI_BUTTON),
    safari_registry(FOREIGN_ARCHIVE, "Keystrel.safariextz", "Keystrel Button.safariextz"),
    *(text(f"{SAFARI_EXTENSIONS}/{name}.safariextz", f"xar! {name}\n")
      for name in ("Keystrel", "Keystrel Button")),
    *(text(f"{SAFARI_CACHE}/{name}.safariextension/Info.plist", f"{name}\n")
      for name in ("Keystrel", "Keystrel Button")),
    *(text(f"{USERS_LIBRARY}/Internet Plug-Ins/KeystrelSafari{bits}.webplugin/Contents/Info.plist",
           f"{bits} bits\n") for bits in (32, 64)),
    text(f"{USERS_LIBRARY}/Internet Plug-Ins/Flowers.webplugin/Contents/Info.plist", "flowers\n"),
]


# ---- Google Chrome

CHROME_STORE = "https://clients2.google.com/service/update2/crx"
CHROME_EXTENSION = "kmcoedhplnbajgfiehkcpamdobnlgjie"
CHROME_BUTTON = "pbjaclkhgedmfonipcabhlmgkdjeoifn"
CHROME_APPLICATION = "/Applications/Google Chrome.app"
CHROME_PROFILE = f"{USERS_LIBRARY}/Application Support/Google/Chrome"
CHROME_SYSTEM_HOSTS = "/Library/Google/Chrome/NativeMessagingHosts"
FOREIGN_EXTENSION = "aaaabbbbccccddddeeeeffffgggghhhh"

CHROME_PREFERENCES = """{
   "browser": {
      "check_default_browser": false
   },
   "profile": {
      "exit_type": "Normal",
      "exited_cleanly": true,
      "name": "Alex \u2013 Zuhause",
      "password_manager_enabled": true
   }
}
"""

CHROME = [
    *application(CHROME_APPLICATION, "com.google.Chrome"),
    text(f"{CHROME_PROFILE}/Default/Preferences", CHROME_PREFERENCES, 0o600),
    text(f"{CHROME_PROFILE}/Default/Bookmarks", '{ "roots": {} }\n', 0o600),
    text(f"{CHROME_PROFILE}/Local State", "{}\n", 0o600),
    native_host(f"{CHROME_SYSTEM_HOSTS}/org.example.printer.json", "org.example.printer", "/opt/printer"),
    external_extension("/Library/Application Support/Google/Chrome/External Extensions",
                       FOREIGN_EXTENSION, CHROME_STORE),
    external_extension(f"{CHROME_PROFILE}/External Extensions", FOREIGN_EXTENSION, CHROME_STORE),
]


def chrome_extension_leftovers(folder):
    """Both extensions' packages and descriptors."""
    return [
        text(f"{folder}/Keystrel.crx", "Cr24 Keystrel, an earlier version\n"),
        text(f"{folder}/KeystrelButton.crx", "Cr24 Keystrel Button, an earlier version\n"),
        external_extension(folder, CHROME_EXTENSION, CHROME_STORE),
        external_extension(folder, CHROME_BUTTON, CHROME_STORE),
    ]


CHROME_LEFTOVERS = [
    *(entry for library in LIBRARIES for entry in (
        *chrome_extension_leftovers(f"{library}/Application Support/Google/Chrome/External Extensions"),
        text(f"{library}/Internet Plug-Ins/npKSPlugin.bundle/Contents/Info.plist", "plug-in\n"),
        text(f"{library}/Internet Plug-Ins/QuickTime.plugin/Contents/Info.plist", "foreign\n"))),
    text(f"{CHROME_APPLICATION}/Contents/Extensions/Keystrel.crx", "Cr24 Keystrel, built in\n"),
    text(f"{CHROME_APPLICATION}/Contents/Extensions/KeystrelButton.crx", "Cr24 Keystrel Button, built in\n"),
    text(f"{CHROME_APPLICATION}/Contents/Extensions/pdf.crx", "Cr24 foreign\n"),
    native_host(f"{CHROME_SYSTEM_HOSTS}/{CHROME_HOST}.json", CHROME_HOST, "/Applications/Old.app/host"),
    *(external_extension(f"{folder}/chrome", identifier, CHROME_STORE)
      for folder in (EXTENSIONS, "/Library/Application Support/Keystrel/Tools/BExtensions")
      for identifier in (CHROME_EXTENSION, CHROME_BUTTON)),
    text("/private/tmp/createDirChrome.sh", "#!/bin/sh\nexit 0\n", 0o777),
    text("/private/tmp/createDirUninstall.sh", "#!/bin/sh\nexit 0\n", 0o777),
]


# ---- Microsoft Edge

EDGE_STORE = "https://edge.microsoft.com/extensionwebstorebase/v1/crx"
EDGE_EXTENSION = "ljdimbpkaehcfognojlkbmcpiedhfagk"
EDGE_PROFILE = f"{USERS_LIBRARY}/Application Support/Microsoft Edge"

EDGE = [
    *application("/Applications/Microsoft Edge.app", "com.microsoft.edgemac"),
    text(f"{EDGE_PROFILE}/Default/Preferences", "{}\n", 0o600),
]

EDGE_LEFTOVERS = [
    native_host(f"{EDGE_PROFILE}/NativeMessagingHosts/{CHROME_HOST}.json", CHROME_HOST,
                "/Applications/Old.app/host"),
    native_host(f"{EDGE_PROFILE}/NativeMessagingHosts/org.example.printer.json", "org.example.printer",
                "/opt/printer"),
    external_extension(f"{EDGE_PROFILE}/External Extensions", EDGE_EXTENSION, "https://old.example/crx"),
    external_extension(f"{EDGE_PROFILE}/External Extensions", FOREIGN_EXTENSION, EDGE_STORE),
    external_extension(f"{EXTENSIONS}/edge", EDGE_EXTENSION, "https://old.example/crx"),
]


# ---- Firefox

FIREFOX_IDENTIFIERS = ("KeystrelButton@corvendale.com", "Keystrel@corvendale.com", "ks@corvendale.com")
FIREFOX_GUID = "{ec8030f7-c20a-464f-9b0e-13a3a9e97384}"
FIREFOX_PROFILES = f"{USERS_LIBRARY}/Application Support/Firefox/Profiles"
FIREFOX_CACHES = ("extensions.ini", "extensions.cache", "compreg.dat", "xpti.dat", "extensiondev.rdf")


def firefox_registry(path, *identifiers):
    """The registry of extensions of early versions: entries, their target applications, a list."""
    entries = "".join(f"""\
  <RDF:Description RDF:about="urn:mozilla:item:{identifier}" NS1:version="4.0">
    <NS1:targetApplication RDF:resource="rdf:#$target{number}"/>
  </RDF:Description>
  <RDF:Description RDF:about="rdf:#$target{number}" NS1:minVersion="2.0" NS1:maxVersion="3.6.*"/>
""" for number, identifier in enumerate(identifiers))
    items = "".join(f"""\
    <RDF:li RDF:resource="urn:mozilla:item:{identifier}"/>
""" for identifier in identifiers)
    return text(path, f"""\
<?xml version="1.0"?>
<RDF:RDF xmlns:NS1="http://www.mozilla.org/2004/em-rdf#"
         xmlns:RDF="http://www.w3.org/1999/02/22-rdf-syntax-ns#">
{entries}  <RDF:Seq RDF:about="urn:mozilla:item:root">
{items}  </RDF:Seq>
</RDF:RDF>
""")


def firefox_profile(name):
    return [text(f"{FIREFOX_PROFILES}/{name}/prefs.js", '// Mozilla User Preferences\n', 0o600),
            File(f"{FIREFOX_PROFILES}/{name}/places.sqlite", b"SQLite format 3\0", 0o600)]


FIREFOX = [
    *application("/Applications/Firefox.app", "org.mozilla.firefox", "firefox"),
    *firefox_profile("ab12cd34.default"),
    *firefox_profile("x9y8z7w6.Zo\u00eb 100%"),
    text(f"{FIREFOX_PROFILES}/../profiles.ini", "[General]\nStartWithLastProfile=1\n"),
    native_host(f"{USERS_LIBRARY}/Application Support/Mozilla/NativeMessagingHosts/org.example.printer.json",
                "org.example.printer", "/opt/printer"),
]

FIREFOX_LEFTOVERS = [
    *(text(f"{library}/Application Support/Mozilla/Extensions/{FIREFOX_GUID}/{name}/install.rdf", f"{name}\n")
      for library in LIBRARIES for name in (*FIREFOX_IDENTIFIERS, "js-ctypes")),
    *(text(f"{library}/Application Support/Mozilla/Extensions/other/install.rdf", "foreign\n")
      for library in LIBRARIES),
    *(native_host(f"{library}/Application Support/Mozilla/NativeMessagingHosts/{FIREFOX_HOST}.manifest.json",
                  FIREFOX_HOST, "/Applications/Old.app/host") for library in LIBRARIES),
    native_host(f"{USERS_LIBRARY}/Application Support/Mozilla/NativeMessagingHosts/{FIREFOX_HOST}.json",
                FIREFOX_HOST, "/Applications/Old.app/host"),
    firefox_registry(f"{FIREFOX_PROFILES}/ab12cd34.default/extensions.rdf",
                     "weather@example.org", *FIREFOX_IDENTIFIERS),
    firefox_registry(f"{FIREFOX_PROFILES}/x9y8z7w6.Zo\u00eb 100%/extensions.rdf", "weather@example.org"),
    *(text(f"{FIREFOX_PROFILES}/ab12cd34.default/{name}", "rebuilt by the browser\n")
      for name in FIREFOX_CACHES),
    File(f"{FIREFOX_PROFILES}/.DS_Store", b"\0\0\0\1Bud1"),
]


# ---- the machines

BROWSERS = [SAFARI, CHROME, EDGE, FIREFOX]
LEFTOVERS = [SAFARI_LEFTOVERS, CHROME_LEFTOVERS, EDGE_LEFTOVERS, FIREFOX_LEFTOVERS]
TYPICAL = [SYSTEM, ALEX, PRODUCT, PAYLOAD, SETTINGS, *BROWSERS, *LEFTOVERS]

MACHINES = {
    "typical": TYPICAL,                                             # four browsers, every leftover
    "clean": [SYSTEM, ALEX, PRODUCT, PAYLOAD, SETTINGS, SAFARI],    # Safari only, no leftover
    "fresh": [SYSTEM, ALEX, PRODUCT, PAYLOAD, SETTINGS, *BROWSERS], # four browsers, no leftover
    "no-payload": [*TYPICAL, [Absent(EXTENSIONS)]],
    "no-settings": [*TYPICAL, [Absent(SETTINGS_FOLDER)]],
    "no-product": [*TYPICAL, [Absent(BUNDLE)]],
}
