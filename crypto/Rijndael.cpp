#include "crypto/Rijndael.h"

#include <algorithm>
#include <array>
#include <atomic>

#include "crypto/RijndaelTables.h"

using namespace rijndael;

namespace {

constexpr ByteTable kSBox = MakeSBox();
constexpr Tables kEncipher = MakeTables(kSBox, {2, 1, 1, 3});
constexpr Tables kDecipher = MakeTables(MakeInverse(kSBox), {14, 9, 13, 11});

// Row r takes its byte r * shift columns further right.
constexpr size_t kEncipherShift = 1;
constexpr size_t kDecipherShift = 3;

// The address of a table is read where the compiler cannot foresee it. One register then serves for
// all five tables; knowing the address, clang computes that of each table anew for every look-up,
// which makes enciphering a quarter slower.
const Tables* const volatile kEncipherAddress = &kEncipher;
const Tables* const volatile kDecipherAddress = &kDecipher;

using State = uint32_t[kColumns];

uint32_t Load(const uint8_t* bytes) {
    return Word(bytes[0], bytes[1], bytes[2], bytes[3]);
}

void Store(uint32_t word, uint8_t* bytes) {
    for (size_t i = 0; i < 4; ++i) {
        bytes[i] = Byte(word, i);
    }
}

uint32_t SubWord(uint32_t word) {
    return Word(kSBox[Byte(word, 0)], kSBox[Byte(word, 1)], kSBox[Byte(word, 2)],
                kSBox[Byte(word, 3)]);
}

uint32_t InvMixColumn(uint32_t word) {
    uint32_t mixed = 0;
    for (size_t row = 0; row < kColumns; ++row) {
        mixed ^= kDecipher.mixed[row][kSBox[Byte(word, row)]];  // the S-boxes cancel out
    }
    return mixed;
}

[[gnu::always_inline]] inline void LoadState(const unsigned long* rk, const uint8_t* in,
                                             uint32_t* state) {
    for (size_t c = 0; c < kColumns; ++c) {
        state[c] = Load(in + 4 * c) ^ static_cast<uint32_t>(rk[c]);
    }
}

/// A round but the last one. Word by word of the old state: each is done with after its four
/// look-ups, so that old and new state need no more registers together than there are.
template <size_t shift>
[[gnu::always_inline]] inline void Round(const Tables& tables, const unsigned long* rk,
                                         uint32_t* state) {
    State next;
    for (size_t c = 0; c < kColumns; ++c) {
        next[c] = static_cast<uint32_t>(rk[c]);
    }
    for (size_t c = 0; c < kColumns; ++c) {
        const auto lookUp = [&](size_t row, uint32_t byte) {
            next[(c + row * (kColumns - shift)) % kColumns] ^= tables.mixed[row][byte];
        };
        uint32_t word = state[c];
        lookUp(3, word & 0xFF);
        lookUp(2, word >> 8 & 0xFF);
        word >>= 16;
        // No instruction: it keeps the compiler from two shifts of the whole word instead of one.
        asm("" : "+r"(word));
        lookUp(1, word & 0xFF);
        lookUp(0, word >> 8);
    }
    std::copy_n(next, kColumns, state);
}

template <size_t shift>
[[gnu::always_inline]] inline void LastRound(const Tables& tables, const unsigned long* rk,
                                             const uint32_t* state, uint8_t* out) {
    for (size_t c = 0; c < kColumns; ++c) {
        const auto substituted = [&](size_t row) {
            return tables.sbox[Byte(state[(c + row * shift) % kColumns], row)];
        };
        const uint32_t word = Word(substituted(0), substituted(1), substituted(2), substituted(3));
        Store(word ^ static_cast<uint32_t>(rk[c]), out + 4 * c);
    }
}

template <size_t shift>
void ProcessBlock(const Tables& tables, const unsigned long* rk, int32_t nrounds, const uint8_t* in,
                  uint8_t* out) {
    State state;
    LoadState(rk, in, state);
    for (int32_t round = 1; round < nrounds; ++round) {
        rk += kColumns;
        Round<shift>(tables, rk, state);
    }
    LastRound<shift>(tables, rk + kColumns, state, out);
}

/// Two blocks at once: they do not depend on each other, so the processor starts the look-ups of
/// one while those of the other are under way. The fences, which become no instruction, keep the
/// compiler from mixing the rounds of the two any finer than this, for which there are too few
/// registers.
template <size_t shift>
void ProcessTwoBlocks(const Tables& tables, const unsigned long* rk, int32_t nrounds,
                      const uint8_t* in, uint8_t* out) {
    const auto fence = [] { std::atomic_signal_fence(std::memory_order_seq_cst); };
    State first;
    LoadState(rk, in, first);
    State second;
    LoadState(rk, in + kRijndaelBlockBytes, second);
    for (int32_t round = 1; round < nrounds; ++round) {
        rk += kColumns;
        Round<shift>(tables, rk, first);
        fence();
        Round<shift>(tables, rk, second);
        fence();
    }
    rk += kColumns;
    LastRound<shift>(tables, rk, first, out);
    fence();
    LastRound<shift>(tables, rk, second, out + kRijndaelBlockBytes);
}

template <size_t shift>
void ProcessBlocks(const Tables& tables, const unsigned long* rk, int32_t nrounds,
                   const uint8_t* in, uint8_t* out, size_t count) {
    for (; count >= 2; count -= 2) {
        ProcessTwoBlocks<shift>(tables, rk, nrounds, in, out);
        in += 2 * kRijndaelBlockBytes;
        out += 2 * kRijndaelBlockBytes;
    }
    if (count > 0) {
        ProcessBlock<shift>(tables, rk, nrounds, in, out);
    }
}

}  // namespace

