// The one way in which methods of the frameworks are replaced. A replacement is a method of a
// category whose name begins with "mac_"; Replacements.mm lists all of them. At the start of a
// program both methods change places: who sends the plain name gets the replacement, which reaches
// the framework's own method under its own "mac_" name. A class may also get back what it would
// inherit, where its own method hides that.
#pragma once

#include <cstddef>

struct Replacement {
    const char* className;
    const char* method;        ///< the plain selector, behind + for a class method, else -
    bool isInherited = false;  ///< by what its parents have by then, without a method of "mac_"
};

/// Puts the replacements in place, one after the other. Each class must have both methods itself,
/// others' do not count; what is missing is named on standard error, and then the program is
/// aborted.
void InstallReplacements(const Replacement* replacements, size_t count);
