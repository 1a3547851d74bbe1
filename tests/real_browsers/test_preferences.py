"""What a run does to Chrome's preferences, judged by a real Chromium. See docs/real-browsers.md."""

LOADED = {"keeps the profile": True, "put aside": []}


def test_preferences_of_today_stay_byte_for_byte(mac):
    assert mac.play("preferences.of_today") == {
        "compact": True, "unchanged": True, "offers to save passwords": True, **LOADED}


def test_preferences_of_years_ago_are_edited_and_loaded(mac):
    # Chrome of today does not know the key that the edit sets.
    assert mac.play("preferences.of_years_ago") == {
        "edited": True, "rights stay": True, "offers to save passwords": True, **LOADED}


def test_preferences_that_an_edit_broke_would_be_reset(mac):
    assert mac.play("preferences.broken") == {
        "offers to save passwords": True, "keeps the profile": False,
        "put aside": ["Preferences.bad"]}


def test_a_running_chrome_overwrites_the_edit(mac):
    assert mac.play("preferences.overwritten") == [True, False]


def test_a_policy_switches_the_password_manager_off(mac):
    policies = mac.path("/opt/policies")
    policies.mkdir(parents=True)
    (policies / "passwords.json").write_text('{"PasswordManagerEnabled": false}')
    assert mac.play("preferences.offers") is False
