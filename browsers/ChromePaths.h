#pragma once

#include <Foundation/Foundation.h>

#include "product/Extensions.h"

// Where Chrome and the product's payload for it keep their files; every function gives an absolute
// path, autoreleased, and asks nobody whether it exists.

NSString* ChromePayload(NSString* name);  ///< a file of the payload folder in the product's bundle
NSString* ChromeUserExternal(NSString* name);    ///< a file of the user's external folder
NSString* ChromeSystemExternal(NSString* name);  ///< a file of the system's external folder
NSString* ChromeUserExternalFolder();            ///< "External Extensions"
NSString* ChromePayloadHostManifest();           ///< in the payload folder
NSString* ChromeInstalledHostManifest();  ///< system-wide, also when installed for the current user
NSString* ChromePreferences();            ///< of the default profile
NSString* ChromeUserPlugIn();             ///< of earlier versions

/// The extension's descriptor, named after its identifier in the store.
static NSString* const kChromeDescriptor = @KS_CHROME_DESCRIPTOR;
/// The legacy button's descriptor.
static NSString* const kChromeButtonDescriptor = @KS_CHROME_BUTTON_DESCRIPTOR;
/// The packages.
static NSString* const kChromePackage = @KS_CHROME_PACKAGE;
static NSString* const kChromeButtonPackage = @KS_CHROME_BUTTON_PACKAGE;
