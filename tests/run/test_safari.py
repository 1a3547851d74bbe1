"""Safari in a whole run: its files and its keychain item after it, and the log.

A run removes twice, once by itself and once on the way to installing, so what each removal takes is
seen best in tests/browsers/SafariInstallTest.mm.
"""

import datetime
import os
import plistlib
import re
import struct
import subprocess
import threading

import pytest

from tests.support import build, log
from tests.support.mac import Mac

LIBRARY = "/Users/alex/Library"
PREFERENCES_FOLDER = LIBRARY + "/Preferences"
PREFERENCES = PREFERENCES_FOLDER + "/com.apple.Safari.plist"
EXTENSIONS = LIBRARY + "/Safari/Extensions"
REGISTRY = EXTENSIONS + "/Extensions.plist"
BUTTON = EXTENSIONS + "/Keystrel Button.safariextz"
CACHE = LIBRARY + "/Caches/com.apple.Safari/Extensions"
PLUG_INS = LIBRARY + "/Internet Plug-Ins"
PLUG_IN_32 = PLUG_INS + "/KeystrelSafari32.webplugin"
PLUG_IN_64 = PLUG_INS + "/KeystrelSafari64.webplugin"

LIST = "Installed Extensions"
NAME = "Archive File Name"
TOOLBAR = "NSToolbar Configuration BrowserWindowToolbarIdentifier"
ITEMS = "TB Item Identifiers"
BUTTON_ITEM = "com.corvendale.keystrel.button.safari-7QJX2RM5TB ksbutton"
KEYCHAIN_ITEM = "Safari Extensions List"
OURS = "Keystrel.safariextz"
OUR_BUTTON = "Keystrel Button.safariextz"
FOREIGN = "Weather.safariextz"

# The messages of a removal.
NO_PLUG_INS = [
    ("WARNING", f"Couldn't delete. File not present: {path}") for path in (PLUG_IN_32, PLUG_IN_64)
]
NO_BUTTON = [("INFO", f"Can't delete, file not present {BUTTON}")]
CLEARED = ("INFO", "Error clearing files cache: (null)")
EMPTY_CACHE = ("WARNING", "Clear CacheError: (null)")
NO_REGISTRY = ("FAILURE", "Missing Extensions.plist.")
NO_REGISTRY_FOR_BUTTON = ("FAILURE", "missing Extensions.plist")
NO_PREFERENCES = ("WARNING", "Missing com.apple.Safari.plist")
NO_PREFERENCES_FOR_BUTTON = ("FAILURE", "Missing com.apple.Safari.plist")
NO_ITEM = [("INFO", "Extension already removed!")]
DONE = [("INFO", "Safari uninstalled successfully.")]

SAFARI_TEXTS = re.compile(
    "|".join(
        [
            r"Couldn't delete\. File not present: ",
            r"Error deleting file: ",
            r"Clear CacheError: ",
            r"Error clearing files cache: ",
            r"Can't delete, file not present ",
            r"[Mm]issing Extensions\.plist",
            r"Missing com\.apple\.Safari\.plist",
            r"Error reading plist: ",
            r"Error writing to file: ",
            r"Fail to copy files: ",
            r"Error .* writting to file: ",
            r"Error Domain=.*com\.apple\.Safari\.plist",
            r"Extension already removed!",
            r"Couldn't convert with error: ",
            r"Safari uninstalled successfully\.",
        ]
    ),
    re.DOTALL,
)
BETWEEN = ("INFO", "Edge extension uninstalled!")  # between Safari's removal and its installation


def removal(
    plug_ins=NO_PLUG_INS,
    extension_cache=(),
    button=NO_BUTTON,
    button_cache=(),
    button_lists=(),
    autofill=(),
    registry=(),
    keychain=NO_ITEM,
    done=DONE,
):
    """The messages of one removal, in the order of its steps; as given, of a clean machine."""
    steps = (plug_ins, extension_cache, button, button_cache, button_lists, autofill, registry)
    return [message for step in (*steps, keychain, done) for message in step]


def error(level, start, code, end=""):
    """A message that ends with an error's description; see `shown`."""
    return (level, f"{start}Error Domain=NSCocoaErrorDomain Code={code}{end}")


def shown(message):
    """A message, of an error's description only domain and code."""
    level, text = message
    return level, re.sub(
        r'(Error Domain=NSCocoaErrorDomain Code=\d+) ".*?(?= writting to file: |$)',
        r"\1",
        text,
        flags=re.DOTALL,
    )


