"""What every pytest file meets: a shuffled order, the build's name, the pins."""

import os
import random
import signal

import pytest

from tests.support import build
from tests.support.mac import Mac

SEED = "KS_TEST_SEED"


def pytest_addoption(parser):
    parser.addoption("--renew-pins", action="store_true",
                     help="write what the pinned runs change and log instead of comparing it")


def pytest_configure():
    # Whoever started this may ignore them, and what the tests start would inherit that.
    for number in (signal.SIGINT, signal.SIGQUIT, signal.SIGHUP, signal.SIGTERM):
        if signal.getsignal(number) == signal.SIG_IGN:
            signal.signal(number, signal.SIG_DFL)
    os.environ.setdefault(SEED, str(random.randrange(1, 100_000)))  # workers inherit it


def pytest_collection_modifyitems(items):
    """Shuffles the files, and the tests of each: what a file shares is made once."""
    order = random.Random(os.environ[SEED])
    files = {}
    for item in items:
        files.setdefault(item.path, []).append(item)
    for tests in files.values():
        order.shuffle(tests)
    groups = list(files.values())
    order.shuffle(groups)
    items[:] = [item for tests in groups for item in tests]


def pytest_terminal_summary(terminalreporter):
    terminalreporter.write_line(f"{build.folder()}, in the order of {SEED}={os.environ[SEED]}")


@pytest.fixture
def renew_pins(request):
    """Whether pins are to be written."""
    return request.config.getoption("--renew-pins")


@pytest.fixture(scope="session", autouse=True)
def machine_templates(tmp_path_factory):
    """Where the machines of this session are copied from."""
    Mac.templates = tmp_path_factory.mktemp("machines")
