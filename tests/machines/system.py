"""A Mac without anything on it, and its user."""

from macroot.tree import Folder, Link
from macroot.users import HOME, SHARED
from tests.machines.entries import plist, text

LIBRARY = "/Library"
USERS_LIBRARY = f"{HOME}/Library"
LIBRARIES = (LIBRARY, USERS_LIBRARY)
SUPPORT = f"{LIBRARY}/Application Support"
USERS_SUPPORT = f"{USERS_LIBRARY}/Application Support"
SUPPORTS = (SUPPORT, USERS_SUPPORT)

SYSTEM = [
    *(Folder(f"/{name}") for name in ("usr", "dev", "proc", "run", "private/etc", "Volumes")),
    Folder("/private/tmp", 0o1777),
    Folder("/private/var/tmp", 0o1777),
    Folder("/private/var/root", 0o700),
    *(Link(f"/{name}", f"private/{name}") for name in ("etc", "tmp", "var")),
    *(Link(f"/{name}", f"usr/{name}") for name in ("bin", "sbin", "lib", "lib64")),
    Folder("/Applications"),
    Folder(SUPPORT),
    Folder(f"{LIBRARY}/Internet Plug-Ins"),
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
    Folder(USERS_SUPPORT),
    Folder(f"{USERS_LIBRARY}/Caches"),
    plist(f"{USERS_LIBRARY}/Preferences/com.apple.finder.plist", {"ShowStatusBar": True},
          binary=True),
]
