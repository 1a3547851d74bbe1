#pragma once

#include <Foundation/Foundation.h>

#include <string_view>

// Numbers as property lists write them in text. The caller owns the results; nil if the text is
// none.

namespace propertylist {

/// Decimal digits, or hexadecimal ones after 0x, with or without a sign: -2^63 to 2^64 - 1.
NSNumber* NewInteger(std::string_view text);

/// As strtod takes it, "nan" and "infinity" included.
NSNumber* NewReal(std::string_view text);

}  // namespace propertylist
