#include "tools/LogPrinter.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "crypto/Utf8.h"
#include "tools/Explanations.h"

namespace {

constexpr int kFailure = 2;
constexpr int kWarning = 3;

constexpr char kRed[] = "\x1b[31m";
constexpr char kYellow[] = "\x1b[33m";
constexpr char kFaint[] = "\x1b[2m";
constexpr char kPlain[] = "\x1b[0m";

const char* ColourOf(const LogMessage& message) {
    const int severity = SeverityOf(message.level);
    if (severity == 0 || severity > kWarning) {
        return "";
    }
    return severity <= kFailure ? kRed : kYellow;
}

std::string Number(const char* format, char byte) {
    std::array<char, 8> text = {};
    snprintf(text.data(), text.size(), format, static_cast<unsigned>(byte) & 0xffU);
    return text.data();
}

// Control characters of one byte, and those of two (U+0080 to U+009F).
bool IsControl(std::string_view character) {
    const auto first = static_cast<unsigned char>(character[0]);
    return character.size() == 1 ? first < ' ' || first == 0x7f
                                 : first == 0xc2 && static_cast<unsigned char>(character[1]) < 0xa0;
}

bool IsOrdinary(char letter) {
    return letter >= ' ' && letter <= '~' && letter != '"' && letter != '\\';
}

// Calls `take` with each character and whether it is one; with those that are nothing special in
// any output together.
template <typename Take>
void ForEachCharacter(std::string_view text, Take take) {
    while (!text.empty()) {
        const auto* const special = std::find_if_not(text.begin(), text.end(), IsOrdinary);
        const auto ordinary = static_cast<size_t>(special - text.begin());
        const size_t length = ordinary != 0 ? ordinary : Utf8CharacterLength(text);
        take(text.substr(0, length == 0 ? 1 : length), length != 0);
        text.remove_prefix(length == 0 ? 1 : length);
    }
}

}  // namespace

std::string SafeForTerminal(std::string_view text) {
    std::string safe;
    safe.reserve(text.size());
    ForEachCharacter(text, [&safe](std::string_view character, bool isUtf8) {
        const bool isShown = character == "\n" || character == "\t";
        if (isUtf8 && (isShown || !IsControl(character))) {
            safe += character;
            return;
        }
        for (const char byte : character) {
            safe += Number("\\x%02x", byte);
        }
    });
    return safe;
}

std::string JsonString(std::string_view text) {
    std::string json = "\"";
    ForEachCharacter(text, [&json](std::string_view character, bool isUtf8) {
        if (!isUtf8) {
            json += "\xef\xbf\xbd";
        } else if (character == "\"" || character == "\\") {
            json += '\\';
            json += character;
        } else if (character.size() == 1 && IsControl(character)) {
            json += Number("\\u%04x", character[0]);
        } else {
            json += character;
        }
    });
    return json + '"';
}

LogPrinter::LogPrinter(bool isJson, bool isColoured, bool explains)
    : json(isJson), colour(isColoured), explain(explains) {}

std::string LogPrinter::Line(const std::string& log, const LogMessage& message) const {
    return json ? ForPrograms(log, message) : ForPeople(message);
}

std::string LogPrinter::ForPeople(const LogMessage& message) const {
    std::string line;
    if (!message.level.empty()) {
        line = message.time + " - " + message.level + " : ";
    }
    line += SafeForTerminal(message.text);
    const char* shade = colour ? ColourOf(message) : "";
    if (*shade != '\0') {
        line = shade + line + kPlain;
    }
    line += '\n';
    if (const Explanation* found = explain ? Explain(message) : nullptr) {
        line += std::string(colour ? kFaint : "") + "    It means: " + found->meaning +
                "\n    To do: " + found->advice + (colour ? kPlain : "") + '\n';
    }
    return line;
}

std::string LogPrinter::ForPrograms(const std::string& log, const LogMessage& message) const {
    std::string line = "{\"log\": " + JsonString(log) + ", \"time\": " + JsonString(message.time) +
                       ", \"level\": " + JsonString(message.level) +
                       ", \"text\": " + JsonString(message.text);
    if (const Explanation* found = explain ? Explain(message) : nullptr) {
        line += ", \"source\": " + JsonString(found->source) +
                ", \"meaning\": " + JsonString(found->meaning) +
                ", \"advice\": " + JsonString(found->advice);
    }
    return line + "}\n";
}
