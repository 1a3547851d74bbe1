// Base64 both ways: as OpenSSL does it, and, where a text is none, as the plain form of the rule
// does.
#include <cstdint>

#include "crypto/StringUtils.h"
#include "tests/crypto/Reference.h"
#include "tests/fuzz/OpenSsl.h"
#include "tests/fuzz/Require.h"

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// The input's bytes as letters of the alphabet, in whole groups.
std::string AsGroups(const std::string& bytes) {
    std::string text;
    for (const char byte : bytes) {
        text += kAlphabet[static_cast<unsigned char>(byte) % 64];
    }
    text.resize(text.size() - text.size() % 4);
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const std::string encoded = StringUtils::Base64Encode(bytes);
    REQUIRE(encoded == openssl::Base64Encode(bytes));
    REQUIRE(StringUtils::Base64Decode(encoded) == bytes);

    REQUIRE(StringUtils::Base64Decode(bytes) == reference::Base64Decode(bytes.data(), size));
    const std::string groups = AsGroups(bytes);
    REQUIRE(StringUtils::Base64Decode(groups) == openssl::Base64Decode(groups));
    return 0;
}
