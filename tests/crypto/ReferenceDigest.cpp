#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

#include "tests/crypto/Reference.h"

namespace {

std::vector<uint32_t> Primes(size_t count) {
    std::vector<uint32_t> primes;
    for (uint32_t candidate = 2; primes.size() < count; ++candidate) {
        bool prime = true;
        for (uint32_t divisor = 2; divisor < candidate; ++divisor) {
            prime = prime && candidate % divisor != 0;
        }
        if (prime) {
            primes.push_back(candidate);
        }
    }
    return primes;
}

/// The first 32 bits behind the point.
uint32_t Fraction(long double number) {
    return static_cast<uint32_t>(std::floor((number - std::floor(number)) * 4294967296.0L));
}

std::vector<uint32_t> Constants() {
    std::vector<uint32_t> constants;
    for (const uint32_t prime : Primes(64)) {
        constants.push_back(Fraction(std::cbrt(1.0L * prime)));
    }
    return constants;
}

uint32_t Rotated(uint32_t word, int bits) {
    return word >> bits | word << (32 - bits);
}

void ProcessBlock(std::array<uint32_t, 8>& hash, const uint8_t* block) {
    static const std::vector<uint32_t> kConstants = Constants();
    uint32_t w[64];
    for (size_t t = 0; t < 64; ++t) {
        if (t < 16) {
            w[t] = uint32_t{block[4 * t]} << 24 | uint32_t{block[4 * t + 1]} << 16 |
                   uint32_t{block[4 * t + 2]} << 8 | block[4 * t + 3];
        } else {
            const uint32_t sigma0 = Rotated(w[t - 15], 7) ^ Rotated(w[t - 15], 18) ^ w[t - 15] >> 3;
            const uint32_t sigma1 = Rotated(w[t - 2], 17) ^ Rotated(w[t - 2], 19) ^ w[t - 2] >> 10;
            w[t] = sigma1 + w[t - 7] + sigma0 + w[t - 16];
        }
    }
    auto [a, b, c, d, e, f, g, h] = hash;
    for (size_t t = 0; t < 64; ++t) {
        const uint32_t sum1 = Rotated(e, 6) ^ Rotated(e, 11) ^ Rotated(e, 25);
        const uint32_t sum0 = Rotated(a, 2) ^ Rotated(a, 13) ^ Rotated(a, 22);
        const uint32_t t1 = h + sum1 + ((e & f) ^ (~e & g)) + kConstants[t] + w[t];
        const uint32_t t2 = sum0 + ((a & b) ^ (a & c) ^ (b & c));
        h = g;
        g = f;
        f = e;
        e = d + t1;
        d = c;
        c = b;
        b = a;
        a = t1 + t2;
    }
    const uint32_t variables[8] = {a, b, c, d, e, f, g, h};
    for (size_t i = 0; i < 8; ++i) {
        hash[i] += variables[i];
    }
}

}  // namespace

std::string reference::Digest(const char* data, size_t length) {
    std::string padded(data, length);
    padded += '\x80';
    padded.resize((length + 9 + 63) / 64 * 64 - 8);
    for (int shift = 56; shift >= 0; shift -= 8) {
        padded += static_cast<char>(uint64_t{length} * 8 >> shift);
    }
    const std::vector<uint32_t> primes = Primes(8);
    std::array<uint32_t, 8> hash;
    for (size_t i = 0; i < 8; ++i) {
        hash[i] = Fraction(std::sqrt(1.0L * primes[i]));
    }
    for (size_t at = 0; at < padded.size(); at += 64) {
        ProcessBlock(hash, reinterpret_cast<const uint8_t*>(&padded[at]));
    }
    std::string digest;
    for (const uint32_t word : hash) {
        for (int shift = 24; shift >= 0; shift -= 8) {
            digest += static_cast<char>(word >> shift);
        }
    }
    return digest;
}
