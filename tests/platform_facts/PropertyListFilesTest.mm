// Dictionaries that are read from files.
#include <gtest/gtest.h>

#include "tests/support/ErrorChecks.h"
#include "tests/support/TemporaryFolder.h"

namespace {

const std::string kXML =
    "<plist version=\"1.0\"><dict><key>a</key><array><string>b</string></array></dict></plist>";

/// Nothing may be printed, whatever the files hold.
class PropertyListFiles : public testing::Test {
  protected:
    PropertyListFiles() { testing::internal::CaptureStderr(); }
    ~PropertyListFiles() override {
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        [pool_ release];
    }

    NSString* Path(const std::string& name) { return Text(folder_ / name); }

    void ExpectNothing(const std::string& name) {
        EXPECT_EQ([NSDictionary dictionaryWithContentsOfFile:Path(name)], nil) << name;
        EXPECT_EQ([NSMutableDictionary dictionaryWithContentsOfFile:Path(name)], nil) << name;
        EXPECT_EQ([[NSDictionary alloc] initWithContentsOfFile:Path(name)], nil) << name;
    }

    NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
    TemporaryFolder folder_;
};

TEST_F(PropertyListFiles, DictionariesAreReadFromEveryFormat) {
    NSDictionary* list = @{@"a" : @[ @"b" ]};
    NSData* binary =
        [NSPropertyListSerialization dataWithPropertyList:list
                                                   format:NSPropertyListBinaryFormat_v1_0
                                                  options:0
                                                    error:nullptr];
    folder_.Write("binary", {static_cast<const char*>([binary bytes]), [binary length]});
    folder_.Write("xml", kXML);
    folder_.Write("old", "/* comment */ { a = (b); }");
    for (const char* name : {"xml", "binary", "old"}) {
        EXPECT_TRUE([[NSDictionary dictionaryWithContentsOfFile:Path(name)] isEqual:list]) << name;
        EXPECT_TRUE(
            [[[[NSDictionary alloc] initWithContentsOfFile:Path(name)] autorelease] isEqual:list]);
    }
}

TEST_F(PropertyListFiles, MutableDictionariesCanBeChangedInside) {
    folder_.Write("file", kXML);
    NSMutableDictionary* dictionary =
        [NSMutableDictionary dictionaryWithContentsOfFile:Path("file")];
    [dictionary setObject:@1 forKey:@"new"];
    [[dictionary objectForKey:@"a"] addObject:@1];
    EXPECT_EQ([dictionary count], 2U);
}

TEST_F(PropertyListFiles, ABlankFileIsAnEmptyDictionary) {
    folder_.Write("file", " \n// nothing");
    EXPECT_TRUE([[NSMutableDictionary dictionaryWithContentsOfFile:Path("file")] isEqual:@{}]);
}

TEST_F(PropertyListFiles, WhatHoldsNoDictionaryIsNothing) {
    for (const std::string& content : std::initializer_list<std::string>{
             "", "text", "(a)", "<plist><string>a</string></plist>", "<plist>", kXML.substr(0, 60),
             "bplist00", "{ a = ", "\xFF\xFE", "{\"json\": [1]}"}) {
        folder_.Write("file", content);
        ExpectNothing("file");
    }
}

TEST_F(PropertyListFiles, WhatIsNoReadableFileIsNothing) {
    ExpectNothing("missing");
    ExpectNothing("missing/below");
    folder_.MakeFolder("folder");
    ExpectNothing("folder");
    folder_.Write("secret", kXML, 0);
    const OrdinaryUser user;
    ExpectNothing("secret");
}

}  // namespace
