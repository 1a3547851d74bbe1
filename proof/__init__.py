"""What may go wrong, tried on purpose: a module a chapter. See docs/reliability.md.

A chapter is a module of this folder that stands in CHAPTERS (cli.py). Its docstring's first line is the
title of its table. It offers

    SOURCES         files and folders of the repository that its results depend on, itself apart
    prove(trial)    tries its cases, and returns a `Table` (results.py)

where `trial` (a `Trial`, results.py) says how much to try, and keeps what was tried.
"""
