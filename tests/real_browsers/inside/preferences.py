"""Chrome's preferences as a real Chromium writes and reads them, and the product's edit of them."""

import json
import os
import shutil
import signal

from inside import product
from inside.chromium import Chromium

_PROFILE = f"{product.CHROME}/Default"
_FILE = f"{_PROFILE}/Preferences"
# The name alone would come back after a reset: "Local State" has it, too.
_OWN = {"profile": {"name": "Alex \u2013 Zuhause"}, "bookmark_bar": {"show_on_all_tabs": True}}
_ADDED = '"exited_cleanly": true, \n        "password_manager_enabled": false'


def _chromium():
    return Chromium(product.CHROME, "--headless=new")


def _text():
    with open(_FILE, encoding="utf-8", newline="") as file:
        return file.read()


def _rights():
    status = os.stat(_FILE)
    return [oct(status.st_mode), status.st_uid, status.st_gid]


def _make_profile():
    """A profile of its own name and choice, written by Chromium."""
    shutil.rmtree(product.CHROME)
    os.makedirs(_PROFILE)
    with open(_FILE, "w", encoding="utf-8") as file:
        json.dump(_OWN, file)
    with _chromium():
        pass


def _write_as_years_ago():
    """The same preferences in the form that the edit is made for."""
    preferences = json.loads(_text())
    preferences["profile"]["exited_cleanly"] = True
    with open(_FILE, "w", encoding="utf-8") as file:
        json.dump(preferences, file, indent=3, ensure_ascii=False)


def _offers_to_save_passwords(browser):
    return browser.evaluate(
        "chrome://settings",
        "chrome.settingsPrivate.getPref('credentials_enable_service')")["value"]


def _loaded():
    """What Chromium makes of the file: the switch, name and choice, files that it put aside."""
    before = set(os.listdir(_PROFILE))
    with _chromium() as browser:
        offers = _offers_to_save_passwords(browser)
    left = json.loads(_text())
    return {"offers to save passwords": offers,
            "keeps the profile": all(own.items() <= left.get(part, {}).items()
                                     for part, own in _OWN.items()),
            "put aside": sorted(name for name in set(os.listdir(_PROFILE)) - before
                                if name.startswith("Preferences"))}


def offers():
    """Whether Chromium offers to save passwords, whatever the preferences."""
    with _chromium() as browser:
        return _offers_to_save_passwords(browser)


def of_today():
    """A run on preferences as Chromium writes them."""
    _make_profile()
    before, rights = _text(), _rights()
    product.install()
    return {"compact": "\n" not in before and '": ' not in before,
            "unchanged": (_text(), _rights()) == (before, rights),
            **_loaded()}


def of_years_ago():
    """A run on preferences where the edit finds something."""
    _make_profile()
    _write_as_years_ago()
    before, rights = _text(), _rights()
    product.install()
    edited = before.replace('"exited_cleanly": true', _ADDED)
    return {"edited": edited != before and _text() == edited, "rights stay": _rights() == rights,
            **_loaded()}


def broken():
    """What Chromium makes of preferences that an edit broke."""
    _make_profile()
    with open(_FILE, "a", encoding="utf-8") as file:
        file.write(_ADDED)
    return _loaded()


def overwritten():
    """Whether the edit is there after a run beside a running Chromium, and after that has ended."""
    _make_profile()
    with _chromium() as browser:
        _offers_to_save_passwords(browser)  # by then it has read the file
        browser.process.send_signal(signal.SIGSTOP)  # it writes the file whenever it likes
        _write_as_years_ago()
        product.install()
        there = ["password_manager_enabled" in _text()]
        browser.process.send_signal(signal.SIGCONT)
    return [*there, "password_manager_enabled" in _text()]
