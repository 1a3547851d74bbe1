#pragma once

#include <Foundation/Foundation.h>

#include <string>
#include <string_view>

// What the readers take and what they refuse is what Apple's take and refuse. Readers and writers
// throw an NSString that says what is wrong (with this runtime, Objective-C++ cannot catch what C++
// throws); what they return is autoreleased.
namespace propertylist {

/// Refused as well: references that multiply a few objects into more than memory is good for.
id ReadBinary(std::string_view bytes, NSPropertyListMutabilityOptions options);

/// @param text  in UTF-8; what follows the root element does not matter
id ReadXML(std::string_view text, NSPropertyListMutabilityOptions options);

/// The format of NeXT's days: `{ key = value; }`, `( value, value )`, <0fb5 1a>, "quoted \U00e9
/// text" and plain words; a strings file is a dictionary without its braces.
/// @param text  in UTF-8
id ReadOldText(std::string_view text, NSPropertyListMutabilityOptions options);

/// Strings, numbers, dates and data that occur again are written once.
NSData* WriteBinary(id root);

/// In UTF-8, laid out as Apple does. Control characters, which XML cannot have, are written as they
/// are: Apple's reader and ours take them back.
NSData* WriteXML(id root);

}  // namespace propertylist