def run(mac, *options):
    """The messages about Safari: of the removal, and of the installation."""
    result = mac.run(*options)
    assert (result.status, result.stderr) == (0, "")
    messages = log.messages(mac.log_text())
    middle = messages.index(BETWEEN)
    parts = (messages[:middle], messages[middle:])
    return tuple(
        [shown(message) for message in part if SAFARI_TEXTS.match(message[1])] for part in parts
    )


@pytest.fixture
def mac(tmp_path):
    """A Mac on which the product never was."""
    return Mac.new("clean", tmp_path)


@pytest.fixture
def typical(tmp_path):
    """A Mac with every remnant."""
    return Mac.new("typical", tmp_path)


def write(mac, path, content, form=plistlib.FMT_BINARY):
    """Makes alex's file of bytes, or of a property list."""
    if not isinstance(content, bytes):
        content = plistlib.dumps(content, fmt=form)
    file = mac.path(path)
    file.unlink(missing_ok=True)
    file.write_bytes(content)
    file.chmod(0o644)
    mac.chown(path, 501, 20)


def make_folder(mac, path):
    mac.path(path).mkdir()
    mac.chown(path, 501, 20)


def read(mac, path):
    """What a binary property list holds."""
    content = mac.path(path).read_bytes()
    assert content.startswith(b"bplist00")
    return plistlib.loads(content)


def entry(name, **more):
    return {NAME: name, "Enabled": True, **more}


def names(mac):
    return [each[NAME] for each in read(mac, REGISTRY)[LIST]]


def mode(mac, path):
    return mac.path(path).stat().st_mode & 0o777


# ---- the whole


def test_every_remnant_goes_and_all_else_stays(typical, tmp_path):
    keychain = tmp_path / "keychain"
    stored = {LIST: [entry(OURS), entry(OUR_BUTTON), entry(FOREIGN)], "Version": 1}
    items = {KEYCHAIN_ITEM: plistlib.dumps(stored), "Mail": b"secret"}
    keychain.write_bytes(plistlib.dumps(items))
    registry = read(typical, REGISTRY)
    preferences = read(typical, PREFERENCES)
    before = {line.split("\t")[3]: line for line in typical.manifest()}

    removed, installed = run(typical, "--keychain", keychain)
    assert removed == removal(
        plug_ins=(), extension_cache=[CLEARED] * 2, button=(), keychain=(), button_cache=()
    )
    assert installed == removal(keychain=())

    registry[LIST] = [each for each in registry[LIST] if each[NAME] == FOREIGN]
    preferences[TOOLBAR][ITEMS].remove(BUTTON_ITEM)
    preferences["AutoFillPasswords"] = "1"
    assert read(typical, REGISTRY) == registry
    assert read(typical, PREFERENCES) == preferences
    items[KEYCHAIN_ITEM] = plistlib.dumps(
        {LIST: [entry(FOREIGN)], "Version": 1}, fmt=plistlib.FMT_BINARY
    )
    left = plistlib.loads(keychain.read_bytes())
    assert left.keys() == items.keys() and left["Mail"] == b"secret"
    assert left[KEYCHAIN_ITEM].startswith(b"bplist00")
    assert plistlib.loads(left[KEYCHAIN_ITEM]) == {LIST: [entry(FOREIGN)], "Version": 1}

    after = {line.split("\t")[3]: line for line in typical.manifest()}
    gone = {path for path in set(before) - set(after) if "afari" in path}
    assert gone == {
        BUTTON,
        *(path for path in before if path.startswith((PLUG_IN_32, PLUG_IN_64))),
        *(path for path in before if path.startswith(CACHE + "/Keystrel")),
    }
    changed = {path for path in set(before) & set(after) if before[path] != after[path]}
    assert {path for path in changed if "afari" in path} == {REGISTRY, PREFERENCES}


def test_a_mac_without_a_remnant(mac):
    assert run(mac) == (removal(), removal())
    assert names(mac) == [FOREIGN]
    assert read(mac, PREFERENCES)["AutoFillPasswords"] == "1"


def test_no_trace_of_safari_at_all(mac):
    for path in (EXTENSIONS, CACHE, PREFERENCES):
        mac.remove(path)
    missing = [error("WARNING", "Clear CacheError: ", 260)]
    expected = removal(
        extension_cache=missing,
        button_cache=missing,
        button_lists=[NO_REGISTRY_FOR_BUTTON],
        autofill=[NO_PREFERENCES],
        registry=[NO_REGISTRY],
        keychain=(),
        done=(),
    )
    assert run(mac) == (expected, expected + [NO_PREFERENCES])
    assert not mac.path(EXTENSIONS).exists()
    assert not mac.path(PREFERENCES).exists()


