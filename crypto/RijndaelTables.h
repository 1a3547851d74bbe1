#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// The look-up tables of AES. They follow from the arithmetic of GF(2^8) and are made by the
/// compiler. For the files of the cipher only.
namespace rijndael {

/// Words of a block, which are the columns of its state.
constexpr size_t kColumns = 4;

/// a * b modulo x^8 + x^4 + x^3 + x + 1.
constexpr uint8_t Multiply(uint8_t a, uint8_t b) {
    uint8_t product = 0;
    for (; b != 0; b >>= 1) {
        if (b & 1) {
            product ^= a;
        }
        a = static_cast<uint8_t>(a << 1 ^ (a & 0x80 ? 0x1B : 0));
    }
    return product;
}

/// a^254: the inverse, and 0 for 0.
constexpr uint8_t Invert(uint8_t a) {
    uint8_t inverse = 1;
    for (int power = 2; power <= 128; power *= 2) {
        a = Multiply(a, a);
        inverse = Multiply(inverse, a);
    }
    return inverse;
}

constexpr uint32_t Word(uint8_t b0, uint8_t b1, uint8_t b2, uint8_t b3) {
    return uint32_t{b0} << 24 | uint32_t{b1} << 16 | uint32_t{b2} << 8 | b3;
}

/// Byte `index` of a word, 0 being the most significant one.
constexpr uint8_t Byte(uint32_t word, size_t index) {
    return static_cast<uint8_t>(word >> (24 - 8 * index));
}

using ByteTable = std::array<uint8_t, 256>;
using WordTable = std::array<uint32_t, 256>;

constexpr ByteTable MakeSBox() {
    ByteTable sbox{};
    for (size_t x = 0; x < 256; ++x) {
        const uint8_t inverse = Invert(static_cast<uint8_t>(x));
        int value = 0x63;
        for (int rotation = 0; rotation <= 4; ++rotation) {
            value ^= inverse << rotation | inverse >> (8 - rotation);
        }
        sbox[x] = static_cast<uint8_t>(value);
    }
    return sbox;
}

constexpr ByteTable MakeInverse(const ByteTable& sbox) {
    ByteTable inverse{};
    for (size_t x = 0; x < 256; ++x) {
        inverse[sbox[x]] = static_cast<uint8_t>(x);
    }
    return inverse;
}

/// What one direction of the cipher looks up.
struct Tables {
    ByteTable sbox;
    /// What a byte of row 0 to 3 contributes to its column after the S-box and the column mixing.
    std::array<WordTable, kColumns> mixed;
};

/// @param column  the first column of the mixing matrix; the others are its rotations
constexpr Tables MakeTables(const ByteTable& sbox, const std::array<uint8_t, 4>& column) {
    Tables tables{sbox, {}};
    for (size_t x = 0; x < 256; ++x) {
        const uint8_t s = sbox[x];
        uint32_t word = Word(Multiply(s, column[0]), Multiply(s, column[1]), Multiply(s, column[2]),
                             Multiply(s, column[3]));
        for (WordTable& table : tables.mixed) {
            table[x] = word;
            word = word >> 8 | word << 24;
        }
    }
    return tables;
}

}  // namespace rijndael
