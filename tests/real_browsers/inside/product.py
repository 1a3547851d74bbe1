"""The product, called as alex."""

import json
import os
import subprocess

FOLDER = "/opt/product"  # where the machine got the build's programs
EXTENSIONS = "/Applications/Keystrel.app/Contents/Keystrel/Tools/BExtensions"
HOST_PROGRAM = "/Applications/Keystrel.app/Contents/Keystrel/Bin/KSNativeHost"
SUPPORT = os.path.expanduser("~/Library/Application Support")
CHROME = f"{SUPPORT}/Google/Chrome"
EDGE = f"{SUPPORT}/Microsoft Edge"
FIREFOX = f"{SUPPORT}/Firefox/Profiles/ab12cd34.default"


def install():
    """One run of the installer."""
    subprocess.run([f"{FOLDER}/KSExtensionInstaller"], check=True, stdout=subprocess.DEVNULL)


def call(*words):
    """One operation of the product; what it answers."""
    done = subprocess.run([f"{FOLDER}/product_calls", *words], check=True, stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, text=True)
    return int(done.stdout.split()[-1])


def manifests():
    """The payload's host manifests, by the browser that they are for."""
    return {"Chrome": f"{EXTENSIONS}/chrome/com.corvendale.kschromena.json",
            "Edge": f"{EXTENSIONS}/edge/com.corvendale.kschromena.json",
            "Firefox": f"{EXTENSIONS}/com.corvendale.ksnative.json"}


def rewrite(path, change):
    """Changes what a JSON file holds by a function."""
    with open(path, encoding="utf-8") as file:
        value = json.load(file)
    change(value)
    with open(path, "w", encoding="utf-8") as file:
        json.dump(value, file)
