#pragma once

#include <string>
#include <string_view>

// Moments as XML property lists write them, such as 2001-01-01T00:00:00Z: whole seconds in UTC, by
// the Gregorian calendar of any year. Years before 1 are zero and negative.

namespace propertylist {

/// In seconds since the start of 2001. A month, day or time of day beyond its bounds counts on from
/// there. A year beyond 32 bits wraps around, as in Apple's reader.
double MomentFromText(std::string_view text);

/// A fraction of a second is dropped. Fails outside any sensible calendar (31 million years).
std::string TextFromMoment(double seconds);

}  // namespace propertylist
