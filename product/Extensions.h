#pragma once

// The product's extensions of the browsers. Macros for the reason that Places.h gives.

/// The external-extension descriptors, named after the extensions' identifiers in the stores.
#define KS_CHROME_DESCRIPTOR "kmcoedhplnbajgfiehkcpamdobnlgjie.json"
#define KS_CHROME_BUTTON_DESCRIPTOR "pbjaclkhgedmfonipcabhlmgkdjeoifn.json"
#define KS_EDGE_DESCRIPTOR "ljdimbpkaehcfognojlkbmcpiedhfagk.json"

#define KS_CHROME_PACKAGE "Keystrel.crx"
#define KS_CHROME_BUTTON_PACKAGE "KeystrelButton.crx"
#define KS_CHROME_PLUG_IN "npKSPlugin.bundle"

/// The native-messaging host manifests; Edge shares Chrome's.
#define KS_CHROMIUM_HOST_MANIFEST "com.corvendale.kschromena.json"
#define KS_FIREFOX_HOST_MANIFEST "com.corvendale.ksnative.json"

/// The identifiers under which Firefox knows the extensions.
#define KS_FIREFOX_BUTTON_IDENTIFIER "KeystrelButton@corvendale.com"
#define KS_FIREFOX_MAIN_IDENTIFIER "Keystrel@corvendale.com"
#define KS_FIREFOX_SHORT_IDENTIFIER "ks@corvendale.com"

/// The archives of Safari's old extension and old toolbar button, the button's name in the toolbar,
/// and the old web plug-ins.
#define KS_SAFARI_ARCHIVE "Keystrel.safariextz"
#define KS_SAFARI_BUTTON_ARCHIVE "Keystrel Button.safariextz"
#define KS_SAFARI_BUTTON_ITEM "com.corvendale.keystrel.button.safari-7QJX2RM5TB ksbutton"
#define KS_SAFARI_PLUG_IN_32 "KeystrelSafari32.webplugin"
#define KS_SAFARI_PLUG_IN_64 "KeystrelSafari64.webplugin"
