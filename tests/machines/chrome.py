"""Google Chrome: the browser, and what earlier versions of the product left in it."""

from tests.machines.entries import application, bundle, external_extension, native_host, text
from tests.machines.product import CHROME_HOST, EXTENSIONS, OLD_HOST_PROGRAM
from tests.machines.system import LIBRARIES, LIBRARY, SUPPORT, SUPPORTS, USERS_SUPPORT

FOREIGN_EXTENSION = "aaaabbbbccccddddeeeeffffgggghhhh"

_STORE = "https://clients2.google.com/service/update2/crx"
EXTENSION = "kmcoedhplnbajgfiehkcpamdobnlgjie"
_BUTTON = "pbjaclkhgedmfonipcabhlmgkdjeoifn"
_APPLICATION = "/Applications/Google Chrome.app"
_BUILT_IN = f"{_APPLICATION}/Contents/Extensions"
_PROFILE = f"{USERS_SUPPORT}/Google/Chrome"
_HOSTS = f"{LIBRARY}/Google/Chrome/NativeMessagingHosts"
_EXTERNAL_FOLDERS = [f"{support}/Google/Chrome/External Extensions" for support in SUPPORTS]

_PREFERENCES = """{
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

INSTALLED = [
    *application(_APPLICATION, "com.google.Chrome"),
    text(f"{_PROFILE}/Default/Preferences", _PREFERENCES, 0o600),
    text(f"{_PROFILE}/Default/Bookmarks", '{ "roots": {} }\n', 0o600),
    text(f"{_PROFILE}/Local State", "{}\n", 0o600),
    native_host(_HOSTS, "org.example.printer"),
    *(external_extension(folder, FOREIGN_EXTENSION, _STORE) for folder in _EXTERNAL_FOLDERS),
]


def _packages(folder):
    return [text(f"{folder}/Keystrel.crx", "Cr24 Keystrel, an earlier version\n"),
            text(f"{folder}/KeystrelButton.crx", "Cr24 Keystrel Button, an earlier version\n")]


def _descriptors(folder):
    return [external_extension(folder, identifier, _STORE) for identifier in (EXTENSION, _BUTTON)]


LEFTOVERS = [
    *(entry for folder in _EXTERNAL_FOLDERS
      for entry in (*_packages(folder), *_descriptors(folder))),
    *(bundle(f"{library}/Internet Plug-Ins/{name}") for library in LIBRARIES
      for name in ("npKSPlugin.bundle", "QuickTime.plugin")),
    *_packages(_BUILT_IN),
    text(f"{_BUILT_IN}/pdf.crx", "Cr24 foreign\n"),
    native_host(_HOSTS, CHROME_HOST, OLD_HOST_PROGRAM),
    *_descriptors(f"{EXTENSIONS}/chrome"),
    *_descriptors(f"{SUPPORT}/Keystrel/Tools/BExtensions/chrome"),
    *(text(f"/private/tmp/{name}.sh", "#!/bin/sh\nexit 0\n", 0o777)
      for name in ("createDirChrome", "createDirUninstall")),
]
