// Safari's operations one by one. This program answers in the keychain's place.
#include "browsers/SafariInstall.h"

#include <Security/Security.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/Utils_Mac.h"
#include "tests/support/Command.h"
#include "tests/support/Files.h"
#include "tests/support/LogFile.h"
#include "tests/support/ReplacedMethod.h"
#include "tests/support/TemporaryFolder.h"

namespace {

const std::string kLibrary = "/Users/alex/Library";
const std::string kPreferences = kLibrary + "/Preferences/com.apple.Safari.plist";
const std::string kRegistry = kLibrary + "/Safari/Extensions/Extensions.plist";
const std::string kCache = kLibrary + "/Caches/com.apple.Safari/Extensions";

// The keychain: what it answers, and what it was asked.
struct Keychain {
    OSStatus readStatus = errSecItemNotFound;
    NSData* item = nil;
    OSStatus updateStatus = errSecSuccess;
    int reads = 0;
    int updates = 0;
    NSDictionary* readQuery = nil;
    NSDictionary* updateQuery = nil;
    NSDictionary* updated = nil;
};
Keychain keychain;

}  // namespace

OSStatus SecItemCopyMatching(CFDictionaryRef query, CFTypeRef* result) {
    ++keychain.reads;
    keychain.readQuery = [(NSDictionary*)query copy];
    *result = keychain.readStatus == errSecSuccess ? [keychain.item retain] : nil;
    return keychain.readStatus;
}

OSStatus SecItemUpdate(CFDictionaryRef query, CFDictionaryRef attributes) {
    ++keychain.updates;
    keychain.updateQuery = [(NSDictionary*)query copy];
    keychain.updated = [(NSDictionary*)attributes copy];
    return keychain.updateStatus;
}

namespace {

bool Exists(const std::string& path) {
    struct stat status;
    return lstat(path.c_str(), &status) == 0;
}

std::string Bytes(NSData* data) {
    return {static_cast<const char*>([data bytes]), [data length]};
}

// A property list from a Python expression, and what Python finds in one.
std::string Encoded(const std::string& expression, const std::string& format = "BINARY") {
    return Python("import plistlib, sys\nfrom datetime import datetime\n"
                  "sys.stdout.buffer.write(plistlib.dumps(" +
                  expression + ", fmt=plistlib.FMT_" + format + ", sort_keys=False))");
}

std::string Decoded(const std::string& path) {
    return Python("import plistlib, sys\n"
                  "content = open(sys.argv[1], 'rb').read()\n"
                  "assert content.startswith(b'bplist00')\n"
                  "print(plistlib.loads(content), end='')",
                  {path});
}

std::string DecodedBytes(const std::string& bytes) {
    const TemporaryFolder folder;
    WriteFile(folder / "list", bytes);
    return Decoded(folder / "list");
}

const std::string kFourEntries =
    "{'Installed Extensions': [{'Archive File Name': name} for name in "
    "('Keystrel Button.1', 'Keystrel.2', 'Keystrel.3', 'Keystrel Button.4')]}";

class SafariInstallTest : public testing::Test {
  protected:
    SafariInstallTest() {
        keychain = Keychain();
        WriteFile(kPreferences, kNoPreferences);
        WriteFile(kRegistry, kNoExtensions);
        EXPECT_TRUE(
            CLogger::m_Logger.InitLogger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo));
    }
    ~SafariInstallTest() override {
        chmod((kLibrary + "/Preferences").c_str(), 0755);
        chmod((kLibrary + "/Safari/Extensions").c_str(), 0755);
    }

    // The whole log, each message on a line that begins with its level.
    std::string Log() const {
        std::string text = WithoutTime(log.Bytes());
        const std::string header = "HH:MM:SS - ";
        for (size_t at = text.find(header); at != std::string::npos; at = text.find(header, at)) {
            text.erase(at, header.size());
        }
        return text;
    }

