"""What Chromium makes of the descriptors that let it fetch extensions from their stores."""

import os
import re
import tempfile
from urllib.parse import parse_qs, urlsplit

from inside import product
from inside.chromium import Chromium
from inside.web import Web

_FOLDERS = {"Chrome": product.CHROME, "Edge": product.EDGE}
_IDENTIFIER = "kmcoedhplnbajgfiehkcpamdobnlgjie"
_TELL = ["--enable-logging=stderr", "--vmodule=external*=3,load_error_reporter=3"]
_SOURCES = re.compile(r"external_\w+\.cc|load_error_reporter\.cc")


def read(browser, *awaited):
    """After a run: what the browser asked of which store, and what it complained of."""
    product.install()
    return _read(_FOLDERS[browser], awaited)


def read_changed(awaited, name, *content):
    """The same after a run for this user alone, whose descriptor then got another name or content."""
    product.install()
    path = f"{product.CHROME}/External Extensions/{_IDENTIFIER}.json"
    for text in content:
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
    os.rename(path, f"{os.path.dirname(path)}/{name}.json")
    return _read(product.CHROME, [awaited])


def _read(user_data, awaited):
    """It runs until it has asked for each of the awaited extensions."""
    asked = {}
    with Web(secure=True) as web, tempfile.TemporaryFile("w+") as log:
        with Chromium(user_data, "--headless=new", *_TELL, "--ignore-certificate-errors",
                      f"--host-resolver-rules=MAP * {web.address}", stderr=log):
            while not set(awaited).issubset(sum(asked.values(), [])):
                address, _ = web.wait_for(lambda address: "/crx?" in address)
                parts = urlsplit(f"https://{address}")
                of_this_store = asked.setdefault(parts._replace(query="").geturl(), [])
                of_this_store += [parse_qs(one)["id"][0] for one in parse_qs(parts.query)["x"]]
        log.seek(0)
        return {"asked": {store: sorted(set(names)) for store, names in asked.items()},
                "complaints": [line.partition("] ")[2].strip() for line in log
                               if _SOURCES.search(line)]}
