#pragma once

#include <Foundation/Foundation.h>

#include <string>

// Property lists and files, for programs that judge what the product made of them.

/// The list that bytes hold, nothing in it mutable; nil where they hold none.
id ListOf(const std::string& bytes);

/// A list's bytes in a format, by which lists are compared; "" where it has none. Equal lists are
/// written alike, and a NaN equals itself in them.
std::string BytesOf(id list, NSPropertyListFormat format);

/// What a dictionary holds under a key; nil where `list` is no dictionary, or where that is nothing
/// of this class.
id DictionaryIn(id list, NSString* key);
id ArrayIn(id list, NSString* key);
