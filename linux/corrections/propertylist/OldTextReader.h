#pragma once

#include <Foundation/Foundation.h>

#include <string_view>

#include "linux/corrections/propertylist/Values.h"

namespace propertylist {

/// Whether a text begins like a list in the old format, after blanks and comments: with { or (.
bool IsOldText(std::string_view text);

/// Reads a list in the old text format, in UTF-8: `{ key = value; }`, `( value, value )`, <0fb5
/// 1a>, "quoted \U00e9 text" and plain words. Also understood are the typed values that GNUstep
/// writes, such as <*I5>.
/// @return a reference to the root that the caller owns; nil with `problem` set if it is malformed
id NewFromOldText(std::string_view text, NSPropertyListMutabilityOptions options, Problem& problem);

}  // namespace propertylist
