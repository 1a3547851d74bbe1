"""Faults that a test can make: a script before the program, and disks without room."""

import os

import pytest

from tests.macroot.conftest import sh


def test_pre_runs_as_root_before_the_program(mac, real_users):
    try:
        result = sh(mac, "touch made; ls -d /Library/pre", "--pre",
                    "id -u; mkdir /Library/pre; chmod 500 /Users/alex; chown 0 /Users/alex")
        assert (result.status, result.stdout) == (0, "/Library/pre\n")
        assert result.stderr.startswith("0\n") and "made" in result.stderr
    finally:
        sh(mac, "true", "--pre", "rmdir /Library/pre; chown 501 /Users/alex; chmod 755 /Users/alex")


@pytest.mark.parametrize("content, mode", [
    ("#!/usr/bin/python3\nprint(1 + 1)\n", 0o755),
    ("#!/usr/bin/python3\necho 2\n", 0o644),
    ("echo 2\n", 0o755)])
def test_pre_may_be_a_file(mac, tmp_path, content, mode):
    script = tmp_path / "a script"
    script.write_text(content)
    script.chmod(mode)
    tmp_path.chmod(0o755)
    assert sh(mac, "true", "--pre", script).stderr == "2\n"


def test_a_pre_script_that_fails_ends_the_run(mac):
    result = sh(mac, "echo ran", "--pre", "exit 3")
    assert (result.status, result.stdout) == (70, "")
    assert "status 3" in result.stderr


def test_a_full_disk_has_that_much_room_beside_what_it_holds(mac, namespaces):
    result = sh(mac, "head -c 8192 /dev/zero > a && echo fits; cat Documents/*; "
                     "head -c 1 /dev/zero > b; wc -c < b; rm b", "--full", "/Users/alex=8192")
    assert result.stdout == "fits\nBread\nApples\n0\n"
    assert "No space left on device" in result.stderr
    assert mac.path("/Users/alex/a").stat().st_size == 8192
    mac.remove("/Users/alex/a")


@pytest.mark.parametrize(
    "folder", ["/Users/Shared/Keystrel/Vaults", "/Users/Shared/Keystrel", "/tmp"])
def test_a_disk_may_have_no_room_at_all(mac, namespaces, folder):
    result = sh(mac, f"echo x > {folder}/x || rm {folder}/x", "--full", f"{folder}=0")
    assert "No space left on device" in result.stderr


def test_what_a_disk_holds_is_kept_as_it_is(mac, namespaces):
    mac.path("/Users/alex/gone").mkdir(0o777)
    mac.path("/Users/alex/gone").chmod(0o777)
    mac.path("/Users/alex/gone/file").touch()
    mac.path("/Users/alex/kept").mkdir()
    mac.path("/Users/alex/kept/link").symlink_to("nowhere")
    os.mkfifo(mac.path("/Users/alex/kept/pipe"))
    mac.path("/Users/alex/kept").chmod(0o2701)
    before = mac.manifest()
    sh(mac, "rm -r gone; mkdir made",
       "--full", "/Users/alex=65536", "--full", "/Users/Shared=4096")
    after = mac.manifest()
    assert [line.split("\t")[3] for line in before if line not in after] == [
        "/Users/alex/gone", "/Users/alex/gone/file"]
    assert [line.split("\t")[3] for line in after if line not in before] == ["/Users/alex/made"]
    mac.remove("/Users/alex/kept")
    mac.remove("/Users/alex/made")


def test_a_disk_within_a_disk(mac, namespaces):
    result = sh(mac, "echo 1 > one; echo 2 > Library/two; "
                     "df --output=avail -B1 . Library | tail -n 2",
                "--full", "/Users/alex/Library=12288", "--full", "/Users/alex=8192")
    assert result.stdout.split() == ["4096", "8192"]
    assert mac.path("/Users/alex/Library/two").read_text() == "2\n"
    assert mac.path("/Users/alex/one").read_text() == "1\n"


def test_a_missing_folder_may_be_a_disk_and_goes_when_it_stays_empty(mac, namespaces):
    assert sh(mac, "test -d /Library/disk", "--full", "/Library/disk=4096").status == 0
    assert not mac.path("/Library/disk").exists()
    sh(mac, "/run/macroot/admin 'echo hi > /Library/disk/x'", "--full", "/Library/disk=4096")
    assert mac.path("/Library/disk/x").read_text() == "hi\n"
    mac.remove("/Library/disk")


@pytest.mark.parametrize("text", ["/Users/alex", "alex=5", "/Users/alex=5k", "/Users/alex=-1"])
def test_a_disk_without_a_size_is_refused(mac, text):
    assert sh(mac, "true", "--full", text).status == 2
