"""The guard, and opening addresses, with browsers that run for real."""

import pytest


@pytest.fixture
def mac(mac):
    mac.make_applications_real()
    return mac


def test_each_browser_is_found_and_closed_and_an_unrelated_one_lives(mac):
    before, found, after = 0, 1, 0
    assert mac.play("guard.closing", options=["--display"]) == {
        **dict.fromkeys(("chrome", "edge", "firefox"), [before, found, after]),
        "unrelated lives": True,
    }


def test_the_alert_stands_above_a_window_that_fills_the_screen(mac):
    assert mac.play("guard.alert", options=["--display"]) == {
        "goes on": 0, "windows": [[0, 0, 1280, 1024]]}


@pytest.mark.parametrize("name, agent", [("Chrome", "Chrome"), ("FF", "Firefox")])
def test_an_address_is_shown_in_a_closed_and_in_a_running_browser(mac, name, agent):
    assert mac.play("opening.open_address", name, options=["--display"]) == {
        "closed": [agent], "main processes": 1, "running": [agent], "same process": True}
