#pragma once

// Applications: the browsers that the product works with, and its own. Macros for the reason that
// Places.h gives.

/// As Launch Services knows them.
#define KS_SAFARI_IDENTIFIER "com.apple.Safari"
#define KS_CHROME_IDENTIFIER "com.google.Chrome"
#define KS_EDGE_IDENTIFIER "com.microsoft.edgemac"
#define KS_FIREFOX_IDENTIFIER "org.mozilla.firefox"

/// As the user sees them.
#define KS_SAFARI_NAME "Safari"
#define KS_CHROME_NAME "Google Chrome"
#define KS_EDGE_NAME "Microsoft Edge"
#define KS_FIREFOX_NAME "Firefox"

#define KS_PRODUCT_NAME "Keystrel"
#define KS_MAIN_APPLICATION "Keystrel.app"
#define KS_UPDATER_NAME "KSUpdater"
#define KS_WIZARD_NAME "Keystrel Wizard"

/// The version of a product that does not tell its own.
#define KS_DEFAULT_VERSION "20200902"
