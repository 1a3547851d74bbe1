// The digest of a stream that comes in pieces, against OpenSSL.
#include <fuzzer/FuzzedDataProvider.h>

#include "crypto/SHA256.h"
#include "tests/fuzz/OpenSsl.h"
#include "tests/fuzz/Require.h"

namespace {

std::string Hash(const SHA256& stream) {
    std::string digest(SHA256::kHashBytes, '\0');
    stream.getHash(reinterpret_cast<std::uint8_t*>(&digest[0]));
    return digest;
}

// By instructions, where the processor has them, and in plain C++.
void CheckBlocks(const std::string& bytes) {
    sha256::ProcessBlocks* const byInstructions = sha256::ProcessBlocksByInstructions();
    if (byInstructions == nullptr) {
        return;
    }
    const auto* blocks = reinterpret_cast<const std::uint8_t*>(bytes.data());
    sha256::Hash fast{1, 2, 3, 4, 5, 6, 7, 8};
    sha256::Hash plain = fast;
    byInstructions(fast, blocks, bytes.size() / sha256::kBlockBytes);
    sha256::ProcessBlocksPlainly(plain, blocks, bytes.size() / sha256::kBlockBytes);
    REQUIRE(fast == plain);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    SHA256 stream;
    std::string all;
    while (input.remaining_bytes() > 0) {
        const std::string piece = input.ConsumeBytesAsString(input.ConsumeIntegral<std::uint8_t>());
        stream.add(piece.data(), piece.size());
        all += piece;
        REQUIRE(Hash(stream) == openssl::Sha256(all));  // reading does not end the stream
    }
    CheckBlocks(all);
    const std::string digits = stream.getHash();
    REQUIRE(digits.size() == 2 * SHA256::kHashBytes);
    REQUIRE(SHA256()(all) == digits);
    stream.reset();
    REQUIRE(Hash(stream) == openssl::Sha256(""));
    return 0;
}
