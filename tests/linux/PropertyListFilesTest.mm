#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/linux/ErrorChecks.h"
#include "tests/linux/TemporaryFolder.h"

namespace {

const std::string kDictionaryXML =
    "<plist version=\"1.0\"><dict><key>a</key><array><string>b</string></array></dict></plist>";
const std::string kArrayXML = "<plist version=\"1.0\"><array><string>a</string></array></plist>";

/// Nothing may be printed, whatever the files hold.
class PropertyListFiles : public testing::Test {
  protected:
    PropertyListFiles() { testing::internal::CaptureStderr(); }
    ~PropertyListFiles() override {
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        [pool_ release];
    }

    NSString* Path(const std::string& name) { return Text(folder_ / name); }
    NSURL* URL(const std::string& name) { return [NSURL fileURLWithPath:Path(name)]; }

    void WriteBinary(const std::string& name, id list) {
        NSData* data =
            [NSPropertyListSerialization dataWithPropertyList:list
                                                       format:NSPropertyListBinaryFormat_v1_0
                                                      options:0
                                                        error:nullptr];
        folder_.Write(name, {static_cast<const char*>([data bytes]), [data length]});
    }

    void ExpectNothing(const std::string& name) {
        NSString* path = Path(name);
        EXPECT_EQ([NSDictionary dictionaryWithContentsOfFile:path], nil) << name;
        EXPECT_EQ([NSMutableDictionary dictionaryWithContentsOfFile:path], nil) << name;
        EXPECT_EQ([NSDictionary dictionaryWithContentsOfURL:URL(name)], nil) << name;
        EXPECT_EQ([[NSDictionary alloc] initWithContentsOfFile:path], nil) << name;
        EXPECT_EQ([NSArray arrayWithContentsOfFile:path], nil) << name;
        EXPECT_EQ([NSMutableArray arrayWithContentsOfFile:path], nil) << name;
        EXPECT_EQ([NSArray arrayWithContentsOfURL:URL(name)], nil) << name;
        EXPECT_EQ([[NSArray alloc] initWithContentsOfFile:path], nil) << name;
    }

    NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
    TemporaryFolder folder_;
};

TEST_F(PropertyListFiles, DictionariesAreReadFromEveryFormat) {
    NSDictionary* list = @{@"a" : @[ @"b" ]};
    folder_.Write("xml", kDictionaryXML);
    WriteBinary("binary", list);
    folder_.Write("old", "/* comment */ { a = (b); }");
    for (const char* name : {"xml", "binary", "old"}) {
        EXPECT_TRUE([[NSDictionary dictionaryWithContentsOfFile:Path(name)] isEqual:list]) << name;
        EXPECT_TRUE([[NSDictionary dictionaryWithContentsOfURL:URL(name)] isEqual:list]) << name;
        EXPECT_TRUE(
            [[[[NSDictionary alloc] initWithContentsOfFile:Path(name)] autorelease] isEqual:list]);
        EXPECT_TRUE(
            [[[[NSDictionary alloc] initWithContentsOfURL:URL(name)] autorelease] isEqual:list]);
    }
}

TEST_F(PropertyListFiles, ArraysAreReadFromEveryFormat) {
    NSArray* list = @[ @"a" ];
    folder_.Write("xml", kArrayXML);
    WriteBinary("binary", list);
    folder_.Write("old", "(a)");
    for (const char* name : {"xml", "binary", "old"}) {
        EXPECT_TRUE([[NSArray arrayWithContentsOfFile:Path(name)] isEqual:list]) << name;
        EXPECT_TRUE([[NSArray arrayWithContentsOfURL:URL(name)] isEqual:list]) << name;
        EXPECT_TRUE(
            [[[[NSArray alloc] initWithContentsOfFile:Path(name)] autorelease] isEqual:list]);
        EXPECT_TRUE([[[[NSArray alloc] initWithContentsOfURL:URL(name)] autorelease] isEqual:list]);
    }
}

TEST_F(PropertyListFiles, MutableCollectionsCanBeChangedInside) {
    folder_.Write("dictionary", kDictionaryXML);
    NSMutableDictionary* dictionary =
        [NSMutableDictionary dictionaryWithContentsOfFile:Path("dictionary")];
    [dictionary setObject:@1 forKey:@"new"];
    [[dictionary objectForKey:@"a"] addObject:@1];
    EXPECT_EQ([dictionary count], 2U);

    folder_.Write("array", kArrayXML);
    NSMutableArray* array = [NSMutableArray arrayWithContentsOfFile:Path("array")];
    [array addObject:@1];
    EXPECT_EQ([array count], 2U);
}

TEST_F(PropertyListFiles, AnotherRootThanAskedForIsNothing) {
    folder_.Write("dictionary", kDictionaryXML);
    folder_.Write("array", kArrayXML);
    folder_.Write("string", "<plist><string>a</string></plist>");
    EXPECT_EQ([NSArray arrayWithContentsOfFile:Path("dictionary")], nil);
    EXPECT_EQ([NSDictionary dictionaryWithContentsOfFile:Path("array")], nil);
    ExpectNothing("string");
}

TEST_F(PropertyListFiles, MalformedFilesAreNothing) {
    const std::string contents[] = {
        "",      "text",     "<plist>",        kDictionaryXML.substr(0, 60), "bplist00", "{ a = ",
        "(1, 2", "\xFF\xFE", "{\"json\": [1]}"};
    for (const std::string& content : contents) {
        folder_.Write("file", content);
        ExpectNothing("file");
    }
}

TEST_F(PropertyListFiles, WhatIsNoReadableFileIsNothing) {
    ExpectNothing("missing");
    ExpectNothing("missing/below");
    folder_.MakeFolder("folder");
    ExpectNothing("folder");
    ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0644), 0);
    ExpectNothing("pipe");
    folder_.Write("secret", kDictionaryXML, 0);
    const OrdinaryUser user;
    ExpectNothing("secret");
}

