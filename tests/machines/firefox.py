"""Mozilla Firefox: the browser, and what earlier versions of the product left in it."""

from macroot.tree import File
from tests.machines.entries import application, native_host, text
from tests.machines.product import FIREFOX_HOST, OLD_HOST_PROGRAM
from tests.machines.system import SUPPORTS, USERS_SUPPORT

_IDENTIFIERS = ("KeystrelButton@corvendale.com", "Keystrel@corvendale.com", "ks@corvendale.com")
_FOREIGN = "weather@example.org"
_GUID = "{ec8030f7-c20a-464f-9b0e-13a3a9e97384}"
_PROFILES = f"{USERS_SUPPORT}/Firefox/Profiles"
_PROFILE = f"{_PROFILES}/ab12cd34.default"
_FOREIGN_PROFILE = f"{_PROFILES}/x9y8z7w6.Zo\u00eb 100%"
_HOSTS = "Mozilla/NativeMessagingHosts"
_CACHES = ("extensions.ini", "extensions.cache", "compreg.dat", "xpti.dat", "extensiondev.rdf")


def _profile(folder):
    return [text(f"{folder}/prefs.js", "// Mozilla User Preferences\n", 0o600),
            File(f"{folder}/places.sqlite", b"SQLite format 3\0", 0o600)]


def _registry(folder, *identifiers):
    """The registry of extensions of early versions: entries, their target applications, a list."""
    entries = "".join(f"""\
  <RDF:Description RDF:about="urn:mozilla:item:{identifier}" NS1:version="4.0">
    <NS1:targetApplication RDF:resource="rdf:#$target{number}"/>
  </RDF:Description>
  <RDF:Description RDF:about="rdf:#$target{number}" NS1:minVersion="2.0" NS1:maxVersion="3.6.*"/>
""" for number, identifier in enumerate(identifiers))
    items = "".join(f"""\
    <RDF:li RDF:resource="urn:mozilla:item:{identifier}"/>
""" for identifier in identifiers)
    return text(f"{folder}/extensions.rdf", f"""\
<?xml version="1.0"?>
<RDF:RDF xmlns:NS1="http://www.mozilla.org/2004/em-rdf#"
         xmlns:RDF="http://www.w3.org/1999/02/22-rdf-syntax-ns#">
{entries}  <RDF:Seq RDF:about="urn:mozilla:item:root">
{items}  </RDF:Seq>
</RDF:RDF>
""")


INSTALLED = [
    *application("/Applications/Firefox.app", "org.mozilla.firefox", "firefox"),
    *_profile(_PROFILE),
    *_profile(_FOREIGN_PROFILE),
    text(f"{USERS_SUPPORT}/Firefox/profiles.ini", "[General]\nStartWithLastProfile=1\n"),
    native_host(f"{USERS_SUPPORT}/{_HOSTS}", "org.example.printer"),
]

LEFTOVERS = [
    *(text(f"{support}/Mozilla/Extensions/{name}/install.rdf", f"{name}\n") for support in SUPPORTS
      for name in (*(f"{_GUID}/{mine}" for mine in (*_IDENTIFIERS, "js-ctypes")), "other")),
    *(native_host(f"{support}/{_HOSTS}", FIREFOX_HOST, OLD_HOST_PROGRAM, ".manifest.json")
      for support in SUPPORTS),
    native_host(f"{USERS_SUPPORT}/{_HOSTS}", FIREFOX_HOST, OLD_HOST_PROGRAM),
    _registry(_PROFILE, _FOREIGN, *_IDENTIFIERS),
    _registry(_FOREIGN_PROFILE, _FOREIGN),
    *(text(f"{_PROFILE}/{name}", "rebuilt by the browser\n") for name in _CACHES),
    File(f"{_PROFILES}/.DS_Store", b"\0\0\0\1Bud1"),
]
