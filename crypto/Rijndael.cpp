#include "crypto/Rijndael.h"

#include <algorithm>
#include <array>

namespace {

constexpr int kColumns = 4;  // 32-bit words of a block

// The tables follow from the arithmetic of GF(2^8) and are made by the compiler.

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
constexpr uint8_t Byte(uint32_t word, int index) {
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

/// One direction of the cipher.
struct Direction {
    ByteTable sbox;
    /// What a byte of row 0 to 3 contributes to its column after the S-box and the column mixing.
    std::array<WordTable, kColumns> mixed;
    /// Row r takes its byte r * shift columns further right.
    int shift;
};

/// @param column  the first column of the mixing matrix; the others are its rotations
constexpr Direction MakeDirection(const ByteTable& sbox, const std::array<uint8_t, 4>& column,
                                  int shift) {
    Direction direction{sbox, {}, shift};
    for (size_t x = 0; x < 256; ++x) {
        const uint8_t s = sbox[x];
        uint32_t word = Word(Multiply(s, column[0]), Multiply(s, column[1]), Multiply(s, column[2]),
                             Multiply(s, column[3]));
        for (WordTable& table : direction.mixed) {
            table[x] = word;
            word = word >> 8 | word << 24;
        }
    }
    return direction;
}

constexpr ByteTable kSBox = MakeSBox();
constexpr Direction kEncipher = MakeDirection(kSBox, {2, 1, 1, 3}, 1);
constexpr Direction kDecipher = MakeDirection(MakeInverse(kSBox), {14, 9, 13, 11}, 3);

uint32_t Load(const uint8_t* bytes) {
    return Word(bytes[0], bytes[1], bytes[2], bytes[3]);
}

void Store(uint32_t word, uint8_t* bytes) {
    for (int i = 0; i < 4; ++i) {
        bytes[i] = Byte(word, i);
    }
}

uint32_t SubWord(uint32_t word) {
    return Word(kSBox[Byte(word, 0)], kSBox[Byte(word, 1)], kSBox[Byte(word, 2)],
                kSBox[Byte(word, 3)]);
}

uint32_t InvMixColumn(uint32_t word) {
    uint32_t mixed = 0;
    int row = 0;
    for (const WordTable& table : kDecipher.mixed) {
        mixed ^= table[kSBox[Byte(word, row++)]];  // the S-boxes cancel out
    }
    return mixed;
}

template <const Direction& direction>
void ProcessBlock(const unsigned long* rk, int32_t nrounds, const uint8_t* in, uint8_t* out) {
    uint32_t state[kColumns];
    const auto byte = [&state](int column, int row) {
        return Byte(state[(column + row * direction.shift) % kColumns], row);
    };
    for (int c = 0; c < kColumns; ++c) {
        state[c] = Load(in + 4 * c) ^ static_cast<uint32_t>(rk[c]);
    }
    for (int32_t round = 1; round < nrounds; ++round) {
        rk += kColumns;
        uint32_t next[kColumns];
        for (int c = 0; c < kColumns; ++c) {
            next[c] = direction.mixed[0][byte(c, 0)] ^ direction.mixed[1][byte(c, 1)] ^
                      direction.mixed[2][byte(c, 2)] ^ direction.mixed[3][byte(c, 3)] ^
                      static_cast<uint32_t>(rk[c]);
        }
        std::copy_n(next, kColumns, state);
    }
    rk += kColumns;
    for (int c = 0; c < kColumns; ++c) {
        const uint32_t substituted = Word(direction.sbox[byte(c, 0)], direction.sbox[byte(c, 1)],
                                          direction.sbox[byte(c, 2)], direction.sbox[byte(c, 3)]);
        Store(substituted ^ static_cast<uint32_t>(rk[c]), out + 4 * c);
    }
}

}  // namespace

int32_t rijndaelSetupEncrypt(unsigned long* rk, const uint8_t* key, int32_t keybits) {
    if (keybits != 128 && keybits != 192 && keybits != 256) {
        return 0;
    }
    const int keyWords = keybits / 32;
    const int32_t nrounds = keyWords + 6;
    for (int i = 0; i < keyWords; ++i) {
        rk[i] = Load(key + 4 * i);
    }
    uint8_t roundConstant = 1;
    for (int i = keyWords; i < kColumns * (nrounds + 1); ++i) {
        uint32_t word = static_cast<uint32_t>(rk[i - 1]);
        if (i % keyWords == 0) {
            word = SubWord(word << 8 | word >> 24) ^ uint32_t { roundConstant } << 24;
            roundConstant = Multiply(roundConstant, 2);
        } else if (keyWords > 6 && i % keyWords == 4) {
            word = SubWord(word);
        }
        rk[i] = rk[i - keyWords] ^ word;
    }
    return nrounds;
}

int32_t rijndaelSetupDecrypt(unsigned long* rk, const uint8_t* key, int32_t keybits) {
    const int32_t nrounds = rijndaelSetupEncrypt(rk, key, keybits);
    for (int first = 0, last = kColumns * nrounds; first < last;
         first += kColumns, last -= kColumns) {
        std::swap_ranges(rk + first, rk + first + kColumns, rk + last);
    }
    for (int i = kColumns; i < kColumns * nrounds; ++i) {
        rk[i] = InvMixColumn(static_cast<uint32_t>(rk[i]));
    }
    return nrounds;
}

void rijndaelEncrypt(const unsigned long* rk, int32_t nrounds,
                     const uint8_t plaintext[kRijndaelBlockBytes],
                     uint8_t ciphertext[kRijndaelBlockBytes]) {
    ProcessBlock<kEncipher>(rk, nrounds, plaintext, ciphertext);
}

void rijndaelDecrypt(const unsigned long* rk, int32_t nrounds,
                     const uint8_t ciphertext[kRijndaelBlockBytes],
                     uint8_t plaintext[kRijndaelBlockBytes]) {
    ProcessBlock<kDecipher>(rk, nrounds, ciphertext, plaintext);
}
