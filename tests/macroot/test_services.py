"""What a run can have beside its program: a web, a display, a keychain."""

import os
import plistlib
import subprocess

import pytest

from tests.macroot.conftest import sh

STORE = "/usr/bin/python3 -ISXutf8 /run/macroot/lib/macroot/inside/keychain_store.py"
PAINT_THE_DISPLAY_RED = """
from ctypes import CDLL, c_ulong, c_void_p
x = CDLL("libX11.so.6")
x.XOpenDisplay.restype = c_void_p
x.XDefaultRootWindow.restype = c_ulong
display = c_void_p(x.XOpenDisplay(None))
root = c_ulong(x.XDefaultRootWindow(display))
x.XSetWindowBackground(display, root, c_ulong(0xFF0000))
x.XClearWindow(display, root)
x.XSync(display, 0)
"""


def test_every_host_name_leads_to_a_server_that_answers_with_the_status(mac, namespaces):
    ask = """
import sys, urllib.request, urllib.error
for method, url in (("HEAD", "http://www.google.com/"), ("GET", "http://a.b.c.example:80/x?y"),
                    ("HEAD", "http://single/")):
    try:
        print(urllib.request.urlopen(urllib.request.Request(url, method=method)).status)
    except urllib.error.HTTPError as error:
        print(error.code)
"""
    for status in ("200", "204", "404"):
        result = mac.run("--web", status, program="/usr/bin/python3", args=("-c", ask))
        assert result.stdout.split() == [status] * 3, result.stderr


def test_without_a_web_there_is_no_server(mac, namespaces):
    ask = "import socket; socket.create_connection(('127.0.0.1', 80), 1)"
    outside = subprocess.run(["/usr/bin/python3", "-c", ask], capture_output=True, check=False)
    assert mac.run(program="/usr/bin/python3", args=("-c", ask)).status == outside.returncode


@pytest.mark.parametrize("status", ["100", "600", "ok"])
def test_a_status_that_ends_no_request_is_refused(mac, status):
    assert sh(mac, "true", "--web", status).status == 2


def test_a_private_display(mac):
    result = mac.run("--display", program="/usr/bin/python3", args=("-c", PAINT_THE_DISPLAY_RED))
    assert (result.status, result.stderr) == (0, "")


def test_a_display_on_a_network_of_its_own(mac, namespaces):
    result = mac.run("--display", "--web", "200", program="/usr/bin/python3",
                     args=("-c", PAINT_THE_DISPLAY_RED))
    assert (result.status, result.stderr) == (0, "")


def test_without_one_there_is_no_display(mac):
    assert sh(mac, "echo \"<$DISPLAY>\"", env={**os.environ, "DISPLAY": ":0"}).stdout == "<>\n"


def test_a_screenshot_shows_what_was_there_at_the_end(mac, tmp_path):
    picture = tmp_path / "picture.png"
    mac.run("--screenshot", picture, program="/usr/bin/python3", args=("-c", PAINT_THE_DISPLAY_RED))
    shown = subprocess.run(["convert", picture, "-format", "%wx%h %[pixel:p{10,10}]", "info:"],
                           capture_output=True, text=True, check=True).stdout
    assert shown == "1280x1024 srgb(255,0,0)" or shown == "1280x1024 red"


def test_the_keychain_is_read_before_and_written_after(mac, tmp_path):
    items = {"Safari Extensions List": bytes(range(256)), "Zoë": b"", "big": os.urandom(100_000)}
    keychain = tmp_path / "keychain.plist"
    keychain.write_bytes(plistlib.dumps(items))
    result = sh(mac, f"{STORE} read > /tmp/read && wc -c < /tmp/read && rm /tmp/read && "
                     f"echo '{{\"Zoë\": \"bmV3\", \"added\": \"AP8=\"}}' | {STORE} fill",
                "--keychain", keychain)
    assert (result.status, result.stderr) == (0, "")
    assert int(result.stdout) > 100_000
    assert plistlib.loads(keychain.read_bytes()) == {**items, "Zoë": b"new", "added": b"\0\xff"}


def test_libsecret_finds_an_item_by_its_label(mac, tmp_path):
    keychain = tmp_path / "keychain.plist"
    keychain.write_bytes(plistlib.dumps({"A label": b"its data"}))
    result = sh(mac, f"{STORE} read", "--keychain", keychain)
    assert result.stdout == '{"A label": "aXRzIGRhdGE="}'


def test_a_missing_keychain_file_is_an_empty_keychain(mac, tmp_path):
    keychain = tmp_path / "keychain.plist"
    assert sh(mac, f"{STORE} read", "--keychain", keychain).stdout == "{}"
    assert plistlib.loads(keychain.read_bytes()) == {}
    assert sh(mac, f"{STORE} read").stdout == "{}"


@pytest.mark.parametrize("items", [{}, {"A label": b"its data"}])
def test_a_locked_keychain_refuses_and_stays_as_it_is(mac, tmp_path, items):
    keychain = tmp_path / "keychain.plist"
    keychain.write_bytes(plistlib.dumps(items, fmt=plistlib.FMT_BINARY))
    before = keychain.read_bytes()
    result = sh(mac, f"{STORE} read", "--keychain", keychain, "--keychain-locked")
    assert (result.status, result.stdout) == (1, "")
    assert keychain.read_bytes() == before
    assert sh(mac, f"{STORE} read", "--keychain-locked").status == 1


@pytest.mark.parametrize(
    "content", [b"nonsense", plistlib.dumps(["array"]), plistlib.dumps({"a": "text"})])
def test_a_file_that_is_no_keychain_is_refused(mac, tmp_path, content):
    (tmp_path / "keychain").write_bytes(content)
    result = sh(mac, "true", "--keychain", tmp_path / "keychain")
    assert result.status == 70 and "keychain" in result.stderr
    assert (tmp_path / "keychain").read_bytes() == content
