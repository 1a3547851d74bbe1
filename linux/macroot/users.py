"""Who is who in a Mac root."""

ALEX = 501
STAFF = 20
ROOT = 0
WHEEL = 0

HOME = "/Users/alex"
SHARED = "/Users/Shared"
BUNDLE = "/Applications/Keystrel.app"
TEMPORARY_FOLDERS = ("/private/tmp", "/private/var/tmp")
HOSTS_FOLDERS = ("/usr", "/dev", "/proc", "/run", "/private/etc")  # the host's part of a Mac root


def is_beneath(path, folder):
    """Whether a path is that folder or lies in it."""
    return path == folder or path.startswith(folder.rstrip("/") + "/")


def is_alexs(path, home=HOME):
    """Whether a sample machine gives this path to alex."""
    return any(is_beneath(path, folder) for folder in (home, SHARED, BUNDLE))