    // The log is this text, an error's description and nothing behind it.
    void ExpectError(const std::string& text) const {
        EXPECT_EQ(Log().rfind(text + "Error Domain=", 0), 0U) << Log();
        EXPECT_EQ(Log().back(), '}') << Log();
    }

    static inline const std::string kNoPreferences = Encoded("{}");
    static inline const std::string kNoExtensions = Encoded("{'Installed Extensions': []}");
    LogFile log;
};

// The contract.

TEST_F(SafariInstallTest, TheExtensionAlwaysCountsAsInstalled) {
    [[NSFileManager defaultManager] removeItemAtPath:@"/Users/alex/Library/Safari" error:NULL];
    EXPECT_TRUE([SafariInstall IsExtensionInstalled]);
    EXPECT_EQ(Log(), "");
    EXPECT_EQ(keychain.reads, 0);
    ASSERT_EQ(mkdir((kLibrary + "/Safari").c_str(), 0755), 0);
    ASSERT_EQ(mkdir((kLibrary + "/Safari/Extensions").c_str(), 0755), 0);
}

TEST_F(SafariInstallTest, RemovingIsFinishedWhenTheRegistryCanBeRead) {
    EXPECT_TRUE([SafariInstall UninstallExtension]);
    EXPECT_EQ(keychain.reads, 1);
    ASSERT_EQ(unlink(kRegistry.c_str()), 0);
    EXPECT_FALSE([SafariInstall UninstallExtension]);
    EXPECT_EQ(keychain.reads, 1);
    EXPECT_FALSE(Exists(kRegistry));
}

TEST_F(SafariInstallTest, InstallingSucceedsWithoutARegistryToo) {
    EXPECT_TRUE([SafariInstall InstallExtension]);
    EXPECT_EQ(keychain.reads, 1);
    ASSERT_EQ(unlink(kRegistry.c_str()), 0);
    EXPECT_TRUE([SafariInstall InstallExtension]);
    EXPECT_EQ(Decoded(kPreferences), "{'AutoFillPasswords': '1'}");
}

TEST_F(SafariInstallTest, OneRemovalTakesTheLastButtonAndThenTheLastThatBeginsLikeTheExtension) {
    WriteFile(kRegistry, Encoded(kFourEntries));
    EXPECT_TRUE([SafariInstall UninstallExtension]);
    EXPECT_EQ(Decoded(kRegistry),
              "{'Installed Extensions': [{'Archive File Name': 'Keystrel Button.1'}, "
              "{'Archive File Name': 'Keystrel.2'}]}");
    EXPECT_TRUE([SafariInstall UninstallExtension]);
    EXPECT_EQ(Decoded(kRegistry), "{'Installed Extensions': []}");
}

TEST_F(SafariInstallTest, ARegistryIsWrittenAgainEvenWhenNothingIsRemoved) {
    WriteFile(kRegistry, Encoded("{'Version': 1}", "XML"));
    EXPECT_TRUE([SafariInstall UninstallExtension]);
    EXPECT_EQ(Decoded(kRegistry), "{'Version': 1}");
}

TEST_F(SafariInstallTest, ARemovalTellsWhatIsNotThere) {
    WriteFile(kCache + "/Other", "");
    [SafariInstall UninstallExtension];
    const std::string plugIn = "\nWARNING : Couldn't delete. File not present: " + kLibrary +
                               "/Internet Plug-Ins/KeystrelSafari";
    EXPECT_EQ(Log(), plugIn + "32.webplugin" + plugIn + "64.webplugin" +
                         "\nINFO : Can't delete, file not present " + kLibrary +
                         "/Safari/Extensions/Keystrel Button.safariextz"
                         "\nINFO : Extension already removed!"
                         "\nINFO : Safari uninstalled successfully.");
}

