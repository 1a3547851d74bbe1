#pragma once

#include <Foundation/Foundation.h>

#include <string_view>

#include "linux/corrections/propertylist/Values.h"

namespace propertylist {

/// Reads an XML list in UTF-8, as leniently as Apple does: every character counts, control
/// characters and carriage returns too. A document type is passed over; no entity but XML's own
/// five exists, so nothing is ever expanded or fetched.
/// @return a reference to the root that the caller owns; nil with `problem` set if it is malformed
id NewFromXML(std::string_view text, NSPropertyListMutabilityOptions options, Problem& problem);

}  // namespace propertylist
