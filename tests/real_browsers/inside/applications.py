"""The real browsers as applications of the Mac."""

import contextlib
import os
import subprocess

from inside import product
from inside.chromium import Chromium
from inside.firefox import Firefox


def chrome(*options):
    return _started(product.CHROME, "Google Chrome", *options)


def edge(*options):
    return _started(product.EDGE, "Microsoft Edge", *options)


def firefox(*options):
    return Firefox(product.FIREFOX, *options, program=_program("Firefox", "firefox"))


def _started(user_data, name, *options):
    browser = Chromium(user_data, *options, program=_program(name, name))
    browser.call("Browser.getVersion")
    return browser


def _program(bundle, name):
    return f"/Applications/{bundle}.app/Contents/MacOS/{name}"


@contextlib.contextmanager
def session_bus():
    """A message bus of the session: by it a second Firefox hands its address to a running one."""
    address = f"unix:path={os.environ['XDG_RUNTIME_DIR']}/bus"
    bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--address", address,
                            "--print-address=1"], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    bus.stdout.readline()  # it is there
    os.environ["DBUS_SESSION_BUS_ADDRESS"] = address
    yield
    bus.terminate()
    bus.communicate()
