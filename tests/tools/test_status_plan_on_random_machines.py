"""KSStatus --plan on Macs that nobody thought of; KS_MACHINES names other seeds than the usual twenty."""

import os

import pytest

from tests.support.plan import assert_the_plan_comes_true
from tests.support.random_mac import RandomMac

BEFORE_A_COMMIT = 4
SEEDS = os.environ.get("KS_MACHINES", "").split() or [
    str(seed) if seed <= BEFORE_A_COMMIT else pytest.param(str(seed), marks=pytest.mark.many)
    for seed in range(1, 21)]


@pytest.mark.parametrize("verdict", ["allowed", "refused"])
@pytest.mark.parametrize("seed", SEEDS)
def test_the_plan_of_a_random_machine_comes_true(tmp_path, seed, verdict):
    machine = RandomMac(int(seed), tmp_path)
    assert_the_plan_comes_true(machine.mac, verdict, *machine.options_without_answers(), keychain=machine.keychain)
