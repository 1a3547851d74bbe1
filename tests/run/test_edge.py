"""Microsoft Edge in a whole run: the files after it, and the log."""

import shutil

import pytest

from tests.support import log
from tests.support.mac import Mac

HOME = "/Users/alex"
EDGE = HOME + "/Library/Application Support/Microsoft Edge"
HOST_FOLDER = EDGE + "/NativeMessagingHosts"
EXTERNAL_FOLDER = EDGE + "/External Extensions"
HOST_MANIFEST = HOST_FOLDER + "/com.corvendale.kschromena.json"
DESCRIPTOR = EXTERNAL_FOLDER + "/ljdimbpkaehcfognojlkbmcpiedhfagk.json"
PAYLOAD = "/Applications/Keystrel.app/Contents/Keystrel/Tools/BExtensions/edge"
PAYLOAD_MANIFEST = PAYLOAD + "/com.corvendale.kschromena.json"
PAYLOAD_DESCRIPTOR = PAYLOAD + "/ljdimbpkaehcfognojlkbmcpiedhfagk.json"
DESCRIPTOR_TEXT = (
    b'{ "external_update_url": "https://edge.microsoft.com/extensionwebstorebase/v1/crx" }'
)

FOUND = ("INFO", "Application URL is: file:///Applications/Microsoft%20Edge.app/")
NOT_FOUND = ("INFO", "Edge application not found!")
UNINSTALLED = ("INFO", "Edge extension uninstalled!")
INSTALLED = ("INFO", "Edge extension installed!")


@pytest.fixture
def mac(tmp_path):
    """A typical Mac on which Edge has never seen the product."""
    mac = Mac.new("typical", tmp_path)
    mac.remove(EDGE)
    mac.remove(PAYLOAD_DESCRIPTOR)
    return mac


def edge_messages(mac):
    """What the run logged about Edge."""
    return [
        message
        for message in log.messages(mac.log_text())
        if "Edge" in message[1] or message[1].startswith("An error occurred")
    ]


def run(mac, *options):
    result = mac.run(*options)
    assert (result.status, result.stderr) == (0, "")
    return edge_messages(mac)


def edge_lines(mac):
    """The manifest's lines about Edge, as path -> (type, mode, owner)."""
    lines = [line.split("\t") for line in mac.manifest()]
    return {
        line[3]: tuple(line[:3])
        for line in lines
        if "Microsoft Edge/" in line[3] + "/" and line[3].startswith(HOME) or PAYLOAD in line[3]
    }


def test_the_integration_is_installed_for_the_user(mac):
    manifest = mac.path(PAYLOAD_MANIFEST).read_bytes()
    before = edge_lines(mac)
    messages = run(mac)

    assert messages == [UNINSTALLED, FOUND, FOUND, UNINSTALLED, INSTALLED]
    assert mac.path(HOST_MANIFEST).read_bytes() == manifest
    assert mac.path(DESCRIPTOR).read_bytes() == DESCRIPTOR_TEXT
    assert mac.path(PAYLOAD_DESCRIPTOR).read_bytes() == DESCRIPTOR_TEXT

    after = edge_lines(mac)
    assert {path: after[path] for path in set(after) - set(before)} == {
        EDGE: ("d", "0777", "501:20"),
        HOST_FOLDER: ("d", "0777", "501:20"),
        HOST_MANIFEST: ("f", after[PAYLOAD_MANIFEST][1], "501:20"),
        EXTERNAL_FOLDER: ("d", "0777", "501:20"),
        DESCRIPTOR: ("f", "0777", "501:20"),
        PAYLOAD_DESCRIPTOR: ("f", "0777", "501:20"),
    }
    assert {path: after[path] for path in before} == before


def test_a_folder_that_exists_keeps_its_mode_and_its_files(mac):
    mac.path(HOST_FOLDER).mkdir(parents=True)
    mac.path(HOST_FOLDER).chmod(0o700)
    mac.path(HOST_FOLDER + "/other.json").write_text("not ours")
    mac.path(EXTERNAL_FOLDER).mkdir()
    run(mac, "--own", EDGE)
    lines = edge_lines(mac)
    assert lines[HOST_FOLDER][1] == "0700"
    assert lines[EXTERNAL_FOLDER][1] == "0755"
    assert mac.path(HOST_FOLDER + "/other.json").read_text() == "not ours"
    assert mac.path(HOST_MANIFEST).is_file()


