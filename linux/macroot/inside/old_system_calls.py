"""Keeps programs to the system calls that proot knows.

proot leaves younger calls alone, so their paths would be looked up on the host. The C library does
without them where the kernel says that it does not have them, and so says this filter.
"""

import ctypes
import errno

_ALLOW, _FAIL, _FOREIGN_CALLS = 0x7FFF0000, 0x00050000, 2
_YOUNG_CALLS = (b"statx", b"renameat2", b"execveat", b"openat2", b"faccessat2", b"fchmodat2")

_seccomp = ctypes.CDLL("libseccomp.so.2")
_seccomp.seccomp_init.restype = ctypes.c_void_p


def filter_young_calls():
    """For this process and all its children."""
    rules = ctypes.c_void_p(_seccomp.seccomp_init(_ALLOW))
    # proot replaces calls that it answers itself by one of the number -1, which counts as foreign.
    _seccomp.seccomp_attr_set(rules, _FOREIGN_CALLS, _ALLOW)
    for name in _YOUNG_CALLS:
        number = _seccomp.seccomp_syscall_resolve_name(name)
        if number >= 0:  # else younger than the library, and no older program calls it
            _seccomp.seccomp_rule_add(rules, _FAIL | errno.ENOSYS, number, 0)
    if failure := _seccomp.seccomp_load(rules):
        raise OSError(-failure, "seccomp")
