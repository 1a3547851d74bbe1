"""The functions by which code without Objective-C reaches the installers: others link these names."""
import re
from pathlib import Path

HEADER = Path(__file__).parents[2] / "installer/BrowserBridges.h"
# Firefox has no removal and no state of its extension here, Safari nothing at all: that is meant.
NAMES = {
    "IsChromeInstalled", "IsChromeStarted", "IsChromeExtensionInstalled", "ChromeInstallExtension",
    "ChromeUninstallExtension", "IsFFInstalled", "IsFFStarted", "FFInstallExtension", "IsEdgeInstalled",
    "IsEdgeExtensionInstalled", "IsEdgeStarted", "EdgeInstallExtension", "EdgeUninstallExtension",
}


def test_the_set_is_uneven():
    functions = re.findall(r"^bool (\w+)\(\);", HEADER.read_text(), re.MULTILINE)
    assert sorted(functions) == sorted(name + end for name in NAMES for end in ("Bridge", "BridgeCPP"))
