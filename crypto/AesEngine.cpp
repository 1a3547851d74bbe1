#include "crypto/AesEngine.h"

#include <algorithm>

namespace {

constexpr size_t kClearedScheduleBytes = 32;

/// Zeroes memory that nobody reads any more, which the optimiser would leave out.
void Clear(void* memory, size_t length) {
    std::fill_n(static_cast<volatile uint8_t*>(memory), length, uint8_t{0});
}

}  // namespace

AesEngine::Key AesEngine::PrepareKey(const uint8_t* key, size_t length) {
    Key prepared{};
    std::copy_n(key, std::min(length, prepared.size()), prepared.begin());
    return prepared;
}

AesEngine::AesEngine(Setup setup, const uint8_t* key, uint32_t keyLength)
    : schedule{}, inputBlock{}, outputBlock{} {
    rounds = setup(schedule.data(), PrepareKey(key, keyLength).data(), kKeyBits);
}

AesEngine::~AesEngine() {
    Clear(&rounds, sizeof(rounds));
    Clear(schedule.data(), kClearedScheduleBytes);
}

void AesEngine::Process(Cipher cipher, const uint8_t* in, uint8_t* out, size_t length) {
    for (; length >= kRijndaelBlockBytes; length -= kRijndaelBlockBytes) {
        cipher(schedule.data(), rounds, in, out);
        in += kRijndaelBlockBytes;
        out += kRijndaelBlockBytes;
    }
    if (length > 0) {
        std::copy_n(in, length, inputBlock.begin());
        cipher(schedule.data(), rounds, inputBlock.data(), outputBlock.data());
        std::copy_n(outputBlock.begin(), length, out);
    }
}