TEST_F(PropertyListFiles, NoPathIsNothing) {
    EXPECT_EQ([NSDictionary dictionaryWithContentsOfFile:nil], nil);
    EXPECT_EQ([NSDictionary dictionaryWithContentsOfURL:nil], nil);
    EXPECT_EQ([NSArray arrayWithContentsOfFile:@""], nil);
    EXPECT_FALSE([@{} writeToFile:nil atomically:YES]);
    EXPECT_FALSE([@{} writeToURL:nil atomically:YES]);
    EXPECT_FALSE([@[] writeToFile:@"" atomically:NO]);
}

TEST_F(PropertyListFiles, CollectionsAreWrittenAsXML) {
    const std::string start = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                              "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                              "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                              "<plist version=\"1.0\">\n";
    for (const BOOL atomically : {YES, NO}) {
        EXPECT_TRUE([(@{@"b" : @1, @"a" : @"x"}) writeToFile:Path("a") atomically:atomically]);
        EXPECT_EQ(folder_.Read("a"),
                  start + "<dict>\n\t<key>a</key>\n\t<string>x</string>\n"
                          "\t<key>b</key>\n\t<integer>1</integer>\n</dict>\n</plist>\n");
        EXPECT_TRUE([@[ @"x" ] writeToURL:URL("b") atomically:atomically]);
        EXPECT_EQ(folder_.Read("b"), start + "<array>\n\t<string>x</string>\n</array>\n</plist>\n");
        EXPECT_TRUE([@{} writeToURL:URL("c") atomically:atomically]);
        EXPECT_EQ(folder_.Read("c"), start + "<dict/>\n</plist>\n");
    }
    EXPECT_EQ(folder_.Everything(), "a b c");
}

TEST_F(PropertyListFiles, UnsuitableCollectionsLeaveTheFileAsItWas) {
    folder_.Write("file", "before");
    EXPECT_FALSE([@[ [NSNull null] ] writeToFile:Path("file") atomically:YES]);
    EXPECT_FALSE([(@{@1 : @"a"}) writeToFile:Path("file") atomically:NO]);
    EXPECT_FALSE([(@{@"a" : [NSNull null]}) writeToURL:URL("file") atomically:NO]);
    EXPECT_EQ(folder_.Read("file"), "before");
}

TEST_F(PropertyListFiles, AFileThatCannotBeWrittenIsNo) {
    EXPECT_FALSE([@{} writeToFile:Path("missing/file") atomically:YES]);
    EXPECT_FALSE([@[] writeToFile:Path("missing/file") atomically:NO]);
    folder_.MakeFolder("folder");
    EXPECT_FALSE([@{} writeToFile:Path("folder") atomically:NO]);
    EXPECT_FALSE([@{} writeToURL:[NSURL URLWithString:@"http://a.example/"] atomically:NO]);
}

}  // namespace