def test_a_home_with_percent_signs_is_logged_as_it_is(mac):
    home = "/Users/%n%s 100% Zoë"
    mac.path("/Users/alex").rename(mac.path(home))
    expected = [
        (level, text.replace("/Users/alex", home)) for level, text in removal()
    ]
    assert run(mac, "--home", home) == (expected, expected)


# ---- the plug-ins and the button's archive


def test_remnants_that_cannot_be_removed(typical):
    for path in (PLUG_INS, EXTENSIONS):
        typical.path(path).chmod(0o555)
    refused = [error("WARNING", "Error deleting file: ", 513)]
    expected = removal(
        plug_ins=refused * 2,
        extension_cache=[CLEARED] * 2,
        button=refused,
        button_lists=[error("FAILURE", "Fail to copy files: ", 513)],
        registry=[error("FAILURE", "Error ", 513, f" writting to file: {REGISTRY}")],
    )
    registry = typical.path(REGISTRY).read_bytes()
    removed, installed = run(typical)
    assert removed == expected
    assert installed == [message for message in expected if message != CLEARED]
    assert typical.path(REGISTRY).read_bytes() == registry
    assert typical.path(BUTTON).is_file() and typical.path(PLUG_IN_64).is_dir()
    assert BUTTON_ITEM not in read(typical, PREFERENCES)[TOOLBAR][ITEMS]


def test_plug_ins_may_be_files_and_a_dangling_link_counts_as_absent(mac):
    make_folder(mac, PLUG_INS)
    write(mac, PLUG_IN_32, b"a file")
    mac.path(PLUG_IN_64).symlink_to("/nowhere")
    removed, installed = run(mac)
    assert removed == removal(plug_ins=NO_PLUG_INS[1:])
    assert installed == removal()
    assert [each.name for each in mac.path(PLUG_INS).iterdir()] == ["KeystrelSafari64.webplugin"]


# ---- the cache


def test_every_cached_entry_with_the_archives_name_goes(mac):
    for name in ("Keystrel", "Keystrel Button", "KeystrelOld.safariextension", "keystrel", "My Keystrel"):
        make_folder(mac, f"{CACHE}/{name}")
        write(mac, f"{CACHE}/{name}/Info.plist", b"inside")
    write(mac, f"{CACHE}/Keystrel.cache", b"a file")
    mac.path(f"{CACHE}/Keystrel link").symlink_to(LIBRARY)
    assert run(mac) == (removal(extension_cache=[CLEARED] * 5), removal())
    assert sorted(each.name for each in mac.path(CACHE).iterdir()) == [
        "My Keystrel",
        "Weather.safariextension",
        "keystrel",
    ]
    assert mac.path(LIBRARY).is_dir()


def test_an_empty_cache_is_warned_about(mac):
    mac.remove(f"{CACHE}/Weather.safariextension")
    expected = removal(extension_cache=[EMPTY_CACHE], button_cache=[EMPTY_CACHE])
    assert run(mac) == (expected, expected)


def test_a_cache_that_becomes_empty_is_warned_about_next_time(mac):
    mac.remove(f"{CACHE}/Weather.safariextension")
    write(mac, f"{CACHE}/Keystrel Button.x", b"")
    assert run(mac) == (
        removal(extension_cache=[CLEARED], button_cache=[EMPTY_CACHE]),
        removal(extension_cache=[EMPTY_CACHE], button_cache=[EMPTY_CACHE]),
    )


def test_a_file_in_the_place_of_the_cache(mac):
    mac.remove(CACHE)
    write(mac, CACHE, b"mine")
    refused = [error("WARNING", "Clear CacheError: ", 256)]
    expected = removal(extension_cache=refused, button_cache=refused)
    assert run(mac) == (expected, expected)
    assert mac.path(CACHE).read_bytes() == b"mine"


def test_cached_entries_that_cannot_be_removed(mac):
    """Root's folder with something in it, and a file beside it that can."""
    mac.path(f"{CACHE}/Keystrel Button").mkdir()
    mac.path(f"{CACHE}/Keystrel Button/inside").write_bytes(b"root's")
    write(mac, f"{CACHE}/Keystrel.cache", b"")
    kept = error("INFO", "Error clearing files cache: ", 513)
    assert run(mac) == (
        removal(extension_cache=[kept, CLEARED], button_cache=[kept]),
        removal(extension_cache=[kept], button_cache=[kept]),
    )
    assert mac.path(f"{CACHE}/Keystrel Button/inside").is_file()


