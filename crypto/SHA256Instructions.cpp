// The one file of this room that asks which architecture it is compiled for. Elsewhere than on
// x86-64 the digest is made in plain C++.
#include "crypto/SHA256Blocks.h"
#include "crypto/SHA256Constants.h"

#if defined(__x86_64__)

#include <cpuid.h>
#include <immintrin.h>

// The rest of the product runs on processors without these instructions, so only what is marked may
// use them.
#define KS_SHA_INSTRUCTIONS __attribute__((target("sha,sse4.1")))

namespace {

using namespace sha256;

bool HasInstructions() {
    unsigned eax = 0, ebx = 0, ecx = 0, edx = 0;
    if (!__get_cpuid(1, &eax, &ebx, &ecx, &edx) || !(ecx & bit_SSSE3) || !(ecx & bit_SSE4_1)) {
        return false;
    }
    return __get_cpuid_count(7, 0, &eax, &ebx, &ecx, &edx) && (ebx & bit_SHA);
}

KS_SHA_INSTRUCTIONS __m128i Load(const void* memory) {
    return _mm_loadu_si128(static_cast<const __m128i*>(memory));
}

KS_SHA_INSTRUCTIONS void Store(void* memory, __m128i words) {
    _mm_storeu_si128(static_cast<__m128i*>(memory), words);
}

KS_SHA_INSTRUCTIONS void Process(Hash& hash, const uint8_t* blocks, size_t count) {
    const __m128i bytesInOrder = _mm_set_epi64x(0x0C0D0E0F08090A0B, 0x0405060700010203);
    // The instructions take the variables as FEBA and HGDC, the most significant one first.
    const __m128i badc = _mm_shuffle_epi32(Load(&hash[0]), 0xB1);
    const __m128i efgh = _mm_shuffle_epi32(Load(&hash[4]), 0x1B);
    __m128i abef = _mm_alignr_epi8(badc, efgh, 8);
    __m128i cdgh = _mm_blend_epi16(efgh, badc, 0xF0);

    for (; count > 0; --count, blocks += kBlockBytes) {
        const __m128i abefBefore = abef;
        const __m128i cdghBefore = cdgh;
        __m128i words[4];
#pragma clang loop unroll(full)
        for (size_t i = 0; i < kRounds / 4; ++i) {
            __m128i& four = words[i % 4];
            if (i < 4) {
                four = _mm_shuffle_epi8(Load(blocks + 16 * i), bytesInOrder);
            } else {
                const __m128i w7 = _mm_alignr_epi8(words[(i + 3) % 4], words[(i + 2) % 4], 4);
                four = _mm_sha256msg1_epu32(four, words[(i + 1) % 4]);
                four = _mm_sha256msg2_epu32(_mm_add_epi32(four, w7), words[(i + 3) % 4]);
            }
            const __m128i input = _mm_add_epi32(four, Load(&kRoundConstants[4 * i]));
            cdgh = _mm_sha256rnds2_epu32(cdgh, abef, input);
            abef = _mm_sha256rnds2_epu32(abef, cdgh, _mm_shuffle_epi32(input, 0x0E));
        }
        abef = _mm_add_epi32(abef, abefBefore);
        cdgh = _mm_add_epi32(cdgh, cdghBefore);
    }

    const __m128i feba = _mm_shuffle_epi32(abef, 0x1B);
    const __m128i dchg = _mm_shuffle_epi32(cdgh, 0xB1);
    Store(&hash[0], _mm_blend_epi16(feba, dchg, 0xF0));
    Store(&hash[4], _mm_alignr_epi8(dchg, feba, 8));
}

}  // namespace

#else

namespace {

bool HasInstructions() {
    return false;
}

constexpr sha256::ProcessBlocks* Process = nullptr;

}  // namespace

#endif

sha256::ProcessBlocks* sha256::ProcessBlocksByInstructions() {
    return HasInstructions() ? Process : nullptr;
}
