"""The run as a whole: it always ends with status 0 and never says a word beyond its log."""

import pytest

from tests.support.mac import Mac


@pytest.mark.parametrize(
    "home",
    [
        "/Users/two words",
        "/Users/100%",
        "/Users/%s%n%@",
        "/Users/Zoë 東京",
        "/Users/quo'te\"s",
        "/Users/~tilde",
    ],
)
def test_any_home_will_do(tmp_path, home):
    mac = Mac.new("typical", tmp_path)
    mac.path("/Users/alex").rename(mac.path(home))
    result = mac.run("--home", home)
    assert (result.status, result.stderr) == (0, "")
    edge = mac.path(home + "/Library/Application Support/Microsoft Edge")
    assert (edge / "NativeMessagingHosts/com.corvendale.kschromena.json").is_file()
    assert (edge / "External Extensions/ljdimbpkaehcfognojlkbmcpiedhfagk.json").is_file()
    assert not mac.path("/Users/alex").exists()


def test_a_home_that_does_not_exist(tmp_path):
    mac = Mac.new("typical", tmp_path)
    result = mac.run("--home", "/Users/nobody/here")
    assert (result.status, result.stderr) == (0, "")
    assert not mac.path("/Users/nobody").exists()


def test_a_home_that_is_read_only(tmp_path):
    mac = Mac.new("typical", tmp_path)
    mac.remove("/Users/alex/Library")
    mac.path("/Users/alex").chmod(0o555)
    result = mac.run()
    assert (result.status, result.stderr) == (0, "")
    assert not mac.path("/Users/alex/Library").exists()


def test_an_empty_machine(tmp_path):
    tree = tmp_path / "mac"
    tree.mkdir()
    mac = Mac(tree)
    result = mac.run()
    assert (result.status, result.stdout, result.stderr) == (0, "", "")


def test_arguments_are_ignored(tmp_path):
    mac = Mac.new("clean", tmp_path)
    result = mac.run(args=("--help", "/etc/passwd", "-NSShowNonLocalizedStrings", "YES"))
    assert (result.status, result.stderr) == (0, "")