TEST_F(SafariInstallTest, ARegistryThatCannotBeWrittenIsToldTwiceAndTheRestIsDone) {
    WriteFile(kCache + "/Other", "");
    ASSERT_EQ(chmod((kLibrary + "/Safari/Extensions").c_str(), 0555), 0);
    EXPECT_TRUE([SafariInstall UninstallExtension]);
    const std::string text = Log();
    const size_t first = text.find("\nFAILURE : Fail to copy files: Error Domain=");
    const size_t second = text.find("}\nFAILURE : Error Error Domain=");
    EXPECT_LT(first, second) << text;
    ASSERT_NE(second, std::string::npos) << text;
    EXPECT_EQ(text.substr(text.find("} writting")),
              "} writting to file: " + kRegistry +
                  "\nINFO : Extension already removed!\nINFO : Safari uninstalled successfully.");
}

TEST_F(SafariInstallTest, ARegistryThatIsNoDictionaryStaysAsItIs) {
    for (const char* root : {"['Installed Extensions']", "'Installed Extensions'", "1"}) {
        WriteFile(kRegistry, Encoded(root, "XML"));
        EXPECT_TRUE([SafariInstall UninstallExtension]);
        EXPECT_EQ(ReadFile(kRegistry), Encoded(root, "XML"));
    }
}

// The plug-ins.

TEST_F(SafariInstallTest, BothPlugInsAreRemovedAndOneThatStaysIsTold) {
    const std::string folder = kLibrary + "/Internet Plug-Ins";
    ASSERT_EQ(mkdir(folder.c_str(), 0755), 0);
    for (const char* name :
         {"/KeystrelSafari32.webplugin", "/KeystrelSafari64.webplugin", "/Other"}) {
        WriteFile(folder + name, "");
    }
    [SafariInstall removeSafariFiles];
    EXPECT_EQ(Log(), "");
    EXPECT_FALSE(Exists(folder + "/KeystrelSafari32.webplugin"));
    EXPECT_FALSE(Exists(folder + "/KeystrelSafari64.webplugin"));
    EXPECT_TRUE(Exists(folder + "/Other"));

    WriteFile(folder + "/KeystrelSafari64.webplugin", "");
    ASSERT_EQ(chmod(folder.c_str(), 0555), 0);
    [SafariInstall removeSafariFiles];
    ExpectError("\nWARNING : Couldn't delete. File not present: " + folder +
                "/KeystrelSafari32.webplugin\nWARNING : Error deleting file: ");
    ASSERT_EQ(chmod(folder.c_str(), 0755), 0);
    for (const char* name : {"/KeystrelSafari64.webplugin", "/Other"}) {
        ASSERT_EQ(unlink((folder + name).c_str()), 0);
    }
    ASSERT_EQ(rmdir(folder.c_str()), 0);
}

// The button.

TEST_F(SafariInstallTest, TheButtonPassTakesOneButtonOnly) {
    WriteFile(kRegistry, Encoded(kFourEntries));
    [SafariInstall uninstallSafariButton];
    EXPECT_EQ(Decoded(kRegistry),
              "{'Installed Extensions': [{'Archive File Name': 'Keystrel Button.1'}, "
              "{'Archive File Name': 'Keystrel.2'}, {'Archive File Name': 'Keystrel.3'}]}");
    EXPECT_EQ(keychain.reads, 0);
}

TEST_F(SafariInstallTest, TheButtonPassWritesThePreferencesAgain) {
    WriteFile(kPreferences, Encoded("{'a': [1, 1.0, True]}", "XML"));
    [SafariInstall uninstallSafariButton];
    EXPECT_EQ(Decoded(kPreferences), "{'a': [1, 1.0, True]}");
}

TEST_F(SafariInstallTest, TheButtonLeavesTheToolbar) {
    WriteFile(
        kPreferences,
        Encoded(
            "{'NSToolbar Configuration BrowserWindowToolbarIdentifier': {'TB Item Identifiers': "
            "['a', 'com.corvendale.keystrel.button.safari-7QJX2RM5TB ksbutton', 'b']}}"));
    [SafariInstall uninstallSafariButton];
    EXPECT_EQ(Decoded(kPreferences), "{'NSToolbar Configuration BrowserWindowToolbarIdentifier': "
                                     "{'TB Item Identifiers': ['a', 'b']}}");
}

