"""The Mac root: a folder tree that looks like a Mac's, and programs run in it as a Mac's user."""
