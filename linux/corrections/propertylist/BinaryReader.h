#pragma once

#include <Foundation/Foundation.h>

#include <string_view>

#include "linux/corrections/propertylist/Values.h"

namespace propertylist {

/// Reads a binary list. Refused as well: one that contains itself, and one whose references
/// multiply a few objects into more than memory is good for.
/// @return a reference to the root that the caller owns; nil with `problem` set if it is malformed
id NewFromBinary(std::string_view bytes, NSPropertyListMutabilityOptions options, Problem& problem);

}  // namespace propertylist
