"""Runs on Macs in states that nobody thought of; `scripts/prove machines` tries more of them."""

import os

import pytest

from tests.support.invariants import judged
from tests.support.random_mac import RandomMac

BEFORE_A_COMMIT = 10
SEEDS = os.environ.get("KS_MACHINES", "").split() or [
    str(seed) if seed <= BEFORE_A_COMMIT else pytest.param(str(seed), marks=pytest.mark.many)
    for seed in range(1, 51)]


@pytest.mark.parametrize("seed", SEEDS)
def test_a_random_machine(tmp_path, seed):
    faults = judged(RandomMac(int(seed), tmp_path))
    assert not faults, "\n".join([*faults, f"again: KS_MACHINES={seed} scripts/test tests/run/test_random_machines.py"])
