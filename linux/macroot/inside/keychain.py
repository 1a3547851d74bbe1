"""Alex's login keychain: libsecret's file, filled before the program and read after it.

Items carry the attributes `class` (genp, a generic password) and `label`. A locked keychain is
there under another password than the one that the program is given.
"""

import json
import os
import subprocess

from macroot.errors import Trouble
from macroot.inside.layout import KEYCHAIN, keychain_environment

_OTHER_PASSWORD = "not alex's"
_STORE = "/run/macroot/lib/macroot/inside/keychain_store.py"


class Keychain:
    """The keychain of one run; `items` maps labels to data in Base64."""

    def __init__(self, plan, programs, alexs_environment):
        self._items = plan["keychain"]
        self._locked = plan["keychain_locked"]
        self._programs = programs
        self._environment = alexs_environment

    def fill(self):
        if self._locked:
            # An empty file would refuse nothing.
            self._use("fill", {"Locked": "", **self._items}, keychain_environment(_OTHER_PASSWORD))
        elif self._items:
            self._use("fill", self._items, {})

    def read(self):
        """What the program left in it."""
        if self._locked or not os.path.exists(self._programs.path(KEYCHAIN)):
            return self._items
        return json.loads(self._use("read", {}, {}))

    def _use(self, what, items, more_environment):
        with self._programs.start_as_alex(
                ["/usr/bin/python3", "-ISXutf8", _STORE, what],
                {**self._environment, **more_environment},
                stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE) as process:
            output, errors = process.communicate(json.dumps(items).encode())
        if process.returncode != 0:
            raise Trouble(f"the keychain cannot be used: {os.fsdecode(errors).strip()}")
        return output
