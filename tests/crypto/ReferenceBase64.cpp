#include <cstdint>

#include "tests/crypto/Reference.h"

namespace {

const std::string kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace

std::string reference::Base64Encode(const char* data, size_t length) {
    std::string text;
    unsigned waiting = 0;  // bits that make no character yet
    int count = 0;         // of them
    const auto put = [&](unsigned six) { text += kAlphabet[six & 63]; };
    for (size_t i = 0; i < length; ++i) {
        waiting = (waiting << 8 | static_cast<uint8_t>(data[i])) & 0xFFFF;
        for (count += 8; count >= 6; count -= 6) {
            put(waiting >> (count - 6));
        }
    }
    if (count > 0) {
        put(waiting << (6 - count));
    }
    text.resize((text.size() + 3) / 4 * 4, '=');
    return text;
}

std::string reference::Base64Decode(const char* data, size_t length) {
    std::string bytes;
    unsigned group[4];
    size_t members = 0;
    const auto flush = [&] {
        const unsigned formulas[3] = {group[0] << 2 | (group[1] >> 4 & 3),
                                      group[1] << 4 | (group[2] >> 2 & 15),
                                      group[2] << 6 | group[3]};
        for (size_t i = 0; i + 1 < members; ++i) {
            bytes += static_cast<char>(formulas[i]);
        }
        members = 0;
    };
    for (size_t i = 0; i < length && data[i] != '='; ++i) {
        const size_t value = kAlphabet.find(data[i]);
        if (members == 0) {
            group[1] = group[2] = group[3] = 0;
        }
        group[members++] = value == std::string::npos ? 255 : static_cast<unsigned>(value);
        if (members == 4) {
            flush();
        }
    }
    flush();
    return bytes;
}
