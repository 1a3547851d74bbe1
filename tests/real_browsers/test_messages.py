"""An extension speaks to the product's native host through the manifest that a run installed."""

NOT_FOUND = {"error": "Error: Specified native messaging host not found."}
FORBIDDEN = {"error": "Error: Access to the specified native messaging host is forbidden."}
FAILED = {"error": "Error: An unexpected error occurred"}
NO_SUCH = {"error": "Error: No such native application com.corvendale.ksnative"}

NONE = {"Chrome": NOT_FOUND, "Edge": NOT_FOUND, "Firefox": NO_SUCH}
ALL = dict.fromkeys(NONE, "echo")


def test_messages_are_answered_where_the_integration_is_installed_and_only_there(mac):
    mac.remove("/Library/Google")  # the folder script can make the folder, but not open a closed one
    verdicts = ["refuse"] * 5 + ["allow"]
    heard = mac.play("messages.life",
                     options=[word for verdict in verdicts for word in ("--admin", verdict)])
    assert heard == {
        "before the run": NONE,
        "after a refused run": {**ALL, "Chrome": NOT_FOUND},
        "after a run with the folder script allowed alone": ALL,
        "after a removal": NONE,
        "after an allowed run": ALL,
        "after a second removal": NONE,
    }


def test_a_broken_payload_is_not_answered(mac):
    assert mac.play("messages.broken") == {
        "no origins": NONE,
        "another extension's origin": {"Chrome": FORBIDDEN, "Edge": FORBIDDEN, "Firefox": NO_SUCH},
        "another name": NONE,
        "a path to nothing": {**NONE, "Firefox": FAILED},
        "a relative path": NONE,
        "a host that is not executable": {"Chrome": "dead", "Edge": "dead", "Firefox": FAILED},
        "nothing broken": ALL,
    }
