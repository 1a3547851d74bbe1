#pragma once

#include <map>
#include <string>

// The user's keychain as libsecret itself shows it, for a test to fill and to look at.

/// Puts an item in.
/// @return false, with the reason on stderr, when it cannot be put in
bool StoreItem(const std::string& label, const std::string& data);

/// Every item's data by its label.
std::map<std::string, std::string> AllItems();

/// Every item's attributes, as one text, by its label, but for the schema: a keyring that reads its
/// file again gives one to all items that have none.
std::map<std::string, std::string> AllAttributes();

void RemoveAllItems();

/// Locks every collection of the Secret Service.
bool LockCollections();

/// Takes the Secret Service's name on the session bus and never answers anybody.
bool PlaySilentService();

/// Whether somebody on the session bus is the Secret Service.
bool SecretServiceRuns();
