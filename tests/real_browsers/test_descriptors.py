"""The descriptors that a run installs make Chromium ask the right store for the right extensions."""

CHROME_STORE = "https://clients2.google.com/service/update2/crx"
EDGE_STORE = "https://edge.microsoft.com/extensionwebstorebase/v1/crx"
MAIN = "kmcoedhplnbajgfiehkcpamdobnlgjie"
BUTTON = "pbjaclkhgedmfonipcabhlmgkdjeoifn"
EDGE = "ljdimbpkaehcfognojlkbmcpiedhfagk"
FOREIGN = "aaaabbbbccccddddeeeeffffgggghhhh"  # beside each of Chrome's
OTHER = "p" * 32
USERS_FOLDER = "/Users/alex/Library/Application Support/Google/Chrome/External Extensions"
SYSTEM_FOLDER = "/Library/Application Support/Google/Chrome/External Extensions"


def test_for_all_users(mac):
    assert mac.play("descriptors.read", "Chrome", MAIN, FOREIGN) == {
        "asked": {CHROME_STORE: [FOREIGN, MAIN]}, "complaints": []}
    assert not mac.path(f"{USERS_FOLDER}/{MAIN}.json").exists()


def test_for_the_user_alone(mac):
    read = mac.play("descriptors.read", "Chrome", MAIN, BUTTON, FOREIGN, options=["--admin", "refuse"])
    assert read == {"asked": {CHROME_STORE: [FOREIGN, MAIN, BUTTON]}, "complaints": []}
    assert not mac.path(f"{SYSTEM_FOLDER}/{MAIN}.json").exists()


def test_for_edge(mac):
    # Chromium as Edge reads the system's folder of Chrome, too.
    assert mac.play("descriptors.read", "Edge", EDGE, MAIN, FOREIGN) == {
        "asked": {CHROME_STORE: [FOREIGN, MAIN], EDGE_STORE: [EDGE]}, "complaints": []}


def test_another_name_asks_for_another_extension(mac):
    read = mac.play("descriptors.read_changed", OTHER, OTHER, options=["--admin", "refuse"])
    assert read == {"asked": {CHROME_STORE: [FOREIGN, BUTTON, OTHER]}, "complaints": []}


def test_broken_json_is_complained_of(mac):
    read = mac.play("descriptors.read_changed", BUTTON, MAIN, '{ "external_update_url": ',
                    options=["--admin", "refuse"])
    assert MAIN not in read["asked"][CHROME_STORE]
    assert "Unable to deserialize json data" in read["complaints"][0]
    assert f"{MAIN}.json" in read["complaints"][0]
