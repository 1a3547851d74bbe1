#pragma once

#include <string>
#include <string_view>

/// Finds out how a text is encoded, from its byte-order mark, its first bytes or its XML
/// declaration, and gives it as UTF-8 without the mark. UTF-8 is the default and is not checked
/// here.
/// @param converted  holds the text if it had to be converted
/// @return a part of `bytes` or `converted`; no text (its data() is nullptr) if the encoding is
///         unknown or the bytes do not fit it
std::string_view TextAsUtf8(std::string_view bytes, std::string& converted);
