"""What Chromium makes of the descriptors that let it fetch extensions from their stores."""

import re
import tempfile
from urllib.parse import parse_qs, urlsplit

from inside import product
from inside.chromium import Chromium
from inside.web import Web

_FOLDERS = {"Chrome": product.CHROME, "Edge": product.EDGE}
_TELL = ["--enable-logging=stderr", "--vmodule=external*=3,load_error_reporter=3"]
_SOURCES = re.compile(r"external_\w+\.cc|load_error_reporter\.cc")


def read(browser, *awaited):
    """After a run: what was asked of which store, and what the browser complained of.

    It runs until it has asked for each of the awaited extensions.
    """
    product.install()
    asked = {}
    with Web(secure=True) as web, tempfile.TemporaryFile("w+") as log:
        with Chromium(_FOLDERS[browser], "--headless=new", *_TELL, "--ignore-certificate-errors",
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
