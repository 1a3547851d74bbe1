#include "crypto/SHA256.h"

#include <algorithm>

namespace {

constexpr int kRounds = 64;
constexpr size_t kLengthBytes = 8;  // the bit count at the end of the padding

using Hash = std::array<uint32_t, 8>;

// The standard's constants are the first 32 fractional bits of roots of the first primes. The
// compiler computes them.

template <size_t Count>
constexpr std::array<uint32_t, Count> FirstPrimes() {
    std::array<uint32_t, Count> primes{};
    size_t found = 0;
    for (uint32_t candidate = 2; found < Count; ++candidate) {
        bool prime = true;
        for (size_t i = 0; i < found; ++i) {
            prime = prime && candidate % primes[i] != 0;
        }
        if (prime) {
            primes[found++] = candidate;
        }
    }
    return primes;
}

/// The first 32 fractional bits of the square root (degree 2) or cube root (degree 3) of a number
/// below 2^9: the largest root with root^degree <= number * 2^(32 * degree), less its whole part.
constexpr uint32_t RootFraction(uint32_t number, int degree) {
    using Wide = unsigned __int128;
    const Wide limit = Wide{number} << (32 * degree);
    uint64_t root = 0;
    for (uint64_t bit = uint64_t{1} << 36; bit != 0; bit >>= 1) {
        Wide power = 1;
        for (int i = 0; i < degree; ++i) {
            power *= root | bit;
        }
        if (power <= limit) {
            root |= bit;
        }
    }
    return static_cast<uint32_t>(root);
}

template <size_t Count>
constexpr std::array<uint32_t, Count> RootFractions(int degree) {
    std::array<uint32_t, Count> fractions = FirstPrimes<Count>();
    for (uint32_t& fraction : fractions) {
        fraction = RootFraction(fraction, degree);
    }
    return fractions;
}

constexpr Hash kInitialHash = RootFractions<8>(2);
constexpr std::array<uint32_t, kRounds> kRoundConstants = RootFractions<kRounds>(3);

uint32_t RotateRight(uint32_t word, int bits) {
    return word >> bits | word << (32 - bits);
}

/// The last words of the message schedule: word t stands at t % 16.
using Words = std::array<uint32_t, 16>;

/// Replaces the word at `i` by the one that comes sixteen later.
void ExtendSchedule(Words& words, size_t i) {
    const uint32_t w15 = words[(i + 1) % 16];
    const uint32_t w2 = words[(i + 14) % 16];
    const uint32_t sigma0 = RotateRight(w15, 7) ^ RotateRight(w15, 18) ^ w15 >> 3;
    const uint32_t sigma1 = RotateRight(w2, 17) ^ RotateRight(w2, 19) ^ w2 >> 10;
    words[i] += sigma0 + words[(i + 9) % 16] + sigma1;
}

/// Round `i`. The working variables are not moved on by one place a round: the round finds them `i`
/// places further back, and writes the two that change.
void Round(Hash& variables, size_t i, uint32_t input) {
    const auto variable = [&](size_t place) -> uint32_t& { return variables[(place - i) & 7]; };
    const uint32_t a = variable(0), b = variable(1), c = variable(2);
    const uint32_t e = variable(4), f = variable(5), g = variable(6);
    const uint32_t sum0 = RotateRight(a, 2) ^ RotateRight(a, 13) ^ RotateRight(a, 22);
    const uint32_t sum1 = RotateRight(e, 6) ^ RotateRight(e, 11) ^ RotateRight(e, 25);
    const uint32_t choice = g ^ (e & (f ^ g));
    const uint32_t majority = (a & b) | (c & (a | b));
    const uint32_t t1 = variable(7) + sum1 + choice + input;
    variable(3) += t1;
    variable(7) = t1 + sum0 + majority;
}

void ProcessBlock(Hash& hash, const uint8_t* block) {
    Words words;
    for (uint32_t& word : words) {
        word = uint32_t{block[0]} << 24 | uint32_t{block[1]} << 16 | uint32_t{block[2]} << 8 |
               block[3];
        block += 4;
    }
    Hash variables = hash;
    for (size_t first = 0; first < kRounds; first += 16) {
        // Unrolled, every place is a constant and stays in a register: that makes it half as fast
        // again.
#pragma clang loop unroll(full)
        for (size_t i = 0; i < 16; ++i) {
            if (first > 0) {
                ExtendSchedule(words, i);
            }
            Round(variables, i, kRoundConstants[first + i] + words[i]);
        }
    }
    for (size_t i = 0; i < hash.size(); ++i) {
        hash[i] += variables[i];
    }
}

}  // namespace

SHA256::SHA256() {
    reset();
}

void SHA256::reset() {
    processedBytes = 0;
    bufferedBytes = 0;
    hash = kInitialHash;
}

void SHA256::add(const void* data, size_t numBytes) {
    const uint8_t* bytes = static_cast<const uint8_t*>(data);
    if (bufferedBytes > 0) {
        const size_t taken = std::min<size_t>(numBytes, kBlockBytes - bufferedBytes);
        std::copy_n(bytes, taken, &buffer[bufferedBytes]);
        bytes += taken;
        numBytes -= taken;
        bufferedBytes += taken;
        if (bufferedBytes < kBlockBytes) {
            return;
        }
        ProcessBlock(hash, buffer.data());
        processedBytes += kBlockBytes;
    }
    for (; numBytes >= kBlockBytes; numBytes -= kBlockBytes, bytes += kBlockBytes) {
        ProcessBlock(hash, bytes);
        processedBytes += kBlockBytes;
    }
    std::copy_n(bytes, numBytes, buffer.begin());
    bufferedBytes = numBytes;
}

void SHA256::getHash(uint8_t digest[kHashBytes]) const {
    // The padding is processed on copies, so that the stream can go on.
    std::array<uint8_t, 2 * kBlockBytes> padded{};
    uint8_t* end = std::copy_n(buffer.begin(), bufferedBytes, padded.begin());
    *end = 0x80;
    const size_t length =
        bufferedBytes + 1 + kLengthBytes <= kBlockBytes ? kBlockBytes : 2 * kBlockBytes;
    uint64_t bits = (processedBytes + bufferedBytes) * 8;
    for (size_t at = length; bits != 0; bits >>= 8) {
        padded[--at] = static_cast<uint8_t>(bits);
    }

    Hash final = hash;
    for (size_t at = 0; at < length; at += kBlockBytes) {
        ProcessBlock(final, &padded[at]);
    }
    for (const uint32_t word : final) {
        for (int shift = 24; shift >= 0; shift -= 8) {
            *digest++ = static_cast<uint8_t>(word >> shift);
        }
    }
}

std::string SHA256::getHash() const {
    constexpr char kDigits[] = "0123456789abcdef";
    uint8_t digest[kHashBytes];
    getHash(digest);
    std::string text;
    text.reserve(2 * kHashBytes);
    for (const uint8_t byte : digest) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}

std::string SHA256::operator()(const void* data, size_t numBytes) {
    reset();
    add(data, numBytes);
    return getHash();
}

std::string SHA256::operator()(const std::string& text) {
    return operator()(text.data(), text.size());
}
