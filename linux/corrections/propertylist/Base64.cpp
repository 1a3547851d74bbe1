#include "linux/corrections/propertylist/Base64.h"

#include <array>
#include <cstdint>

namespace {

constexpr std::string_view kDigits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::int8_t kNoDigit = -1;

constexpr std::array<std::int8_t, 256> DigitValues() {
    std::array<std::int8_t, 256> values{};
    for (std::int8_t& value : values) {
        value = kNoDigit;
    }
    for (std::size_t i = 0; i < kDigits.size(); ++i) {
        values[static_cast<std::uint8_t>(kDigits[i])] = static_cast<std::int8_t>(i);
    }
    return values;
}

constexpr std::array<std::int8_t, 256> kDigitValues = DigitValues();

std::uint32_t Byte(std::string_view bytes, std::size_t index) {
    return index < bytes.size() ? static_cast<std::uint8_t>(bytes[index]) : 0;
}

}  // namespace

bool DecodeBase64(std::string_view text, std::string& bytes) {
    bytes.clear();
    bytes.reserve(text.size() / 4 * 3);
    std::uint32_t group = 0;
    std::size_t digits = 0;
    std::size_t padding = 0;
    for (const char character : text) {
        if (character == ' ' || character == '\t' || character == '\r' || character == '\n') {
            continue;
        }
        if (character == '=') {
            ++padding;
            continue;
        }
        const std::int8_t value = kDigitValues[static_cast<std::uint8_t>(character)];
        if (value == kNoDigit || padding > 0) {
            return false;
        }
        group = (group << 6) | static_cast<std::uint32_t>(value);
        if (++digits % 4 == 0) {
            bytes += static_cast<char>(group >> 16);
            bytes += static_cast<char>(group >> 8);
            bytes += static_cast<char>(group);
        }
    }
    const std::size_t rest = digits % 4;
    if (rest == 1 || padding != (4 - rest) % 4) {
        return false;
    }
    if (rest >= 2) {
        bytes += static_cast<char>(group >> (rest == 2 ? 4 : 10));
    }
    if (rest == 3) {
        bytes += static_cast<char>(group >> 2);
    }
    return true;
}

void AppendBase64(std::string_view bytes, std::string_view indent, std::size_t width,
                  std::string& text) {
    std::size_t column = 0;
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        if (column == 0) {
            text += indent;
        }
        const std::uint32_t group =
            Byte(bytes, at) << 16 | Byte(bytes, at + 1) << 8 | Byte(bytes, at + 2);
        const std::size_t left = bytes.size() - at;
        text += kDigits[group >> 18];
        text += kDigits[group >> 12 & 0x3F];
        text += left > 1 ? kDigits[group >> 6 & 0x3F] : '=';
        text += left > 2 ? kDigits[group & 0x3F] : '=';
        column += 4;
        if (column >= width || left <= 3) {
            text += '\n';
            column = 0;
        }
    }
}
