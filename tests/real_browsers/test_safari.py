"""Safari is nowhere but on a Mac: two independent readers stand for it."""

import plistlib
import subprocess

import pytest

from tests.support.mac import Mac

PREFERENCES = "/Users/alex/Library/Preferences/com.apple.Safari.plist"
REGISTRY = "/Users/alex/Library/Safari/Extensions/Extensions.plist"
KEYCHAIN_ITEM = "Safari Extensions List"


def both_read(content):
    """What plistlib and plistutil read alike in a binary property list."""
    assert content.startswith(b"bplist00")
    done = subprocess.run(["plistutil", "-i", "-", "-f", "xml"], input=content, check=True,
                          capture_output=True)
    assert plistlib.loads(done.stdout) == plistlib.loads(content)
    return plistlib.loads(content)


def test_safaris_lists_are_read_after_a_run(tmp_path):
    mac = Mac.new("typical", tmp_path)
    keychain = tmp_path / "keychain"
    names = ("Keystrel.safariextz", "Weather.safariextz")
    listed = {"Installed Extensions": [{"Archive File Name": name} for name in names]}
    keychain.write_bytes(plistlib.dumps({KEYCHAIN_ITEM: plistlib.dumps(listed)}))
    assert mac.run("--keychain", keychain).status == 0
    preferences = both_read(mac.path(PREFERENCES).read_bytes())
    assert preferences["AutoFillPasswords"] == "1"
    assert preferences["LastSafariVersionWithWelcomePage-v2"] == 12.1
    for content in (mac.path(REGISTRY).read_bytes(),
                    plistlib.loads(keychain.read_bytes())[KEYCHAIN_ITEM]):
        (left,) = both_read(content)["Installed Extensions"]
        assert left["Archive File Name"] == "Weather.safariextz"


@pytest.mark.parametrize("cut", [1, 40])
def test_a_list_that_was_cut_is_not_read(tmp_path, cut):
    mac = Mac.new("typical", tmp_path)
    content = mac.path(REGISTRY).read_bytes()
    both_read(content)
    with pytest.raises((subprocess.CalledProcessError, plistlib.InvalidFileException, AssertionError)):
        both_read(content[:-cut])
