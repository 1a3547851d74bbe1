// The keychain's two functions on every kind of keychain that `with-keychain` makes.
#include <Foundation/Foundation.h>
#include <Security/Security.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/linux/KeychainItems.h"

namespace {

NSMutableDictionary* Query(NSString* label) {
    NSMutableDictionary* query = [NSMutableDictionary dictionary];
    [query setObject:(id)kSecClassGenericPassword forKey:(id)kSecClass];
    [query setObject:[NSNumber numberWithBool:YES] forKey:(id)kSecReturnData];
    [query setObject:(id)kSecMatchLimitOne forKey:(id)kSecMatchLimit];
    [query setObject:label forKey:(id)kSecAttrLabel];
    return query;
}

OSStatus Read(NSDictionary* query, std::string& data) {
    CFTypeRef result = (CFTypeRef)1;  // must be overwritten
    const OSStatus status = SecItemCopyMatching((CFDictionaryRef)query, &result);
    NSData* found = [(NSData*)result autorelease];
    data.assign(static_cast<const char*>([found bytes]), [found length]);
    if (status != errSecSuccess) {
        EXPECT_EQ(found, nil);
    }
    return status;
}

OSStatus Update(NSDictionary* query, const std::string& data) {
    NSData* value = [NSData dataWithBytes:data.data() length:data.size()];
    NSDictionary* attributes = [NSDictionary dictionaryWithObject:value forKey:(id)kSecValueData];
    return SecItemUpdate((CFDictionaryRef)query, (CFDictionaryRef)attributes);
}

// A keychain with three items.
class KeychainTest : public testing::Test {
  protected:
    KeychainTest() : pool([[NSAutoreleasePool alloc] init]) {
        RemoveAllItems();
        EXPECT_TRUE(StoreItem("Mail", "correct horse"));
        EXPECT_TRUE(StoreItem("Safari Extensions List", bytes));
        EXPECT_TRUE(StoreItem("Safari", "battery staple"));
    }
    ~KeychainTest() override { [pool drain]; }

    NSAutoreleasePool* const pool;
    const std::string bytes = std::string("bplist00\0\x01\xff\n", 12);
};

TEST_F(KeychainTest, TheItemWithTheLabelIsFound) {
    std::string data;
    EXPECT_EQ(Read(Query(@"Safari Extensions List"), data), 0);
    EXPECT_EQ(data, bytes);
    EXPECT_EQ(Read(Query(@"Mail"), data), 0);
    EXPECT_EQ(data, "correct horse");
}

TEST_F(KeychainTest, ALabelIsComparedAsAWhole) {
    std::string data;
    for (NSString *label in
         [NSArray arrayWithObjects:@"Safari Extensions", @"safari", @"", @"Saf*", @"Zoë", nil]) {
        EXPECT_EQ(Read(Query(label), data), -25300) << [label UTF8String];
    }
    EXPECT_TRUE(StoreItem("Zoë", "umlaut"));
    EXPECT_EQ(Read(Query(@"Zoë"), data), 0);
    EXPECT_EQ(data, "umlaut");
}

TEST_F(KeychainTest, AnUpdateReplacesTheDataAndNothingElse) {
    const std::map<std::string, std::string> attributes = AllAttributes();
    EXPECT_EQ(Update(Query(@"Safari Extensions List"), "new"), 0);
    EXPECT_EQ(AllItems(), (std::map<std::string, std::string>{{"Mail", "correct horse"},
                                                              {"Safari Extensions List", "new"},
                                                              {"Safari", "battery staple"}}));
    EXPECT_EQ(AllAttributes(), attributes);
}

TEST_F(KeychainTest, AnUpdateOfNoItemAddsNone) {
    EXPECT_EQ(Update(Query(@"Post"), "new"), -25300);
    EXPECT_EQ(AllItems().size(), 3U);
}

TEST_F(KeychainTest, DataOfAnySizeComesAndGoes) {
    std::string data;
    for (const size_t size : {size_t{0}, size_t{1}, size_t{15}, size_t{16}, size_t{2000000}}) {
        std::string content(size, '\0');
        for (size_t i = 0; i < size; ++i) {
            content[i] = static_cast<char>(i * i);
        }
        EXPECT_EQ(Update(Query(@"Mail"), content), 0) << size;
        EXPECT_EQ(Read(Query(@"Mail"), data), 0) << size;
        EXPECT_TRUE(data == content) << size;
        EXPECT_TRUE(AllItems()["Mail"] == content) << size;
    }
}

TEST_F(KeychainTest, WhatIsNotUnderstoodIsRefused) {
    std::string data;
    NSMutableDictionary* query = Query(@"Mail");
    [query removeObjectForKey:(id)kSecClass];
    EXPECT_EQ(Read(query, data), -50);
    EXPECT_EQ(Update(query, "new"), -50);

    const std::pair<CFStringRef, id> wrong[] = {{kSecClass, @"inet"},
                                                {kSecMatchLimit, @"m_LimitAll"},
                                                {kSecAttrLabel, [NSNumber numberWithInt:1]},
                                                {kSecReturnData, @"yes"},
                                                {kSecReturnData, [NSNumber numberWithBool:NO]},
                                                {(CFStringRef) @"acct", @"alex"}};
    for (const auto& [key, value] : wrong) {
        query = Query(@"Mail");
        [query setObject:value forKey:(id)key];
        EXPECT_EQ(Read(query, data), -50) << [(NSString*)key UTF8String];
        EXPECT_EQ(Update(query, "new"), -50) << [(NSString*)key UTF8String];
    }
    EXPECT_EQ(AllItems()["Mail"], "correct horse");
}

TEST_F(KeychainTest, AnUpdateOfAnythingButTheDataIsRefused) {
    NSDictionary* const attributes[] = {
        nil, [NSDictionary dictionary],
        [NSDictionary dictionaryWithObject:@"text" forKey:(id)kSecValueData],
        [NSDictionary dictionaryWithObjectsAndKeys:[NSData data], (id)kSecValueData, @"Post",
                                                   (id)kSecAttrLabel, nil]};
    for (NSDictionary* each : attributes) {
        EXPECT_EQ(SecItemUpdate((CFDictionaryRef)Query(@"Mail"), (CFDictionaryRef)each), -50);
    }
    EXPECT_EQ(AllItems()["Mail"], "correct horse");
}

// The same on a Secret Service that is locked.
class LockedKeychainTest : public KeychainTest {};

TEST_F(LockedKeychainTest, ALockedItemStaysLocked) {
    ASSERT_TRUE(LockCollections());
    std::string data;
    EXPECT_EQ(Read(Query(@"Mail"), data), -25308);
    EXPECT_EQ(Update(Query(@"Mail"), "new"), -25308);
    EXPECT_EQ(Read(Query(@"Post"), data), -25300);
}

// On a machine whose keychain cannot be reached.
class NoKeychainTest : public testing::Test {
  protected:
    NoKeychainTest() : pool([[NSAutoreleasePool alloc] init]) {}
    ~NoKeychainTest() override { [pool drain]; }

