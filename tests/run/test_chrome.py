"""Google Chrome in a whole run: the files after it, the log, the prompts."""

import re

import pytest

from tests.support import log
from tests.support.mac import Mac

HOME = "/Users/alex"
CHROME = "/Library/Application Support/Google/Chrome"
USER_CHROME = HOME + CHROME
PREFERENCES = USER_CHROME + "/Default/Preferences"
USER_EXTERNAL = USER_CHROME + "/External Extensions"
SYSTEM_EXTERNAL = CHROME + "/External Extensions"
SYSTEM_HOSTS = "/Library/Google/Chrome/NativeMessagingHosts"
HOST_MANIFEST = SYSTEM_HOSTS + "/com.corvendale.kschromena.json"
PAYLOAD = "/Applications/Keystrel.app/Contents/Keystrel/Tools/BExtensions/chrome"
OLD_PAYLOAD = "/Library/Application Support/Keystrel/Tools/BExtensions/chrome"
APPLICATION = "/Applications/Google Chrome.app"
DESCRIPTOR = "kmcoedhplnbajgfiehkcpamdobnlgjie.json"
BUTTON_DESCRIPTOR = "pbjaclkhgedmfonipcabhlmgkdjeoifn.json"
DESCRIPTOR_TEXT = b'{ "external_update_url": "https://clients2.google.com/service/update2/crx" }'
EXTENSION_FILES = ("Keystrel.crx", "KeystrelButton.crx", DESCRIPTOR, BUTTON_DESCRIPTOR)
PLUG_IN = "/Library/Internet Plug-Ins/npKSPlugin.bundle"
OLD_FIREFOX_HOST = "/Library/Application Support/Mozilla/NativeMessagingHosts/com.corvendale.ksnative.manifest.json"

FOUND = ("INFO", "The app's URL is: file:///Applications/Google%20Chrome.app/")
NOT_FOUND = ("WARNING", "App not found")


@pytest.fixture
def mac(tmp_path):
    return Mac.new("typical", tmp_path)


def chrome_messages(mac):
    """What the run logged about Chrome, errors cut behind their code."""
    wanted = re.compile(
        r"The app's URL|App not found|^No (copy|delete)[:,] file not present|^Error (install for|removing)"
        r"|^ERROR deactivate|^An error occurred|script|SH to file|display"
    )
    return [
        (level, re.sub(r'Error Domain=NSCocoaErrorDomain (Code=\d+) "[\s\S]*', r"\1", text))
        for level, text in log.messages(mac.log_text())
        if wanted.search(text)
    ]


def run(mac, *options):
    result = mac.run(*options)
    assert (result.status, result.stderr) == (0, "")
    assert list(mac.path("/private/var/tmp").iterdir()) == []
    return result


def prompts(result):
    """The verdicts; each prompt must have been for the one script file."""
    assert {prompt["command"] for prompt in result.asked} <= {"'/var/tmp/script.sh' "}
    return [prompt["verdict"] for prompt in result.asked]


def exists(mac, path):
    return mac.path(path).exists() or mac.path(path).is_symlink()


def same(mac, copy, original):
    return mac.path(copy).read_bytes() == mac.path(original).read_bytes()


def entry(mac, path):
    """Type, mode and owner of what is at a path, as a manifest tells them."""
    (line,) = [line for line in mac.manifest() if line.split("\t")[3] == path]
    return line.split("\t")[:3]


def warning(text):
    return ("WARNING", text)


def not_removed(path):
    return warning(f"No delete, file not present: {path}")


def assert_installed_for_the_user(mac, home=HOME):
    folder = home + CHROME + "/External Extensions"
    assert same(mac, folder + "/Keystrel.crx", PAYLOAD + "/Keystrel.crx")
    assert same(mac, folder + "/KeystrelButton.crx", PAYLOAD + "/KeystrelButton.crx")
    for name in (DESCRIPTOR, BUTTON_DESCRIPTOR):
        assert mac.path(f"{folder}/{name}").read_bytes() == DESCRIPTOR_TEXT
        assert entry(mac, f"{folder}/{name}") == ["f", "0777", "501:20"]


def assert_installed_for_all(mac):
    assert same(mac, SYSTEM_EXTERNAL + "/Keystrel.crx", PAYLOAD + "/Keystrel.crx")
    assert mac.path(f"{SYSTEM_EXTERNAL}/{DESCRIPTOR}").read_bytes() == DESCRIPTOR_TEXT
    assert entry(mac, f"{SYSTEM_EXTERNAL}/{DESCRIPTOR}") == ["f", "0755", "0:0"]
    assert same(mac, HOST_MANIFEST, PAYLOAD + "/com.corvendale.kschromena.json")


