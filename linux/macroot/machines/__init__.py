"""The sample machines: each a list of parts, each part a list of entries."""

from macroot.machines import chrome, edge, firefox, product, safari, shipped, system
from macroot.machines.entries import Absent
from macroot.users import BUNDLE

_BARE = [system.SYSTEM, system.ALEX]
_PRODUCT = [product.APPLICATION, product.PAYLOAD, product.SETTINGS]
_BROWSERS = [browser.INSTALLED for browser in (safari, chrome, edge, firefox)]
_LEFTOVERS = [browser.LEFTOVERS for browser in (safari, chrome, edge, firefox)]
_TYPICAL = [*_BARE, *_PRODUCT, *_BROWSERS, *_LEFTOVERS]

MACHINES = {
    "typical": _TYPICAL,                               # four browsers, every leftover
    "clean": [*_BARE, *_PRODUCT, safari.INSTALLED],    # Safari only, no leftover
    "fresh": [*_BARE, *_PRODUCT, *_BROWSERS],          # four browsers, no leftover
    "shipped": [*_BARE, *_PRODUCT, shipped.PAYLOAD, *_BROWSERS],  # a payload of use
    "upgrade": [*_TYPICAL, shipped.PAYLOAD],           # every leftover, and a payload of use
    "no-payload": [*_TYPICAL, [Absent(product.EXTENSIONS)]],
    "no-settings": [*_TYPICAL, [Absent(product.SETTINGS_FOLDER)]],
    "no-product": [*_TYPICAL, [Absent(BUNDLE)]],
}
