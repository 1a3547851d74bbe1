#pragma once

#include <string>
#include <vector>

// Programs that this process starts. They get none of its files but the standard ones.

using Words = std::vector<std::string>;

struct ProgramResult {
    int status;  ///< exit status; 128 and the signal's number when a signal ended it; 127 when it
                 ///< could not be started
    std::string output;
    std::string errors;
};

/// Runs a program to its end and collects what it writes, each text up to a NUL; its standard input
/// is empty.
/// @param words  the program, looked up along PATH, and its arguments
ProgramResult RunProgram(const Words& words);

enum class Output {
    Inherited,  ///< where this process writes
    Nowhere,
};

/// Starts a program that nobody has to wait for, in a session of its own: it lives on when this
/// process ends, and leaves no trace in it when it ends itself.
/// @param program    path of the executable, or of a script that names its interpreter
/// @param arguments  without the program's name, which comes first by itself
/// @return 0 once the program runs, or the errno of what kept it from running
int StartDetached(const std::string& program, const Words& arguments, Output output);
