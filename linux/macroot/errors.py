"""The one error that people see."""


class Trouble(Exception):
    """Why the Mac root cannot do what it was asked; its text is for people."""