def test_repeated_runs_replace_both_files(mac):
    run(mac)
    mac.path(HOST_MANIFEST).write_text("old")
    mac.path(DESCRIPTOR).write_text("old")
    mac.path(PAYLOAD_DESCRIPTOR).write_text("old")
    mac.remove("/Users/Shared/Keystrel/logs")
    assert run(mac)[-1] == INSTALLED
    assert mac.path(HOST_MANIFEST).read_bytes() == mac.path(PAYLOAD_MANIFEST).read_bytes()
    assert mac.path(DESCRIPTOR).read_bytes() == DESCRIPTOR_TEXT
    assert mac.path(PAYLOAD_DESCRIPTOR).read_bytes() == DESCRIPTOR_TEXT


def test_without_edge_what_an_earlier_run_left_is_removed_and_nothing_installed(mac):
    run(mac)
    shutil.rmtree(mac.path("/Applications/Microsoft Edge.app"))
    mac.remove("/Users/Shared/Keystrel/logs")
    assert run(mac) == [UNINSTALLED, NOT_FOUND]
    assert not mac.path(HOST_MANIFEST).exists()
    assert not mac.path(DESCRIPTOR).exists()
    # The folders, and the descriptor in the product's bundle, stay.
    assert mac.path(HOST_FOLDER).is_dir()
    assert mac.path(EXTERNAL_FOLDER).is_dir()
    assert mac.path(PAYLOAD_DESCRIPTOR).is_file()


@pytest.mark.parametrize("missing", ["manifest", "folder", "bundle"])
def test_a_missing_payload_ends_the_installation(mac, missing):
    mac.remove({"manifest": PAYLOAD_MANIFEST, "folder": PAYLOAD, "bundle": "/Applications/Keystrel.app"}[missing])
    messages = run(mac)
    assert messages[:-1] == [UNINSTALLED, FOUND, FOUND, UNINSTALLED]
    level, text = messages[-1]
    assert level == "FAILURE"
    assert text.startswith("Error copying Edge JSON: Error Domain=NSCocoaErrorDomain Code=260 ")
    assert "/BExtensions//edge/com.corvendale.kschromena.json" in text  # the path as it is composed
    assert mac.path(HOST_FOLDER).is_dir()
    assert not mac.path(HOST_MANIFEST).exists()
    assert not mac.path(PAYLOAD_DESCRIPTOR).exists()
    assert not mac.path(EXTERNAL_FOLDER).exists()


def test_a_file_in_place_of_the_browsers_folder(mac):
    mac.path(EDGE).write_text("mine")
    level, text = run(mac)[-1]
    assert level == "FAILURE"
    assert text.startswith("Error creating Edge Native directory: Error Domain=NSCocoaErrorDomain ")
    assert mac.path(EDGE).read_text() == "mine"
    assert not mac.path(PAYLOAD_DESCRIPTOR).exists()


def test_a_host_folder_that_is_a_file(mac):
    mac.path(EDGE).mkdir()
    mac.path(HOST_FOLDER).write_text("mine")
    level, text = run(mac, "--own", EDGE)[-1]
    # It exists, so it is not created; the copy into it then fails.
    assert level == "FAILURE"
    assert text.startswith("Error copying Edge JSON: Error Domain=NSCocoaErrorDomain ")
    assert mac.path(HOST_FOLDER).read_text() == "mine"


def test_an_external_folder_that_is_a_file_leaves_the_host_manifest_installed(mac):
    mac.path(EDGE).mkdir()
    mac.path(EXTERNAL_FOLDER).write_text("mine")
    level, text = run(mac, "--own", EDGE)[-1]
    assert level == "FAILURE"
    assert text.startswith("Error copying Edge created JSON: Error Domain=NSCocoaErrorDomain ")
    assert mac.path(EXTERNAL_FOLDER).read_text() == "mine"
    assert mac.path(HOST_MANIFEST).is_file()
    assert mac.path(PAYLOAD_DESCRIPTOR).read_bytes() == DESCRIPTOR_TEXT


