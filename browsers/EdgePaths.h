#pragma once

#include <Foundation/Foundation.h>

// Where Edge and the product's payload for it keep their files; every function gives an absolute
// path, autoreleased, and asks nobody whether it exists.

NSString* EdgeHostFolder();      ///< of native-messaging host manifests
NSString* EdgeExternalFolder();  ///< "External Extensions"
NSString* EdgeInstalledHostManifest();
NSString* EdgeInstalledDescriptor();
NSString* EdgePayloadHostManifest();
NSString* EdgePayloadDescriptor();  ///< written by an installation
