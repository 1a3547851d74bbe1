"""The web as seen from inside: every name leads to this machine, every request gets one answer."""

import socket
import struct
import threading
from http import HTTPStatus

from macroot.inside.layout import write

_ADDRESS = "127.0.0.1"
_HTTP, _DNS = 80, 53
_TYPE_A, _CLASS_IN, _TIME_TO_LIVE = 1, 1, 60
_HEADER = struct.Struct(">6H")
_ANSWER = struct.Struct(">HHHIH4s")


def start(status, cell, etc_folders):
    """Serves until the run ends; the network must be the run's own."""
    for folder in etc_folders:
        write(cell, f"{folder}/resolv.conf", f"nameserver {_ADDRESS}\n")
    names = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
    names.bind((_ADDRESS, _DNS))
    pages = socket.create_server((_ADDRESS, _HTTP))
    for serve in (lambda: _serve_names(names), lambda: _serve_pages(pages, status)):
        threading.Thread(target=serve, daemon=True).start()


def _serve_names(names):
    while True:
        question, client = names.recvfrom(4096)
        if answer := name_answer(question):
            names.sendto(answer, client)


def name_answer(question):
    """The answer to a DNS question (RFC 1035): this machine's address, nothing for other types."""
    if len(question) < _HEADER.size:
        return None
    number, flags, _, _, _, _ = _HEADER.unpack_from(question)
    end = _HEADER.size
    while end < len(question) and question[end]:
        end += 1 + question[end]
    end += 1 + 4  # the name's last length, the type and the class
    if end > len(question):
        return None
    asked = question[_HEADER.size:end]
    has_address = struct.unpack(">HH", asked[-4:]) == (_TYPE_A, _CLASS_IN)
    # An authoritative answer without error; "recursion desired" comes back as it was.
    header = _HEADER.pack(number, 0x8480 | flags & 0x0100, 1, int(has_address), 0, 0)
    if not has_address:
        return header + asked
    to_the_name = 0xC000 | _HEADER.size
    return header + asked + _ANSWER.pack(to_the_name, _TYPE_A, _CLASS_IN, _TIME_TO_LIVE, 4,
                                         socket.inet_aton(_ADDRESS))


def _serve_pages(pages, status):
    while True:
        client, _ = pages.accept()
        threading.Thread(target=_answer_page, args=(client, status), daemon=True).start()


def _reason(status):
    try:
        return HTTPStatus(status).phrase
    except ValueError:
        return "A status of its own"


def _answer_page(client, status):
    with client:
        try:
            request = b""
            while b"\r\n\r\n" not in request:
                piece = client.recv(4096)
                if not piece:
                    return
                request += piece
            length = "" if status in (204, 304) else "Content-Length: 0\r\n"
            head = f"HTTP/1.1 {status} {_reason(status)}\r\n{length}Connection: close\r\n\r\n"
            client.sendall(head.encode())
        except ConnectionError:
            pass  # the client has gone
