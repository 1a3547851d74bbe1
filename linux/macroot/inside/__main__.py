"""The supervisor's start inside a Mac root: its one argument is an open file with the plan."""

import json
import os
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.realpath(__file__)), "..", ".."))

from macroot.inside.programs import NamespacePrograms
from macroot.inside.supervisor import supervise

with open(int(sys.argv[1]), encoding="utf-8") as _written:
    _plan = json.load(_written)
_outcome = supervise(_plan, NamespacePrograms(_plan, _plan["channels"]), _plan["channels"])
with open(_plan["channels"]["report"], "w", encoding="utf-8") as _report:
    json.dump(_outcome, _report)