def test_a_cache_that_cannot_be_listed(mac):
    mac.path(CACHE).chmod(0)
    refused = [error("WARNING", "Clear CacheError: ", 257)]
    expected = removal(extension_cache=refused, button_cache=refused)
    assert run(mac) == (expected, expected)


# ---- the registry


@pytest.mark.parametrize("form", [plistlib.FMT_XML, plistlib.FMT_BINARY])
def test_the_registry_is_written_in_binary_whatever_it_was(mac, form):
    write(mac, REGISTRY, {LIST: [entry(FOREIGN), entry(OURS)], "Version": 1}, form)
    mac.path(REGISTRY).chmod(0o600)
    assert run(mac) == (removal(), removal())
    assert mode(mac, REGISTRY) == 0o600
    mac.path(REGISTRY).chmod(0o644)
    assert read(mac, REGISTRY) == {LIST: [entry(FOREIGN)], "Version": 1}


@pytest.mark.parametrize(
    "before, after",
    [
        # Each removal takes the last button, then the last entry that begins like the extension.
        ([OURS, OUR_BUTTON], []),
        ([OUR_BUTTON, OURS], []),
        (["Keystrel1", "Keystrel2", "Keystrel3"], ["Keystrel1"]),
        (["Keystrel1", "Keystrel Button1", "Keystrel Button2"], []),
        (["Keystrel1", "Keystrel2", FOREIGN, "Keystrel Button1"], [FOREIGN]),
        ([*(f"Keystrel Button{i}" for i in range(1, 5)), "Keystrel1"], ["Keystrel Button1"]),
        (["Keystrel1", *(f"Keystrel Button{i}" for i in range(4))], ["Keystrel1"]),
        ([OURS, FOREIGN, OURS, OURS], [FOREIGN]),
        (["keystrel.safariextz", " Keystrel.safariextz", "My Keystrel"], None),
        ([], None),
    ],
)
def test_what_two_removals_take(mac, before, after):
    write(mac, REGISTRY, {LIST: [entry(name) for name in before]})
    assert run(mac) == (removal(), removal())
    assert names(mac) == (before if after is None else after)


def test_equality_of_entries_looks_at_everything_but_the_order(mac):
    """Equal entries go together, whatever their keys' order; any difference keeps an entry."""
    last = {NAME: OURS, "Paths": ["a", "b"], "When": datetime.datetime(2020, 1, 2)}
    same = dict(reversed(last.items()))
    others = [
        {**last, "Paths": ["b", "a"]},
        {**last, "When": datetime.datetime(2020, 1, 3)},
        {**last, "More": b""},
        {NAME: OURS},
    ]
    content = plistlib.dumps({LIST: [same, *others, last]}, sort_keys=False)
    write(mac, REGISTRY, content)
    assert run(mac) == (removal(), removal())
    assert read(mac, REGISTRY)[LIST] == others[:-1]


WRONG_REGISTRIES = {
    "no key": {"Version": 1},
    "list a text": {LIST: OURS},
    "list a dictionary": {LIST: {OURS: entry(OURS)}},
    "list a number": {LIST: 7},
    "entries of other types": {LIST: [OURS, 7, 1.5, True, b"x", [OURS], [entry(OURS)], {}]},
    "names that are no text": {
        LIST: [{NAME: value} for value in (7, True, 2.5, b"Keystrel", [OURS], {NAME: OURS})]
    },
    "empty": {},
    "another key": {"installed extensions": [entry(OURS)]},
}


@pytest.mark.parametrize("content", WRONG_REGISTRIES.values(), ids=WRONG_REGISTRIES)
def test_what_does_not_match_is_written_back_as_it_is(mac, content):
    write(mac, REGISTRY, content, plistlib.FMT_XML)
    assert run(mac) == (removal(), removal())
    assert read(mac, REGISTRY) == content


@pytest.mark.parametrize("content", [[entry(OURS)], OURS, 7], ids=["array", "text", "number"])
def test_a_registry_that_is_no_dictionary_keeps_its_bytes(mac, content):
    write(mac, REGISTRY, content, plistlib.FMT_XML)
    before = mac.path(REGISTRY).read_bytes()
    assert run(mac) == (removal(), removal())
    assert mac.path(REGISTRY).read_bytes() == before