def test_no_permission_to_create_the_host_folder(mac):
    mac.path(EDGE).mkdir()  # root's
    level, text = run(mac)[-1]
    assert level == "FAILURE"
    assert text.startswith(
        "Error creating Edge Native directory: Error Domain=NSCocoaErrorDomain Code=513 "
    )
    assert list(mac.path(EDGE).iterdir()) == []


def test_no_permission_to_create_the_external_folder(mac):
    mac.path(HOST_FOLDER).mkdir(parents=True)
    messages = run(mac, "--own", HOST_FOLDER)
    level, text = messages[-1]
    assert level == "FAILURE"
    assert text.startswith(
        "Error creating Edge External directory: Error Domain=NSCocoaErrorDomain Code=513 "
    )
    assert mac.path(HOST_MANIFEST).is_file()
    assert mac.path(PAYLOAD_DESCRIPTOR).is_file()
    assert not mac.path(EXTERNAL_FOLDER).exists()


def test_no_permission_to_write_into_the_host_folder(mac):
    mac.path(HOST_FOLDER).mkdir(parents=True)
    level, text = run(mac)[-1]
    assert level == "FAILURE"
    assert text.startswith("Error copying Edge JSON: Error Domain=NSCocoaErrorDomain Code=513 ")
    assert list(mac.path(HOST_FOLDER).iterdir()) == []


def test_no_permission_to_write_into_the_external_folder(mac):
    mac.path(EXTERNAL_FOLDER).mkdir(parents=True)
    mac.path(HOST_FOLDER).mkdir(parents=True)
    level, text = run(mac, "--own", HOST_FOLDER)[-1]
    assert level == "FAILURE"
    assert text.startswith(
        "Error copying Edge created JSON: Error Domain=NSCocoaErrorDomain Code=513 "
    )
    assert list(mac.path(EXTERNAL_FOLDER).iterdir()) == []


def test_a_bundle_that_cannot_be_written_ends_it_without_a_line(mac):
    mac.chown(PAYLOAD, 0, 0)
    mac.path(PAYLOAD).chmod(0o755)
    assert run(mac) == [UNINSTALLED, FOUND, FOUND, UNINSTALLED]
    assert mac.path(HOST_MANIFEST).is_file()
    assert not mac.path(PAYLOAD_DESCRIPTOR).exists()
    assert not mac.path(EXTERNAL_FOLDER).exists()


def test_a_foreign_descriptor_in_a_bundle_that_cannot_be_written_ends_it_without_a_line(mac):
    mac.path(PAYLOAD_DESCRIPTOR).write_text("root's")  # root's file
    mac.chown(PAYLOAD, 0, 0)
    mac.path(PAYLOAD).chmod(0o755)
    assert run(mac) == [UNINSTALLED, FOUND, FOUND, UNINSTALLED]
    assert mac.path(PAYLOAD_DESCRIPTOR).read_text() == "root's"
    assert not mac.path(EXTERNAL_FOLDER).exists()


def test_an_earlier_descriptor_of_the_users_own_is_copied_as_it_is(mac):
    mac.path(PAYLOAD_DESCRIPTOR).write_text("earlier")
    mac.path(PAYLOAD_DESCRIPTOR).chmod(0o600)
    mac.chown(PAYLOAD_DESCRIPTOR, 501, 20)
    mac.chown(PAYLOAD, 0, 0)
    mac.path(PAYLOAD).chmod(0o755)
    assert run(mac)[-1] == INSTALLED
    assert mac.path(DESCRIPTOR).read_text() == "earlier"
    assert edge_lines(mac)[PAYLOAD_DESCRIPTOR][1] == "0777"
    assert edge_lines(mac)[DESCRIPTOR][1] == "0777"


def test_a_read_only_descriptor_in_the_bundle_is_replaced(mac):
    mac.path(PAYLOAD_DESCRIPTOR).write_text("read-only")
    mac.path(PAYLOAD_DESCRIPTOR).chmod(0o444)
    assert run(mac)[-1] == INSTALLED
    assert mac.path(PAYLOAD_DESCRIPTOR).read_bytes() == DESCRIPTOR_TEXT


