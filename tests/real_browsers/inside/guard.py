"""The guard that keeps a run from going on while browsers are open, with real ones."""

import os
import subprocess

from inside import applications, processes, product
from inside.chromium import Chromium

_BLACK = "data:text/html,<title>Black</title><body style='background:black'>"


def closing():
    """Each browser: whether it counts as started; how many of its processes live after the closing
    commands, and whether it still counts. Last, whether an unrelated Chromium still answers.
    """
    seen = {}
    with Chromium(f"{product.SUPPORT}/Other", "--headless=new") as unrelated:
        unrelated.call("Browser.getVersion")
        before = product.call("started")
        for start in (applications.chrome, applications.edge, applications.firefox):
            with start():
                found = product.call("started")
                product.call("close")
                processes.wait_until_none()
            seen[start.__name__] = [before, found, product.call("started")]
        return {**seen, "unrelated lives": bool(unrelated.evaluate("about:blank", "navigator.userAgent"))}


def alert():
    """The alert over a browser's window that fills the screen. Somebody looks at the screen, and
    presses "Exit" there: the guard's answer, and the window.
    """
    manager = subprocess.Popen(["openbox", "--sm-disable"], stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL)
    os.environ["KS_WINDOW_MANAGER"] = "1"  # the one who looks waits for it
    with applications.chrome("--start-maximized", _BLACK) as browser:
        browser.evaluate(_BLACK, "document.visibilityState")
        windows = browser.windows()
        answer = product.call("verify")
    manager.kill()
    manager.wait()
    return {"goes on": answer, "windows": windows}
