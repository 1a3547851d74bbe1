#pragma once

#include <Foundation/Foundation.h>

#include <string>

/// A property list in the notation of platform_facts/property_lists.tsv: a letter for the kind (S
/// string, I integer, d and f reals, T and F booleans, D date, X data, U reference of an archive,
/// [ array, { dictionary), then strings as UTF-16 units, dates and reals by their bits.
std::string DescribePropertyList(id value);
