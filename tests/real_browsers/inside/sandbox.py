"""The browsers' own sandboxes, in the browsers' own words and in the kernel's."""

import contextlib
import glob
import time

from inside import product
from inside.chromium import Chromium
from inside.firefox import PATIENCE, Firefox


def of_chromium(*options):
    """What Chromium says about its sandbox."""
    with Chromium(product.CHROME, "--headless=new", *options) as browser:
        return browser.evaluate("chrome://sandbox", "document.body.innerText").splitlines()


def of_firefox():
    """The kernel's filter of each process that shows pages: 2 where it checks system calls. One that
    has just been started has none yet, and is waited for.
    """
    end = time.monotonic() + PATIENCE
    with Firefox(product.FIREFOX, "--headless", "--no-remote"):
        while True:
            filters = [status["Seccomp"] for status in map(_status, glob.glob("/proc/[0-9]*/status"))
                       if status.get("Name", "").endswith("Web Content")]
            if filters and set(filters) == {"2"} or time.monotonic() > end:
                return filters


def _status(path):
    """Nothing of a process that has just ended."""
    with contextlib.suppress(OSError), open(path, encoding="utf-8") as lines:
        return dict(line.rstrip("\n").split(":\t", 1) for line in lines)
    return {}
