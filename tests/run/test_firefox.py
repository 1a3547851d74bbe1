"""Firefox in a whole run: the files after it, and the log."""

import hashlib
import io
import re
import shutil
import xml.etree.ElementTree as ElementTree

import pytest

from tests.support import build, log
from tests.support.mac import Mac

HOME = "/Users/alex"
LOCAL = "/Library/Application Support"
USER = HOME + "/Library/Application Support"
MOZILLA = "/Mozilla/Extensions/{ec8030f7-c20a-464f-9b0e-13a3a9e97384}"
PROFILES = USER + "/Firefox/Profiles"
HOST_FOLDER = USER + "/Mozilla/NativeMessagingHosts"
HOST_MANIFEST = HOST_FOLDER + "/com.corvendale.ksnative.json"
EXTENSIONS = "/Applications/Keystrel.app/Contents/Keystrel/Tools/BExtensions"
PAYLOAD_MANIFEST = EXTENSIONS + "/com.corvendale.ksnative.json"
APPLICATION = "/Applications/Firefox.app"
PROGRAM = APPLICATION + "/Contents/MacOS/firefox"
PAGE = "https://www.corvendale.com/keystrel/privacy/firefox"

BUTTON, MAIN, SHORT = (
    "KeystrelButton@corvendale.com",
    "Keystrel@corvendale.com",
    "ks@corvendale.com",
)
CACHES = ("extensions.ini", "extensions.cache", "compreg.dat", "xpti.dat", "extensiondev.rdf")

FOUND = ("INFO", "Application URL is: file:///Applications/Firefox.app/")
NOT_FOUND = ("INFO", "Firefox application not found!")

# An error's description is known by its domain and code and by the path that it is about.
GONE = "Error Domain=NSCocoaErrorDomain Code=4 "
DENIED = "Error Domain=NSCocoaErrorDomain Code=513 "
MISSING_SOURCE = "Error Domain=NSCocoaErrorDomain Code=260 "


def button_missing(base):
    return ("INFO", f"File at: {base}{MOZILLA}/{BUTTON}, not present")


def missing(base, name):
    return ("INFO", f"Can't delete. File not present {base}{MOZILLA}/{name}")


def failed(error):
    return ("FAILURE", " Error uninstalling FFox extension: " + error)


def folder_error(error):
    return ("INFO", "Error deleting FFox extension directory: " + error)


# What the removal says about a base folder that holds nothing, pass by pass.
def main_missing(base):
    return [missing(base, MAIN), missing(base, MAIN), folder_error(GONE)]


def types_missing(base):
    return [missing(base, "js-ctypes"), folder_error(GONE)]


NOTHING_THERE = [
    *map(button_missing, (LOCAL, USER)),
    *main_missing(LOCAL), *main_missing(USER),
    *types_missing(LOCAL), *types_missing(USER),
]


@pytest.fixture
def mac(tmp_path):
    """A Mac on which Firefox has never seen the product."""
    return Mac.new("fresh", tmp_path)


def firefox_messages(mac):
    """What the run logged about Firefox; of an error's description only domain and code."""
    return [
        (level, re.sub(r"(Error Domain=\w+ Code=\d+ ).*", r"\1", text, flags=re.DOTALL))
        for level, text in log.messages(mac.log_text())
        if re.search("Mozilla|FFox|Firefox", text)
    ]


def run(mac, *options, **more):
    result = mac.run(*options, **more)
    assert (result.status, result.stderr) == (0, "")
    return firefox_messages(mac)


def put(mac, path, content):
    mac.path(path).parent.mkdir(parents=True, exist_ok=True)
    mac.path(path).write_bytes(content if isinstance(content, bytes) else content.encode())