TEST_F(SafariInstallTest, ARegistryThatCannotBeWrittenIsToldByTheButtonPass) {
    WriteFile(kCache + "/Other", "");
    ASSERT_EQ(chmod((kLibrary + "/Safari/Extensions").c_str(), 0555), 0);
    [SafariInstall uninstallSafariButton];
    ExpectError("\nINFO : Can't delete, file not present "
                "/Users/alex/Library/Safari/Extensions/Keystrel Button.safariextz"
                "\nFAILURE : Fail to copy files: ");
}

TEST_F(SafariInstallTest, WithoutARegistryTheButtonStaysInTheToolbar) {
    ASSERT_EQ(unlink(kRegistry.c_str()), 0);
    [SafariInstall uninstallSafariButton];
    EXPECT_EQ(ReadFile(kPreferences), kNoPreferences);
    EXPECT_EQ(Log(), "\nINFO : Can't delete, file not present "
                     "/Users/alex/Library/Safari/Extensions/Keystrel Button.safariextz"
                     "\nFAILURE : missing Extensions.plist");
}

TEST_F(SafariInstallTest, TheButtonsArchiveIsRemoved) {
    const std::string archive = kLibrary + "/Safari/Extensions/Keystrel Button.safariextz";
    WriteFile(archive, "xar!");
    [SafariInstall removeSafariButtonFiles];
    EXPECT_FALSE(Exists(archive));
    EXPECT_EQ(Log(), "");
    [SafariInstall removeSafariButtonFiles];
    EXPECT_EQ(Log(), "\nINFO : Can't delete, file not present " + archive);
}

TEST_F(SafariInstallTest, AnArchiveThatStaysIsTold) {
    const std::string archive = kLibrary + "/Safari/Extensions/Keystrel Button.safariextz";
    WriteFile(archive, "xar!");
    ASSERT_EQ(chmod((kLibrary + "/Safari/Extensions").c_str(), 0555), 0);
    [SafariInstall removeSafariButtonFiles];
    ExpectError("\nWARNING : Error deleting file: ");
    ASSERT_EQ(chmod((kLibrary + "/Safari/Extensions").c_str(), 0755), 0);
    ASSERT_EQ(unlink(archive.c_str()), 0);
}

// The cache.

TEST_F(SafariInstallTest, EachKindClearsItsOwnCache) {
    for (const char* name : {"/Keystrel", "/Keystrel Button", "/KeystrelX", "/Other"}) {
        WriteFile(kCache + name, "");
    }
    [SafariInstall cleanSafariExtensionCache:@"button"];
    EXPECT_FALSE(Exists(kCache + "/Keystrel Button"));
    EXPECT_TRUE(Exists(kCache + "/Keystrel"));
    EXPECT_EQ(Log(), "\nINFO : Error clearing files cache: (null)");
    [SafariInstall cleanSafariExtensionCache:@"extension"];
    EXPECT_FALSE(Exists(kCache + "/Keystrel"));
    EXPECT_FALSE(Exists(kCache + "/KeystrelX"));
    EXPECT_TRUE(Exists(kCache + "/Other"));
}

TEST_F(SafariInstallTest, AnotherKindClearsNothingWithoutAWord) {
    WriteFile(kCache + "/Keystrel", "");
    for (NSString *kind in [NSArray arrayWithObjects:@"Button", @"extensions", @"", nil]) {
        [SafariInstall cleanSafariExtensionCache:kind];
    }
    [SafariInstall cleanSafariExtensionCache:nil];
    EXPECT_TRUE(Exists(kCache + "/Keystrel"));
    EXPECT_EQ(Log(), "");
}

