// The Base64 functions of StringUtils.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "crypto/StringUtils.h"

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char kPadding = '=';
constexpr uint8_t kForeignCharacter = 255;

constexpr size_t kGroupBytes = 3;
constexpr size_t kGroupCharacters = 4;

/// The two characters of every 12 bits: half a group with one look-up.
using Pairs = std::array<char[2], 4096>;

constexpr Pairs MakePairs() {
    Pairs pairs{};
    for (size_t bits = 0; bits < pairs.size(); ++bits) {
        pairs[bits][0] = kAlphabet[bits >> 6];
        pairs[bits][1] = kAlphabet[bits & 63];
    }
    return pairs;
}

/// What a character at each place of its group adds to the group's 24 bits.
using Parts = std::array<std::array<uint32_t, 256>, kGroupCharacters>;

constexpr Parts MakeParts() {
    std::array<uint8_t, 256> values{};
    for (uint8_t& value : values) {
        value = kForeignCharacter;
    }
    for (uint8_t value = 0; value < 64; ++value) {
        values[static_cast<uint8_t>(kAlphabet[value])] = value;
    }
    Parts parts{};
    for (size_t character = 0; character < values.size(); ++character) {
        const uint32_t value = values[character];
        parts[0][character] = (value & 63) << 18;
        parts[1][character] = (value & 63) << 12;
        parts[2][character] = (value & 63) << 6;
        // Meant: at the last place nothing cuts off the two bits that only a foreign character has.
        parts[3][character] = value;
    }
    return parts;
}

constexpr Pairs kPairs = MakePairs();
constexpr Parts kParts = MakeParts();

void EncodeGroup(const uint8_t* bytes, char* characters) {
    const uint32_t bits = uint32_t{bytes[0]} << 16 | uint32_t{bytes[1]} << 8 | bytes[2];
    std::memcpy(characters, kPairs[bits >> 12], 2);
    std::memcpy(characters + 2, kPairs[bits & 0xFFF], 2);
}

/// Decodes `count` characters, at most a group, into `count` - 1 bytes.
void DecodeGroup(const char* characters, size_t count, char* bytes) {
    uint32_t bits = 0;
    for (size_t i = 0; i < count; ++i) {
        bits |= kParts[i][static_cast<uint8_t>(characters[i])];
    }
    for (size_t i = 0; i + 1 < count; ++i) {
        bytes[i] = static_cast<char>(bits >> (16 - 8 * i));
    }
}

}  // namespace

std::string StringUtils::Base64Encode(const std::string& bytes) {
    const size_t groups = bytes.size() / kGroupBytes;
    const size_t tail = bytes.size() % kGroupBytes;
    std::string text((groups + (tail > 0)) * kGroupCharacters, kPadding);
    const uint8_t* from = reinterpret_cast<const uint8_t*>(bytes.data());
    char* to = &text[0];
    for (size_t i = 0; i < groups; ++i) {
        EncodeGroup(from, to);
        from += kGroupBytes;
        to += kGroupCharacters;
    }
    if (tail > 0) {
        uint8_t padded[kGroupBytes] = {};
        char group[kGroupCharacters];
        std::copy_n(from, tail, padded);
        EncodeGroup(padded, group);
        std::copy_n(group, tail + 1, to);
    }
    return text;
}

std::string StringUtils::Base64Decode(const std::string& text) {
    const size_t length = std::min(text.find(kPadding), text.size());
    const size_t groups = length / kGroupCharacters;
    const size_t tail = length % kGroupCharacters;
    std::string bytes(groups * kGroupBytes + (tail > 0 ? tail - 1 : 0), '\0');
    const char* from = text.data();
    char* to = &bytes[0];
    for (size_t i = 0; i < groups; ++i) {
        DecodeGroup(from, kGroupCharacters, to);
        from += kGroupCharacters;
        to += kGroupBytes;
    }
    DecodeGroup(from, tail, to);
    return bytes;
}