def registry(*identifiers, rest=""):
    """A profile's registry with these extensions, each with a record and a list item."""
    entries = "".join(
        f'<RDF:Description RDF:about="urn:mozilla:item:{name}" NS1:version="1">\n'
        f'    <NS1:targetApplication RDF:resource="rdf:#${number}"/>\n  </RDF:Description>\n'
        f'  <RDF:Description RDF:about="rdf:#${number}" NS1:minVersion="1.5"/>\n'
        for number, name in enumerate(identifiers))
    items = "".join(f'    <RDF:li RDF:resource="urn:mozilla:item:{name}"/>\n' for name in identifiers)
    return (
        '<?xml version="1.0"?>\n'
        '<RDF:RDF xmlns:NS1="http://www.mozilla.org/2004/em-rdf#"\n'
        '         xmlns:RDF="http://www.w3.org/1999/02/22-rdf-syntax-ns#">\n'
        f'  {entries}  <RDF:Seq RDF:about="urn:mozilla:item:root">\n{items}  </RDF:Seq>\n{rest}'
        '</RDF:RDF>\n')


def canonical(document):
    """The canonical form, without text of nothing but white space."""
    tree = ElementTree.parse(io.BytesIO(document if isinstance(document, bytes) else document.encode()))
    for element in tree.iter():
        if not (element.text or "").strip():
            element.text = None
        if not (element.tail or "").strip():
            element.tail = None
    return ElementTree.canonicalize(ElementTree.tostring(tree.getroot()))


def entries(mac, *folders):
    """The manifest's lines below some folders, as path -> (type, mode, owner)."""
    lines = [line.split("\t") for line in mac.manifest()]
    return {line[3]: tuple(line[:3]) for line in lines if line[3].startswith(folders)}


def test_the_host_manifest_is_installed_for_the_user(mac):
    before = entries(mac, "/")
    messages = run(mac, "--admin", "refuse")  # Chrome's scripts would make folders of Firefox's too
    assert messages == [*NOTHING_THERE, FOUND, FOUND, *NOTHING_THERE]
    assert mac.path(HOST_MANIFEST).read_bytes() == mac.path(PAYLOAD_MANIFEST).read_bytes()

    after = entries(mac, USER + "/Mozilla", USER + "/Firefox", LOCAL + "/Mozilla", APPLICATION, EXTENSIONS + "/com.")
    # The folder of extensions stays empty. The folder of hosts is from another product.
    assert {path: after[path] for path in set(after) - set(before)} == {
        USER + "/Mozilla/Extensions": ("d", "0777", "501:20"),
        USER + MOZILLA: ("d", "0777", "501:20"),
        HOST_MANIFEST: ("f", after[PAYLOAD_MANIFEST][1], "501:20"),
    }
    assert {path: before[path] for path in before if path in after} == {
        path: after[path] for path in before if path in after}


def test_everything_of_earlier_versions_is_removed(tmp_path):
    mac = Mac.new("typical", tmp_path)
    profile = PROFILES + "/ab12cd34.default"
    other = PROFILES + "/x9y8z7w6.Zo\u00eb 100%"
    for name in (profile, other):
        put(mac, name + "/extensions.rdf", registry("weather@example.org", BUTTON, "radio@example.org", MAIN, SHORT))
        for cache in CACHES:
            put(mac, f"{name}/{cache}", "made anew by Firefox")
    kept = {path: mac.path(path).read_bytes() for path in (profile + "/prefs.js", other + "/places.sqlite")}
    messages = run(mac, "--own", USER)

    # The computer's folder is root's: nothing of it can be removed, and every attempt says so.
    local_passes = [failed(DENIED), failed(DENIED), folder_error(DENIED)]
    local_types = [failed(DENIED), folder_error(DENIED)]
    assert messages == [
        ("INFO", DENIED), *local_passes, *local_types, *types_missing(USER),
        FOUND, FOUND,
        ("INFO", DENIED), button_missing(USER), *local_passes, *main_missing(USER),
        *local_types, *types_missing(USER),
    ]
    assert sorted(entry.name for entry in mac.path(LOCAL + MOZILLA).iterdir()) == sorted(
        [BUTTON, MAIN, SHORT, "js-ctypes"])
    assert list(mac.path(USER + MOZILLA).iterdir()) == []
    assert mac.path(USER + "/Mozilla/Extensions/other/install.rdf").read_text() == "other\n"

    expected = registry("weather@example.org", "radio@example.org").replace('rdf:#$1', 'rdf:#$2')
    for name in (profile, other):
        assert canonical(mac.path(name + "/extensions.rdf").read_bytes()) == canonical(expected)
        assert not any(mac.path(f"{name}/{cache}").exists() for cache in CACHES)
    assert {path: mac.path(path).read_bytes() for path in kept} == kept
    assert mac.path(HOST_MANIFEST).read_bytes() == mac.path(PAYLOAD_MANIFEST).read_bytes()


