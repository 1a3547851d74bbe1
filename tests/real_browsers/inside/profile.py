"""A real Firefox profile with an add-on of its own."""

import hashlib
import json
import os
import shutil
import zipfile

from inside import applications, processes, product
from inside.firefox import Firefox

_ADD_ON = "weather@example.org"
_MANIFEST = {"manifest_version": 2, "name": "Weather", "version": "1.0",
             "browser_specific_settings": {"gecko": {"id": _ADD_ON}}}
_CACHES = ("extensions.ini", "extensions.cache", "compreg.dat", "xpti.dat", "extensiondev.rdf")
_REGISTRY = """<?xml version="1.0"?>
<RDF:RDF xmlns:NS1="http://www.mozilla.org/2004/em-rdf#"
         xmlns:RDF="http://www.w3.org/1999/02/22-rdf-syntax-ns#">
  <RDF:Description RDF:about="urn:mozilla:item:Keystrel@corvendale.com" NS1:version="4.0"/>
</RDF:RDF>
"""
_IS_ACTIVE = f"""
    const {{AddonManager}} = ChromeUtils.importESModule("resource://gre/modules/AddonManager.sys.mjs");
    const addOn = await AddonManager.getAddonByID("{_ADD_ON}");
    return Boolean(addOn && addOn.isActive);"""
_PRIVACY_PAGE = "https://www.corvendale.com/keystrel/privacy/firefox"


def _make_profile():
    """Made by Firefox, with the add-on installed for good; then what early versions left in it."""
    shutil.rmtree(product.FIREFOX)
    package = os.path.expanduser("~/Documents/weather.xpi")
    with zipfile.ZipFile(package, "w") as archive:
        archive.writestr("manifest.json", json.dumps(_MANIFEST))
    with Firefox(product.FIREFOX, "--headless", "--no-remote") as browser:
        browser.load(package, temporary=False)
    for name, content in {**dict.fromkeys(_CACHES, "cache\n"), "extensions.rdf": _REGISTRY}.items():
        with open(f"{product.FIREFOX}/{name}", "w", encoding="utf-8") as file:
            file.write(content)


def _files():
    files = {}
    for folder, _, names in os.walk(product.FIREFOX):
        for name in names:
            path = os.path.join(folder, name)
            if not os.path.islink(path):
                with open(path, "rb") as file:
                    files[os.path.relpath(path, product.FIREFOX)] = hashlib.sha256(file.read()).digest()
    return files


def cleaned():
    """What a removal changes in the profile; then a run beside the running Firefox."""
    _make_profile()
    before = _files()
    product.call("uninstall")
    after = _files()
    with applications.session_bus(), applications.firefox() as browser:
        product.install()
        browser.show_address(_PRIVACY_PAGE)
        return {"files": len(before) > 20,
                "changed": sorted(name for name in before.keys() | after.keys()
                                  if before.get(name) != after.get(name)),
                "registry mentions the product": "Keystrel" in open(
                    f"{product.FIREFOX}/extensions.rdf", encoding="utf-8").read(),
                "add-on is active": browser.evaluate_inside(_IS_ACTIVE),
                "same process": processes.is_alone(browser.process.pid)}
