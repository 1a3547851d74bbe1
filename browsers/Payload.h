#pragma once

#include <Foundation/Foundation.h>

#include "product/Extensions.h"
#include "product/Places.h"

// What every installer takes from the product's application bundle.

/// The extensions folder, one subfolder of payload a browser. Ends in "/"; the subfolders' names
/// begin with one, so that composed paths hold "//", which the file system takes for one.
static NSString* const kExtensionsFolder = @KS_EXTENSIONS_FOLDER;

/// The native-messaging host manifest of Chrome and Edge, with the slash that paths are composed
/// with.
static NSString* const kChromiumHostManifest = @"/" KS_CHROMIUM_HOST_MANIFEST;