TEST_F(SafariInstallTest, AnEmptyCacheIsWarnedAboutWhateverTheKind) {
    const std::string aside = kCache + ".aside";
    ASSERT_EQ(rename(kCache.c_str(), aside.c_str()), 0);
    ASSERT_EQ(mkdir(kCache.c_str(), 0755), 0);
    [SafariInstall cleanSafariExtensionCache:@"another"];
    EXPECT_EQ(Log(), "\nWARNING : Clear CacheError: (null)");
    ASSERT_EQ(rmdir(kCache.c_str()), 0);
    ASSERT_EQ(rename(aside.c_str(), kCache.c_str()), 0);
}

// AutoFill.

TEST_F(SafariInstallTest, AutoFillIsATextAndOffSetsTheTabPolicyToo) {
    WriteFile(kPreferences, Encoded("{'AutoFillPasswords': True, 'a': b'b'}", "XML"));
    [SafariInstall setFillPasswords:NO];
    EXPECT_EQ(Decoded(kPreferences),
              "{'AutoFillPasswords': '0', 'TabCreationPolicy': 2, 'a': b'b'}");
    [SafariInstall setFillPasswords:YES];
    EXPECT_EQ(Decoded(kPreferences),
              "{'AutoFillPasswords': '1', 'TabCreationPolicy': 2, 'a': b'b'}");
    EXPECT_EQ(Log(), "");
}

TEST_F(SafariInstallTest, AutoFillWithoutPreferencesIsWarnedAbout) {
    ASSERT_EQ(unlink(kPreferences.c_str()), 0);
    [SafariInstall setFillPasswords:NO];
    EXPECT_FALSE(Exists(kPreferences));
    EXPECT_EQ(Log(), "\nWARNING : Missing com.apple.Safari.plist");
}

TEST_F(SafariInstallTest, AutoFillInPreferencesThatCannotBeParsedDoesNothingWithoutAWord) {
    WriteFile(kPreferences, "<plist><dict><key>");
    [SafariInstall setFillPasswords:NO];
    EXPECT_EQ(ReadFile(kPreferences), "<plist><dict><key>");
    EXPECT_EQ(Log(), "");
}

TEST_F(SafariInstallTest, AutoFillInWhatIsNoDictionaryIsNotWritten) {
    for (const std::string& bytes : {Encoded("['AutoFillPasswords']", "XML"), std::string("b")}) {
        WriteFile(kPreferences, bytes);
        [SafariInstall setFillPasswords:NO];
        EXPECT_EQ(ReadFile(kPreferences), bytes);
    }
}

TEST_F(SafariInstallTest, AutoFillThatCannotBeWrittenIsToldAsInformation) {
    ASSERT_EQ(chmod((kLibrary + "/Preferences").c_str(), 0555), 0);
    [SafariInstall setFillPasswords:YES];
    ExpectError("\nINFO : ");
    EXPECT_EQ(ReadFile(kPreferences), kNoPreferences);
}

// Reading and writing the preferences.

TEST_F(SafariInstallTest, EverythingInThePreferencesIsMutable) {
    WriteFile(kPreferences, Encoded("{'a': [{'b': 'c', 'd': b'e'}]}"));
    NSMutableDictionary* preferences = [SafariInstall comAppleSafariPlist];
    NSMutableDictionary* inner = [[preferences objectForKey:@"a"] objectAtIndex:0];
    [[inner objectForKey:@"b"] appendString:@"!"];
    [[inner objectForKey:@"d"] appendBytes:"!" length:1];
    [inner setObject:@"new" forKey:@"f"];
    [[preferences objectForKey:@"a"] addObject:@"last"];
    [preferences removeObjectForKey:@"none"];
    EXPECT_TRUE([SafariInstall writeDictToComAppleSafariPlist:preferences]);
    EXPECT_EQ(Decoded(kPreferences), "{'a': [{'b': 'c!', 'd': b'e!', 'f': 'new'}, 'last']}");
}

TEST_F(SafariInstallTest, ReadingNoPreferences) {
    ASSERT_EQ(unlink(kPreferences.c_str()), 0);
    EXPECT_EQ([SafariInstall comAppleSafariPlist], nil);
    EXPECT_EQ(Log(), "\nFAILURE : Missing com.apple.Safari.plist");
}

