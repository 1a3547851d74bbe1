#pragma once

#include <string>
#include <vector>

enum class Output {
    Inherited,  ///< where this process writes
    Nowhere,
};

/// Starts a program that nobody has to wait for, in a session of its own: it lives on when this
/// process ends, and leaves no trace in it when it ends itself. Of this process's files it gets
/// only the standard ones.
/// @param program    path of the executable, or of a script that names its interpreter
/// @param arguments  without the program's name, which comes first by itself
/// @return 0 once the program runs, or the errno of what kept it from running
int StartDetached(const std::string& program, const std::vector<std::string>& arguments,
                  Output output);
