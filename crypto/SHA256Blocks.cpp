#include "crypto/SHA256Blocks.h"

#include "crypto/SHA256Constants.h"

namespace {

using namespace sha256;

// Read where the compiler cannot foresee it, one address in a register serves for all constants,
// and its end for the end of the rounds. clang else computes an address anew in every round: 4 %
// slower.
const uint32_t* const volatile kRoundConstantsEnd = kRoundConstants.data() + kRounds;

constexpr size_t kWords = 16;

uint32_t RotateRight(uint32_t word, int bits) {
    return word >> bits | word << (32 - bits);
}

// The sums of the standard, which rotate a word by several distances, with one rotation inside the
// other: fewer copies of the word, and with them fewer instructions than as they are written there.

uint32_t Sum0(uint32_t a) {  // by 2, 13 and 22
    return RotateRight(a ^ RotateRight(a ^ RotateRight(a, 9), 11), 2);
}
uint32_t Sum1(uint32_t e) {  // by 6, 11 and 25
    return RotateRight(e ^ RotateRight(e ^ RotateRight(e, 14), 5), 6);
}
uint32_t Sigma0(uint32_t word) {  // by 7 and 18
    return RotateRight(word ^ RotateRight(word, 11), 7) ^ word >> 3;
}
uint32_t Sigma1(uint32_t word) {  // by 17 and 19
    return RotateRight(word ^ RotateRight(word, 2), 17) ^ word >> 10;
}

/// The last words of the message schedule: word t stands at t % 16.
using Words = std::array<uint32_t, kWords>;

/// Round `i`. The working variables are not moved on by one place a round: the round finds them `i`
/// places further back, and changes two.
/// @param bXorC  b ^ c; left as that of the next round, whose b and c are this one's a and b
void Round(Hash& variables, uint32_t& bXorC, size_t i, uint32_t input) {
    const auto variable = [&](size_t place) -> uint32_t& { return variables[(place - i) & 7]; };
    uint32_t &a = variable(0), &b = variable(1), &d = variable(3);
    uint32_t &e = variable(4), &f = variable(5), &g = variable(6), &h = variable(7);
    h += input;
    h += ((f ^ g) & e) ^ g;
    h += Sum1(e);
    d += h;
    const uint32_t aXorB = a ^ b;
    h += (aXorB & bXorC) ^ b;
    h += Sum0(a);
    bXorC = aXorB;
}

}  // namespace

void sha256::ProcessBlocksPlainly(Hash& hash, const uint8_t* blocks, size_t count) {
    const uint32_t* const constantsEnd = kRoundConstantsEnd;
    for (; count > 0; --count, blocks += kBlockBytes) {
        Hash variables;
        for (size_t i = 0; i < hash.size(); ++i) {
            variables[i] = hash[i];
        }
        uint32_t bXorC = variables[1] ^ variables[2];
        Words words;
        const uint32_t* constants = constantsEnd - kRounds;
        // Unrolled, every place is a constant and stays in a register.
#pragma clang loop unroll(full)
        for (size_t i = 0; i < kWords; ++i) {
            words[i] = uint32_t{blocks[4 * i]} << 24 | uint32_t{blocks[4 * i + 1]} << 16 |
                       uint32_t{blocks[4 * i + 2]} << 8 | blocks[4 * i + 3];
            Round(variables, bXorC, i, words[i] + constants[i]);
        }
        constants += kWords;
#pragma clang loop unroll(disable)
        for (; constants != constantsEnd; constants += kWords) {
#pragma clang loop unroll(full)
            for (size_t i = 0; i < kWords; ++i) {
                words[i] += Sigma0(words[(i + 1) % kWords]) + words[(i + 9) % kWords] +
                            Sigma1(words[(i + 14) % kWords]);
                Round(variables, bXorC, i, words[i] + constants[i]);
            }
        }
        for (size_t i = 0; i < hash.size(); ++i) {
            hash[i] += variables[i];
        }
    }
}
