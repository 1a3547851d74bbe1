"""Microsoft Edge: the browser, and what earlier versions of the product left in it."""

from tests.machines.chrome import FOREIGN_EXTENSION
from tests.machines.entries import application, external_extension, native_host, text
from tests.machines.product import CHROME_HOST, EXTENSIONS, OLD_HOST_PROGRAM
from tests.machines.system import USERS_SUPPORT

_STORE = "https://edge.microsoft.com/extensionwebstorebase/v1/crx"
_OLD_STORE = "https://old.example/crx"
EXTENSION = "ljdimbpkaehcfognojlkbmcpiedhfagk"
_PROFILE = f"{USERS_SUPPORT}/Microsoft Edge"
_HOSTS = f"{_PROFILE}/NativeMessagingHosts"
_EXTERNAL_FOLDER = f"{_PROFILE}/External Extensions"

INSTALLED = [
    *application("/Applications/Microsoft Edge.app", "com.microsoft.edgemac"),
    text(f"{_PROFILE}/Default/Preferences", "{}\n", 0o600),
]

LEFTOVERS = [
    native_host(_HOSTS, CHROME_HOST, OLD_HOST_PROGRAM),
    native_host(_HOSTS, "org.example.printer"),
    external_extension(_EXTERNAL_FOLDER, EXTENSION, _OLD_STORE),
    external_extension(_EXTERNAL_FOLDER, FOREIGN_EXTENSION, _STORE),
    external_extension(f"{EXTENSIONS}/edge", EXTENSION, _OLD_STORE),
]
