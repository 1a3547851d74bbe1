"""Keeps programs to the system calls that proot knows.

proot leaves younger calls alone, so their paths would be looked up on the host. The C library does
without them where the kernel says that it does not have them, and so says this filter.
"""

import ctypes
import errno
import os
import struct

_PR_SET_NO_NEW_PRIVS, _PR_SET_SECCOMP, _SECCOMP_MODE_FILTER = 38, 22, 2
_LOAD_NUMBER, _JUMP_IF_EQUAL, _RETURN = 0x20, 0x15, 0x06
_ALLOW, _FAIL = 0x7FFF0000, 0x00050000

_STATX_RENAMEAT2_EXECVEAT = {"x86_64": (332, 316, 322), "aarch64": (291, 276, 281)}
_OPENAT2_FACCESSAT2_FCHMODAT2 = (437, 439, 452)


class _Program(ctypes.Structure):
    _fields_ = [("length", ctypes.c_ushort), ("instructions", ctypes.c_void_p)]


def filter_young_calls():
    """For this process and all its children."""
    numbers = (*_STATX_RENAMEAT2_EXECVEAT.get(os.uname().machine, ()),
               *_OPENAT2_FACCESSAT2_FCHMODAT2)
    checks = b"".join(_instruction(_JUMP_IF_EQUAL, number, len(numbers) - place)
                      for place, number in enumerate(numbers))
    code = (_instruction(_LOAD_NUMBER, 0) + checks
            + _instruction(_RETURN, _ALLOW) + _instruction(_RETURN, _FAIL | errno.ENOSYS))
    kept = ctypes.create_string_buffer(code)
    program = _Program(len(code) // 8, ctypes.cast(kept, ctypes.c_void_p))
    prctl = ctypes.CDLL(None, use_errno=True).prctl
    if prctl(_PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) or prctl(_PR_SET_SECCOMP, _SECCOMP_MODE_FILTER,
                                                       ctypes.byref(program), 0, 0):
        raise OSError(ctypes.get_errno(), "seccomp")


def _instruction(code, value, jump=0):
    return struct.pack("=HBBI", code, jump, 0, value)