def test_the_privacy_page_arrives_in_firefox(mac):
    put(mac, PROGRAM, f"#!/bin/sh\nprintf '<%s>' \"$@\" >{HOME}/asked.part\nmv {HOME}/asked.part {HOME}/asked\n")
    mac.path(PROGRAM).chmod(0o755)
    # Nobody waits for Firefox, so the Mac is kept on until it has written what it was asked.
    result = mac.run(program=build.program("measured-run"), args=(HOME + "/asked",))
    assert (result.status, result.stderr) == (0, "")
    assert mac.path(HOME + "/asked").read_text() == f"<{PAGE}>"


def test_without_firefox_everything_is_removed_and_nothing_installed(mac):
    shutil.rmtree(mac.path(APPLICATION))
    for name in (BUTTON, MAIN, SHORT, "js-ctypes"):
        put(mac, f"{USER}{MOZILLA}/{name}/install.rdf", name)
    put(mac, HOST_MANIFEST, "old")
    put(mac, PROFILES + "/ab12cd34.default/extensions.rdf", registry(SHORT))
    put(mac, PROFILES + "/ab12cd34.default/xpti.dat", "old")
    messages = run(mac, "--own", USER)
    assert messages == [button_missing(LOCAL), *main_missing(LOCAL), *types_missing(LOCAL),
                        *types_missing(USER), NOT_FOUND]
    assert not mac.path(USER + MOZILLA).exists()
    assert not mac.path(HOST_MANIFEST).exists()
    assert mac.path(HOST_FOLDER).is_dir()
    assert not mac.path(PROFILES + "/ab12cd34.default/xpti.dat").exists()
    assert canonical(mac.path(PROFILES + "/ab12cd34.default/extensions.rdf").read_bytes()) == canonical(registry())


def test_a_missing_payload_is_a_failure(mac):
    mac.remove(PAYLOAD_MANIFEST)
    messages = run(mac)
    assert messages[-1] == ("FAILURE", "Error installing FFox: " + MISSING_SOURCE)
    assert messages[:-1] == [*NOTHING_THERE, FOUND, FOUND, *NOTHING_THERE]
    assert not mac.path(HOST_MANIFEST).exists()
    assert list(mac.path(USER + MOZILLA).iterdir()) == []


def test_no_profiles_folder(mac):
    mac.remove(USER + "/Firefox")
    assert run(mac) == [*NOTHING_THERE, FOUND, FOUND, *NOTHING_THERE]
    assert not mac.path(USER + "/Firefox").exists()


def test_profiles_of_any_name_and_stray_files(mac):
    names = ["two words", "100%n%s%20", "Zo\u00eb \u6771\u4eac", "quo'te\"s", "#?&;", "~", "..x", "a\nb"]
    for name in names:
        put(mac, f"{PROFILES}/{name}/extensions.rdf", registry(MAIN))
        put(mac, f"{PROFILES}/{name}/compreg.dat", "old")
    put(mac, PROFILES + "/extensions.rdf", registry(MAIN))  # a profile's name, but a plain file
    put(mac, PROFILES + "/.DS_Store", b"\0\0\0\1Bud1")
    mac.path(PROFILES + "/nowhere").symlink_to("/nowhere")
    put(mac, HOME + "/elsewhere/extensions.rdf", registry(MAIN))
    mac.path(PROFILES + "/link").symlink_to(HOME + "/elsewhere")
    assert run(mac, "--own", HOME) == [*NOTHING_THERE, FOUND, FOUND, *NOTHING_THERE]
    for name in (*names, "link"):
        content = mac.path(f"{PROFILES}/{name}").resolve() if name != "link" else mac.path(HOME + "/elsewhere")
        assert canonical((content / "extensions.rdf").read_bytes()) == canonical(registry())
        assert not (content / "compreg.dat").exists()
    assert mac.path(PROFILES + "/extensions.rdf").read_text() == registry(MAIN)
    assert mac.path(PROFILES + "/.DS_Store").read_bytes() == b"\0\0\0\1Bud1"


