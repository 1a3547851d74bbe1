#pragma once

#include <string>
#include <vector>

#include "tools/StatusReport.h"

/// Checks a native-messaging host manifest as a browser does before it starts the host.
/// @param path       the file
/// @param list       the manifest's key of those that may use the host
/// @param extension  the product's extension as the list names it
FileStatus CheckHostManifest(const std::string& path, const std::string& list,
                             const std::string& extension);

/// Checks an external-extension descriptor as a browser does before it fetches the extension.
FileStatus CheckDescriptor(const std::string& path);

/// The keys of the lists.
extern const char kAllowedOrigins[];     ///< Chrome, Edge
extern const char kAllowedExtensions[];  ///< Firefox

/// How Chrome and Edge name an extension in a list.
std::string OriginOf(const std::string& identifier);
