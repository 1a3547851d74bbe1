#pragma once

#include <string>
#include <vector>

struct ProgramResult {
    int status;  ///< exit status; 128 and the signal's number when a signal ended it; 127 when not
                 ///< found
    std::string output;
    std::string errors;
};

/// Runs a program to its end and collects what it writes; its standard input is empty.
ProgramResult RunProgram(const std::vector<std::string>& arguments);
