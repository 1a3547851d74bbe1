"""Keystrel: its application, what it brings for each browser, its settings."""

from macroot.tree import File, Folder
from macroot.users import BUNDLE, SHARED
from tests.machines import executable
from tests.machines.entries import application, native_host, plist, text

EXTENSIONS = f"{BUNDLE}/Contents/Keystrel/Tools/BExtensions"
CHROME_HOST = "com.corvendale.kschromena"
FIREFOX_HOST = "com.corvendale.ksnative"
OLD_HOST_PROGRAM = f"{BUNDLE}/Contents/KeystrelOLD/host"
SETTINGS_FOLDER = f"{SHARED}/Keystrel"

_TOOLS = f"{BUNDLE}/Contents/Keystrel/Bin"
HOST_PROGRAM = f"{_TOOLS}/KSNativeHost"

APPLICATION = [
    *application(BUNDLE, "com.corvendale.keystrel"),
    *application(f"{BUNDLE}/Contents/Keystrel/Keystrel.app", "com.corvendale.keystrel.main"),
    *application(f"{_TOOLS}/KSUpdater.app", "com.corvendale.keystrel.updater"),
    File(HOST_PROGRAM, executable.waiting_program(), 0o755),
    Folder(EXTENSIONS),
]

PAYLOAD = [
    native_host(f"{EXTENSIONS}/chrome", CHROME_HOST, HOST_PROGRAM),
    text(f"{EXTENSIONS}/chrome/Keystrel.crx", "Cr24 Keystrel, this version\n"),
    text(f"{EXTENSIONS}/chrome/KeystrelButton.crx", "Cr24 Keystrel Button, this version\n"),
    native_host(f"{EXTENSIONS}/edge", CHROME_HOST, HOST_PROGRAM),
    native_host(EXTENSIONS, FIREFOX_HOST, HOST_PROGRAM),
]

SETTINGS = [
    Folder(SETTINGS_FOLDER, 0o777),
    Folder(f"{SETTINGS_FOLDER}/Vaults", 0o777),
    plist(f"{SETTINGS_FOLDER}/KSSettings.plist", {"KSLoggingEnabled": "1"}),
    plist(f"{SETTINGS_FOLDER}/Vaults/Personal", {"AutoLock": "10"}),
]
