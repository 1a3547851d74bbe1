"""A private X display, and its picture."""

import os
import subprocess

from macroot.errors import Trouble

_SERVER = ["Xvfb", "-screen", "0", "1280x1024x24", "-nolisten", "tcp", "-noreset"]


class Display:
    """Xvfb, started as root; clients reach it by its abstract socket, which needs no folder."""

    def __init__(self, programs, environment):
        self._programs = programs
        self._environment = environment
        self._server = None
        self._number_to_come = None
        self._saved = False
        self.name = None

    def start(self):
        """Starts the server; `name` is known after `wait`."""
        self._number_to_come, number = os.pipe()
        self._server = self._programs.start_beside(
            [*_SERVER, "-displayfd", str(number)], self._environment, pass_fds=[number],
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
        os.close(number)

    def wait(self):
        """Waits until clients can come."""
        with open(self._number_to_come, encoding="ascii") as coming:
            number = coming.readline().strip()
        if not number:
            raise Trouble(f"--display: {os.fsdecode(self._server.stderr.read()).strip()}")
        self.name = f":{number}"

    def save_picture(self, file):
        """Writes what the display shows as a PNG to an open file, the first time it is called."""
        if self._saved:
            return
        self._saved = True
        with self._programs.start_beside(
                ["import", "-silent", "-window", "root", "png:-"],
                {**self._environment, "DISPLAY": self.name}, stdin=subprocess.DEVNULL, stdout=file,
                stderr=subprocess.PIPE) as camera:
            _, errors = camera.communicate()
        if camera.returncode != 0:
            raise Trouble(f"--screenshot: {os.fsdecode(errors).strip()}")

    def stop(self):
        self._server.terminate()
        self._server.wait()
