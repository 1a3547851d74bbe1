"""A web server of the run's own, which keeps what it was asked."""

import os
import queue
import ssl
import subprocess
import tempfile
import threading
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer

PATIENCE = 30  # seconds for a request that a browser should make

# The page says so once a window shows it.
_PAGE = b"""<!DOCTYPE html><title>Shown by Keystrel</title>
<script>
const tell = () => document.visibilityState == "visible" && fetch("/shown" + location.pathname);
document.addEventListener("visibilitychange", tell);
tell();
</script>
"""


class Web:
    """Answers every request with one page; with `secure`, for every host name alike."""

    def __init__(self, secure=False):
        self._asked = queue.Queue()
        asked = self._asked

        class Handler(BaseHTTPRequestHandler):
            def do_GET(self):
                asked.put((f"{self.headers['Host']}{self.path}", self.headers["User-Agent"]))
                self.send_response(200)
                self.send_header("Content-Length", str(len(_PAGE)))
                self.end_headers()
                self.wfile.write(_PAGE)

            def log_message(self, *_):
                """Not on standard error."""

        self._server = ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        if secure:
            self._server.socket = _context().wrap_socket(self._server.socket, server_side=True)
        self.address = "%s:%d" % self._server.server_address

    def __enter__(self):
        threading.Thread(target=self._server.serve_forever, daemon=True).start()
        return self

    def __exit__(self, *_):
        self._server.shutdown()
        self._server.server_close()

    def wait_for(self, is_wanted):
        """The next request, (address without the scheme, browser), of that kind."""
        while True:
            request = self._asked.get(timeout=PATIENCE)
            if is_wanted(request[0]):
                return request


def _context():
    """A certificate that nobody vouches for."""
    with tempfile.TemporaryDirectory() as folder:
        paths = [os.path.join(folder, name) for name in ("key", "certificate")]
        subprocess.run(["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt",
                        "ec_paramgen_curve:P-256", "-nodes", "-subj", "/CN=mac",
                        "-keyout", paths[0], "-out", paths[1]], check=True, stderr=subprocess.DEVNULL,
                       env={**os.environ, "OPENSSL_CONF": os.devnull})
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(paths[1], paths[0])
        return context
