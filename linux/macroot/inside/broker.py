"""The broker of administrator rights: it answers the prompts that the program's side would show.

What it is asked and answers, README.md tells.
"""

import json
import os
import socket
import threading

from macroot.inside.layout import BROKER_SOCKET, roots_environment
from macroot.inside.write_bits import now


class Broker:
    """Answers until the run ends; `asked` is the open file where prompts are noted, -1 for none."""

    def __init__(self, plan, programs, asked):
        self._programs = programs
        self._environment = roots_environment(plan)
        self._verdicts = list(plan["verdicts"])
        self._asked = asked
        self._prompting = threading.Lock()
        self._listening = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)

    def start(self):
        path = self._programs.path(BROKER_SOCKET)
        self._listening.bind(path)
        os.chmod(path, 0o666)
        self._listening.listen(16)
        threading.Thread(target=self._serve, daemon=True).start()

    def _serve(self):
        while True:
            client, _ = self._listening.accept()
            threading.Thread(target=self._answer, args=(client,), daemon=True).start()

    def _answer(self, client):
        with client:
            try:
                with client.makefile("rb") as request:
                    kind, _, body = request.read().partition(b"\n")
                client.sendall(self._reply(kind.decode("ascii", "replace"), body))
            except (ConnectionError, BrokenPipeError):
                pass  # the client has gone

    def _reply(self, kind, body):
        if kind not in ("command", "right"):
            return b""
        verdict = self._prompt("command" if kind == "command" else "right",
                               os.fsdecode(body if kind == "command" else body.rstrip(b"\n")))
        status, output, errors = 0, b"", b""
        if kind == "command" and verdict == "allow":
            began = now()
            status, output, errors = self._programs.run_as_root([b"/bin/sh", b"-c", body],
                                                            self._environment)
            self._programs.part_users(began)
        return f"{verdict} {status} {len(output)} {len(errors)}\n".encode() + output + errors

    def _prompt(self, kind, what):
        """Uses up one verdict (the last one stays) and notes the prompt."""
        with self._prompting:
            verdict = self._verdicts.pop(0) if len(self._verdicts) > 1 else self._verdicts[0]
            if self._asked >= 0:
                os.write(self._asked, json.dumps({kind: what, "verdict": verdict}).encode() + b"\n")
            return verdict
