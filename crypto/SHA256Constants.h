#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "crypto/SHA256Blocks.h"

/// The constants of SHA-256: the first 32 fractional bits of roots of the first primes. The
/// compiler computes them. For the files of the digest only.
namespace sha256 {

constexpr size_t kRounds = 64;

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

inline constexpr Hash kInitialHash = RootFractions<8>(2);
inline constexpr std::array<uint32_t, kRounds> kRoundConstants = RootFractions<kRounds>(3);

}  // namespace sha256
