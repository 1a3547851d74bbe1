"""Messages between an extension and the product's native host, and their echo."""

import contextlib
import os

from inside import product
from inside.chromium import Chromium
from inside.firefox import Firefox

_EXTENSIONS = os.path.join(os.path.dirname(__file__), "..", "extensions")
_MESSAGE = {"text": "Zo\u00eb \u2013 \u6771\u4eac", "number": 7}


class _Browsers:
    """Chrome, Edge and Firefox, running side by side with the test extension."""

    def __init__(self, stack):
        self._ask = {"Chrome": self._chromium(stack, product.CHROME),
                     "Edge": self._chromium(stack, product.EDGE),
                     "Firefox": self._firefox(stack)}

    def answers(self):
        """What each one's extension hears: "echo", or why it hears nothing."""
        return {name: _in_short(ask()) for name, ask in self._ask.items()}

    @staticmethod
    def _chromium(stack, user_data):
        browser = stack.enter_context(Chromium(user_data, "--headless=new"))
        page = f"chrome-extension://{browser.load(f'{_EXTENSIONS}/chrome')}/page.html"
        return lambda: browser.evaluate(page, _send("chrome", "com.corvendale.kschromena"))

    @staticmethod
    def _firefox(stack):
        browser = stack.enter_context(Firefox(product.FIREFOX, "--headless", "--no-remote"))
        browser.load(f"{_EXTENSIONS}/firefox")
        browser.show("Keystrel test extension")
        return lambda: browser.evaluate(_send("browser", "com.corvendale.ksnative"))


def _send(api, host):
    return f"{api}.runtime.sendNativeMessage('{host}', {_MESSAGE})"


# Chromium says either of a host that ends at once, as it comes.
_DEAD = ({"error": "Error: Native host has exited."},
         {"error": "Error: Error when communicating with the native messaging host."})


def _in_short(answer):
    return "echo" if answer == _MESSAGE else "dead" if answer in _DEAD else answer


def _uninstall():
    product.call("uninstall")


def life():
    """An integration's life; five verdicts are refusals, the others not."""
    heard = {}
    with contextlib.ExitStack() as stack:
        browsers = _Browsers(stack)

        def listen(when, happens):
            happens()
            heard[when] = browsers.answers()

        listen("before the run", lambda: None)
        listen("after a refused run", product.install)
        listen("after a run with the folder script allowed alone", product.install)
        listen("after a removal", _uninstall)
        listen("after an allowed run", product.install)
        listen("after a second removal", _uninstall)
    return heard


def _break_manifests(**changes):
    for path in product.manifests().values():
        product.rewrite(path, lambda manifest: manifest.update(changes))


def _break_host(mode):
    os.chmod(product.HOST_PROGRAM, mode)


_CAUSES = {
    "no origins": lambda: _break_manifests(allowed_origins=None, allowed_extensions=None),
    "another extension's origin": lambda: _break_manifests(
        allowed_origins=[f"chrome-extension://{'a' * 32}/"], allowed_extensions=["other@example.org"]),
    "another name": lambda: _break_manifests(name="com.corvendale.other"),
    "a path to nothing": lambda: _break_manifests(path=f"{product.HOST_PROGRAM}2"),
    "a relative path": lambda: _break_manifests(path=os.path.basename(product.HOST_PROGRAM)),
    "a host that is not executable": lambda: _break_host(0o644),
}


def broken():
    """What is heard after a run with a payload that is broken in one way; at last a whole one."""
    heard = {}
    paths = [*product.manifests().values(), product.HOST_PROGRAM]
    whole = {path: (open(path, "rb").read(), os.stat(path).st_mode) for path in paths}
    with contextlib.ExitStack() as stack:
        browsers = _Browsers(stack)
        for cause, break_it in {**_CAUSES, "nothing broken": lambda: None}.items():
            for path, (content, mode) in whole.items():
                with open(path, "wb") as file:
                    file.write(content)
                os.chmod(path, mode)
            break_it()
            product.install()
            heard[cause] = browsers.answers()
    return heard
