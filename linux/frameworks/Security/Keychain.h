#pragma once

#include <Security/SecBase.h>

#include <optional>
#include <string>

// The user's passwords, kept by libsecret: in the Secret Service of the desktop or, with
// SECRET_BACKEND=file, in an enciphered file. Every password counts as a generic one.
//
// No call starts a service, asks the user or waits for longer than a few seconds.

/// Reads the first item with that label, or the first item of all.
/// @param data  gets the item's bytes; unchanged on failure
/// @return a status of SecItemCopyMatching
OSStatus ReadKeychainItem(const std::optional<std::string>& label, std::string& data);

/// Gives the first item with that label, or the first item of all, new bytes.
/// @return a status of SecItemUpdate
OSStatus WriteKeychainItem(const std::optional<std::string>& label, const std::string& data);
