#include "platform/Utils_Mac.h"

#include <AppKit/AppKit.h>
#include <Security/Security.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <ctime>
#include <filesystem>

#include "platform/UtilsBridges.h"
#include "settings/LocalSettings.h"
#include "tests/support/Command.h"
#include "tests/support/Files.h"
#include "tests/support/ReplacedMethod.h"
#include "tests/support/TemporaryFolder.h"

namespace fs = std::filesystem;

// Counts the requests to quit.
@interface QuitRecorder : NSObject {
    int requests;
    id lastArgument;
}
- (void)terminate:(id)argument;
- (int)requests;
- (id)lastArgument;
@end

@implementation QuitRecorder
- (void)terminate:(id)argument {
    ++requests;
    lastArgument = argument;
}
- (int)requests {
    return requests;
}
- (id)lastArgument {
    return lastArgument;
}
@end

namespace {

const std::string kSystemVersionFile = "/System/Library/CoreServices/SystemVersion.plist";

std::string Utf8(NSString* text) {
    return [text UTF8String];
}

NSData* Data(const std::string& bytes) {
    return [NSData dataWithBytes:bytes.data() length:bytes.size()];
}

// A property list whose contents a Python expression gives.
NSData* PropertyList(const std::string& expression, const std::string& format) {
    return Data(Python("import plistlib, sys\nsys.stdout.buffer.write(plistlib.dumps(" +
                       expression + ", fmt=plistlib." + format + "))"));
}

void RunTheLoop() {
    [[NSRunLoop currentRunLoop] runUntilDate:[NSDate dateWithTimeIntervalSinceNow:0.05]];
}

TEST(Process, HasTheKernelsIdentifier) {
    EXPECT_EQ([Utils_Mac GetCurrentProcessId], getpid());
    EXPECT_EQ(GetCurrentProcessId(), getpid());
    EXPECT_EQ(GetCurrentProcessIdBridge(), getpid());
}

TEST(Process, TickCountIsTheWallClockInSeconds) {
    const time_t before = time(nullptr);
    const time_t ticks = GetTickCount();
    EXPECT_GE(ticks, before);
    EXPECT_LE(ticks, time(nullptr));
}

// Property lists.

TEST(PropertyListData, ADictionaryIsReadInBothFormats) {
    for (const char* format : {"FMT_XML", "FMT_BINARY"}) {
        NSDictionary* dictionary = [Utils_Mac
            DictionaryWithContentsOfData:PropertyList("{'Zürich': ['東京', {'inner': 5}]}",
                                                      format)];
        NSArray* array = [dictionary objectForKey:[NSString stringWithUTF8String:"Zürich"]];
        EXPECT_EQ([dictionary count], 1U);
        EXPECT_EQ(Utf8([array objectAtIndex:0]), "東京");
        EXPECT_EQ([[[array objectAtIndex:1] objectForKey:@"inner"] intValue], 5);
    }
}

TEST(PropertyListData, AnEmptyDictionaryIsNotNil) {
    NSDictionary* dictionary =
        [Utils_Mac DictionaryWithContentsOfData:PropertyList("{}", "FMT_BINARY")];
    EXPECT_NE(dictionary, nil);
    EXPECT_EQ([dictionary count], 0U);
}

TEST(PropertyListData, AnotherRootIsNil) {
    for (const char* format : {"FMT_XML", "FMT_BINARY"}) {
        for (const char* expression : {"['a']", "'a'", "5", "True", "b'a'"}) {
            EXPECT_EQ([Utils_Mac DictionaryWithContentsOfData:PropertyList(expression, format)],
                      nil)
                << expression;
        }
    }
}

TEST(PropertyListData, WhatIsNoPropertyListIsNil) {
    NSData* nothing = nil;
    EXPECT_EQ([Utils_Mac DictionaryWithContentsOfData:nothing], nil);
    for (const std::string& bytes :
         {std::string(), std::string("\0", 1), std::string(100, '\xff'), std::string("bplist00"),
          std::string("<?xml version=\"1.0\"?><plist><dict>")}) {
        EXPECT_EQ([Utils_Mac DictionaryWithContentsOfData:Data(bytes)], nil) << bytes;
    }
}

TEST(PropertyListData, EveryTruncationIsNil) {
    for (const char* format : {"FMT_XML", "FMT_BINARY"}) {
        NSData* whole = PropertyList("{'a': ['b', 5, 2.5, True, b'c'], 'd': {'e': 'f'}}", format);
        ASSERT_NE([Utils_Mac DictionaryWithContentsOfData:whole], nil);
        const NSUInteger last = [whole length] - (format == std::string("FMT_XML") ? 9 : 1);
        for (NSUInteger length = 0; length <= last; ++length) {
            NSData* part = [whole subdataWithRange:NSMakeRange(0, length)];
            EXPECT_EQ([Utils_Mac DictionaryWithContentsOfData:part], nil) << format << length;
        }
    }
}

// Versions.

NSDictionary* answer = nil;

id Answer(id /*receiver*/, SEL /*selector*/, NSString* /*path*/) {
    return answer;
}

TEST(SystemVersion, IsThatOfTheSystemsFile) {
    const std::string version =
        Python("import plistlib, sys\n"
               "print(plistlib.load(open(sys.argv[1], 'rb'))['ProductVersion'], end='')",
               {kSystemVersionFile});
    ASSERT_NE(version, "");
    EXPECT_EQ(Utf8([Utils_Mac getOSVersion]), "OSX: " + version);
    EXPECT_EQ(GetOSXVersion(), "OSX: " + version);
    EXPECT_EQ(GetOSVersionBridge(), "OSX: " + version);
}

TEST(SystemVersion, ReadsAsNullWithoutTheFileOrTheKey) {
    const ReplacedMethod reading(ReplacedMethod::ClassMethod, [NSDictionary class],
                                 @selector(dictionaryWithContentsOfFile:),
                                 reinterpret_cast<IMP>(Answer));
    answer = nil;
    EXPECT_EQ(Utf8([Utils_Mac getOSVersion]), "OSX: (null)");
    answer = [NSDictionary dictionaryWithObject:@"x" forKey:@"ProductName"];
    EXPECT_EQ(GetOSXVersion(), "OSX: (null)");
}

class ProductVersion : public testing::Test {
  protected:
    ProductVersion() { LocalSettings::RemoveSettingForName("KSVersion"); }
    ~ProductVersion() override { LocalSettings::RemoveSettingForName("KSVersion"); }
};

id InfoDictionary(id /*receiver*/, SEL /*selector*/) {
    return answer;
}

TEST_F(ProductVersion, HasADefaultThatIsNotStored) {
    EXPECT_EQ(Utf8([Utils_Mac getKSVersion]), "20200902");
    EXPECT_EQ(GetKSVersionOSX(), "20200902");
    EXPECT_EQ(GetKSVersionBridge(), "20200902");
    EXPECT_EQ(LocalSettings::GetSettingValueForName("KSVersion"), "");
}

TEST_F(ProductVersion, IsTheBundlesWhichIsStored) {
    const ReplacedMethod reading(ReplacedMethod::InstanceMethod, [NSBundle class],
                                 @selector(infoDictionary), reinterpret_cast<IMP>(InfoDictionary));
    answer = [NSDictionary dictionaryWithObject:@"20240305" forKey:@"KSVersion"];
    EXPECT_EQ(Utf8([Utils_Mac getKSVersion]), "20240305");
    EXPECT_EQ(LocalSettings::GetSettingValueForName("KSVersion"), "20240305");
    answer = [NSDictionary dictionaryWithObject:@"20240306" forKey:@"KSVersion"];
    EXPECT_EQ(GetKSVersionOSX(), "20240306");
    EXPECT_EQ(LocalSettings::GetSettingValueForName("KSVersion"), "20240306");
}

TEST_F(ProductVersion, OfAnotherTypeCountsAsNone) {
    const ReplacedMethod reading(ReplacedMethod::InstanceMethod, [NSBundle class],
                                 @selector(infoDictionary), reinterpret_cast<IMP>(InfoDictionary));
    answer = [NSDictionary dictionaryWithObject:[NSNumber numberWithInt:20240305]
                                         forKey:@"KSVersion"];
    EXPECT_EQ(GetKSVersionOSX(), "20200902");
    EXPECT_EQ(LocalSettings::GetSettingValueForName("KSVersion"), "");
}

// Folders.

TEST(FoldersInFolder, AreNamesOfFoldersAndOfLinksToThem) {
    const TemporaryFolder folder;
    fs::create_directories(folder / "Zürich/deep");
    fs::create_directory(folder / ".hidden");
    WriteFile(folder / "file", "");
    fs::create_symlink("Zürich", folder / "link");
    fs::create_symlink("file", folder / "link to file");
    fs::create_symlink("nowhere", folder / "dangling");

    NSString* path = [NSString stringWithUTF8String:folder.path().c_str()];
    NSArray* folders = [Utils_Mac arrayOfFoldersInFolder:path];
    NSSet* expected =
        [NSSet setWithObjects:[NSString stringWithUTF8String:"Zürich"], @".hidden", @"link", nil];
    EXPECT_TRUE([[NSSet setWithArray:folders] isEqualToSet:expected]);
    EXPECT_EQ([folders count], 3U);
}

TEST(FoldersInFolder, AreThoseOfTheRoot) {
    EXPECT_TRUE([[Utils_Mac arrayOfFoldersInFolder:@"/"] containsObject:@"Users"]);
}

TEST(FoldersInFolder, KeepTheListingsOrder) {
    const TemporaryFolder folder;
    for (int i = 0; i < 50; ++i) {
        fs::create_directory(folder / ("folder " + std::to_string(i)));
    }
    NSString* path = [NSString stringWithUTF8String:folder.path().c_str()];
    EXPECT_TRUE([[Utils_Mac arrayOfFoldersInFolder:path]
        isEqualToArray:[[NSFileManager defaultManager] contentsOfDirectoryAtPath:path error:NULL]]);
}

TEST(FoldersInFolder, AreNoneAmongFilesOrWhereNothingCanBeRead) {
    const TemporaryFolder folder;
    WriteFile(folder / "file", "");
    NSString* path = [NSString stringWithUTF8String:folder.path().c_str()];
    NSString* nothing = nil;
    for (NSString *unreadable in
         [NSArray arrayWithObjects:path, [path stringByAppendingPathComponent:@"missing"],
                                   [path stringByAppendingPathComponent:@"file"], @"", nil]) {
        NSArray* folders = [Utils_Mac arrayOfFoldersInFolder:unreadable];
        EXPECT_NE(folders, nil);
        EXPECT_EQ([folders count], 0U);
    }
    EXPECT_EQ([[Utils_Mac arrayOfFoldersInFolder:nothing] count], 0U);
}

// The rest.

TEST(HidReset, IsAPlaceholder) {
    EXPECT_EQ([Utils_Mac hid_reset], -1);
    EXPECT_EQ(hid_resetCPP(), -1);
    EXPECT_EQ(hid_resetBridge(), -1);
}

QuitRecorder* application = nil;
bool hasScreen = true;

id SharedApplication(id /*receiver*/, SEL /*selector*/) {
    return application;
}

TEST(Quitting, HappensInTheNextTurnOfTheRunLoop) {
    const ReplacedMethod shared(ReplacedMethod::ClassMethod, [NSApplication class],
                                @selector(sharedApplication),
                                reinterpret_cast<IMP>(SharedApplication));
    void (*const ways[])() = {[] { [Utils_Mac closeApp]; }, CloseAppCPP, CloseAppBridge};
    for (const auto close : ways) {
        application = [[[QuitRecorder alloc] init] autorelease];
        close();
        EXPECT_EQ([application requests], 0);
        RunTheLoop();
        EXPECT_EQ([application requests], 1);
        EXPECT_EQ([application lastArgument], nil);
        RunTheLoop();
        EXPECT_EQ([application requests], 1);
    }
}

TEST(Quitting, WithoutAnApplicationIsNothing) {
    const ReplacedMethod shared(ReplacedMethod::ClassMethod, [NSApplication class],
                                @selector(sharedApplication),
                                reinterpret_cast<IMP>(SharedApplication));
    application = nil;
    [Utils_Mac closeApp];
    RunTheLoop();
}

id NeverAsked(id /*receiver*/, SEL /*selector*/) {
    ADD_FAILURE() << "without a screen AppKit may end the program, or hang";
    return nil;
}

TEST(Quitting, WithoutAScreenDoesNotAskAppKit) {
    const ReplacedMethod shared(ReplacedMethod::ClassMethod, [NSApplication class],
                                @selector(sharedApplication), reinterpret_cast<IMP>(NeverAsked));
    hasScreen = false;
    [Utils_Mac closeApp];
    hasScreen = true;
    RunTheLoop();
}

}  // namespace

// In the place of the platform's.
OSStatus SessionGetInfo(SecuritySessionId session, SecuritySessionId*,
                        SessionAttributeBits* attributes) {
    EXPECT_EQ(session, callerSecuritySession);
    *attributes = hasScreen ? sessionHasGraphicAccess : 0;
    return errSessionSuccess;
}
