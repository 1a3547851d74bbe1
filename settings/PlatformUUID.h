#pragma once

#include <string>

/// The hardware UUID of this machine as the I/O registry spells it: 36 characters with hyphens
/// (RFC 4122), in UTF-8. Nothing is logged.
/// @return empty when the registry does not tell
std::string PlatformUUID();
