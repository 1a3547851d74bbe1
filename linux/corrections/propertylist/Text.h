#pragma once

#include <string>
#include <string_view>

namespace propertylist {

/// Strict UTF-8 to UTF-16. GNUstep's own conversion drops a leading byte-order mark.
std::u16string DecodeUtf8(std::string_view bytes);

/// Fails for a text with half a surrogate pair, which UTF-8 has no form for.
std::string EncodeUtf8(std::u16string_view text);

/// A property list's text as UTF-8, without its byte-order mark; in doubt it is UTF-8 already,
/// which is not checked here. Fails if the encoding is unknown or the bytes do not fit it.
std::string TextAsUtf8(std::string_view bytes);

}  // namespace propertylist
