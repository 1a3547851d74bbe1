#pragma once

#include <string>

/// Starts an application, and waits until it is one of the running ones under that identifier: the
/// kernel tells what a process runs a moment after it has started it.
void Launch(const std::string& application, const std::string& identifier);

/// Starts a copy of an application that has another identifier.
/// @return where the copy lies
std::string LaunchCopy(const std::string& application, const std::string& itsIdentifier,
                       const std::string& identifier);

/// Ends every process of that program, and waits until none is left.
void EndAll(const std::string& program);
