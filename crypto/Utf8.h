#pragma once

#include <string_view>

/// Whether bytes are well-formed UTF-8 by RFC 3629: no byte that begins no character, no character
/// cut short or longer than it need be, no surrogate, nothing above U+10FFFF. An empty text is; NUL
/// is a character.
bool IsUtf8(std::string_view bytes);
