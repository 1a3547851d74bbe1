#include "tools/LogParser.h"

#include <algorithm>
#include <array>
#include <utility>

#include "crypto/Rijndael.h"

namespace {

constexpr std::array<std::string_view, 4> kLevels = {"CRITICAL", "FAILURE", "WARNING", "INFO"};
constexpr std::string_view kTime = "\n00:00:00 - ";
constexpr std::string_view kBeforeText = " : ";
constexpr size_t kLongestHeader = kTime.size() + kLevels[0].size() + kBeforeText.size();

// The logger cuts a text earlier. What is longer comes in parts, so that memory has a bound.
constexpr size_t kLongestText = size_t{64} * 1024;

bool IsTime(std::string_view text) {
    for (size_t i = 0; i < kTime.size(); ++i) {
        const bool fits = kTime[i] == '0' ? text[i] >= '0' && text[i] <= '9' : text[i] == kTime[i];
        if (!fits) {
            return false;
        }
    }
    return true;
}

// The length of the header that `text` begins with, 0 for none.
size_t HeaderLength(std::string_view text) {
    if (text.size() <= kTime.size() || !IsTime(text)) {
        return 0;
    }
    for (const std::string_view level : kLevels) {
        if (text.compare(kTime.size(), level.size(), level) == 0 &&
            text.compare(kTime.size() + level.size(), kBeforeText.size(), kBeforeText) == 0) {
            return kTime.size() + level.size() + kBeforeText.size();
        }
    }
    return 0;
}

size_t PaddedLength(size_t length) {
    return (length + kRijndaelBlockBytes - 1) / kRijndaelBlockBytes * kRijndaelBlockBytes;
}

}  // namespace

int SeverityOf(std::string_view level) {
    const auto* const found = std::find(kLevels.begin(), kLevels.end(), level);
    return found == kLevels.end() ? 0 : static_cast<int>(found - kLevels.begin()) + 1;
}

size_t FindLogHeader(std::string_view text, size_t from, size_t* header) {
    for (size_t at = text.find('\n', from); at != std::string_view::npos;
         at = text.find('\n', at + 1)) {
        *header = HeaderLength(text.substr(at));
        if (*header != 0) {
            return at;
        }
    }
    return std::string_view::npos;
}

LogParser::LogParser(bool isPadded, Receiver onMessage)
    : padded(isPadded), receiver(std::move(onMessage)) {}

void LogParser::Take(std::string_view piece) {
    pending.append(piece);
    const std::string_view text = pending;
    size_t start = 0;
    size_t header = 0;
    for (size_t at = FindLogHeader(text, searched, &header); at != std::string_view::npos;
         at = FindLogHeader(text, start, &header)) {
        const size_t end = at + (padded ? PaddedLength(header) : header);
        if (end > text.size()) {  // the rest of its blanks is still to come
            pending.erase(0, start);
            searched = at - start;
            return;
        }
        HandOver(text.substr(start, at - start));
        const std::string_view head = text.substr(at, header);
        message.time = head.substr(1, 8);
        message.level = head.substr(kTime.size(), header - kTime.size() - kBeforeText.size());
        begun = true;
        start = padded ? std::min(end, text.find_first_not_of(' ', at + header)) : end;
    }
    pending.erase(0, start);
    // The piece may end within a header.
    searched = pending.size() < kLongestHeader ? 0 : pending.size() - kLongestHeader;
    if (pending.size() > kLongestText) {
        HandOver(std::string_view(pending).substr(0, searched));
        pending.erase(0, searched);
        searched = 0;
    }
}

void LogParser::Finish() {
    HandOver(pending);
    pending.clear();
    searched = 0;
    begun = false;
    message = LogMessage();
}

void LogParser::HandOver(std::string_view text) {
    if (padded) {
        size_t blanks = 0;
        while (blanks < kRijndaelBlockBytes - 1 && blanks < text.size() &&
               text[text.size() - 1 - blanks] == ' ') {
            ++blanks;
        }
        text.remove_suffix(blanks);
    }
    if (!begun && text.empty()) {
        return;
    }
    message.text = text;
    receiver(message);
}