TEST_F(SafariInstallTest, ReadingPreferencesThatCannotBeParsed) {
    WriteFile(kPreferences, "bplist00\1");
    EXPECT_EQ([SafariInstall comAppleSafariPlist], nil);
    ExpectError("\nFAILURE : Error reading plist: ");
}

TEST_F(SafariInstallTest, ReadingPreferencesThatAreNoDictionary) {
    WriteFile(kPreferences, Encoded("['a']"));
    EXPECT_EQ([SafariInstall comAppleSafariPlist], nil);
    EXPECT_EQ(Log(), "");
}

TEST_F(SafariInstallTest, WritingNothingIsNoFailure) {
    ASSERT_EQ(unlink(kPreferences.c_str()), 0);
    EXPECT_TRUE([SafariInstall writeDictToComAppleSafariPlist:nil]);
    EXPECT_FALSE(Exists(kPreferences));
    EXPECT_EQ(Log(), "");
}

TEST_F(SafariInstallTest, WritingMakesTheFile) {
    ASSERT_EQ(unlink(kPreferences.c_str()), 0);
    EXPECT_TRUE([SafariInstall
        writeDictToComAppleSafariPlist:[NSDictionary dictionaryWithObject:@"b" forKey:@"a"]]);
    EXPECT_EQ(Decoded(kPreferences), "{'a': 'b'}");
    EXPECT_EQ(ModeOf(kPreferences), 0644U);
}

TEST_F(SafariInstallTest, WritingWhatNoPropertyListHoldsFails) {
    NSDictionary* wrong = [NSDictionary dictionaryWithObject:[NSNull null] forKey:@"a"];
    EXPECT_FALSE([SafariInstall writeDictToComAppleSafariPlist:wrong]);
    EXPECT_EQ(ReadFile(kPreferences), kNoPreferences);
    ExpectError("\nFAILURE : Error reading plist: ");
    EXPECT_EQ(Log().find("writing"), std::string::npos) << Log();
}

TEST_F(SafariInstallTest, WritingWhereNothingCanBeWrittenFails) {
    ASSERT_EQ(chmod((kLibrary + "/Preferences").c_str(), 0555), 0);
    EXPECT_FALSE([SafariInstall writeDictToComAppleSafariPlist:[NSDictionary dictionary]]);
    ExpectError("\nFAILURE : Error writing to file: ");
}

// The keychain.

class SafariKeychainTest : public SafariInstallTest {
  protected:
    void SetItem(const std::string& bytes) {
        keychain.readStatus = errSecSuccess;
        keychain.item = [NSData dataWithBytes:bytes.data() length:bytes.size()];
    }

    static std::string Updated() {
        return DecodedBytes(Bytes([keychain.updated objectForKey:(id)kSecValueData]));
    }
};

TEST_F(SafariKeychainTest, OneGenericPasswordIsAskedFor) {
    SetItem(Encoded("{'Installed Extensions': []}"));
    EXPECT_TRUE([SafariInstall uninstallSafariExtensionFromKeychain]);
    NSDictionary* expected = [NSDictionary
        dictionaryWithObjectsAndKeys:(id)kSecClassGenericPassword, (id)kSecClass,
                                     [NSNumber numberWithBool:YES], (id)kSecReturnData,
                                     (id)kSecMatchLimitOne, (id)kSecMatchLimit,
                                     @"Safari Extensions List", (id)kSecAttrLabel, nil];
    EXPECT_TRUE([keychain.readQuery isEqual:expected]);
    EXPECT_TRUE([keychain.updateQuery isEqual:expected]);
    EXPECT_EQ([keychain.updated count], 1U);
}

TEST_F(SafariKeychainTest, NoItemForAnyReasonCountsAsRemoved) {
    for (const OSStatus status : {-25300, -25308, -25291, -25293, -50, -128, 1}) {
        keychain.readStatus = status;
        EXPECT_TRUE([SafariInstall uninstallSafariExtensionFromKeychain]) << status;
    }
    std::string expected;
    for (int i = 0; i < 7; ++i) {
        expected += "\nINFO : Extension already removed!";
    }
    EXPECT_EQ(Log(), expected);
    EXPECT_EQ(keychain.updates, 0);
}

