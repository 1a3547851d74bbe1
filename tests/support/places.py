"""Where a run finds and leaves things, alex's home being /Users/alex."""

LIBRARY = "/Users/alex/Library"
SUPPORT = LIBRARY + "/Application Support"
SYSTEM = "/Library/Application Support"
APPLICATIONS = [f"/Applications/{name}.app" for name in ("Google Chrome", "Microsoft Edge", "Firefox", "Safari")]
EXTENSIONS = "/Applications/Keystrel.app/Contents/Keystrel/Tools/BExtensions"

CHROME_PREFERENCES = SUPPORT + "/Google/Chrome/Default/Preferences"
CHROME_EXTERNAL = SUPPORT + "/Google/Chrome/External Extensions"
SYSTEM_EXTERNAL = SYSTEM + "/Google/Chrome/External Extensions"
SYSTEM_HOSTS = "/Library/Google/Chrome/NativeMessagingHosts"
EDGE_EXTERNAL = SUPPORT + "/Microsoft Edge/External Extensions"
EDGE_HOSTS = SUPPORT + "/Microsoft Edge/NativeMessagingHosts"
PLUG_INS = LIBRARY + "/Internet Plug-Ins"

CHROMIUM_HOST = "com.corvendale.kschromena.json"
FIREFOX_HOST = "com.corvendale.ksnative.json"
OLD_FIREFOX_HOST = "com.corvendale.ksnative.manifest.json"
CHROME_DESCRIPTORS = ["kmcoedhplnbajgfiehkcpamdobnlgjie.json", "pbjaclkhgedmfonipcabhlmgkdjeoifn.json"]
CHROME_PACKAGES = ["Keystrel.crx", "KeystrelButton.crx"]
EDGE_DESCRIPTOR = "ljdimbpkaehcfognojlkbmcpiedhfagk.json"

FIREFOX_FOLDER = "Mozilla/Extensions/{ec8030f7-c20a-464f-9b0e-13a3a9e97384}"
FIREFOX_IDENTIFIERS = ["KeystrelButton@corvendale.com", "ks@corvendale.com", "Keystrel@corvendale.com"]
PROFILES = SUPPORT + "/Firefox/Profiles"
CACHES = ["extensions.ini", "extensions.cache", "compreg.dat", "xpti.dat", "extensiondev.rdf"]

SAFARI_PREFERENCES = LIBRARY + "/Preferences/com.apple.Safari.plist"
SAFARI_EXTENSIONS = LIBRARY + "/Safari/Extensions"
REGISTRY = SAFARI_EXTENSIONS + "/Extensions.plist"
SAFARI_BUTTON = SAFARI_EXTENSIONS + "/Keystrel Button.safariextz"
SAFARI_CACHE = LIBRARY + "/Caches/com.apple.Safari/Extensions"
LIST, NAME = "Installed Extensions", "Archive File Name"
TOOLBAR, TOOLBAR_ITEMS = "NSToolbar Configuration BrowserWindowToolbarIdentifier", "TB Item Identifiers"
BUTTON_ITEM = "com.corvendale.keystrel.button.safari-7QJX2RM5TB ksbutton"
KEYCHAIN_ITEM = "Safari Extensions List"

DATA = "/Users/Shared/Keystrel"
SETTINGS = DATA + "/KSSettings.plist"
LOGS = DATA + "/logs"


def leftovers():
    """What earlier versions left, and what a run leaves, wherever that may be."""
    for support, hosts in ((SYSTEM, SYSTEM_HOSTS), (SUPPORT, None)):
        yield from (f"{support}/Google/Chrome/External Extensions/{name}" for name in (*CHROME_PACKAGES, *CHROME_DESCRIPTORS))
        yield from (f"{support}/{FIREFOX_FOLDER}/{name}" for name in (*FIREFOX_IDENTIFIERS, "js-ctypes"))
        yield f"{support}/Mozilla/NativeMessagingHosts/{OLD_FIREFOX_HOST}"
        if hosts:
            yield f"{hosts}/{CHROMIUM_HOST}"
    yield f"{SUPPORT}/Mozilla/NativeMessagingHosts/{FIREFOX_HOST}"
    yield f"{EDGE_HOSTS}/{CHROMIUM_HOST}"
    yield f"{EDGE_EXTERNAL}/{EDGE_DESCRIPTOR}"
    yield f"{EXTENSIONS}/edge/{EDGE_DESCRIPTOR}"
    yield from (f"{EXTENSIONS}/chrome/{name}" for name in CHROME_DESCRIPTORS)
    yield from (f"{SYSTEM}/Keystrel/Tools/BExtensions/chrome/{name}" for name in CHROME_DESCRIPTORS)
    yield from (f"/Applications/Google Chrome.app/Contents/Extensions/{name}" for name in CHROME_PACKAGES)
    yield from (f"{folder}/npKSPlugin.bundle" for folder in ("/Library/Internet Plug-Ins", PLUG_INS))
    yield from (f"{PLUG_INS}/KeystrelSafari{bits}.webplugin" for bits in (32, 64))
    yield SAFARI_BUTTON


def payload():
    """What the product brings for the browsers."""
    yield from (f"{EXTENSIONS}/chrome/{name}" for name in (CHROMIUM_HOST, *CHROME_PACKAGES))
    yield f"{EXTENSIONS}/edge/{CHROMIUM_HOST}"
    yield f"{EXTENSIONS}/{FIREFOX_HOST}"
