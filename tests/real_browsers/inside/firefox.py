"""Firefox, driven by Marionette: messages as JSON with their length before them."""

import contextlib
import json
import os
import re
import socket
import subprocess
import time

PROGRAM = "/usr/lib/firefox-esr/firefox-esr"
PATIENCE = 30  # seconds for anything; only what never happens takes that long

# Nothing is fetched that a test does not ask for, and nothing asks the person.
_PREFERENCES = {
    "marionette.port": 0,
    "app.normandy.enabled": False,
    "app.update.auto": False,
    "browser.aboutwelcome.enabled": False,
    "browser.shell.checkDefaultBrowser": False,
    "browser.startup.page": 0,
    "datareporting.policy.dataSubmissionEnabled": False,
    "extensions.autoDisableScopes": 0,
    "xpinstall.signatures.required": False,
}
_LISTENING = re.compile(rb"Listening on port (\d+)")


def _prepare(profile):
    """Makes a profile ready to be driven, and a Mac's folder of host manifests the one that is read."""
    os.makedirs(profile, exist_ok=True)
    hosts = os.path.expanduser("~/.mozilla/native-messaging-hosts")
    if not os.path.lexists(hosts):
        os.makedirs(os.path.dirname(hosts), exist_ok=True)
        os.symlink("../Library/Application Support/Mozilla/NativeMessagingHosts", hosts)
    with open(f"{profile}/user.js", "w", encoding="utf-8") as file:
        for name, value in _PREFERENCES.items():
            file.write(f"user_pref({json.dumps(name)}, {json.dumps(value)});\n")


class Firefox:
    """A running browser; `with` ends it as a person does."""

    def __init__(self, profile, *options, program=PROGRAM):
        _prepare(profile)
        self.process = subprocess.Popen(
            [program, "--marionette", "--remote-allow-system-access", "--profile", profile, *options],
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        for line in self.process.stdout:
            if found := _LISTENING.search(line):
                break
        else:
            raise EOFError(f"Firefox has ended, status {self.process.wait(PATIENCE)}")
        self._socket = socket.create_connection(("127.0.0.1", int(found[1])), PATIENCE)
        self._messages = self._socket.makefile("rb")
        self._calls = 0
        self._receive()  # what it says of itself
        self.call("WebDriver:NewSession")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        with contextlib.suppress(EOFError, ConnectionError):  # it may have ended already
            self.call("Marionette:Quit", flags=["eAttemptQuit"])
        self.process.communicate(timeout=PATIENCE)
        self._socket.close()

    def load(self, folder, temporary=True):
        """Installs an add-on; the result is its identifier."""
        return self.call("Addon:Install", path=folder, temporary=temporary)["value"]

    def show(self, title):
        """Turns to the tab of that title, which what follows is about; waits until it is there."""
        self._turn_to("WebDriver:GetTitle", title)

    def show_address(self, address):
        """The same with the tab of that address."""
        self._turn_to("WebDriver:GetCurrentURL", address)

    def _turn_to(self, question, wanted):
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end:
            for handle in self.call("WebDriver:GetWindowHandles"):
                self.call("WebDriver:SwitchToWindow", handle=handle)
                if self.call(question)["value"] == wanted:
                    return
        raise TimeoutError(f"Firefox shows no {wanted!r}")

    def evaluate(self, expression):
        """The value of an expression, awaited, on this page; {"error": text} when it throws."""
        return self._wait_for(f"return {expression};", "content")

    def evaluate_inside(self, body):
        """What a function of that body returns, run with the browser's own rights."""
        return self._wait_for(body, "chrome")

    def _wait_for(self, body, context):
        self.call("Marionette:SetContext", value=context)
        script = f"""const [done] = arguments;
            (async () => {{{body}}})().then(done, error => done({{error: String(error)}}));"""
        result = self.call("WebDriver:ExecuteAsyncScript", script=script, args=[], sandbox=None)
        self.call("Marionette:SetContext", value="content")
        return result["value"]

    def call(self, name, **parameters):
        """One command of the protocol and its result."""
        self._calls += 1
        message = json.dumps([0, self._calls, name, parameters]).encode()
        self._socket.sendall(b"%d:%s" % (len(message), message))
        _, number, error, result = self._receive()
        assert number == self._calls
        if error:
            raise RuntimeError(f"{name}: {error['message']}")
        return result

    def _receive(self):
        size = b""
        while (byte := self._messages.read(1)) != b":":
            if not byte:
                raise EOFError("Firefox has hung up")
            size += byte
        return json.loads(self._messages.read(int(size)))