def test_a_folder_in_place_of_the_descriptor_in_the_bundle_ends_it_without_a_line(mac):
    mac.path(PAYLOAD_DESCRIPTOR).mkdir(mode=0o700)
    mac.path(PAYLOAD_DESCRIPTOR + "/inside").write_text("mine")
    mac.chown(PAYLOAD_DESCRIPTOR, 501, 20)
    before = edge_lines(mac)[PAYLOAD_DESCRIPTOR]
    assert run(mac) == [UNINSTALLED, FOUND, FOUND, UNINSTALLED]
    assert mac.path(PAYLOAD_DESCRIPTOR + "/inside").read_text() == "mine"
    assert edge_lines(mac)[PAYLOAD_DESCRIPTOR] == before


def test_a_link_in_place_of_the_descriptor_in_a_closed_bundle_opens_nothing(mac):
    mac.path(HOME + "/mine").write_text("mine")
    mac.path(HOME + "/mine").chmod(0o600)
    mac.path(PAYLOAD_DESCRIPTOR).symlink_to(HOME + "/mine")
    messages = run(mac, "--own", HOME + "/mine", "--pre", f"chown 0:0 {PAYLOAD}; chmod 755 {PAYLOAD}")
    assert messages == [UNINSTALLED, FOUND, FOUND, UNINSTALLED]
    assert mac.path(HOME + "/mine").stat().st_mode & 0o777 == 0o600
    assert not mac.path(EXTERNAL_FOLDER).exists()


def test_a_link_in_place_of_an_installed_file_is_replaced_and_its_target_kept(mac):
    mac.path(HOST_FOLDER).mkdir(parents=True)
    mac.path(EXTERNAL_FOLDER).mkdir()
    mac.path(HOME + "/mine").write_text("mine")
    mac.path(HOST_MANIFEST).symlink_to(HOME + "/mine")
    mac.path(DESCRIPTOR).symlink_to("/nowhere")
    mac.path(PAYLOAD_DESCRIPTOR).symlink_to(HOME + "/mine")
    assert run(mac, "--own", EDGE)[-1] == INSTALLED
    assert mac.path(HOME + "/mine").read_text() == "mine"
    for path in (HOST_MANIFEST, DESCRIPTOR, PAYLOAD_DESCRIPTOR):
        assert mac.path(path).is_file() and not mac.path(path).is_symlink()
    assert mac.path(PAYLOAD_DESCRIPTOR).read_bytes() == DESCRIPTOR_TEXT


def test_a_folder_in_place_of_an_installed_file_is_removed_with_its_content(mac):
    mac.path(HOST_MANIFEST + "/deep").mkdir(parents=True)
    assert run(mac, "--own", EDGE)[-1] == INSTALLED
    assert mac.path(HOST_MANIFEST).is_file()


def test_a_file_that_cannot_be_removed_makes_the_copy_fail(mac):
    mac.path(HOST_FOLDER).mkdir(parents=True)
    mac.path(HOST_MANIFEST).write_text("root's")
    level, text = run(mac)[-1]
    assert level == "FAILURE"
    assert text.startswith("Error copying Edge JSON: Error Domain=NSCocoaErrorDomain Code=516 ")
    assert mac.path(HOST_MANIFEST).read_text() == "root's"


def test_a_full_disk(mac):
    mac.path(PAYLOAD_MANIFEST).write_bytes(b"x" * 200_000)
    messages = run(mac, "--full", f"{HOME}=65536")
    level, text = messages[-1]
    assert level == "FAILURE"
    assert text.startswith("Error copying Edge JSON: Error Domain=NSCocoaErrorDomain Code=640 ")


def test_a_broken_application_counts_as_none(mac):
    mac.path("/Applications/Microsoft Edge.app/Contents/Info.plist").write_bytes(b"<plist>")
    assert run(mac) == [UNINSTALLED, NOT_FOUND]


def test_a_home_with_percent_signs_is_logged_as_it_is(mac):
    mac.path(HOME).rename(mac.path("/Users/%n%s%20C"))
    mac.path("/Users/%n%s%20C/Library/Application Support/Microsoft Edge").write_text("mine")
    level, text = run(mac, "--home", "/Users/%n%s%20C")[-1]
    assert level == "FAILURE"
    assert text.startswith("Error creating Edge Native directory: ")
    assert "/Users/%n%s%20C/Library" in text
