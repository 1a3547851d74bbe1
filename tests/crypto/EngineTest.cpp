#include <gtest/gtest.h>

#include <cstring>
#include <new>
#include <type_traits>

#include "crypto/DecryptionEngine.h"
#include "crypto/EncryptionEngine.h"
#include "tests/crypto/ResponseFile.h"

namespace {

const std::string kKey = "0123456789abcdefghijklmnopqrstuv";
const std::string kText = "The quick brown fox jumps over the lazy dog and home again, twice.";
constexpr size_t kBlock = kRijndaelBlockBytes;

// What the two engines are to be checked against, under the same names.
struct Enciphering {
    using Engine = EncryptionEngine;
    static constexpr auto kSetup = rijndaelSetupEncrypt;
    static constexpr auto kCipher = rijndaelEncrypt;
    template <typename... Arguments>
    static void Run(Engine& engine, Arguments&&... arguments) {
        engine.Encrypt(std::forward<Arguments>(arguments)...);
    }
};

struct Deciphering {
    using Engine = DecryptionEngine;
    static constexpr auto kSetup = rijndaelSetupDecrypt;
    static constexpr auto kCipher = rijndaelDecrypt;
    template <typename... Arguments>
    static void Run(Engine& engine, Arguments&&... arguments) {
        engine.Decrypt(std::forward<Arguments>(arguments)...);
    }
};

}  // namespace

template <typename Direction>
class Engines : public testing::Test {
  protected:
    using Engine = typename Direction::Engine;

    /// Whole blocks by the cipher itself, under a key of 32 bytes.
    static std::string Expected(const std::string& key, const std::string& in) {
        unsigned long schedule[kRijndaelScheduleWords];
        const int32_t rounds = Direction::kSetup(schedule, Data(key), 256);
        std::string out(in.size(), '\0');
        for (size_t at = 0; at < in.size(); at += kBlock) {
            Direction::kCipher(schedule, rounds, Data(in) + at, Data(out) + at);
        }
        return out;
    }

    static std::string Run(Engine& engine, const std::string& in) {
        std::string out(in.size(), '\0');
        Direction::Run(engine, Data(in), Data(out), static_cast<uint32_t>(in.size()));
        return out;
    }

    static std::string Run(const std::string& key, const std::string& in) {
        Engine engine(Data(key), static_cast<uint32_t>(key.size()));
        return Run(engine, in);
    }
};

using Directions = testing::Types<Enciphering, Deciphering>;
TYPED_TEST_SUITE(Engines, Directions);

TYPED_TEST(Engines, ProcessBlocksByThemselves) {
    const std::string block = kText.substr(0, kBlock);
    const std::string other = kText.substr(kBlock, kBlock);
    const std::string out = this->Run(kKey, block + other + block);
    EXPECT_EQ(out, this->Expected(kKey, block + other + block));
    EXPECT_EQ(out.substr(0, kBlock), out.substr(2 * kBlock));
}

TYPED_TEST(Engines, ExtendAShortKeyWithZeros) {
    const std::string text = kText.substr(0, 3 * kBlock);
    for (size_t length = 0; length <= 32; ++length) {
        std::string extended = kKey.substr(0, length);
        extended.resize(32);
        EXPECT_EQ(this->Run(kKey.substr(0, length), text), this->Expected(extended, text));
    }
}

TYPED_TEST(Engines, CutALongKey) {
    const std::string text = kText.substr(0, 3 * kBlock);
    EXPECT_EQ(this->Run(kKey + "ignored!", text), this->Expected(kKey, text));
    EXPECT_EQ(this->Run(kKey + "!", text), this->Expected(kKey, text));
}

TYPED_TEST(Engines, NeedNoKeyAtAll) {
    typename TypeParam::Engine engine(nullptr, 0);
    const std::string block = kText.substr(0, kBlock);
    EXPECT_EQ(this->Run(engine, block), this->Expected(std::string(32, '\0'), block));
}

TYPED_TEST(Engines, WorkInPlace) {
    const std::string text = kText.substr(0, 40);
    std::string buffer = text;
    typename TypeParam::Engine engine(Data(kKey), 32);
    TypeParam::Run(engine, Data(buffer), Data(buffer), 40u);
    EXPECT_EQ(buffer, this->Run(kKey, text));
}

