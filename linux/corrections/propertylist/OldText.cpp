#include "linux/corrections/propertylist/OldText.h"

#include <algorithm>

namespace {

constexpr std::size_t kDeepest = 512;

/// Where a comment or a quoted string ends that begins at `start`; `start` itself if none does.
std::size_t EndOfSpan(std::string_view text, std::size_t start) {
    const std::string_view rest = text.substr(start);
    const auto endAfter = [&](std::string_view end) {
        const std::size_t found = rest.find(end, 2);
        return found == std::string_view::npos ? text.size() : start + found + end.size();
    };
    if (rest.substr(0, 2) == "/*") {
        return endAfter("*/");
    }
    if (rest.substr(0, 2) == "//") {
        return endAfter("\n");
    }
    if (rest[0] != '"' && rest[0] != '\'') {
        return start;
    }
    std::size_t at = 1;
    while (at < rest.size() && rest[at] != rest[0]) {
        at += rest[at] == '\\' ? 2 : 1;
    }
    return std::min(start + at + 1, text.size());
}

}  // namespace

bool IsOldText(std::string_view text) {
    std::size_t depth = 0;
    bool isOpened = false;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = EndOfSpan(text, at);
        if (end != at) {
            at = end;
            continue;
        }
        const char character = text[at++];
        if (character == '{' || character == '(') {
            isOpened = true;
            if (++depth > kDeepest) {
                return false;
            }
        } else if ((character == '}' || character == ')') && depth > 0) {
            --depth;
        } else if (!isOpened &&
                   std::string_view(" \t\r\n").find(character) == std::string_view::npos) {
            return false;
        }
    }
    return isOpened;
}
