#pragma once

#include <Foundation/Foundation.h>

#include <string>

#include "linux/corrections/propertylist/Values.h"

namespace propertylist {

/// Writes an XML list in UTF-8 as Apple lays it out. Control characters, which XML cannot have, are
/// written as they are: Apple's reader and ours take them back.
/// @return false with `problem` set if something in it is not for XML property lists
bool WriteXML(id root, std::string& text, Problem& problem);

}  // namespace propertylist
