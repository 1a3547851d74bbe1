"""The web as seen from inside: every name leads to this machine, every request gets one answer."""

import socket
import threading
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer

from macroot.inside.layout import write

_ADDRESS = "127.0.0.1"
_HTTP, _DNS = 80, 53
_HEADER_SIZE = 12
_ADDRESS_OF_THE_INTERNET = b"\0\1\0\1"  # a question's type and class


def start(status, programs, etc_folders):
    """Serves until the run ends; the network must be the run's own."""
    for folder in etc_folders:
        write(programs, f"{folder}/resolv.conf", f"nameserver {_ADDRESS}\n")
    names = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
    names.bind((_ADDRESS, _DNS))
    answers = type("Answers", (_Answers,), {"status": status})
    pages = ThreadingHTTPServer((_ADDRESS, _HTTP), answers)
    for serve in (lambda: _serve_names(names), pages.serve_forever):
        threading.Thread(target=serve, daemon=True).start()


class _Answers(BaseHTTPRequestHandler):
    """One answer to everything, without content."""

    protocol_version = "HTTP/1.1"

    def parse_request(self):
        if super().parse_request():
            self.send_response(self.status)
            if self.status not in (204, 304):
                self.send_header("Content-Length", "0")
            self.send_header("Connection", "close")
            self.end_headers()
        return False  # there is nothing more to do

    def log_message(self, *_):
        pass


def _serve_names(names):
    while True:
        question, client = names.recvfrom(4096)
        if answer := name_answer(question):
            names.sendto(answer, client)


def name_answer(question):
    """The answer to a DNS question (RFC 1035): this machine's address, nothing for other types."""
    end = question.find(b"\0", _HEADER_SIZE) + 5  # behind the name: the type and the class
    if end < _HEADER_SIZE + 5 or end > len(question):
        return None
    has_address = question[end - 4:end] == _ADDRESS_OF_THE_INTERNET
    # An authoritative answer without error; "recursion desired" comes back as it was.
    flags = bytes([0x84 | question[2] & 1, 0x80])
    counts = bytes([0, 1, 0, has_address, 0, 0, 0, 0])
    # The name again, by a pointer; it holds for a minute; four bytes follow.
    address = b"\xc0\x0c" + _ADDRESS_OF_THE_INTERNET + b"\0\0\0\x3c\0\4" + socket.inet_aton(_ADDRESS)
    return question[:2] + flags + counts + question[_HEADER_SIZE:end] + address * has_address
