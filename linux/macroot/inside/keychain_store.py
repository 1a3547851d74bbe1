"""keychain_store fill | read: items between JSON (label -> data in Base64) and libsecret."""

import base64
import ctypes
import json
import sys

_SEARCH_ALL, _LOAD_SECRETS = 1 << 1, 1 << 3

_glib = ctypes.CDLL("libglib-2.0.so.0")
_secret = ctypes.CDLL("libsecret-1.so.0")


class _List(ctypes.Structure):
    """GList"""


_List._fields_ = [("data", ctypes.c_void_p), ("next", ctypes.POINTER(_List)),
                  ("previous", ctypes.POINTER(_List))]


class _Error(ctypes.Structure):
    """GError"""

    _fields_ = [("domain", ctypes.c_uint32), ("code", ctypes.c_int), ("message", ctypes.c_char_p)]


def _declared(library, name, result, *arguments):
    function = getattr(library, name)
    function.restype, function.argtypes = result, arguments
    return function


_pointer, _text, _size = ctypes.c_void_p, ctypes.c_char_p, ctypes.c_size_t
_error = ctypes.POINTER(ctypes.POINTER(_Error))
_str_hash = ctypes.cast(_glib.g_str_hash, _pointer)
_str_equal = ctypes.cast(_glib.g_str_equal, _pointer)
_table_new = _declared(_glib, "g_hash_table_new", _pointer, _pointer, _pointer)
_table_insert = _declared(_glib, "g_hash_table_insert", ctypes.c_int, _pointer, _text, _text)
_value_new = _declared(_secret, "secret_value_new", _pointer, _text, ctypes.c_ssize_t, _text)
_value_get = _declared(_secret, "secret_value_get", _pointer, _pointer, ctypes.POINTER(_size))
_store = _declared(_secret, "secret_password_storev_binary_sync", ctypes.c_int,
                   _pointer, _pointer, _text, _text, _pointer, _pointer, _error)
_search = _declared(_secret, "secret_password_searchv_sync", ctypes.POINTER(_List),
                    _pointer, _pointer, ctypes.c_int, _pointer, _error)
_label_of = _declared(_secret, "secret_retrievable_get_label", _text, _pointer)
_secret_of = _declared(_secret, "secret_retrievable_retrieve_secret_sync", _pointer,
                       _pointer, _pointer, _error)


def _checked(call, *arguments):
    """The call's result; its error ends the program with the error's text."""
    error = ctypes.POINTER(_Error)()
    result = call(*arguments, ctypes.byref(error))
    if error:
        sys.exit(error.contents.message.decode())
    return result


def fill(items):
    for label, data in items.items():
        # The table keeps no copies: the texts must live until the call is over.
        attributes = {b"class": b"genp", b"label": label.encode()}
        table = _table_new(_str_hash, _str_equal)
        for name, content in attributes.items():
            _table_insert(table, name, content)
        data = base64.b64decode(data)
        value = _value_new(data, len(data), b"application/octet-stream")
        _checked(_store, None, table, None, label.encode(), value, None)


def read():
    items = {}
    everything = _table_new(_str_hash, _str_equal)
    link = _checked(_search, None, everything, _SEARCH_ALL | _LOAD_SECRETS, None)
    while link:
        item = link.contents.data
        length = _size()
        content = _value_get(_checked(_secret_of, item, None), ctypes.byref(length))
        data = ctypes.string_at(content, length.value)
        items[_label_of(item).decode()] = base64.b64encode(data).decode()
        link = link.contents.next
    return items


if sys.argv[1] == "fill":
    fill(json.load(sys.stdin))
else:
    json.dump(read(), sys.stdout)
