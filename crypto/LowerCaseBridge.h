#pragma once

#include <string>

/// Text up to its first NUL in lower case, by Unicode's rules and not the user's. Nothing is
/// logged.
/// @param text  bytes in the system's default C-string encoding
/// @return UTF-8; empty when `text` is not valid in that encoding
std::string LowerCaseBridge(const std::string& text);
