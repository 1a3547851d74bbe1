"""What a Mac root holds beside the machine: files in /etc and /run, folders, environments."""

import os

from macroot.users import ALEX, STAFF
from macroot.inside.programs import PATH

MACROOT = "/run/macroot"
ALEXS_FOLDER = "/run/alex"
BROKER_SOCKET = f"{MACROOT}/broker.sock"
KEYCHAIN = f"{ALEXS_FOLDER}/keychain/login.keyring"
KEYCHAIN_PASSWORD = "alex"

PLATFORM_UUID = "8F1C2A7E-5D3B-4E96-A0C4-7B2D9E6F1A35"

_GNUSTEP_CONFIGURATION = "/etc/GNUstep/GNUstep.conf"

_ETC = {
    "group": f"wheel:x:0:\nstaff:x:{STAFF}:\nadmin:x:80:alex\nnogroup:x:65534:\n",
    "hosts": "127.0.0.1 localhost mac\n::1 localhost\n",
    "machine-id": PLATFORM_UUID.replace("-", "").lower() + "\n",
    "nsswitch.conf": "passwd: files\ngroup: files\nhosts: files dns\n",
}

# Fonts come from the host, and so does the cache that saves searching them.
FONT_CACHE = f"{MACROOT}/font-cache"
_FONTS = f"""<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig>
  <cachedir>{FONT_CACHE}</cachedir>
  <include ignore_missing="yes">/etc/fonts/fonts.conf</include>
</fontconfig>
"""


def lay_out(plan, programs):
    """Writes the files and makes the folders."""
    home = plan["home"]
    accounts = (f"root:x:0:0:System Administrator:/var/root:/bin/sh\n"
                f"alex:x:{ALEX}:{STAFF}:Alex:{home}:/bin/bash\n"
                f"nobody:x:65534:65534:Nobody:/:/usr/sbin/nologin\n")
    for folder in plan["etc_folders"]:
        for name, content in {**_ETC, "passwd": accounts}.items():
            write(programs, f"{folder}/{name}", content)
    write(programs, f"{MACROOT}/platform-uuid", PLATFORM_UUID + "\n")
    write(programs, f"{MACROOT}/fonts.conf", _FONTS)
    write(programs, f"{MACROOT}/GNUstep.conf", _gnustep_configuration(home))
    for name in ("", "/tmp", "/cache", "/config", "/data", "/runtime", "/keychain"):
        folder = ALEXS_FOLDER + name
        os.mkdir(programs.path(folder), 0o700)
        programs.give_to_alex(folder)


def alexs_environment(plan):
    """The program's environment."""
    return {
        "LANG": "C.UTF-8",
        **plan["environment"],
        **_shared_environment(plan),
        "USER": "alex",
        "LOGNAME": "alex",
        "SHELL": "/bin/bash",
        **keychain_environment(KEYCHAIN_PASSWORD),
        "TEMP": f"{ALEXS_FOLDER}/tmp",
        "GNUSTEP_CONFIG_FILE": f"{MACROOT}/GNUstep.conf",
        "FONTCONFIG_FILE": f"{MACROOT}/fonts.conf",
        "XDG_CACHE_HOME": f"{ALEXS_FOLDER}/cache",
        "XDG_CONFIG_HOME": f"{ALEXS_FOLDER}/config",
        "XDG_DATA_HOME": f"{ALEXS_FOLDER}/data",
        "XDG_RUNTIME_DIR": f"{ALEXS_FOLDER}/runtime",
    }


def keychain_environment(password):
    """What leads libsecret to alex's login keychain, a file."""
    return {"SECRET_BACKEND": "file", "SECRET_FILE_TEST_PATH": KEYCHAIN,
            "SECRET_FILE_TEST_PASSWORD": password, "GIO_USE_VFS": "local"}


def roots_environment(plan):
    """An administrator command's environment: clean, with the user's home."""
    return {**_shared_environment(plan), "USER": "root", "LOGNAME": "root"}


def _shared_environment(plan):
    return {"HOME": plan["home"], "PATH": PATH, **_standing_time(plan["at"])}


def _standing_time(at):
    """The clock stands; waiting still takes its time, and files keep their real dates."""
    if at is None:
        return {}
    return {"LD_PRELOAD": "/usr/$LIB/faketime/libfaketimeMT.so.1", "FAKETIME": at,
            "FAKETIME_DONT_FAKE_MONOTONIC": "1", "NO_FAKE_STAT": "1"}


def _gnustep_configuration(home):
    """The host's, with GNUstep's own folders kept out of the tree.

    It takes a user's folders as relative to the home: the way to /run leads up from there first.
    """
    hosts = ""
    if os.path.exists(_GNUSTEP_CONFIGURATION):
        with open(_GNUSTEP_CONFIGURATION, encoding="utf-8") as file:
            hosts = file.read()
    up = "/".join(".." for part in home.split("/") if part) or "."
    users = f"{up}{ALEXS_FOLDER}/data/GNUstep"
    hosts = hosts.replace("=GNUstep/", f"={users}/").replace("_USERS_DIR=/home", "_USERS_DIR=/Users")
    return f"{hosts}\nGNUSTEP_USER_CONFIG_FILE=.none\n" \
           f"GNUSTEP_USER_DEFAULTS_DIR={ALEXS_FOLDER}/config/GNUstep\n"


def write(programs, path, content):
    """Writes a file of the inside."""
    with open(programs.path(path), "w", encoding="utf-8", errors="surrogateescape") as file:
        file.write(content)
