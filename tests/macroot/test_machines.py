"""The sample machines hold what they say."""

import plistlib

import pytest

from tests.support.mac import Mac, macroot

LEFTOVERS = """
/Applications/Google Chrome.app/Contents/Extensions/Keystrel.crx
/Applications/Google Chrome.app/Contents/Extensions/KeystrelButton.crx
LIBRARY/Application Support/Google/Chrome/External Extensions/Keystrel.crx
LIBRARY/Application Support/Google/Chrome/External Extensions/KeystrelButton.crx
LIBRARY/Application Support/Google/Chrome/External Extensions/kmcoedhplnbajgfiehkcpamdobnlgjie.json
LIBRARY/Application Support/Google/Chrome/External Extensions/pbjaclkhgedmfonipcabhlmgkdjeoifn.json
LIBRARY/Application Support/Mozilla/Extensions/GUID/Keystrel@corvendale.com
LIBRARY/Application Support/Mozilla/Extensions/GUID/KeystrelButton@corvendale.com
LIBRARY/Application Support/Mozilla/Extensions/GUID/js-ctypes
LIBRARY/Application Support/Mozilla/Extensions/GUID/ks@corvendale.com
LIBRARY/Application Support/Mozilla/NativeMessagingHosts/com.corvendale.ksnative.manifest.json
LIBRARY/Internet Plug-Ins/npKSPlugin.bundle
/Library/Application Support/Keystrel/Tools/BExtensions/chrome/kmcoedhplnbajgfiehkcpamdobnlgjie.json
/Library/Application Support/Keystrel/Tools/BExtensions/chrome/pbjaclkhgedmfonipcabhlmgkdjeoifn.json
/Library/Google/Chrome/NativeMessagingHosts/com.corvendale.kschromena.json
~/Library/Application Support/Firefox/Profiles/ab12cd34.default/compreg.dat
~/Library/Application Support/Firefox/Profiles/ab12cd34.default/extensiondev.rdf
~/Library/Application Support/Firefox/Profiles/ab12cd34.default/extensions.cache
~/Library/Application Support/Firefox/Profiles/ab12cd34.default/extensions.ini
~/Library/Application Support/Firefox/Profiles/ab12cd34.default/extensions.rdf
~/Library/Application Support/Firefox/Profiles/ab12cd34.default/xpti.dat
EDGE/External Extensions/ljdimbpkaehcfognojlkbmcpiedhfagk.json
EDGE/NativeMessagingHosts/com.corvendale.kschromena.json
~/Library/Application Support/Mozilla/NativeMessagingHosts/com.corvendale.ksnative.json
~/Library/Caches/com.apple.Safari/Extensions/Keystrel Button.safariextension
~/Library/Caches/com.apple.Safari/Extensions/Keystrel.safariextension
~/Library/Internet Plug-Ins/KeystrelSafari32.webplugin
~/Library/Internet Plug-Ins/KeystrelSafari64.webplugin
~/Library/Safari/Extensions/Keystrel Button.safariextz
~/Library/Safari/Extensions/Keystrel.safariextz
/private/tmp/createDirChrome.sh
/private/tmp/createDirUninstall.sh
""".replace("GUID", "{ec8030f7-c20a-464f-9b0e-13a3a9e97384}").replace(
    "EDGE", "~/Library/Application Support/Microsoft Edge").strip().split("\n")
LEFTOVERS = [line.replace("LIBRARY", library).replace("~", "/Users/alex")
             for line in LEFTOVERS
             for library in (("/Library", "~/Library") if "LIBRARY" in line else [""])]

PAYLOAD = """
chrome/Keystrel.crx
chrome/KeystrelButton.crx
chrome/com.corvendale.kschromena.json
com.corvendale.ksnative.json
edge/com.corvendale.kschromena.json
""".split()
BEXTENSIONS = "/Applications/Keystrel.app/Contents/Keystrel/Tools/BExtensions"

BROWSERS = {"Google Chrome": "com.google.Chrome", "Microsoft Edge": "com.microsoft.edgemac",
            "Firefox": "org.mozilla.firefox", "Safari": "com.apple.Safari"}


@pytest.fixture(scope="module")
def machines(tmp_path_factory):
    made = {}

    def machine(name):
        if name not in made:
            made[name] = Mac.new(name, tmp_path_factory.mktemp(name))
        return made[name]

    return machine


def browsers(mac):
    return {path.stem for path in mac.path("/Applications").iterdir()} - {"Keystrel"}


def leftovers(mac):
    return [path for path in LEFTOVERS if mac.path(path).exists()]


def payload(mac):
    return [name for name in PAYLOAD if mac.path(f"{BEXTENSIONS}/{name}").is_file()]