# ---- with administrator rights


def test_allowed_the_integration_is_installed_for_all_users(mac):
    result = run(mac)
    assert prompts(result) == ["allow", "allow"]
    assert chrome_messages(mac) == [FOUND, FOUND]
    assert_installed_for_all(mac)
    for gone in (
        SYSTEM_EXTERNAL + "/KeystrelButton.crx",
        f"{SYSTEM_EXTERNAL}/{BUTTON_DESCRIPTOR}",
        *(f"{USER_EXTERNAL}/{name}" for name in EXTENSION_FILES),
        PLUG_IN,
        HOME + PLUG_IN,
        APPLICATION + "/Contents/Extensions/Keystrel.crx",
        APPLICATION + "/Contents/Extensions/KeystrelButton.crx",
        *(f"{folder}/{name}" for folder in (PAYLOAD, OLD_PAYLOAD) for name in (DESCRIPTOR, BUTTON_DESCRIPTOR)),
        OLD_FIREFOX_HOST,
        HOME + OLD_FIREFOX_HOST,
    ):
        assert not exists(mac, gone), gone


def test_the_password_manager_is_off_after_the_run_and_nothing_else_changes(mac):
    before = mac.path(PREFERENCES).read_text()
    assert '"password_manager_enabled": true' in before
    run(mac)
    assert mac.path(PREFERENCES).read_text() == before.replace(
        '"password_manager_enabled": true', '"password_manager_enabled": false'
    )


def test_foreign_files_stay_as_they_are(mac):
    def foreign():
        return [
            line for line in mac.manifest()
            if re.search(r"aaaabbbbcccc|org\.example|QuickTime|pdf\.crx|Bookmarks|Local State", line)
        ]

    before = foreign()
    assert len(before) > 8
    run(mac)
    assert foreign() == before


@pytest.mark.parametrize("verdict", ["allow", "refuse"])
def test_a_second_run_leaves_chromes_files_as_they_are(mac, verdict):
    def chromes():
        return [line for line in mac.manifest() if "hrom" in line.split("\t")[3]]

    run(mac, "--admin", verdict)
    once = chromes()
    run(mac, "--admin", verdict)
    assert chromes() == once


@pytest.mark.parametrize("shell", ["bash", "dash"])
def test_either_shell_runs_the_scripts(mac, shell):
    run(mac, "--sh", shell)
    assert_installed_for_all(mac)


# ---- without them


@pytest.mark.parametrize("verdict", ["cancel", "refuse"])
def test_without_rights_the_integration_is_installed_for_the_user(mac, verdict):
    for leftover in (HOME + PLUG_IN, HOST_MANIFEST, USER_EXTERNAL):
        mac.remove(leftover)
    result = run(mac, "--admin", verdict)
    # Removing, installing, and opening the host manifest's folder.
    assert prompts(result) == [verdict] * 3
    nothing_to_remove = [
        not_removed(HOME + PLUG_IN),
        not_removed(HOST_MANIFEST),
        not_removed(HOST_MANIFEST),  # meant: in place of the package
        not_removed(USER_EXTERNAL + "/KeystrelButton.crx"),
    ]
    assert chrome_messages(mac) == [
        *nothing_to_remove,
        FOUND,
        FOUND,
        *nothing_to_remove,
        warning("Error install for current user: Code=513"),
        warning("Error install for current user: (null)"),
    ]
    assert_installed_for_the_user(mac)
    assert entry(mac, USER_EXTERNAL) == ["d", "0777", "501:20"]
    assert not exists(mac, HOST_MANIFEST)


def test_without_rights_the_users_leftovers_go_and_the_systems_stay(mac):
    before = mac.manifest()
    result = run(mac, "--admin", "refuse")
    assert prompts(result) == ["refuse", "refuse"]
    denied = warning("Error removing file: Code=513")  # the host manifest
    assert chrome_messages(mac) == [
        denied,
        FOUND,
        FOUND,
        not_removed(HOME + PLUG_IN),
        denied,
        not_removed(HOST_MANIFEST),  # meant: in place of the package
        not_removed(USER_EXTERNAL + "/KeystrelButton.crx"),
        warning(f"No copy: file not present: {HOST_MANIFEST}"),
        warning("Error install for current user: (null)"),
    ]
    assert_installed_for_the_user(mac)
    assert not exists(mac, HOME + PLUG_IN)
    systems = re.compile(r"/Library/(Application Support/Google|Google|Internet Plug-Ins)|/Applications/Google")
    assert [line for line in mac.manifest() if systems.match(line.split("\t")[3])] == [
        line for line in before if systems.match(line.split("\t")[3])
    ]


