#pragma once

#include <Foundation/Foundation.h>

#include <string>
#include <string_view>

#include "linux/corrections/propertylist/Values.h"

// The readers return a reference to the root that the caller owns; nil with `problem` set when the
// list is malformed. What they take and what they refuse is what Apple's take and refuse.
// The writers return false with `problem` set when something in the list is not for property lists.
namespace propertylist {

/// Refused as well: references that multiply a few objects into more than memory is good for.
id NewFromBinary(std::string_view bytes, NSPropertyListMutabilityOptions options, Problem& problem);

/// @param text  in UTF-8; what follows the root element does not matter
id NewFromXML(std::string_view text, NSPropertyListMutabilityOptions options, Problem& problem);

/// The format of NeXT's days: `{ key = value; }`, `( value, value )`, <0fb5 1a>, "quoted \U00e9
/// text" and plain words; a strings file is a dictionary without its braces.
/// @param text  in UTF-8
id NewFromOldText(std::string_view text, NSPropertyListMutabilityOptions options, Problem& problem);

/// Strings, numbers, dates and data that occur again are written once.
bool WriteBinary(id root, std::string& bytes, Problem& problem);

/// In UTF-8, laid out as Apple does. Control characters, which XML cannot have, are written as they
/// are: Apple's reader and ours take them back.
bool WriteXML(id root, std::string& text, Problem& problem);

}  // namespace propertylist
