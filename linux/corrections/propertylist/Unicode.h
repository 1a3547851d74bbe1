#pragma once

#include <string>
#include <string_view>

// UTF-8 (RFC 3629) from and to UTF-16. GNUstep's own conversion drops a leading byte-order mark.

/// @param text  gets the UTF-16 units
/// @return false when the bytes are not UTF-8
bool DecodeUtf8(std::string_view bytes, std::u16string& text);

/// Appends the UTF-8 form of one code point, which is no surrogate and at most 0x10FFFF.
void AppendUtf8(char32_t character, std::string& bytes);

/// Appends the UTF-8 form of a text.
/// @return false when the text has half a surrogate pair, which UTF-8 has no form for
bool AppendUtf8(std::u16string_view text, std::string& bytes);
