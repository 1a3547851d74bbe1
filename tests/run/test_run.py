"""The run as a whole: it always ends with status 0 and never says a word beyond its log."""

import os

import pytest

from tests.support.mac import Mac


def files_of(mac, folder):
    """Each entry below a folder: its mode, and what it holds or links to."""
    entries = {}
    for path in mac.path(folder).rglob("*"):
        content = os.readlink(path) if path.is_symlink() else path.read_bytes() if path.is_file() else None
        entries[str(path.relative_to(mac.path(folder)))] = (path.lstat().st_mode, content)
    return entries


def others(mac):
    """The manifest of all but homes and logs."""
    return [line for line in mac.manifest() if "\t/Users/" not in line]


HOMES = [
    "two words",
    "100%",
    "%s%n%@",
    "Zoë 東京",
    "quo'te\"s",
    "~tilde",
    # What another system would take for a separator, a mark, or a way up is a letter here.
    "back\\slash",
    "..\\..\\Victim",
    "C;\\alex",
    "\ufeffmarked",
]


def run_at(home, mac):
    """What a run makes of a Mac with that home: the home's files, and all but homes and logs."""
    result = mac.run("--home", home, "--admin", "refuse")
    assert (result.status, result.stderr) == (0, "")
    return files_of(mac, home), others(mac)


@pytest.fixture(scope="module")
def usual(tmp_path_factory):
    """What a run makes of a Mac with the usual home."""
    return run_at("/Users/alex", Mac.new("typical", tmp_path_factory.mktemp("usual")))


@pytest.mark.parametrize("name", HOMES)
def test_any_home_is_treated_alike(tmp_path, usual, name):
    odd = Mac.new("typical", tmp_path)
    odd.path("/Users/alex").rename(odd.path("/Users/" + name))
    assert run_at("/Users/" + name, odd) == usual
    assert {path.name for path in odd.path("/Users").iterdir()} == {name, "Shared"}


PROFILES = "/Users/alex/Library/Application Support/Firefox/Profiles"
CACHES = ["extensions.ini", "extensions.cache", "compreg.dat", "xpti.dat", "extensiondev.rdf"]


@pytest.mark.parametrize("name", ["..\\..\\Victim", "a\\b", "x:y", "C:\\Victim", "\ufeffmarked", "..\\"])
def test_a_profile_of_any_name_is_the_only_one_that_is_cleared(tmp_path, name):
    mac = Mac.new("typical", tmp_path)
    victims = [PROFILES + "/../../Victim", PROFILES + "/a/b", PROFILES + "/../Victim", PROFILES + "/..",
               "/Users/alex/Victim", "/Victim"]
    for folder in [PROFILES + "/" + name, *victims]:
        for cache in CACHES:
            mac.path(folder).mkdir(parents=True, exist_ok=True)
            (mac.path(folder) / cache).write_text("kept")
    result = mac.run("--own", "/Users/alex")
    assert (result.status, result.stderr) == (0, "")
    assert list(mac.path(PROFILES + "/" + name).iterdir()) == []
    for folder in victims:
        for cache in CACHES:
            assert (mac.path(folder) / cache).read_text() == "kept", folder


def test_a_payload_of_odd_names_stays(tmp_path):
    mac = Mac.new("typical", tmp_path)
    payload = mac.path("/Applications/Keystrel.app/Contents/Keystrel/Tools/BExtensions/chrome")
    names = ["..\\edge", "x:y", "\ufeffmarked", "back\\slash"]
    for name in names:
        (payload / name).write_text("kept")
    result = mac.run()
    assert (result.status, result.stderr) == (0, "")
    assert {name: (payload / name).read_text() for name in names} == dict.fromkeys(names, "kept")


HOST_MANIFESTS = [
    "/Library/Google/Chrome/NativeMessagingHosts/com.corvendale.kschromena.json",
    "/Users/alex/Library/Application Support/Microsoft Edge/NativeMessagingHosts/com.corvendale.kschromena.json",
    "/Users/alex/Library/Application Support/Mozilla/NativeMessagingHosts/com.corvendale.ksnative.json",
]


def test_empty_host_manifests_of_a_run_that_was_killed_are_made_whole_by_the_next(tmp_path):
    undisturbed = Mac.new("typical", tmp_path / "undisturbed")
    killed = Mac.new("typical", tmp_path / "killed")
    for mac in (undisturbed, killed):
        for path in HOST_MANIFESTS:
            mac.path(path).parent.mkdir(parents=True, exist_ok=True)
            mac.remove(path)
            if mac is killed:  # as a copy begins
                mac.path(path).touch(mode=0o600)
        folders = [word for path in HOST_MANIFESTS for word in ("--own", path.rpartition("/")[0])]
        result = mac.run("--admin", "refuse", *folders)
        assert (result.status, result.stderr) == (0, "")
    for path in HOST_MANIFESTS:
        assert killed.path(path).stat().st_size > 0, path
    assert [line for line in killed.manifest() if "/logs/" not in line] == [
        line for line in undisturbed.manifest() if "/logs/" not in line]


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