def test_entries_of_other_types_hide_none_of_ours(mac):
    others = [7, {NAME: 7}, OURS, {}]
    write(mac, REGISTRY, {LIST: [7, entry(OURS), {NAME: 7}, OURS, {}]})
    run(mac)
    assert read(mac, REGISTRY)[LIST] == others


def test_a_registry_that_cannot_be_read(mac):
    mac.path(REGISTRY).chmod(0)
    content = mac.path(REGISTRY).read_bytes()
    expected = removal(
        button_lists=[NO_REGISTRY_FOR_BUTTON], registry=[NO_REGISTRY], keychain=(), done=()
    )
    assert run(mac) == (expected, expected)
    assert mac.path(REGISTRY).read_bytes() == content
    assert read(mac, PREFERENCES)["AutoFillPasswords"] == "1"


def test_a_folder_in_the_place_of_the_registry(mac):
    mac.remove(REGISTRY)
    mac.path(REGISTRY).mkdir()
    removed, _ = run(mac)
    assert removed[-2:] == [NO_REGISTRY_FOR_BUTTON, NO_REGISTRY]


def test_without_a_registry_the_keychain_and_the_toolbar_are_not_touched(typical, tmp_path):
    keychain = tmp_path / "keychain"
    items = {KEYCHAIN_ITEM: plistlib.dumps({LIST: [entry(OURS)]})}
    keychain.write_bytes(plistlib.dumps(items))
    typical.remove(REGISTRY)
    removed, installed = run(typical, "--keychain", keychain)
    assert removed[-2:] == installed[-2:] == [NO_REGISTRY_FOR_BUTTON, NO_REGISTRY]
    assert plistlib.loads(keychain.read_bytes()) == items
    preferences = read(typical, PREFERENCES)
    assert BUTTON_ITEM in preferences[TOOLBAR][ITEMS]
    assert preferences["AutoFillPasswords"] == "1"


NO_LISTS = {
    "empty": b"",
    "binary": b"bplist00\xff",
    "XML": b"<plist><dict>",
    "UTF-16": b"\xff\xfe\0",
    "zeros": bytes(500),
}


@pytest.mark.parametrize("content", NO_LISTS.values(), ids=NO_LISTS)
def test_a_registry_that_is_no_property_list_keeps_its_bytes(mac, content):
    write(mac, REGISTRY, content)
    assert run(mac) == (removal(), removal())
    assert mac.path(REGISTRY).read_bytes() == content


# ---- the preferences


def test_everything_else_in_the_preferences_stays_exactly(mac):
    """Types, dates to the last bit, integers of all sizes, references of keyed archives."""
    date = 700000000.1234567
    kept = {
        "text": "Zoë 東京 \U0001f511 e\u0301 \u00e9",
        "empty": "",
        "integers": [0, 1, 255, 256, 65536, 2**31, 2**63 - 1, 2**63, 2**64 - 1, -1, -(2**63)],
        "numbers": [True, False, 1, 0, 1.0, 0.0, 0.1, 1e300, float("inf")],
        "data": [b"", bytes(range(256))],
        "dates": [datetime.datetime(1, 1, 1), datetime.datetime(2001, 1, 1)],
        "references": [plistlib.UID(0), plistlib.UID(65536), plistlib.UID(2**32 - 1)],
        "nested": {"a": [[], {}, {"b": [{"c": "d"}]}]},
        "": "an empty key",
    }
    marked = {**kept, "exact date": datetime.datetime(1999, 9, 9)}
    content = plistlib.dumps(marked, fmt=plistlib.FMT_BINARY)
    mark = b"\x33" + struct.pack(">d", (datetime.datetime(1999, 9, 9) - datetime.datetime(2001, 1, 1)).total_seconds())
    assert content.count(mark) == 1
    write(mac, PREFERENCES, content.replace(mark, b"\x33" + struct.pack(">d", date)))
    assert run(mac) == (removal(), removal())
    assert b"\x33" + struct.pack(">d", date) in mac.path(PREFERENCES).read_bytes()
    result = read(mac, PREFERENCES)
    assert repr(result.pop("AutoFillPasswords")) == "'1'"
    del result["exact date"]
    assert repr(sorted(result.items())) == repr(sorted(kept.items()))  # repr: 1 is not True or 1.0


