#include "settings/KSGlobals.h"

#include <gtest/gtest.h>

#include <set>

namespace {

TEST(KSGlobals, TheSeedIsTheLowHalfOfTheProduct) {
    EXPECT_EQ(KSGlobals::Seed(0, 123456789), 0U);
    EXPECT_EQ(KSGlobals::Seed(1, 0xFFFFFFFF), 0xFFFFFFFFU);
    EXPECT_EQ(KSGlobals::Seed(4242, 0x9ABCDEF0), 0x0DA624E0U);
    EXPECT_EQ(KSGlobals::Seed(0xFFFFFFFF, 0xFFFFFFFF), 1U);
}

TEST(KSGlobals, SixteenBitsAreTheSumOfTheHalves) {
    EXPECT_EQ(KSGlobals::Mix16(0), 0);
    EXPECT_EQ(KSGlobals::Mix16(0x00010002), 3);
    EXPECT_EQ(KSGlobals::Mix16(0x1234FFFF), 0x1233);
    EXPECT_EQ(KSGlobals::Mix16(0xFFFFFFFF), 0xFFFE);
    EXPECT_EQ(KSGlobals::Mix16(0x80008000), 0);
}

TEST(KSGlobals, EightBitsAreAProductNotASum) {
    EXPECT_EQ(KSGlobals::Mix8(0), 0);
    EXPECT_EQ(KSGlobals::Mix8(0x00000203), 6);
    EXPECT_EQ(KSGlobals::Mix8(0x00001011), 0x10);
    EXPECT_EQ(KSGlobals::Mix8(0xFFFFFFFF), 1);
    EXPECT_EQ(KSGlobals::Mix8(0x12345600), 0);
}

// The C++ standard prescribes MT19937's ten-thousandth number for the seed 5489: 4123659995, which
// is 0xF5CA0EDB; its first is 3499211612, 0xD091BB5C.
TEST(KSGlobals, DrawsAreThoseOfMT19937) {
    KSGlobals sixteen(5489);
    EXPECT_EQ(sixteen.GenerateUInt16RandomNumber(), (0xBB5C + 0xD091) & 0xFFFF);
    for (int i = 2; i < 10000; ++i) {
        sixteen.GenerateUInt16RandomNumber();
    }
    EXPECT_EQ(sixteen.GenerateUInt16RandomNumber(), (0x0EDB + 0xF5CA) & 0xFFFF);

    KSGlobals eight(5489);
    EXPECT_EQ(eight.GenerateUInt8RandomNumber(), (0xBB * 0x5C) & 0xFF);
    for (int i = 2; i < 10000; ++i) {
        eight.GenerateUInt8RandomNumber();
    }
    EXPECT_EQ(eight.GenerateUInt8RandomNumber(), (0x0E * 0xDB) & 0xFF);
}

TEST(KSGlobals, BothKindsDrawFromOneSequence) {
    KSGlobals mixed(5489);
    std::mt19937 reference(5489);
    for (int i = 0; i < 1000; ++i) {
        EXPECT_EQ(mixed.GenerateUInt16RandomNumber(),
                  KSGlobals::Mix16(static_cast<uint32_t>(reference())));
        EXPECT_EQ(mixed.GenerateUInt8RandomNumber(),
                  KSGlobals::Mix8(static_cast<uint32_t>(reference())));
    }
}

TEST(KSGlobals, TheProcessHasOneEngine) {
    EXPECT_EQ(&KSGlobals::Instance(), &KSGlobals::Instance());
    std::set<uint16_t> numbers;
    for (int i = 0; i < 100; ++i) {
        numbers.insert(KSGlobals::Instance().GenerateUInt16RandomNumber());
    }
    EXPECT_GT(numbers.size(), 50U);
}

TEST(KSGlobals, IsADestroyableBase) {
    struct Derived : KSGlobals {
        explicit Derived(bool& flag) : KSGlobals(1), destroyed(flag) {}
        ~Derived() override { destroyed = true; }
        bool& destroyed;
    };
    bool destroyed = false;
    const KSGlobals* base = new Derived(destroyed);
    delete base;
    EXPECT_TRUE(destroyed);
}

}  // namespace
