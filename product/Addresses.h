#pragma once

// Web addresses. Macros for the reason that Places.h gives.

/// Where Chrome and Edge fetch the extension from.
#define KS_CHROME_UPDATE_URL "https://clients2.google.com/service/update2/crx"
#define KS_EDGE_UPDATE_URL "https://edge.microsoft.com/extensionwebstorebase/v1/crx"

/// The privacy page that Firefox shows.
#define KS_FIREFOX_PRIVACY_PAGE "https://www.corvendale.com/keystrel/privacy/firefox"

/// A page that answers an HTTP HEAD request with 200 wherever there is a connection.
#define KS_CONNECTIVITY_PROBE "http://www.google.com/"
