"""Safari: the browser, and what earlier versions of the product left in it."""

from tests.machines.entries import application, bundle, plist, text
from tests.machines.system import USERS_LIBRARY

_EXTENSIONS = f"{USERS_LIBRARY}/Safari/Extensions"
_CACHE = f"{USERS_LIBRARY}/Caches/com.apple.Safari/Extensions"
_PLUG_INS = f"{USERS_LIBRARY}/Internet Plug-Ins"
_BUTTON = "com.corvendale.keystrel.button.safari-7QJX2RM5TB ksbutton"
_FOREIGN = "Weather"
_OURS = ("Keystrel", "Keystrel Button")


def _preferences(*toolbar_items):
    items = ["BackForwardToolbarIdentifier", *toolbar_items, "InputFieldsToolbarIdentifier"]
    return plist(f"{USERS_LIBRARY}/Preferences/com.apple.Safari.plist", {
        "AutoFillPasswords": False,
        "HomePage": "http://www.apple.com/",
        "LastSafariVersionWithWelcomePage-v2": 12.1,
        "NSToolbar Configuration BrowserWindowToolbarIdentifier": {
            "TB Display Mode": 2,
            "TB Item Identifiers": items,
        },
    }, binary=True, mode=0o600)


def _registry(*names):
    return plist(f"{_EXTENSIONS}/Extensions.plist", {
        "Available Updates": {"Updates List": []},
        "Installed Extensions": [{
            "Archive File Name": f"{name}.safariextz",
            "Bundle Directory Name": f"{name}.safariextension",
            "Enabled": True,
        } for name in names],
        "Version": 1,
    }, binary=True)


def _files(name):
    """An extension's archive and its entry in the cache."""
    return [text(f"{_EXTENSIONS}/{name}.safariextz", f"xar! {name}\n"),
            bundle(f"{_CACHE}/{name}.safariextension")]


INSTALLED = [
    *application("/Applications/Safari.app", "com.apple.Safari"),
    _preferences(),
    _registry(_FOREIGN),
    *_files(_FOREIGN),
]

LEFTOVERS = [
    _preferences(_BUTTON),
    _registry(_FOREIGN, *_OURS),
    *(entry for name in _OURS for entry in _files(name)),
    *(bundle(f"{_PLUG_INS}/{name}.webplugin")
      for name in ("KeystrelSafari32", "KeystrelSafari64", "Flowers")),
]