def test_a_refused_run_shows_no_alert(mac):
    # Nobody would close it: the run would not end.
    result = run(mac, "--admin", "refuse", "--display")
    assert prompts(result) == ["refuse", "refuse"]


def test_allowed_for_the_second_prompt_only(mac):
    result = run(mac, "--admin", "refuse", "--admin", "allow")
    assert prompts(result) == ["refuse", "allow"]
    assert_installed_for_all(mac)
    assert chrome_messages(mac) == [warning("Error removing file: Code=513"), FOUND, FOUND]


def test_allowed_for_the_first_prompt_only(mac):
    result = run(mac, "--admin", "allow", "--admin", "refuse")
    # Removing; installing; opening the host manifest's folder, which is there and closed.
    assert prompts(result) == ["allow", "refuse", "refuse"]
    assert_installed_for_the_user(mac)
    assert not exists(mac, HOST_MANIFEST)
    assert not exists(mac, f"{SYSTEM_EXTERNAL}/{DESCRIPTOR}")


def test_a_script_that_cannot_be_written_is_not_shown_to_the_administrator(mac):
    result = mac.run("--pre", "mkdir /var/tmp/script.sh")
    assert (result.status, result.stderr) == (0, "")
    assert prompts(result) == []
    assert_installed_for_the_user(mac)
    messages = [text for level, text in chrome_messages(mac) if level == "FAILURE"]
    assert messages[:2] == [messages[0]] * 2 and messages[0].startswith("Can't save SH to file! Error: Code=")


# ---- the host manifest's folder


def test_an_open_host_folder_takes_the_manifest_without_a_prompt(mac):
    mac.remove(HOST_MANIFEST)
    result = run(mac, "--admin", "refuse", "--pre", f"chmod 777 {SYSTEM_HOSTS}")
    assert prompts(result) == ["refuse"] * 2
    assert same(mac, HOST_MANIFEST, PAYLOAD + "/com.corvendale.kschromena.json")
    assert [text for _, text in chrome_messages(mac) if "Error" in text] == [
        "Error install for current user: (null)"
    ]


def test_rights_for_the_last_prompt_only_make_an_open_host_folder(mac):
    mac.remove("/Library/Google")
    result = run(mac, "--admin", "refuse", "--admin", "refuse", "--admin", "allow")
    assert prompts(result) == ["refuse", "refuse", "allow"]
    assert same(mac, HOST_MANIFEST, PAYLOAD + "/com.corvendale.kschromena.json")
    assert entry(mac, SYSTEM_HOSTS) == ["d", "0777", "0:0"]
    # Meant: the first copy's error is logged although the second one succeeded.
    assert warning("Error install for current user: Code=4") in chrome_messages(mac)


def test_rights_for_the_last_prompt_do_not_open_a_host_folder_that_is_there(mac):
    mac.remove(HOST_MANIFEST)
    result = run(mac, "--admin", "refuse", "--admin", "refuse", "--admin", "allow")
    assert prompts(result) == ["refuse", "refuse", "allow"]
    assert not exists(mac, HOST_MANIFEST)
    assert warning("Error install for current user: Code=513") in chrome_messages(mac)


# ---- Chrome or the payload missing


def test_without_chrome_the_removal_still_asks_and_edits_the_preferences(mac):
    mac.remove(APPLICATION)
    mac.path(PREFERENCES).write_text('{"password_manager_enabled": false}')
    result = run(mac)
    assert prompts(result) == ["allow"]
    assert chrome_messages(mac) == [NOT_FOUND]
    assert mac.path(PREFERENCES).read_text() == '{"password_manager_enabled": true}'
    assert not exists(mac, f"{SYSTEM_EXTERNAL}/{DESCRIPTOR}")


def test_without_a_payload_the_descriptors_are_installed_for_the_user(tmp_path):
    mac = Mac.new("no-payload", tmp_path)
    result = run(mac)
    # Removing, then opening the host manifest's folder; the installation's script is not run.
    assert prompts(result) == ["allow", "allow"]
    assert chrome_messages(mac) == [
        FOUND,
        FOUND,
        not_removed(HOME + PLUG_IN),
        not_removed(HOST_MANIFEST),
        not_removed(HOST_MANIFEST),
        not_removed(USER_EXTERNAL + "/KeystrelButton.crx"),
        warning("Error install for current user: Code=260"),
        warning("Error install for current user: Code=260"),
        warning("Error removing file: Code=260"),
    ]
    assert sorted(path.name for path in mac.path(USER_EXTERNAL).iterdir()) == [
        "aaaabbbbccccddddeeeeffffgggghhhh.json", DESCRIPTOR, BUTTON_DESCRIPTOR,
    ]