def test_other_tools_read_what_was_written(mac):
    write(mac, PREFERENCES, {"HomePage": "http://example.org/", "AutoFillPasswords": False})
    run(mac)
    command = ["plistutil", "-i", mac.path(PREFERENCES), "-f", "xml"]
    xml = subprocess.run(command, check=True, capture_output=True).stdout
    subprocess.run(["xmllint", "--noout", "--nonet", "-"], input=xml, check=True)
    assert plistlib.loads(xml) == {"HomePage": "http://example.org/", "AutoFillPasswords": "1"}


@pytest.mark.parametrize("form", [plistlib.FMT_XML, plistlib.FMT_BINARY])
def test_the_button_leaves_the_toolbar(mac, form):
    items = ["Back", BUTTON_ITEM, "Input", BUTTON_ITEM, BUTTON_ITEM.upper(), 7, [BUTTON_ITEM]]
    write(mac, PREFERENCES, {TOOLBAR: {ITEMS: items, "TB Display Mode": 2}}, form)
    assert run(mac) == (removal(), removal())
    assert read(mac, PREFERENCES) == {
        TOOLBAR: {ITEMS: ["Back", "Input", *items[4:]], "TB Display Mode": 2},
        "AutoFillPasswords": "1",
    }


WRONG_TOOLBARS = {
    "no toolbar": {"a": 1},
    "toolbar a text": {TOOLBAR: BUTTON_ITEM},
    "toolbar an array": {TOOLBAR: [BUTTON_ITEM]},
    "no list": {TOOLBAR: {"TB Display Mode": 2}},
    "list a text": {TOOLBAR: {ITEMS: BUTTON_ITEM}},
    "list a dictionary": {TOOLBAR: {ITEMS: {BUTTON_ITEM: BUTTON_ITEM}}},
    "list empty": {TOOLBAR: {ITEMS: []}},
    "AutoFill a dictionary": {"AutoFillPasswords": {"1": "1"}},
}


@pytest.mark.parametrize("content", WRONG_TOOLBARS.values(), ids=WRONG_TOOLBARS)
def test_toolbars_without_our_button_stay(mac, content):
    write(mac, PREFERENCES, content, plistlib.FMT_XML)
    assert run(mac) == (removal(), removal())
    assert read(mac, PREFERENCES) == {**content, "AutoFillPasswords": "1"}


@pytest.mark.parametrize("content", [["AutoFillPasswords"], "AutoFillPasswords", 7])
def test_preferences_that_are_no_dictionary_stay_as_they_are(mac, content):
    write(mac, PREFERENCES, content, plistlib.FMT_XML)
    before = mac.path(PREFERENCES).read_bytes()
    assert run(mac) == (removal(), removal())
    assert mac.path(PREFERENCES).read_bytes() == before


@pytest.mark.parametrize("content", NO_LISTS.values(), ids=NO_LISTS)
def test_preferences_that_are_no_property_list_keep_their_bytes(mac, content):
    write(mac, PREFERENCES, content)
    expected = removal(button_lists=[error("FAILURE", "Error reading plist: ", 3840)])
    assert run(mac) == (expected, expected)
    assert mac.path(PREFERENCES).read_bytes() == content


def test_no_preferences(mac):
    mac.remove(PREFERENCES)
    expected = removal(button_lists=[NO_PREFERENCES_FOR_BUTTON], autofill=[NO_PREFERENCES])
    assert run(mac) == (expected, expected + [NO_PREFERENCES])
    assert not mac.path(PREFERENCES).exists()


def test_read_only_preferences_are_replaced_and_stay_read_only(mac):
    write(mac, PREFERENCES, {})
    mac.path(PREFERENCES).chmod(0o444)
    assert run(mac) == (removal(), removal())
    assert read(mac, PREFERENCES) == {"AutoFillPasswords": "1"}
    assert mode(mac, PREFERENCES) == 0o444


def test_preferences_in_a_folder_that_is_read_only(mac):
    write(mac, PREFERENCES, {})
    content = mac.path(PREFERENCES).read_bytes()
    mac.path(PREFERENCES_FOLDER).chmod(0o555)
    refused = error("INFO", "", 513)
    expected = removal(
        button_lists=[error("FAILURE", "Error writing to file: ", 513)], autofill=[refused]
    )
    assert run(mac) == (expected, expected + [refused])
    assert mac.path(PREFERENCES).read_bytes() == content
    assert [each.name for each in mac.path(PREFERENCES_FOLDER).iterdir() if "Safari" in each.name] == [
        "com.apple.Safari.plist"
    ]


