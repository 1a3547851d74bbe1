#pragma once

#include <Foundation/Foundation.h>

// The values that belong to this product and to nothing else, in one place.

/// Where a browser fetches the extension from; the value in the external-extension descriptors.
static NSString* const kChromeUpdateURL = @"https://clients2.google.com/service/update2/crx";
static NSString* const kEdgeUpdateURL = @"https://edge.microsoft.com/extensionwebstorebase/v1/crx";

/// The identifiers under which Firefox knows the extensions of the product.
static NSString* const kFirefoxButtonIdentifier = @"KeystrelButton@corvendale.com";
static NSString* const kFirefoxMainIdentifier = @"Keystrel@corvendale.com";
static NSString* const kFirefoxShortIdentifier = @"ks@corvendale.com";

/// The privacy page that Firefox shows.
static NSString* const kFirefoxPrivacyPage = @"https://www.corvendale.com/keystrel/privacy/firefox";

/// A page that answers an HTTP HEAD request with 200 wherever there is a connection.
static NSString* const kConnectivityProbe = @"http://www.google.com/";
