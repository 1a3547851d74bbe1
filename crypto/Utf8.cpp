#include "crypto/Utf8.h"

namespace {

// The characters that begin with one of these bytes: how many bytes follow, and between which
// bounds the second lies. Those bounds leave out what is longer than it need be, surrogates and
// what lies above U+10FFFF.
struct Lead {
    unsigned char first;
    unsigned char last;
    std::size_t following;
    unsigned char secondLeast;
    unsigned char secondMost;
};
constexpr Lead kLeads[] = {
    {0xC2, 0xDF, 1, 0x80, 0xBF}, {0xE0, 0xE0, 2, 0xA0, 0xBF}, {0xE1, 0xEC, 2, 0x80, 0xBF},
    {0xED, 0xED, 2, 0x80, 0x9F}, {0xEE, 0xEF, 2, 0x80, 0xBF}, {0xF0, 0xF0, 3, 0x90, 0xBF},
    {0xF1, 0xF3, 3, 0x80, 0xBF}, {0xF4, 0xF4, 3, 0x80, 0x8F},
};

const Lead* LeadOf(unsigned char byte) {
    for (const Lead& lead : kLeads) {
        if (byte >= lead.first && byte <= lead.last) {
            return &lead;
        }
    }
    return nullptr;
}

}  // namespace

std::size_t Utf8CharacterLength(std::string_view bytes) {
    const auto at = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    if (bytes.empty()) {
        return 0;
    }
    if (at(0) < 0x80) {
        return 1;
    }
    const Lead* lead = LeadOf(at(0));
    if (lead == nullptr || bytes.size() <= lead->following || at(1) < lead->secondLeast ||
        at(1) > lead->secondMost) {
        return 0;
    }
    for (std::size_t i = 2; i <= lead->following; ++i) {
        if ((at(i) & 0xC0) != 0x80) {
            return 0;
        }
    }
    return lead->following + 1;
}

bool IsUtf8(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t length = Utf8CharacterLength(bytes);
        if (length == 0) {
            return false;
        }
        bytes.remove_prefix(length);
    }
    return true;
}