def test_a_link_in_the_place_of_the_preferences_becomes_a_file(mac):
    write(mac, PREFERENCES_FOLDER + "/elsewhere", {"a": 1})
    content = mac.path(PREFERENCES_FOLDER + "/elsewhere").read_bytes()
    mac.remove(PREFERENCES)
    mac.path(PREFERENCES).symlink_to("elsewhere")
    assert run(mac) == (removal(), removal())
    assert not mac.path(PREFERENCES).is_symlink()
    assert read(mac, PREFERENCES) == {"a": 1, "AutoFillPasswords": "1"}
    assert mac.path(PREFERENCES_FOLDER + "/elsewhere").read_bytes() == content


def test_preferences_on_a_full_disk_keep_their_bytes(mac):
    write(mac, PREFERENCES, {"Values": "x" * 200_000})
    content = mac.path(PREFERENCES).read_bytes()
    removed, _ = run(mac, "--full", f"{PREFERENCES_FOLDER}=65536")
    refused = error("FAILURE", "Error writing to file: ", 640), error("INFO", "", 640)
    assert removed == removal(button_lists=refused[:1], autofill=refused[1:])
    assert mac.path(PREFERENCES).read_bytes() == content
    left = [each.name for each in mac.path(PREFERENCES_FOLDER).iterdir()]
    assert sorted(left) == ["com.apple.Safari.plist", "com.apple.finder.plist"]


# ---- the keychain


def with_keychain(mac, tmp_path, items):
    """The items that a run makes of these, and the messages about the keychain of both removals."""
    keychain = tmp_path / "keychain"
    keychain.write_bytes(plistlib.dumps(items))
    removed, installed = run(mac, "--keychain", keychain)
    bare = removal(keychain=())
    assert removed[: len(bare) - 1] == bare[:-1] and removed[-1] == installed[-1] == bare[-1]
    return plistlib.loads(keychain.read_bytes()), removed[len(bare) - 1 : -1]


@pytest.mark.parametrize(
    "before, after",
    [
        ([OURS, FOREIGN], [FOREIGN]),
        ([FOREIGN, OUR_BUTTON], [FOREIGN]),
        ([OURS, OUR_BUTTON], []),
        ([OUR_BUTTON, FOREIGN, OURS], [FOREIGN]),
        ([FOREIGN, OURS, OURS, OUR_BUTTON, OUR_BUTTON], [FOREIGN, OUR_BUTTON, OUR_BUTTON]),
        ([OUR_BUTTON, OURS, OUR_BUTTON, FOREIGN], [OUR_BUTTON, FOREIGN]),
        (["Keystrel2.safariextz", "Keystrel", "keystrel.safariextz"], None),
        ([FOREIGN], None),
        ([], None),
    ],
)
def test_each_removal_takes_the_first_entry_from_the_keychain(mac, tmp_path, before, after):
    """Two removals a run, one entry each, whatever the order."""
    items = {
        KEYCHAIN_ITEM: plistlib.dumps({LIST: [entry(name) for name in before], "Version": 3}),
        "Safari": b"another item",
    }
    left, messages = with_keychain(mac, tmp_path, items)
    assert messages == []
    assert left["Safari"] == b"another item"
    assert left[KEYCHAIN_ITEM].startswith(b"bplist00")
    assert plistlib.loads(left[KEYCHAIN_ITEM]) == {
        LIST: [entry(name) for name in (before if after is None else after)],
        "Version": 3,
    }


@pytest.mark.parametrize(
    "data",
    [b"", b"no property list", plistlib.dumps([entry(OURS)]), plistlib.dumps({}), b"bplist00"],
    ids=["empty", "text", "array", "no keys", "corrupt"],
)
def test_an_item_that_is_no_list_of_extensions_stays(mac, tmp_path, data):
    left, messages = with_keychain(mac, tmp_path, {KEYCHAIN_ITEM: data})
    assert (left, messages) == ({KEYCHAIN_ITEM: data}, [])


@pytest.mark.parametrize(
    "content",
    [
        {"Version": 3},
        {LIST: OURS},
        {LIST: {NAME: OURS}},
        {LIST: [OURS, 7, [entry(OURS)], {NAME: 7}, {NAME: [OURS]}, {}]},
    ],
)
def test_an_item_without_our_entry_is_written_back_as_it_is(mac, tmp_path, content):
    left, messages = with_keychain(mac, tmp_path, {KEYCHAIN_ITEM: plistlib.dumps(content)})
    assert messages == []
    assert left[KEYCHAIN_ITEM].startswith(b"bplist00")
    assert plistlib.loads(left[KEYCHAIN_ITEM]) == content