TYPED_TEST(Engines, TakeAStringOverItsWholeLength) {
    std::string text = kText.substr(0, 20) + std::string("\0\0", 2) + kText.substr(22);
    const std::string expected = this->Run(kKey, text);
    typename TypeParam::Engine engine(Data(kKey), 32);
    TypeParam::Run(engine, text);
    EXPECT_EQ(text, expected);

    std::string empty;
    TypeParam::Run(engine, empty);
    EXPECT_EQ(empty, "");
}

TYPED_TEST(Engines, CutTheTailToItsLength) {
    for (size_t length = 0; length <= kText.size(); ++length) {
        const std::string text = kText.substr(0, length);
        std::string padded = text;
        padded.resize((length + kBlock - 1) / kBlock * kBlock);
        EXPECT_EQ(this->Run(kKey, text), this->Expected(kKey, padded).substr(0, length));
    }
}

TYPED_TEST(Engines, KeepEarlierTailsInTheRestOfTheBlock) {
    typename TypeParam::Engine engine(Data(kKey), 32);
    this->Run(engine, "abcdefghij");
    EXPECT_EQ(this->Run(engine, "XYZ"),
              this->Expected(kKey, std::string("XYZdefghij\0\0\0\0\0\0", kBlock)).substr(0, 3));
    this->Run(engine, kText.substr(0, 2 * kBlock));  // whole blocks leave no trace
    EXPECT_EQ(this->Run(engine, kText.substr(0, kBlock) + "12345"),
              this->Expected(kKey, kText.substr(0, kBlock)) +
                  this->Expected(kKey, std::string("12345fghij\0\0\0\0\0\0", kBlock)).substr(0, 5));
}

TYPED_TEST(Engines, WriteNothingBehindTheLength) {
    typename TypeParam::Engine engine(Data(kKey), 32);
    for (const uint32_t length : {0u, 1u, 15u, 16u, 17u, 40u}) {
        std::string out(kText.size(), '#');
        TypeParam::Run(engine, Data(kText), Data(out), length);
        EXPECT_EQ(out.substr(length), std::string(kText.size() - length, '#'));
    }
    TypeParam::Run(engine, nullptr, nullptr, 0u);
}

// The layout is fixed: the round count, the schedule, the two block buffers.
TYPED_TEST(Engines, ClearTheRoundCountAndThe32FirstBytesOfTheScheduleAndNoMore) {
    using Engine = typename TypeParam::Engine;
    constexpr size_t kSchedule = sizeof(unsigned long);  // behind the round count and its padding
    constexpr size_t kScheduleBytes = sizeof(unsigned long[kRijndaelScheduleWords]);
    constexpr size_t kCleared = 32;
    static_assert(std::is_standard_layout_v<Engine> && !std::is_polymorphic_v<Engine>);
    static_assert(sizeof(Engine) == kSchedule + kScheduleBytes + 2 * kBlock);

    alignas(Engine) char storage[sizeof(Engine)];
    Engine* engine = new (storage) Engine(Data(kKey), 32);
    this->Run(*engine, "a tail");
    const std::string before(storage, sizeof(storage));
    engine->~Engine();
    const std::string after(storage, sizeof(storage));

    unsigned long schedule[kRijndaelScheduleWords];
    const int32_t rounds = TypeParam::kSetup(schedule, Data(kKey), 256);
    EXPECT_EQ(std::memcmp(before.data(), &rounds, sizeof(rounds)), 0);
    EXPECT_EQ(std::memcmp(before.data() + kSchedule, schedule, kScheduleBytes), 0);
    EXPECT_EQ(before.substr(kSchedule + kScheduleBytes, 6), "a tail");

    EXPECT_EQ(after.substr(0, sizeof(rounds)), std::string(sizeof(rounds), '\0'));
    EXPECT_EQ(after.substr(kSchedule, kCleared), std::string(kCleared, '\0'));
    EXPECT_EQ(after.substr(kSchedule + kCleared), before.substr(kSchedule + kCleared));
}

TEST(DecryptionEngine, BringsWholeBlocksBack) {
    std::string text = kText.substr(0, 4 * kBlock);
    EncryptionEngine(Data(kKey), 32).Encrypt(text);
    EXPECT_NE(text, kText.substr(0, 4 * kBlock));
    DecryptionEngine(Data(kKey), 32).Decrypt(text);
    EXPECT_EQ(text, kText.substr(0, 4 * kBlock));
}