int32_t rijndaelSetupEncrypt(unsigned long* rk, const uint8_t* key, int32_t keybits) {
    if (keybits != 128 && keybits != 192 && keybits != 256) {
        return 0;
    }
    const size_t keyWords = static_cast<size_t>(keybits) / 32;
    const size_t rounds = keyWords + 6;
    const size_t words = kColumns * (rounds + 1);
    uint32_t word = 0;
    for (size_t i = 0; i < keyWords; ++i) {
        word = Load(key + 4 * i);
        rk[i] = word;
    }
    uint8_t roundConstant = 1;
    for (size_t first = keyWords; first < words; first += keyWords) {
        word = SubWord(word << 8 | word >> 24) ^ uint32_t { roundConstant } << 24;
        roundConstant = Multiply(roundConstant, 2);
        // Summed up aside, the old words do not wait for the look-ups of the new one.
        uint32_t sum = 0;
        for (size_t i = first; i < std::min(first + keyWords, words); ++i) {
            if (keyWords > 6 && i == first + 4) {
                word = SubWord(word ^ sum);
                sum = 0;
            }
            sum ^= static_cast<uint32_t>(rk[i - keyWords]);
            rk[i] = word ^ sum;
        }
        word ^= sum;
    }
    return static_cast<int32_t>(rounds);
}

int32_t rijndaelSetupDecrypt(unsigned long* rk, const uint8_t* key, int32_t keybits) {
    const int32_t nrounds = rijndaelSetupEncrypt(rk, key, keybits);
    const size_t lastKey = kColumns * static_cast<size_t>(nrounds);
    for (size_t first = 0, last = lastKey; first < last; first += kColumns, last -= kColumns) {
        std::swap_ranges(rk + first, rk + first + kColumns, rk + last);
    }
    for (size_t i = kColumns; i < lastKey; ++i) {
        rk[i] = InvMixColumn(static_cast<uint32_t>(rk[i]));
    }
    return nrounds;
}

void rijndaelEncrypt(const unsigned long* rk, int32_t nrounds,
                     const uint8_t plaintext[kRijndaelBlockBytes],
                     uint8_t ciphertext[kRijndaelBlockBytes]) {
    ProcessBlock<kEncipherShift>(*kEncipherAddress, rk, nrounds, plaintext, ciphertext);
}

void rijndaelDecrypt(const unsigned long* rk, int32_t nrounds,
                     const uint8_t ciphertext[kRijndaelBlockBytes],
                     uint8_t plaintext[kRijndaelBlockBytes]) {
    ProcessBlock<kDecipherShift>(*kDecipherAddress, rk, nrounds, ciphertext, plaintext);
}

void rijndaelEncryptBlocks(const unsigned long* rk, int32_t nrounds, const uint8_t* plaintext,
                           uint8_t* ciphertext, size_t count) {
    ProcessBlocks<kEncipherShift>(*kEncipherAddress, rk, nrounds, plaintext, ciphertext, count);
}

void rijndaelDecryptBlocks(const unsigned long* rk, int32_t nrounds, const uint8_t* ciphertext,
                           uint8_t* plaintext, size_t count) {
    ProcessBlocks<kDecipherShift>(*kDecipherAddress, rk, nrounds, ciphertext, plaintext, count);
}
