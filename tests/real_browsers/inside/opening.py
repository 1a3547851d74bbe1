"""Addresses that the product opens in real browsers."""

import contextlib

from inside import applications, processes, product
from inside.web import Web

# How each one is started, and what lets a second process reach a first one; Chromium has its own way.
_START = {"Chrome": (applications.chrome, contextlib.nullcontext),
          "FF": (applications.firefox, applications.session_bus)}


def open_address(browser):
    """Into a closed and into a running browser: which browser showed which page, and how many main
    processes there were then.
    """
    start, session = _START[browser]
    with session(), Web() as web:
        def opened(page):
            product.call("open", f"{web.address}/{page}", browser)  # without "http://"
            _, agent = web.wait_for(lambda address: address == f"{web.address}/shown/{page}")
            return [word.split("/")[0] for word in agent.split()
                    if word.startswith(("Chrome/", "Firefox/"))]

        shown = {"closed": opened("closed"), "main processes": len(processes.main_processes())}
        product.call("close")
        processes.wait_until_none()
        with start() as running:
            shown["running"] = opened("running")
            shown["same process"] = processes.is_alone(running.process.pid)
        return shown