def test_200_profiles(mac):
    text = registry("weather@example.org", SHORT)
    for number in range(200):
        put(mac, f"{PROFILES}/{number}.default/extensions.rdf", text)
        put(mac, f"{PROFILES}/{number}.default/extensions.cache", "old")
    run(mac, "--own", PROFILES)
    left = {hashlib.sha256(mac.path(f"{PROFILES}/{number}.default/extensions.rdf").read_bytes()).digest()
            for number in range(200)}
    assert len(left) == 1
    assert canonical(mac.path(PROFILES + "/7.default/extensions.rdf").read_bytes()) == canonical(
        registry("weather@example.org"))
    assert not list(mac.path(PROFILES).glob("*/extensions.cache"))


def test_a_link_in_place_of_the_application_folder(mac):
    put(mac, HOME + "/elsewhere/mine", "mine")
    mac.path(USER + "/Mozilla/Extensions").mkdir()
    mac.path(USER + MOZILLA).symlink_to(HOME + "/elsewhere")
    run(mac, "--own", HOME)
    assert mac.path(USER + MOZILLA).is_dir() and not mac.path(USER + MOZILLA).is_symlink()
    assert list(mac.path(USER + MOZILLA).iterdir()) == []
    assert mac.path(HOME + "/elsewhere/mine").read_text() == "mine"


def test_folders_of_another_user_stay(mac):
    for name in (BUTTON, MAIN, SHORT):
        put(mac, f"{USER}{MOZILLA}/{name}/install.rdf", name)  # root's, as all that a test puts
    messages = run(mac)
    denied = [failed(DENIED), failed(DENIED), folder_error(DENIED)]
    user_types = [missing(USER, "js-ctypes"), folder_error(DENIED)]
    removal = [button_missing(LOCAL), ("INFO", DENIED), *main_missing(LOCAL), *denied,
               *types_missing(LOCAL), *user_types]
    assert messages == [*removal, FOUND, FOUND, *removal]
    assert mac.path(HOST_MANIFEST).is_file()
    assert len(list(mac.path(USER + MOZILLA).iterdir())) == 3


def test_a_file_in_place_of_the_browsers_folder(mac):
    mac.remove(USER + "/Mozilla")
    put(mac, USER + "/Mozilla", "mine")
    messages = run(mac)
    assert [text for level, text in messages if level == "FAILURE"] == [
        "Error installing FFox: Error Domain=NSCocoaErrorDomain Code=512 "] * 2
    assert mac.path(USER + "/Mozilla").read_text() == "mine"


def test_a_registry_that_is_root_s_is_replaced_in_the_users_own_folder(mac):
    put(mac, PROFILES + "/ab12cd34.default/extensions.rdf", registry(MAIN))
    run(mac)
    assert canonical(mac.path(PROFILES + "/ab12cd34.default/extensions.rdf").read_bytes()) == canonical(registry())


@pytest.mark.large
def test_the_memory_for_a_registry_of_2_megabytes(mac):
    at_rest, _ = mac.measured_run("--own", PROFILES)
    names = [f"extension{number}@example.org" if number % 10 else SHORT for number in range(2000)]
    rest = "".join(f'<RDF:Description RDF:about="urn:data:{number}" NS1:data="{"x" * 650}"/>\n'
                   for number in range(2000))
    text = registry(*names, rest=rest)
    assert 2e6 < len(text) < 2.2e6
    put(mac, PROFILES + "/ab12cd34.default/extensions.rdf", text)
    peak, _ = mac.measured_run("--own", PROFILES)
    print(f"{(peak - at_rest) / len(text):.1f} times in memory")
    # AddressSanitizer keeps what is freed; scripts/test --all measures the build for people.
    assert build.is_sanitized() or peak - at_rest < 30 * len(text)
    assert SHORT not in mac.path(PROFILES + "/ab12cd34.default/extensions.rdf").read_text()
