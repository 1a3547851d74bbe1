"""Carries a run out by proot, where namespaces are refused."""

from macroot.errors import Trouble


def check(_):
    """Says which option cannot work here."""
    raise Trouble("namespaces are refused here")
