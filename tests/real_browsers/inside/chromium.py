"""Chromium, driven over a pipe of its own: one JSON object a message, ended by NUL."""

import contextlib
import json
import os
import select
import subprocess
import time

PROGRAM = "/usr/lib/chromium/chromium"  # the wrapper in /usr/bin needs files that a Mac root has not
PATIENCE = 30  # seconds for anything; only what never happens takes that long

_OPTIONS = ["--remote-debugging-pipe", "--enable-unsafe-extension-debugging", "--no-first-run",
            "--no-default-browser-check", "--disable-gpu"]

# The browser reads from descriptor 3 and writes to 4.
_START = 'exec "$0" "$@" 3<&{} 4>&{}'


class Chromium:
    """A running browser; `with` ends it as a person does."""

    def __init__(self, user_data, *options, program=PROGRAM, stderr=subprocess.DEVNULL):
        theirs, self._write = os.pipe()
        self._read, back = os.pipe()
        self.process = subprocess.Popen(
            ["/bin/bash", "-c", _START.format(theirs, back), program, *_OPTIONS,
             f"--user-data-dir={user_data}", *options],
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=stderr,
            pass_fds=(theirs, back))
        os.close(theirs)
        os.close(back)
        self._unread = b""
        self._calls = 0
        self._events = []
        self._pages = {}

    def __enter__(self):
        return self

    def __exit__(self, *_):
        with contextlib.suppress(EOFError, BrokenPipeError):  # it may have ended already
            self.call("Browser.close")
        self.process.wait(PATIENCE)
        os.close(self._read)
        os.close(self._write)

    def load(self, folder):
        """Loads an unpacked extension; the result is its identifier."""
        return self.call("Extensions.loadUnpacked", path=folder)["id"]

    def evaluate(self, address, expression):
        """The value of an expression, awaited, on a page; {"error": text} when it throws."""
        answer = self.call("Runtime.evaluate", self._page(address), expression=expression,
                           awaitPromise=True, returnByValue=True)
        if "exceptionDetails" in answer:
            thrown = answer["exceptionDetails"]
            return {"error": thrown.get("exception", {}).get("description", thrown["text"])}
        return answer["result"].get("value")

    def windows(self):
        """Place and size of the windows: left, top, width, height."""
        windows = {}
        for target in self.call("Target.getTargets")["targetInfos"]:
            if target["type"] == "page":
                window = self.call("Browser.getWindowForTarget", targetId=target["targetId"])
                windows[window["windowId"]] = window["bounds"]
        return [[bounds[name] for name in ("left", "top", "width", "height")]
                for bounds in windows.values()]

    def call(self, method, session=None, **parameters):
        """One command of the protocol and its result."""
        self._calls += 1
        message = {"id": self._calls, "method": method, "params": parameters}
        if session:
            message["sessionId"] = session
        os.write(self._write, json.dumps(message).encode() + b"\0")
        answer = self._wait_for(lambda message: message.get("id") == self._calls)
        if "error" in answer:
            raise RuntimeError(f"{method}: {answer['error']['message']}")
        return answer["result"]

    def _page(self, address):
        """The session of a page of its own that has been loaded."""
        if address not in self._pages:
            target = self.call("Target.createTarget", url="about:blank")["targetId"]
            session = self.call("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
            self.call("Page.enable", session)
            self.call("Page.setLifecycleEventsEnabled", session, enabled=True)
            loader = self.call("Page.navigate", session, url=address)["loaderId"]
            loaded = {"method": "Page.lifecycleEvent", "name": "load", "loaderId": loader}
            self._wait_for(lambda message: loaded.items() <= {
                **message, **message.get("params", {})}.items())
            self._pages[address] = session
        return self._pages[address]

    def _wait_for(self, is_wanted):
        """The first message of that kind; events that came earlier count."""
        for message in self._events:
            if is_wanted(message):
                self._events.remove(message)
                return message
        end = time.monotonic() + PATIENCE
        while True:
            message = self._next(end - time.monotonic())
            if is_wanted(message):
                return message
            self._events.append(message)

    def _next(self, patience):
        while b"\0" not in self._unread:
            if not select.select([self._read], [], [], max(patience, 0))[0]:
                raise TimeoutError("Chromium says nothing")
            piece = os.read(self._read, 65536)
            if not piece:
                raise EOFError(f"Chromium has ended, status {self.process.wait(PATIENCE)}")
            self._unread += piece
        message, _, self._unread = self._unread.partition(b"\0")
        return json.loads(message)
