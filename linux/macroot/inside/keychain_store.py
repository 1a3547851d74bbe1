"""keychain_store fill | read: items between JSON (label -> data in Base64) and libsecret."""

import base64
import json
import sys

sys.path.append("/usr/lib/python3/dist-packages")  # python3 -S leaves it out

import gi

gi.require_version("Secret", "1")
from gi.repository import GLib, Secret


def fill(items):
    for label, data in items.items():
        data = base64.b64decode(data)
        value = Secret.Value.new(data, len(data), "application/octet-stream")
        Secret.password_store_binary_sync(None, {"class": "genp", "label": label}, None, label,
                                          value, None)


def read():
    flags = Secret.SearchFlags.ALL | Secret.SearchFlags.LOAD_SECRETS
    return {item.get_label(): base64.b64encode(item.retrieve_secret_sync(None).get()).decode()
            for item in Secret.password_search_sync(None, {}, flags, None)}


try:
    if sys.argv[1] == "fill":
        fill(json.load(sys.stdin))
    else:
        json.dump(read(), sys.stdout)
except GLib.Error as error:
    sys.exit(error.message)
