#pragma once

#include <Foundation/Foundation.h>

/// Writes an external-extension descriptor, with which Chrome and Edge fetch an extension from
/// their store: one line without an end, `{ "external_update_url": "URL" }`, in UTF-8. The write is
/// atomic and its result is not looked at: where it fails, an earlier descriptor stays as it is.
/// The file then gets the mode 0777, a link that stayed does not. Nothing is logged.
/// @param path       where to; a link there is replaced by the file
/// @param updateURL  the store's update URL, which needs no escapes in JSON
/// @return whether the mode could be set
BOOL WriteExternalExtension(NSString* path, NSString* updateURL);
