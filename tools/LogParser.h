#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

/// One message of a log.
struct LogMessage {
    std::string time;   ///< "HH:MM:SS"; empty for what stands before the first header
    std::string level;  ///< the header's word: "CRITICAL", "FAILURE", "WARNING", "INFO"; or empty
    std::string text;   ///< any bytes, line breaks among them
};

/// How severe a level is: 1 for "CRITICAL" to 4 for "INFO"; 0 for another word, which no filter
/// leaves out.
int SeverityOf(std::string_view level);

/// Where the first header of a message begins, its line break included; npos where there is none.
/// @param header  gets the header's length, the blanks that enciphering adds not included
size_t FindLogHeader(std::string_view text, size_t from, size_t* header);

/// Cuts the plain text of a log into its messages while it comes in, in pieces of any size. At most
/// one message and one piece are held.
class LogParser {
  public:
    using Receiver = std::function<void(const LogMessage&)>;

    /// @param padded    whether header and text were padded with blanks to whole cipher blocks;
    ///                  these are taken away, and with them up to 15 blanks that ended the text
    /// @param receiver  called with each message as soon as the next one begins
    LogParser(bool padded, Receiver receiver);

    /// Takes the next piece. A text of over 64 kB, which no logger writes, is handed over in parts.
    void Take(std::string_view piece);

    /// Hands over the last message. What comes later belongs to a new one.
    void Finish();

  private:
    void HandOver(std::string_view text);

    bool padded;
    Receiver receiver;
    LogMessage message;
    bool begun = false;
    std::string pending;  // of the message that is being read, without its header
    size_t searched = 0;  // no header begins before this place of `pending`
};
