"""What the tests of the Mac root share."""

import pytest

from tests.support.mac import Mac


@pytest.fixture(scope="module")
def mac(tmp_path_factory):
    """One clean Mac for a file's tests: each leaves it as it was."""
    return Mac.new("clean", tmp_path_factory.mktemp("macroot"))


@pytest.fixture(scope="module")
def real_users(mac):
    """Skips what one user of the host for alex and root cannot show."""
    if mac.run(program="/bin/true").reduced:
        pytest.skip("this host gives alex and root one user")


@pytest.fixture(scope="module")
def namespaces(mac):
    """Skips what cannot be had without namespaces."""
    if mac.run("--web", "200", program="/bin/true").status == 70:
        pytest.skip("this host refuses namespaces: no disk and no network of its own")


def sh(mac, script, *options, **more):
    """Runs shell text as alex."""
    return mac.run(*options, program="/bin/sh", args=("-c", script), **more)
