#pragma once

#include <Foundation/Foundation.h>

/// The object that a JSON file holds; nothing in it has a certain type.
/// @return autoreleased; nil for bytes that are no JSON object, or nested deeper than any browser's
///         file
NSDictionary* ReadJsonObject(NSData* data);
