#pragma once

#include <string>
#include <string_view>

/// Strict UTF-8 to UTF-16. GNUstep's own conversion drops a leading byte-order mark.
/// @return false when the bytes are not UTF-8
bool DecodeUtf8(std::string_view bytes, std::u16string& text);

/// Appends the UTF-8 form of a text.
/// @return false when the text has half a surrogate pair, which UTF-8 has no form for
bool AppendUtf8(std::u16string_view text, std::string& bytes);

/// A property list's text as UTF-8, without its byte-order mark; in doubt it is UTF-8 already,
/// which is not checked here.
/// @param converted  holds the text if it had to be converted
/// @return false if the encoding is unknown or the bytes do not fit it
bool TextAsUtf8(std::string_view bytes, std::string& converted, std::string_view& text);
