#include "linux/corrections/propertylist/Unicode.h"

namespace {

constexpr char32_t kLast = 0x10FFFF;

bool IsSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDFFF;
}

void AppendUtf16(char32_t character, std::u16string& text) {
    if (character < 0x10000) {
        text += static_cast<char16_t>(character);
        return;
    }
    const char32_t rest = character - 0x10000;
    text += static_cast<char16_t>(0xD800 + (rest >> 10));
    text += static_cast<char16_t>(0xDC00 + (rest & 0x3FF));
}

}  // namespace

bool DecodeUtf8(std::string_view bytes, std::u16string& text) {
    text.clear();
    text.reserve(bytes.size());
    for (std::size_t at = 0; at < bytes.size();) {
        const unsigned char first = static_cast<unsigned char>(bytes[at++]);
        if (first < 0x80) {
            text += static_cast<char16_t>(first);
            continue;
        }
        const int more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
        if (first < 0xC2 || first > 0xF4 || bytes.size() - at < static_cast<std::size_t>(more)) {
            return false;
        }
        char32_t character = first & (0x3F >> more);
        for (int i = 0; i < more; ++i) {
            const unsigned char next = static_cast<unsigned char>(bytes[at++]);
            if ((next & 0xC0) != 0x80) {
                return false;
            }
            character = (character << 6) | (next & 0x3F);
        }
        constexpr char32_t kShortest[] = {0, 0x80, 0x800, 0x10000};
        if (character < kShortest[more] || character > kLast || IsSurrogate(character)) {
            return false;
        }
        AppendUtf16(character, text);
    }
    return true;
}

void AppendUtf8(char32_t character, std::string& bytes) {
    if (character < 0x80) {
        bytes += static_cast<char>(character);
        return;
    }
    const int more = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
    constexpr unsigned kLead[] = {0, 0xC0, 0xE0, 0xF0};
    bytes += static_cast<char>(kLead[more] | (character >> (6 * more)));
    for (int i = more - 1; i >= 0; --i) {
        bytes += static_cast<char>(0x80 | ((character >> (6 * i)) & 0x3F));
    }
}

bool AppendUtf8(std::u16string_view text, std::string& bytes) {
    for (std::size_t at = 0; at < text.size(); ++at) {
        char32_t character = text[at];
        if (IsSurrogate(character)) {
            const char32_t next = at + 1 < text.size() ? text[at + 1] : 0;
            if (character >= 0xDC00 || next < 0xDC00 || next > 0xDFFF) {
                return false;
            }
            character = 0x10000 + ((character - 0xD800) << 10) + (next - 0xDC00);
            ++at;
        }
        AppendUtf8(character, bytes);
    }
    return true;
}
