#pragma once

#include <string>

/// The first line of a file, without its end; that of Windows too.
/// @return an empty text, or why the file cannot be read, for people
std::string ReadPasswordFile(const std::string& path, std::string* password);

/// Asks on the terminal, where what is typed is not shown; without a terminal the first line of
/// standard input.
std::string AskForPassword();

/// The password that this machine's settings hold; empty if there is none.
std::string MachinePassword();