def test_a_payload_that_cannot_be_written_installs_for_the_user_without_the_second_prompt(mac):
    mac.remove(f"{PAYLOAD}/{DESCRIPTOR}")
    result = run(mac, "--pre", f"chown -R 0:0 {PAYLOAD}; chmod -R go-w {PAYLOAD}")
    assert prompts(result) == ["allow", "allow"]
    assert_installed_for_the_user(mac)
    assert not exists(mac, f"{SYSTEM_EXTERNAL}/{DESCRIPTOR}")


def test_a_link_in_place_of_the_descriptor_in_a_closed_payload_opens_nothing_and_asks_nobody(mac):
    mine = "/Users/alex/mine"
    mac.path(mine).write_text("mine")
    mac.path(mine).chmod(0o600)
    mac.remove(f"{PAYLOAD}/{DESCRIPTOR}")
    mac.path(f"{PAYLOAD}/{DESCRIPTOR}").symlink_to(mine)
    result = run(mac, "--own", mine, "--pre", f"chown 0:0 {PAYLOAD}; chmod 755 {PAYLOAD}")
    # The removal's prompt, and the one that opens the host manifest's folder.
    assert prompts(result) == ["allow", "allow"]
    assert_installed_for_the_user(mac)
    assert mac.path(mine).stat().st_mode & 0o777 == 0o600


# ---- the preferences


def test_a_missing_preferences_file_is_reported_by_the_installation_only(mac):
    mac.remove(PREFERENCES)
    run(mac)
    assert chrome_messages(mac) == [
        FOUND,
        FOUND,
        warning(f"ERROR deactivate password manager in chrome: {PREFERENCES}. Error: Code=260"),
    ]
    assert not exists(mac, PREFERENCES)


def test_preferences_that_are_no_utf8_stay_as_they_are(mac):
    mac.path(PREFERENCES).write_bytes(b'"password_manager_enabled": true \xff\xfe')
    run(mac)
    assert chrome_messages(mac)[-1] == warning(
        f"ERROR deactivate password manager in chrome: {PREFERENCES}. Error: Code=261"
    )
    assert mac.path(PREFERENCES).read_bytes() == b'"password_manager_enabled": true \xff\xfe'


def test_a_setting_that_the_removal_adds_is_switched_by_the_installation(mac):
    mac.path(PREFERENCES).write_text('{"exited_cleanly": true}')
    run(mac)
    assert mac.path(PREFERENCES).read_text() == (
        '{"exited_cleanly": true, \n        "password_manager_enabled": false}'
    )
    assert entry(mac, PREFERENCES) == ["f", "0600", "501:20"]


def test_preferences_as_chrome_of_today_writes_them_keep_their_bytes(mac):
    # Compact, and without the keys that the edit looks for; the switch of today is not touched.
    content = (
        '{"browser":{"check_default_browser":false},"credentials_enable_service":true,'
        '"profile":{"exit_type":"Normal","name":"Alex – Zuhause","was_signed_in":false}}'
    ).encode()
    mac.path(PREFERENCES).write_bytes(content)
    run(mac)
    assert mac.path(PREFERENCES).read_bytes() == content
    assert entry(mac, PREFERENCES) == ["f", "0600", "501:20"]


# ---- odd homes


@pytest.mark.parametrize("home", ["/Users/al  \"e'x", "/Users/$HOME `id`", "/Users/-rf"])
@pytest.mark.parametrize("verdict", ["allow", "refuse"])
def test_any_home_is_cleaned_and_installed_into(mac, home, verdict):
    mac.path(HOME).rename(mac.path(home))
    run(mac, "--home", home, "--admin", verdict)
    assert not exists(mac, home + PLUG_IN)
    folder = f"{home}{CHROME}/External Extensions"
    if verdict == "allow":
        assert_installed_for_all(mac)
        assert [path.name for path in mac.path(folder).iterdir()] == ["aaaabbbbccccddddeeeeffffgggghhhh.json"]
    else:
        assert_installed_for_the_user(mac, home)
    assert '"password_manager_enabled": false' in mac.path(f"{home}{CHROME}/Default/Preferences").read_text()