    // It fails soon, and without a word.
    void ExpectReadFailure(OSStatus expected) {
        testing::internal::CaptureStderr();
        const auto start = std::chrono::steady_clock::now();
        std::string data;
        EXPECT_EQ(Read(Query(@"Mail"), data), expected);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    }

    NSAutoreleasePool* const pool;
};

TEST_F(NoKeychainTest, ReadingFails) {
    ExpectReadFailure(errSecNotAvailable);
}

TEST_F(NoKeychainTest, UpdatingAfterItFailsToo) {
    EXPECT_EQ(Update(Query(@"Mail"), "new"), errSecNotAvailable);
}

class WrongPasswordTest : public NoKeychainTest {};

TEST_F(WrongPasswordTest, ReadingAndUpdatingFail) {
    ASSERT_TRUE(StoreItem("Mail", "correct horse"));
    setenv("SECRET_FILE_TEST_PASSWORD", "another", 1);
    ExpectReadFailure(errSecAuthFailed);
    EXPECT_EQ(Update(Query(@"Mail"), "new"), errSecAuthFailed);
}

// A keyring that ends or busies whoever reads it.
class BrokenKeyringTest : public NoKeychainTest {
  protected:
    BrokenKeyringTest() {
        std::filesystem::remove(kPath);
        EXPECT_TRUE(StoreItem("Mail", "correct horse"));
        std::ifstream file(kPath, std::ios::binary);
        bytes.assign(std::istreambuf_iterator<char>(file), {});
        EXPECT_FALSE(bytes.empty());
    }

    void ExpectFailureWith(const std::string& changed) {
        std::ofstream(kPath, std::ios::binary) << changed;
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const auto start = std::chrono::steady_clock::now();
        std::string data;
        EXPECT_NE(Read(Query(@"Mail"), data), errSecSuccess);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    }

    const char* const kPath = getenv("SECRET_FILE_TEST_PATH");
    std::string bytes;
};

TEST_F(BrokenKeyringTest, AnyCutIsAFailure) {
    for (const size_t cut : {size_t{1}, size_t{2}, size_t{16}, bytes.size() / 2, bytes.size()}) {
        ExpectFailureWith(bytes.substr(0, bytes.size() - cut));
    }
}

TEST_F(BrokenKeyringTest, AbsurdIterationsAreGivenUp) {
    // Magic number and version, the salt's size, the salt, then the number in four bytes.
    const size_t iterations = 16 + 2 + 4 + 32;
    ASSERT_GT(bytes.size(), iterations + 4);
    for (const char byte : {'\xFF', '\x7F'}) {
        std::string changed = bytes;
        changed.replace(iterations, 4, 4, byte);
        ExpectFailureWith(changed);
    }
}

// On a machine without XDG_RUNTIME_DIR.
class NoRuntimeFolderTest : public NoKeychainTest {};

TEST_F(NoRuntimeFolderTest, NoFolderIsMadeInTheHome) {
    unsetenv("XDG_RUNTIME_DIR");
    ExpectReadFailure(errSecNotAvailable);
    EXPECT_TRUE(std::filesystem::is_empty(getenv("HOME")));
}

class IdleBusTest : public NoKeychainTest {};

TEST_F(IdleBusTest, NoServiceIsStarted) {
    ASSERT_FALSE(SecretServiceRuns());
    ExpectReadFailure(errSecNotAvailable);
    EXPECT_FALSE(SecretServiceRuns());
}

TEST_F(IdleBusTest, AServiceThatNeverAnswersIsGivenUp) {
    ASSERT_TRUE(PlaySilentService());
    ExpectReadFailure(errSecNotAvailable);
}

}  // namespace
