// XML documents, as the program reads and changes Firefox's registry of extensions.
#include <gtest/gtest.h>

#include "tests/support/ErrorChecks.h"
#include "tests/support/TemporaryFolder.h"

namespace {

class XmlDocument : public testing::Test {
  protected:
    ~XmlDocument() override { [pool_ release]; }

    NSXMLDocument* Load(const std::string& text) {
        folder_.Write("file", text);
        return [[[NSXMLDocument alloc]
            initWithContentsOfURL:[NSURL fileURLWithPath:Text(folder_ / "file")]
                          options:NSXMLNodeLoadExternalEntitiesNever
                            error:&error_] autorelease];
    }

    static NSArray* Elements(NSXMLDocument* document) {
        NSMutableArray* elements = [NSMutableArray array];
        for (NSXMLNode* node in [[document rootElement] children]) {
            if ([node kind] == NSXMLElementKind) {
                [elements addObject:node];
            }
        }
        return elements;
    }

    NSAutoreleasePool* const pool_ = [[NSAutoreleasePool alloc] init];
    TemporaryFolder folder_;
    NSError* error_ = nil;
};

const std::string kList = "<?xml version=\"1.0\"?>\n"
                          "<R:RDF xmlns:R=\"urn:r\" xmlns:e=\"urn:e\">\n"
                          "  <R:Description R:about=\"one &amp; ü\" e:version=\"1\"/>\n"
                          "  <R:li>text <![CDATA[<more>]]></R:li><!-- kept -->\n"
                          "</R:RDF>\n";

TEST_F(XmlDocument, NamesAndAttributesHaveTheirPrefixes) {
    NSXMLDocument* document = Load(kList);
    EXPECT_EQ(Text([[document rootElement] name]), "R:RDF");
    NSArray* elements = Elements(document);
    ASSERT_EQ([elements count], 2U);
    NSXMLElement* first = [elements objectAtIndex:0];
    EXPECT_EQ(Text([first name]), "R:Description");
    EXPECT_EQ(Text([[first attributeForName:@"R:about"] stringValue]), "one & ü");
    EXPECT_EQ([first attributeForName:@"about"], nil);
    EXPECT_EQ(Text([[elements objectAtIndex:1] stringValue]), "text <more>");
}

TEST_F(XmlDocument, WhatIsDetachedIsNotWritten) {
    NSXMLDocument* document = Load(kList);
    [[Elements(document) objectAtIndex:0] detach];
    NSData* data = [document XMLData];
    const std::string written(static_cast<const char*>([data bytes]), [data length]);
    EXPECT_EQ(written.find("Description"), std::string::npos);
    EXPECT_NE(written.find("<!-- kept -->"), std::string::npos);
    EXPECT_EQ([Elements(Load(written)) count], 1U);
}

TEST_F(XmlDocument, WhatIsNotWellFormedIsAnError) {
    for (const std::string text : {"", "text", "<a>", "<a></b>", "<a/><b/>", "<a>&unknown;</a>"}) {
        error_ = nil;
        EXPECT_EQ(Load(text), nil) << text;
        EXPECT_NE(error_, nil) << text;
    }
}

TEST_F(XmlDocument, NothingOutsideIsRead) {
    folder_.Write("secret", "told");
    NSXMLDocument* document = Load("<!DOCTYPE a [<!ENTITY e SYSTEM \"secret\">]><a><b>&e;</b></a>");
    EXPECT_EQ(Text([[document rootElement] stringValue]).find("told"), std::string::npos);
}

}  // namespace
