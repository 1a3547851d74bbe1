#pragma once

#include <Foundation/Foundation.h>

#include <string>

#include "linux/corrections/propertylist/Values.h"

namespace propertylist {

/// Writes a binary list; strings, numbers, dates and data that occur again are written once.
/// @return false with `problem` set if something in it is not for property lists
bool WriteBinary(id root, std::string& bytes, Problem& problem);

}  // namespace propertylist