def test_the_typical_one_has_four_browsers_and_every_leftover(machines):
    mac = machines("typical")
    assert browsers(mac) == set(BROWSERS)
    assert leftovers(mac) == LEFTOVERS
    assert payload(mac) == PAYLOAD
    assert plistlib.loads(mac.path("/Users/Shared/Keystrel/KSSettings.plist").read_bytes()) == {
        "KSLoggingEnabled": "1"}


def test_the_clean_one_has_safari_and_the_product(machines):
    mac = machines("clean")
    assert browsers(mac) == {"Safari"}
    assert leftovers(mac) == []
    assert payload(mac) == PAYLOAD


def test_the_fresh_one_has_four_browsers_and_no_leftover(machines):
    mac = machines("fresh")
    assert browsers(mac) == set(BROWSERS)
    assert leftovers(mac) == []


def test_others_lack_what_their_name_says(machines):
    assert not machines("no-payload").path(BEXTENSIONS).exists()
    assert machines("no-payload").path("/Applications/Keystrel.app").exists()
    assert not machines("no-settings").path("/Users/Shared/Keystrel").exists()
    assert not machines("no-product").path("/Applications/Keystrel.app").exists()
    assert browsers(machines("no-product")) == set(BROWSERS)


def test_applications_have_apples_layout(machines):
    mac = machines("typical")
    for name, identifier in BROWSERS.items():
        contents = mac.path(f"/Applications/{name}.app/Contents")
        info = plistlib.loads((contents / "Info.plist").read_bytes())
        assert info["CFBundleIdentifier"] == identifier
        program = contents / "MacOS" / info["CFBundleExecutable"]
        assert program.stat().st_mode & 0o111


def test_an_applications_program_shows_its_own_path_until_it_is_ended(machines):
    program = "/Applications/Google Chrome.app/Contents/MacOS/Google Chrome"
    result = machines("typical").run(program="/bin/sh", args=("-c", f"""
        '{program}' https://example.org & sleep 0.1
        tr '\\0' '|' < /proc/$!/cmdline; echo; killall 'Google Chrome' && wait $!; echo $?"""))
    assert result.stdout == f"{program}|https://example.org|\n143\n"


def test_property_lists_are_well_formed(machines):
    mac = machines("typical")
    lists = {path.name: plistlib.loads(path.read_bytes()) for path in mac.tree.rglob("*.plist")}
    assert all(isinstance(content, dict) for content in lists.values())
    assert "com.corvendale.keystrel.button.safari-7QJX2RM5TB ksbutton" in lists[
        "com.apple.Safari.plist"]["NSToolbar Configuration BrowserWindowToolbarIdentifier"][
        "TB Item Identifiers"]
    entries = lists["Extensions.plist"]["Installed Extensions"]
    assert [entry["Archive File Name"] for entry in entries] == [
        "Weather.safariextz", "Keystrel.safariextz", "Keystrel Button.safariextz"]


def test_home_shared_folder_and_bundle_are_alexs_and_the_rest_is_roots(machines, real_users):
    alexs = ("/Users/alex", "/Users/Shared", "/Applications/Keystrel.app")
    for line in machines("typical").manifest():
        _, _, owner, path, *_ = line.split("\t")
        mine = any(path == folder or path.startswith(folder + "/") for folder in alexs)
        assert owner == ("501:20" if mine else "0:0"), path


def test_modes_do_not_depend_on_the_callers_umask(tmp_path):
    manifests = []
    for umask in (0o000, 0o077):
        tree = tmp_path / f"{umask:o}"
        macroot("new", tree, umask=umask, check=True)
        manifests.append(macroot("manifest", tree, check=True).stdout)
    assert manifests[0] == manifests[1] != ""


def test_a_folder_that_is_not_empty_is_refused(tmp_path):
    (tmp_path / "mine").write_text("mine")
    made = macroot("new", tmp_path)
    assert made.returncode == 70 and "not empty" in made.stderr
    assert [path.name for path in tmp_path.iterdir()] == ["mine"]


def test_an_unknown_machine_is_refused_with_the_names_of_the_known_ones(tmp_path):
    made = macroot("new", tmp_path / "mac", "--machine", "nonsense")
    assert made.returncode == 70
    assert "typical" in made.stderr and "clean" in made.stderr
    assert not (tmp_path / "mac").exists()


def test_delete_removes_closed_folders_too(tmp_path):
    mac = Mac.new("clean", tmp_path)
    mac.path("/Users/alex/Documents").chmod(0)
    mac.path("/Users/alex").chmod(0o555)
    assert macroot("delete", mac.tree).returncode == 0
    assert not mac.tree.exists()
