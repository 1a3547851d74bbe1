"""Runs on Macs in states that nobody thought of; `scripts/prove machines` tries more of them."""

import os

import pytest

from tests.support.invariants import judged
from tests.support.random_mac import RandomMac

IN_A_QUICK_RUN = 10
SEEDS = os.environ.get("KS_MACHINES", "").split() or [
    str(seed) if seed <= IN_A_QUICK_RUN else pytest.param(str(seed), marks=pytest.mark.large)
    for seed in range(1, 51)]


@pytest.mark.parametrize("seed", SEEDS)
def test_a_random_machine(tmp_path, seed):
    faults = judged(RandomMac(int(seed), tmp_path))
    assert not faults, "\n".join([*faults, f"again: KS_MACHINES={seed} scripts/test tests/run/test_random_machines.py"])
