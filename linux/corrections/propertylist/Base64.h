#pragma once

#include <string>
#include <string_view>

// Base64 (RFC 4648, section 4) as property lists use it: broken into lines.

/// @param text  blanks between the characters do not matter
/// @return false when it is no Base64 with its padding
bool DecodeBase64(std::string_view text, std::string& bytes);

/// Appends lines of `width` characters, a multiple of 4, each after `indent` and before a line
/// break.
void AppendBase64(std::string_view bytes, std::string_view indent, std::size_t width,
                  std::string& text);