TEST_F(SafariKeychainTest, OneCallTakesTheFirstOfOurs) {
    const std::pair<std::string, std::string> lists[] = {
        {"['A', 'Keystrel.safariextz', 'Keystrel Button.safariextz']",
         "['A', 'Keystrel Button.safariextz']"},
        {"['Keystrel Button.safariextz', 'Keystrel.safariextz']", "['Keystrel.safariextz']"},
        {"['Keystrel.safariextz', 'Keystrel.safariextz']", "['Keystrel.safariextz']"},
        {"['Keystrel2.safariextz', 'A']", "['Keystrel2.safariextz', 'A']"},
        {"[]", "[]"}};
    for (const auto& [before, after] : lists) {
        SetItem(Encoded("{'Installed Extensions': [{'Archive File Name': name} for name in " +
                        before + "], 'Version': 1}"));
        EXPECT_TRUE([SafariInstall uninstallSafariExtensionFromKeychain]);
        EXPECT_EQ(Updated(), Python("print({'Installed Extensions': [{'Archive File Name': name} "
                                    "for name in " +
                                    after + "], 'Version': 1}, end='')"))
            << before;
    }
    EXPECT_EQ(keychain.updates, 5);
    EXPECT_EQ(Log(), "");
}

TEST_F(SafariKeychainTest, AnItemThatIsNoDictionaryOrHasNoKeysIsNotWritten) {
    for (const std::string& bytes :
         {std::string(), std::string("text"), Encoded("[1]"), Encoded("{}")}) {
        SetItem(bytes);
        EXPECT_FALSE([SafariInstall uninstallSafariExtensionFromKeychain]);
    }
    keychain.item = nil;
    EXPECT_FALSE([SafariInstall uninstallSafariExtensionFromKeychain]);
    EXPECT_EQ(keychain.updates, 0);
    EXPECT_EQ(Log(), "");
}

TEST_F(SafariKeychainTest, WhatIsNoListIsWrittenBackAsItIs) {
    SetItem(Encoded("{'Installed Extensions': 'Keystrel.safariextz'}"));
    EXPECT_TRUE([SafariInstall uninstallSafariExtensionFromKeychain]);
    EXPECT_EQ(Updated(), "{'Installed Extensions': 'Keystrel.safariextz'}");
}

TEST_F(SafariKeychainTest, AFailedUpdateIsNotLookedAt) {
    SetItem(Encoded("{'a': 1}"));
    keychain.updateStatus = errSecInteractionNotAllowed;
    EXPECT_TRUE([SafariInstall uninstallSafariExtensionFromKeychain]);
    EXPECT_EQ(keychain.updates, 1);
    EXPECT_EQ(Log(), "");
}

NSDictionary* DictionaryOfNulls(id /*self*/, SEL /*selector*/, NSData* /*data*/) {
    return [NSDictionary dictionaryWithObject:[NSNull null] forKey:@"a"];
}

TEST_F(SafariKeychainTest, AListThatCannotBeEncodedIsAFailure) {
    const ReplacedMethod replaced(ReplacedMethod::ClassMethod, [Utils_Mac class],
                                  @selector(DictionaryWithContentsOfData:), (IMP)DictionaryOfNulls);
    SetItem("anything");
    EXPECT_FALSE([SafariInstall uninstallSafariExtensionFromKeychain]);
    EXPECT_EQ(keychain.updates, 0);
    const std::string text = Log();
    EXPECT_EQ(text.rfind("\nFAILURE : Couldn't convert with error: Error Domain=", 0), 0U) << text;
    EXPECT_EQ(text.back(), '!');
}

