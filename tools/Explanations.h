#pragma once

#include <string>
#include <vector>

#include "tools/LogParser.h"

/// What one of the installer's messages means to people.
struct Explanation {
    const char* text;    ///< as it stands in the code: "%@", "%ld" and "%d" are any text
    const char* level;   ///< the header's word, or two of them with a comma
    const char* source;  ///< the classes that log it
    const char* meaning;
    const char* advice;
};

/// Every message that the product logs.
const std::vector<Explanation>& Explanations();

/// The first that fits a message's level and text; null for one that is not the product's.
const Explanation* Explain(const LogMessage& message);