def test_another_item_is_not_ours(mac, tmp_path):
    items = {"Safari Extensions": plistlib.dumps({LIST: [entry(OURS)]})}
    assert with_keychain(mac, tmp_path, items) == (items, NO_ITEM)


def test_a_locked_keychain_counts_as_clean(mac, tmp_path):
    keychain = tmp_path / "keychain"
    items = {KEYCHAIN_ITEM: plistlib.dumps({LIST: [entry(OURS)]})}
    keychain.write_bytes(plistlib.dumps(items))
    assert run(mac, "--keychain", keychain, "--keychain-locked") == (removal(), removal())
    assert plistlib.loads(keychain.read_bytes()) == items


# ---- others at the same files


class Rewriter(threading.Thread):
    """Replaces the preferences by one version after another until it is told to stop."""

    FILLER = [f"{number:05}" * 20 for number in range(2000)]

    def __init__(self, mac):
        super().__init__()
        self.path = mac.path(PREFERENCES)
        self.versions = 0
        self.stopping = threading.Event()

    def run(self):
        while not self.stopping.is_set():
            self.versions += 1
            content = {"Version": self.versions, "Filler": self.FILLER}
            temporary = self.path.with_name("another writer's")
            temporary.write_bytes(plistlib.dumps(content, fmt=plistlib.FMT_BINARY))
            temporary.chmod(0o644)
            os.replace(temporary, self.path)
            self.stopping.wait(0.002)

    def __enter__(self):
        self.start()

    def __exit__(self, *_):
        self.stopping.set()
        self.join()


class Reader(threading.Thread):
    """Reads the preferences all the time and keeps what is not as it should be."""

    def __init__(self, mac, stopping):
        super().__init__()
        self.path = mac.path(PREFERENCES)
        self.stopping = stopping
        self.reads = 0
        self.problems = []

    def run(self):
        while not self.stopping.is_set():
            try:
                content = plistlib.loads(self.path.read_bytes())
                assert content["Filler"] == Rewriter.FILLER and content["Version"] > 0
                assert content.get("AutoFillPasswords", "1") == "1"
            except Exception as problem:  # whatever it is, a reader met it
                self.problems.append(repr(problem))
                return
            self.reads += 1


def test_a_reader_always_finds_one_whole_version(mac):
    rewriter = Rewriter(mac)
    with rewriter:
        while rewriter.versions < 2:
            rewriter.stopping.wait(0.001)
        reader = Reader(mac, rewriter.stopping)
        reader.start()
        for _ in range(3):
            assert mac.run().status == 0
    reader.join()
    assert reader.problems == []
    assert reader.reads > 20 and rewriter.versions > 20
    assert mac.run().status == 0
    assert read(mac, PREFERENCES)["AutoFillPasswords"] == "1"
    left = [each.name for each in mac.path(PREFERENCES_FOLDER).iterdir()]
    assert sorted(left) == ["com.apple.Safari.plist", "com.apple.finder.plist"]


# ---- large files

def measured(mac, values):
    """The size of preferences with these values, and what a run with them took."""
    write(mac, PREFERENCES, {"Values": values})
    size = mac.path(PREFERENCES).stat().st_size
    took = mac.measured_run()
    assert read(mac, PREFERENCES) == {"Values": values, "AutoFillPasswords": "1"}
    return size, *took


@pytest.mark.large
@pytest.mark.parametrize(
    "values",
    [[f"{number:08}" * 25 for number in range(25_000)], range(100_000)],
    ids=["strings of 200 bytes", "small integers"],
)
def test_large_preferences(mac, values, record_property):
    """In time that grows like the file, in memory of at most 12 times its size."""
    at_rest, without = mac.measured_run()
    _, _, seconds_of_a_quarter = measured(mac, list(values[: len(values) // 4]))
    size, peak, seconds = measured(mac, list(values))
    times = (peak - at_rest) / size
    report = f"{size} bytes: {times:.1f} times that at the peak, {seconds - without:.2f} seconds"
    record_property("measured", report)
    print(report)
    # AddressSanitizer keeps what is freed; scripts/test --all measures the build for people.
    assert build.is_sanitized() or times <= 12
    assert seconds - without <= 8 * (seconds_of_a_quarter - without) + 0.2
