#include <array>
#include <cstdint>
#include <vector>

#include "tests/crypto/Reference.h"

namespace {

constexpr size_t kBlock = 16;

using ByteTable = std::array<uint8_t, 256>;
using Block = std::array<uint8_t, kBlock>;  // byte r + 4c is row r of column c

uint8_t Times(uint8_t a, uint8_t b) {
    unsigned product = 0;
    for (int bit = 7; bit >= 0; --bit) {
        product = product << 1 ^ (product & 0x80 ? 0x11B : 0) ^ (b >> bit & 1 ? a : 0);
    }
    return static_cast<uint8_t>(product);
}

ByteTable TimesTable(uint8_t factor) {
    ByteTable table;
    for (unsigned x = 0; x < 256; ++x) {
        table[x] = Times(static_cast<uint8_t>(x), factor);
    }
    return table;
}

ByteTable SBox() {
    ByteTable sbox;
    for (unsigned x = 0; x < 256; ++x) {
        unsigned inverse = 0;
        for (unsigned y = 1; y < 256 && inverse == 0; ++y) {
            inverse = Times(static_cast<uint8_t>(x), static_cast<uint8_t>(y)) == 1 ? y : 0;
        }
        unsigned value = 0;
        for (unsigned bit = 0; bit < 8; ++bit) {
            const unsigned sum = inverse >> bit ^ inverse >> (bit + 4) % 8 ^
                                 inverse >> (bit + 5) % 8 ^ inverse >> (bit + 6) % 8 ^
                                 inverse >> (bit + 7) % 8 ^ 0x63u >> bit;
            value |= (sum & 1) << bit;
        }
        sbox[x] = static_cast<uint8_t>(value);
    }
    return sbox;
}

ByteTable Inverse(const ByteTable& table) {
    ByteTable inverse;
    for (unsigned x = 0; x < 256; ++x) {
        inverse[table[x]] = static_cast<uint8_t>(x);
    }
    return inverse;
}

const ByteTable kSBox = SBox();
const ByteTable kInverseSBox = Inverse(kSBox);

std::vector<Block> ExpandKey(const std::string& key) {
    const size_t keyBytes = key.size();
    const size_t rounds = keyBytes / 4 + 6;
    std::string bytes = key;
    uint8_t constant = 1;
    while (bytes.size() < kBlock * (rounds + 1)) {
        std::string word = bytes.substr(bytes.size() - 4);
        const size_t inKey = bytes.size() % keyBytes;
        const auto substitute = [](char& byte) {
            byte = static_cast<char>(kSBox[static_cast<uint8_t>(byte)]);
        };
        if (inKey == 0) {
            word = word.substr(1) + word[0];
            for (char& byte : word) {
                substitute(byte);
            }
            word[0] = static_cast<char>(word[0] ^ constant);
            constant = Times(constant, 2);
        } else if (keyBytes == 32 && inKey == 16) {
            for (char& byte : word) {
                substitute(byte);
            }
        }
        for (const char byte : word) {
            bytes += static_cast<char>(bytes[bytes.size() - keyBytes] ^ byte);
        }
    }
    std::vector<Block> keys(rounds + 1);
    for (size_t i = 0; i < keys.size() * kBlock; ++i) {
        keys[i / kBlock][i % kBlock] = static_cast<uint8_t>(bytes[i]);
    }
    return keys;
}

void AddKey(Block& state, const Block& key) {
    for (size_t i = 0; i < kBlock; ++i) {
        state[i] ^= key[i];
    }
}

void Substitute(Block& state, const ByteTable& table) {
    for (uint8_t& byte : state) {
        byte = table[byte];
    }
}

/// Moves row r by r * `columns` to the left.
void ShiftRows(Block& state, size_t columns) {
    const Block before = state;
    for (size_t i = 0; i < kBlock; ++i) {
        state[i] = before[(i + 4 * (i % 4) * columns) % kBlock];
    }
}

/// @param factors  what the byte itself and the next three of its column are multiplied by
void MixColumns(Block& state, const std::array<ByteTable, 4>& factors) {
    const Block before = state;
    for (size_t i = 0; i < kBlock; ++i) {
        state[i] = 0;
        for (size_t next = 0; next < 4; ++next) {
            state[i] ^= factors[next][before[i / 4 * 4 + (i + next) % 4]];
        }
    }
}

template <typename Cipher>
std::string EachBlock(std::string blocks, Cipher cipher) {
    for (size_t at = 0; at + kBlock <= blocks.size(); at += kBlock) {
        Block state;
        for (size_t i = 0; i < kBlock; ++i) {
            state[i] = static_cast<uint8_t>(blocks[at + i]);
        }
        cipher(state);
        for (size_t i = 0; i < kBlock; ++i) {
            blocks[at + i] = static_cast<char>(state[i]);
        }
    }
    return blocks;
}

}  // namespace

std::string reference::Encipher(const std::string& key, std::string blocks) {
    static const std::array<ByteTable, 4> kFactors = {TimesTable(2), TimesTable(3), TimesTable(1),
                                                      TimesTable(1)};
    const std::vector<Block> keys = ExpandKey(key);
    return EachBlock(std::move(blocks), [&](Block& state) {
        AddKey(state, keys.front());
        for (size_t round = 1; round < keys.size(); ++round) {
            Substitute(state, kSBox);
            ShiftRows(state, 1);
            if (round + 1 < keys.size()) {
                MixColumns(state, kFactors);
            }
            AddKey(state, keys[round]);
        }
    });
}

std::string reference::Decipher(const std::string& key, std::string blocks) {
    static const std::array<ByteTable, 4> kFactors = {TimesTable(14), TimesTable(11),
                                                      TimesTable(13), TimesTable(9)};
    const std::vector<Block> keys = ExpandKey(key);
    return EachBlock(std::move(blocks), [&](Block& state) {
        for (size_t round = keys.size() - 1; round > 0; --round) {
            AddKey(state, keys[round]);
            if (round + 1 < keys.size()) {
                MixColumns(state, kFactors);
            }
            ShiftRows(state, 3);
            Substitute(state, kInverseSBox);
        }
        AddKey(state, keys.front());
    });
}
