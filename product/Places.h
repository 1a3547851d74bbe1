#pragma once

// Where the product keeps its things. Macros, because only literals can be joined while compiling,
// by C++ and by Objective-C alike: KS_BUNDLE "/x" is a C string, @KS_BUNDLE "/x" a Cocoa one.
// Nothing is built before main.

#define KS_BUNDLE "/Applications/Keystrel.app"
#define KS_CONTENTS_FOLDER KS_BUNDLE "/Contents/"

/// The main application's folder, and the programs beside it.
#define KS_PROGRAM_FOLDER KS_CONTENTS_FOLDER "Keystrel/"
#define KS_TOOLS_FOLDER KS_PROGRAM_FOLDER "Bin/"

/// The same of the product's previous generation, which is a bundle in the bundle.
#define KS_OLD_TOOLS_FOLDER KS_CONTENTS_FOLDER "KeystrelOLD/Keystrel.app/Contents/Keystrel/Bin/"

/// Tells which generation is in use.
#define KS_MARKER_FILE KS_CONTENTS_FOLDER "infoDict.plist"

/// What the installers take from the bundle, one subfolder a browser.
#define KS_EXTENSIONS_FOLDER KS_PROGRAM_FOLDER "Tools/BExtensions/"

/// What all users of the machine share.
#define KS_DATA_FOLDER "/Users/Shared/Keystrel/"
#define KS_SETTINGS_FILE KS_DATA_FOLDER "KSSettings.plist"
#define KS_VAULTS_FOLDER KS_DATA_FOLDER "Vaults/"

// The environment's folders. The doubled separators are part of the values, so these are values of
// their own; a test holds them against those above.
#define KS_ENVIRONMENT_CONTENTS_FOLDER "//Applications//Keystrel.app//Contents//"
#define KS_ENVIRONMENT_TOOLS_FOLDER "//Applications//Keystrel.app//Contents//Keystrel//Bin"
#define KS_ENVIRONMENT_DATA_FOLDER "//Users//Shared//Keystrel//"
#define KS_ENVIRONMENT_VAULTS_FOLDER "//Users//Shared//Keystrel//Vaults"

/// What the product makes outside its bundle is open to everybody: its other programs, run by other
/// users of the machine, replace it later.
constexpr short kOpenToEverybody = 0777;
