#include "crypto/SHA256.h"

#include <algorithm>

#include "crypto/SHA256Blocks.h"
#include "crypto/SHA256Constants.h"

namespace {

constexpr size_t kLengthBytes = 8;  // the bit count at the end of the padding

/// The fastest way that this processor has.
sha256::ProcessBlocks* Process() {
    static sha256::ProcessBlocks* const byInstructions = sha256::ProcessBlocksByInstructions();
    return byInstructions != nullptr ? byInstructions : sha256::ProcessBlocksPlainly;
}

void StoreWord(uint32_t word, uint8_t* bytes) {
    bytes[0] = static_cast<uint8_t>(word >> 24);
    bytes[1] = static_cast<uint8_t>(word >> 16);
    bytes[2] = static_cast<uint8_t>(word >> 8);
    bytes[3] = static_cast<uint8_t>(word);
}

}  // namespace

SHA256::SHA256() {
    reset();
}

void SHA256::reset() {
    processedBytes = 0;
    bufferedBytes = 0;
    hash = sha256::kInitialHash;
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
        Process()(hash, buffer.data(), 1);
        processedBytes += kBlockBytes;
    }
    const size_t blocks = numBytes / kBlockBytes;
    const size_t whole = blocks * kBlockBytes;
    if (blocks > 0) {
        Process()(hash, bytes, blocks);
        processedBytes += whole;
    }
    bufferedBytes = numBytes - whole;
    std::copy_n(bytes + whole, bufferedBytes, buffer.begin());
}

void SHA256::getHash(uint8_t digest[kHashBytes]) const {
    // The padding is processed on copies, so that the stream can go on.
    std::array<uint8_t, 2 * kBlockBytes> padded{};
    uint8_t* end = std::copy_n(buffer.begin(), bufferedBytes, padded.begin());
    *end = 0x80;
    const size_t length =
        bufferedBytes + 1 + kLengthBytes <= kBlockBytes ? kBlockBytes : 2 * kBlockBytes;
    const uint64_t bits = (processedBytes + bufferedBytes) * 8;
    StoreWord(static_cast<uint32_t>(bits >> 32), &padded[length - kLengthBytes]);
    StoreWord(static_cast<uint32_t>(bits), &padded[length - kLengthBytes / 2]);

    sha256::Hash final = hash;
    Process()(final, padded.data(), length / kBlockBytes);
    for (const uint32_t word : final) {
        StoreWord(word, digest);
        digest += sizeof(word);
    }
}

std::string SHA256::getHash() const {
    constexpr char kDigits[] = "0123456789abcdef";
    uint8_t digest[kHashBytes] = {};
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
