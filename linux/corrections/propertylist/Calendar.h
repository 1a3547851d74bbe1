#pragma once

#include <string>
#include <string_view>

// Moments as XML property lists write them, such as 2001-01-01T00:00:00Z: whole seconds in UTC, by
// the Gregorian calendar of any year. Years before 1 are zero and negative.

/// A month, day or time of day beyond its bounds counts on from there. A year beyond 32 bits wraps
/// around, as in Apple's reader.
/// @param seconds  since the start of 2001
/// @return false when the text does not name a moment
bool MomentFromText(std::string_view text, double& seconds);

/// Appends the text for a moment; a fraction of a second is dropped.
/// @return false when the moment lies outside any sensible calendar (31 million years), or nowhere
bool AppendMoment(double seconds, std::string& text);
