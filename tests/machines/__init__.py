"""The sample machines that `scripts/macroot new` makes: each a list of entries."""

from macroot.tree import Absent
from macroot.users import BUNDLE
from tests.machines import chrome, edge, firefox, product, safari, shipped, system

_BARE = system.SYSTEM + system.ALEX
_PRODUCT = product.APPLICATION + product.PAYLOAD + product.SETTINGS
_BROWSERS = safari.INSTALLED + chrome.INSTALLED + edge.INSTALLED + firefox.INSTALLED
_LEFTOVERS = safari.LEFTOVERS + chrome.LEFTOVERS + edge.LEFTOVERS + firefox.LEFTOVERS
_TYPICAL = _BARE + _PRODUCT + _BROWSERS + _LEFTOVERS

MACHINES = {
    "typical": _TYPICAL,                                            # four browsers, every leftover
    "clean": _BARE + _PRODUCT + safari.INSTALLED,                   # Safari only, no leftover
    "fresh": _BARE + _PRODUCT + _BROWSERS,                          # four browsers, no leftover
    "shipped": _BARE + _PRODUCT + shipped.PAYLOAD + _BROWSERS,      # a payload of use
    "upgrade": _TYPICAL + shipped.PAYLOAD,                          # every leftover, and a payload of use
    "no-payload": [*_TYPICAL, Absent(product.EXTENSIONS)],
    "no-settings": [*_TYPICAL, Absent(product.SETTINGS_FOLDER)],
    "no-product": [*_TYPICAL, Absent(BUNDLE)],
}
