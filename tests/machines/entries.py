"""Entries of machines that several browsers need.

Owners follow from the path: alex's home, /Users/Shared and the product's bundle are alex's, the
rest is root's.
"""

import json
import os
import plistlib

from macroot.tree import File
from tests.machines import executable


def text(path, content, mode=0o644):
    return File(path, content.encode(), mode)


def plist(path, value, binary=False, mode=0o644):
    form = plistlib.FMT_BINARY if binary else plistlib.FMT_XML
    return File(path, plistlib.dumps(value, fmt=form), mode)


def external_extension(folder, identifier, url):
    """What makes a browser fetch an extension from its store."""
    return text(f"{folder}/{identifier}.json", f'{{ "external_update_url": "{url}" }}')


def native_host(folder, name, program="/opt/example/host", suffix=".json", **admitted):
    """What lets an extension speak to a program of the machine; browsers refuse one that admits none."""
    manifest = {"name": name, "description": name, "path": program, "type": "stdio", **admitted}
    return text(f"{folder}/{name}{suffix}", json.dumps(manifest, indent=2) + "\n")


def bundle(path):
    """A plug-in in Apple's layout, as far as anybody looks."""
    name, _ = os.path.splitext(os.path.basename(path))
    return plist(f"{path}/Contents/Info.plist", {"CFBundleName": name})


def application(path, identifier, executable_name=None):
    """An application in Apple's layout; its program runs until it is ended."""
    name, _ = os.path.splitext(os.path.basename(path))
    executable_name = executable_name or name
    return [
        plist(f"{path}/Contents/Info.plist", {
            "CFBundleIdentifier": identifier,
            "CFBundleName": name,
            "CFBundleExecutable": executable_name,
            "CFBundlePackageType": "APPL",
            "CFBundleShortVersionString": "1.0",
        }),
        text(f"{path}/Contents/PkgInfo", "APPL????"),
        File(f"{path}/Contents/MacOS/{executable_name}", executable.waiting_program(), 0o755),
    ]
