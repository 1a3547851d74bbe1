#include "crypto/AesEngine.h"

#include <algorithm>

namespace {

constexpr size_t kClearedScheduleBytes = 32;

}  // namespace

AesEngine::Key AesEngine::PrepareKey(const uint8_t* key, size_t length) {
    Key prepared{};
    std::copy_n(key, std::min(length, prepared.size()), prepared.begin());
    return prepared;
}

AesEngine::AesEngine(Setup setup, const uint8_t* key, uint32_t keyLength)
    : inputBlock{}, outputBlock{} {
    rounds = setup(schedule.data(), PrepareKey(key, keyLength).data(), kKeyBits);
}

AesEngine::~AesEngine() {
    // Volatile: nobody reads this any more, and the optimiser would leave it out.
    const_cast<volatile int32_t&>(rounds) = 0;
    std::fill_n(const_cast<volatile unsigned long*>(schedule.data()),
                kClearedScheduleBytes / sizeof(unsigned long), 0ul);
}

void AesEngine::Process(Cipher cipher, const uint8_t* in, uint8_t* out, size_t length) {
    const size_t blocks = length / kRijndaelBlockBytes;
    cipher(schedule.data(), rounds, in, out, blocks);
    const size_t whole = blocks * kRijndaelBlockBytes;
    const size_t tail = length - whole;
    if (tail > 0) {
        std::copy_n(in + whole, tail, inputBlock.begin());
        cipher(schedule.data(), rounds, inputBlock.data(), outputBlock.data(), 1);
        std::copy_n(outputBlock.begin(), tail, out + whole);
    }
}
