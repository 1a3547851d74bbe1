"""A program for the sample applications: takes any arguments, says nothing, runs until it is ended.

It is a real executable, so a process of it carries the application's own path and name, as a
browser's does; a script would carry the shell's.
"""

import os
import struct

from macroot.errors import Trouble

# for (;;) pause(), as each machine says it: system call 34 on x86-64, ppoll (73) without
# descriptors or time on arm64.
_CODE = {
    "x86_64": (62, bytes.fromhex("b822000000" "0f05" "ebf7")),
    "aarch64": (183, bytes.fromhex("000080d2" "010080d2" "020080d2" "030080d2" "280980d2" "010000d4"
                                   "faffff17")),
}
_BASE = 0x400000
_HEADER = struct.Struct("<16sHHIQQQIHHHHHH")
_SEGMENT = struct.Struct("<IIQQQQQQ")


def waiting_program():
    """The bytes of the program for this machine: one header, one segment, the code."""
    machine = os.uname().machine
    if machine not in _CODE:
        raise Trouble(f"there is no sample program for {machine}; there is for {', '.join(_CODE)}")
    number, code = _CODE[machine]
    start = _HEADER.size + _SEGMENT.size
    size = start + len(code)
    header = _HEADER.pack(b"\x7fELF\2\1\1", 2, number, 1, _BASE + start, _HEADER.size, 0, 0,
                          _HEADER.size, _SEGMENT.size, 1, 0, 0, 0)
    segment = _SEGMENT.pack(1, 5, 0, _BASE, _BASE, size, size, 0x1000)
    return header + segment + code
