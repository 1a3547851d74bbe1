#include <gtest/gtest.h>

#include "crypto/StringUtils.h"
#include "tests/crypto/RandomBytes.h"
#include "tests/crypto/Reference.h"

namespace {

constexpr size_t kLongest = 4096;

}  // namespace

TEST(Base64Reference, EncodesEveryLength) {
    std::mt19937_64 engine(64);
    const std::string data = RandomBytes(engine, kLongest);
    for (size_t length = 0; length <= kLongest; ++length) {
        const char* const start = &data[kLongest - length];
        const std::string text = StringUtils::Base64Encode(std::string(start, length));
        ASSERT_EQ(text, reference::Base64Encode(start, length)) << length;
        ASSERT_EQ(text.c_str()[text.size()], '\0') << length;  // nothing is written behind it
    }
}

TEST(Base64Reference, DecodesEveryLength) {
    std::mt19937_64 engine(64);
    const std::string text = StringUtils::Base64Encode(RandomBytes(engine, kLongest));
    for (size_t length = 0; length <= kLongest; ++length) {
        const char* const start = &text[length % 64];
        ASSERT_EQ(StringUtils::Base64Decode(std::string(start, length)),
                  reference::Base64Decode(start, length))
            << length;
    }
}

TEST(Base64Reference, DecodesWhatIsNoBase64InTheSameWay) {
    std::mt19937_64 engine(65);
    for (size_t length = 0; length <= kLongest; ++length) {
        std::string text = RandomBytes(engine, length);
        if (length % 2 == 0) {  // else most texts end early
            for (char& byte : text) {
                byte = byte == '=' ? ' ' : byte;
            }
        }
        ASSERT_EQ(StringUtils::Base64Decode(text), reference::Base64Decode(text.data(), length))
            << length;
    }
}

TEST(Base64Reference, DecodesEveryByteAtEveryPlace) {
    for (int byte = 0; byte < 256; ++byte) {
        for (size_t place = 0; place < 7; ++place) {
            std::string text = "TWFuTWE";
            text[place] = static_cast<char>(byte);
            ASSERT_EQ(StringUtils::Base64Decode(text),
                      reference::Base64Decode(text.data(), text.size()))
                << byte << " at " << place;
        }
    }
}
