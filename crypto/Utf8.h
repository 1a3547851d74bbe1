#pragma once

#include <cstddef>
#include <string_view>

/// Whether bytes are well-formed UTF-8 by RFC 3629: no byte that begins no character, no character
/// cut short or longer than it need be, no surrogate, nothing above U+10FFFF. An empty text is; NUL
/// is a character.
bool IsUtf8(std::string_view bytes);

/// The length in bytes of the well-formed character that `bytes` begins with; 0 if there is none.
std::size_t Utf8CharacterLength(std::string_view bytes);