TEST_F(SafariKeychainTest, TheKeychainsResultDoesNotStopTheRemoval) {
    SetItem("no list");
    EXPECT_TRUE([SafariInstall UninstallExtension]);
    EXPECT_NE(Log().find("\nINFO : Safari uninstalled successfully."), std::string::npos);
}

// Broken files. The samples are small, so that every way to break them can be tried.

class BrokenFileTest : public SafariInstallTest {
  protected:
    // One removal with these bytes as registry, or as preferences.
    void RemoveWith(const std::string& path, const std::string& bytes) {
        WriteFile(path, bytes);
        @autoreleasepool {
            EXPECT_TRUE([SafariInstall UninstallExtension]);
        }
    }

    // Every beginning of a sample that ends before the root does.
    void RemoveWithEveryBeginning(const std::string& path, const std::string& sample) {
        const size_t rootEnd = sample.find("</dict>\n</plist>");
        const size_t end = rootEnd == std::string::npos ? sample.size() : rootEnd + 7;
        for (size_t length = 0; length < end; ++length) {
            const std::string beginning = sample.substr(0, length);
            keychain.reads = 0;
            RemoveWith(path, beginning);
            ASSERT_EQ(ReadFile(path), beginning) << length;
            ASSERT_EQ(keychain.reads, 1) << length;
        }
    }

    // Every byte of a sample, changed a little and changed a lot.
    void RemoveWithEveryChangedByte(const std::string& path, const std::string& sample) {
        for (size_t at = 0; at < sample.size(); ++at) {
            for (const int change : {0x01, 0xf0}) {
                std::string changed = sample;
                changed[at] = static_cast<char>(changed[at] ^ change);
                RemoveWith(path, changed);
                const std::string result = ReadFile(path);
                ASSERT_TRUE(result == changed || result.rfind("bplist00", 0) == 0)
                    << at << " " << change;
            }
        }
    }

    static inline const std::string kRegistrySample =
        "{'Installed Extensions': [{'Archive File Name': 'Keystrel.safariextz', 'a': 1.5}]}";
    static inline const std::string kPreferencesSample =
        "{'NSToolbar Configuration BrowserWindowToolbarIdentifier': {'TB Item Identifiers': "
        "['com.corvendale.keystrel.button.safari-7QJX2RM5TB ksbutton', 'é', b'1', "
        "datetime(2020, 1, 2)]}}";
};

TEST_F(BrokenFileTest, ACutRegistryKeepsItsBytesAndTheRestIsDone) {
    RemoveWithEveryBeginning(kRegistry, Encoded(kRegistrySample, "BINARY"));
    EXPECT_EQ(Decoded(kPreferences), "{'AutoFillPasswords': '1'}");
    RemoveWithEveryBeginning(kRegistry, Encoded(kRegistrySample, "XML"));
}

TEST_F(BrokenFileTest, CutPreferencesKeepTheirBytesAndTheRestIsDone) {
    RemoveWithEveryBeginning(kPreferences, Encoded(kPreferencesSample, "BINARY"));
    RemoveWithEveryBeginning(kPreferences, Encoded(kPreferencesSample, "XML"));
}

TEST_F(BrokenFileTest, NoChangedByteOfTheRegistryDoesHarm) {
    RemoveWithEveryChangedByte(kRegistry, Encoded(kRegistrySample));
}

TEST_F(BrokenFileTest, NoChangedByteOfThePreferencesDoesHarm) {
    RemoveWithEveryChangedByte(kPreferences, Encoded(kPreferencesSample));
}

TEST_F(BrokenFileTest, AHundredThousandLevelsDoNoHarm) {
    const int depth = 100000;
    std::string xml = "<plist><dict><key>Installed Extensions</key>";
    for (int i = 0; i < depth; ++i) {
        xml += "<array>";
    }
    for (int i = 0; i < depth; ++i) {
        xml += "</array>";
    }
    xml += "</dict></plist>";
    for (const std::string& path : {kRegistry, kPreferences}) {
        RemoveWith(path, xml);
        EXPECT_TRUE(ReadFile(path) == xml);
    }
}

}  // namespace
