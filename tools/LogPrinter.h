#pragma once

#include <string>
#include <string_view>

#include "tools/LogParser.h"

/// Makes lines of messages, for people or for programs.
class LogPrinter {
  public:
    /// @param colour   severe messages in colour, by the sequences of ECMA-48
    /// @param explain  with each message what it means and what to do
    LogPrinter(bool json, bool colour, bool explain);

    /// One message with a line break at its end.
    /// @param log  the file's name, which JSON shows
    std::string Line(const std::string& log, const LogMessage& message) const;

  private:
    std::string ForPeople(const LogMessage& message) const;
    std::string ForPrograms(const std::string& log, const LogMessage& message) const;

    bool json;
    bool colour;
    bool explain;
};

/// The text as a terminal may show it: what would steer the terminal stands as "\x1b", and so does
/// a byte that is no UTF-8. Line breaks and tabs stay.
std::string SafeForTerminal(std::string_view text);

/// The text as a string of JSON (RFC 8259), in quotes; bytes that are no UTF-8 become U+FFFD.
std::string JsonString(std::string_view text);
