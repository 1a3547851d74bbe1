// XML documents, judged by xmllint: what is written is compared in its canonical form.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include "tests/support/Command.h"
#include "tests/support/ErrorChecks.h"
#include "tests/support/TemporaryFolder.h"

namespace {

using namespace std::string_literals;

class XmlDocument : public testing::Test {
  protected:
    ~XmlDocument() override { [pool_ release]; }

    NSXMLDocument* LoadFile(const std::string& name) {
        error_ = nil;
        return [[[NSXMLDocument alloc]
            initWithContentsOfURL:[NSURL fileURLWithPath:Text(folder_ / name)]
                          options:NSXMLNodeLoadExternalEntitiesNever
                            error:&error_] autorelease];
    }

    NSXMLDocument* Load(const std::string& text) {
        folder_.Write("in.xml", text);
        return LoadFile("in.xml");
    }

    // What the document is written as.
    std::string Written(NSXMLDocument* document) {
        NSData* data = [document XMLData];
        return std::string(static_cast<const char*>([data bytes]), [data length]);
    }

    std::string Canonical(const std::string& text) {
        folder_.Write("canonical.xml", text);
        return OutputOf("xmllint --nonet --c14n " + folder_ / "canonical.xml");
    }

    std::string Rewritten(const std::string& text) { return Canonical(Written(Load(text))); }

    void ExpectToFail(const std::string& text) {
        EXPECT_EQ(Load(text), nil) << text.substr(0, 200);
        ASSERT_NE(error_, nil);
        EXPECT_EQ(Text([error_ domain]), "NSXMLParserErrorDomain");
        EXPECT_GT([[error_ localizedDescription] length], 0U);
    }

    NSAutoreleasePool* const pool_ = [[NSAutoreleasePool alloc] init];
    TemporaryFolder folder_;
    NSError* error_ = nil;
};

std::string Repeated(const std::string& text, size_t times) {
    std::string result;
    for (size_t i = 0; i < times; ++i) {
        result += text;
    }
    return result;
}

NSXMLElement* ElementAt(NSArray* nodes, NSUInteger index) {
    return static_cast<NSXMLElement*>([nodes objectAtIndex:index]);
}

TEST_F(XmlDocument, AFileThatIsMissingIsAnError) {
    EXPECT_EQ(LoadFile("missing.xml"), nil);
    ExpectCocoaError(error_, 260, ENOENT, folder_ / "missing.xml");
    EXPECT_EQ(LoadFile("."), nil);
    EXPECT_NE(error_, nil);
}

TEST_F(XmlDocument, AFileThatMayNotBeReadIsAnError) {
    folder_.Write("closed.xml", "<a></a>", 0);
    const OrdinaryUser user;
    EXPECT_EQ(LoadFile("closed.xml"), nil);
    ExpectCocoaError(error_, 257, EACCES, folder_ / "closed.xml");
}

TEST_F(XmlDocument, WhatIsNotWellFormedIsAnError) {
    for (const std::string& text :
         {""s, " "s, "text"s, "<a>"s, "<a></b>"s, "<a/><b/>"s, "<a b=1/>"s, "<a>&none;</a>"s,
          "<a>\xFF</a>"s, "<a>\0</a>"s, "<?xml version=\"1.0\" encoding=\"none\"?><a/>"s,
          "<?xml version=\"1.0\" encoding=\"UTF-16\"?><a/>"s}) {
        ExpectToFail(text);
    }
}

TEST_F(XmlDocument, AnErrorIsNotPrinted) {
    testing::internal::CaptureStderr();
    ExpectToFail("<a");
    ExpectToFail("<a>" + std::string(11000000, 'x') + "</a>");  // more than a text may have
    EXPECT_NE(Load("<undeclared:a/>"), nil);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(XmlDocument, ADocumentOfManyMegabytesIsLoaded) {
    const std::string element = "<b c='" + std::string(1000, 'x') + "'></b>";
    NSXMLDocument* document = Load("<a>\n" + Repeated(element, 30000) + "</a>");
    EXPECT_EQ([[[document rootElement] children] count], 30000U);
    EXPECT_EQ(Written(document).size(), 30000 * element.size() + 47);
}

TEST_F(XmlDocument, AnErrorNeedNotBeTaken) {
    folder_.Write("in.xml", "<a>");
    for (NSString* path in @[ Text(folder_ / "in.xml"), @"/none" ]) {
        EXPECT_EQ([[NSXMLDocument alloc] initWithContentsOfURL:[NSURL fileURLWithPath:path]
                                                       options:0
                                                         error:NULL],
                  nil);
    }
}

TEST_F(XmlDocument, TextOfNothingButWhiteSpaceIsDropped) {
    EXPECT_EQ(Rewritten("<a>\n  <b> \t</b>\r\n  <c> text <d/> </c>\n</a>"),
              "<a><b></b><c> text <d></d></c></a>");
    EXPECT_EQ(Rewritten("<a> <!-- c --> <?p i?> </a>"), "<a><!-- c --><?p i?></a>"
                                                        ""s);
}

TEST_F(XmlDocument, WhiteSpaceThatIsPartOfALongerTextIsKept) {
    EXPECT_EQ(Rewritten("<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e; &e; <![CDATA[y]]> </a>"),
              "<a>x x y </a>");
    EXPECT_EQ(Rewritten("<a><b/> <![CDATA[]]> <b/></a>"), "<a><b></b>  <b></b></a>");
}

TEST_F(XmlDocument, EverythingElseIsKept) {
    const std::string text =
        "<!-- before --><?before it?>"
        "<p:a xmlns:p=\"urn:p\" xmlns=\"urn:d\" p:x=\"1\" x=\"&lt;&quot;&#9;&amp;&gt;'\">"
        "<!-- inside --><b xmlns:q=\"urn:q\" q:y=\"2\">&lt;tag&gt; &amp;amp; &#233;&#x1F600;</b>"
        "<![CDATA[ <raw> & ]]><?inside it?><c></c></p:a>"
        "<?after it?><!-- after -->";
    EXPECT_EQ(Rewritten(text), Canonical(text));
}

TEST_F(XmlDocument, ADocumentTypeIsKept) {
    const std::string written = Written(Load("<!DOCTYPE a SYSTEM \"a.dtd\" [<!ENTITY e "
                                             "\"text\"><!ATTLIST a i ID #IMPLIED>]><a>&e;</a>"));
    EXPECT_NE(written.find("<!DOCTYPE a SYSTEM \"a.dtd\" ["), std::string::npos) << written;
    EXPECT_NE(written.find("<!ENTITY e \"text\">"), std::string::npos) << written;
    EXPECT_NE(written.find("<!ATTLIST a i ID #IMPLIED>"), std::string::npos) << written;
    EXPECT_NE(written.find("<a>&e;</a>"), std::string::npos) << written;
}

TEST_F(XmlDocument, ADocumentIsWrittenInItsOwnEncoding) {
    // Names of encodings, as documents and as iconv know them.
    for (const char* encoding :
         {"UTF-8", "UTF-16", "UTF-16LE", "UTF-16BE", "ISO-8859-1", "windows-1252", "ISO-8859-15"}) {
        const std::string text = "<?xml version=\"1.0\" encoding=\""s + encoding +
                                 "\"?>\n<a x=\"Zo\xC3\xAB\">caf\xC3\xA9 &#8364; &#26481;</a>\n";
        folder_.Write("utf8.xml", text);
        OutputOf("iconv -f UTF-8 -t "s + encoding + " " + folder_ / "utf8.xml" + " >" +
                 folder_ / "in.xml");
        const std::string written = Written(LoadFile("in.xml"));
        folder_.Write("out.xml", written);
        const std::string inUtf8 =
            OutputOf("iconv -f "s + encoding + " -t UTF-8 " + folder_ / "out.xml");
        EXPECT_NE(inUtf8.find("encoding=\""s + encoding + "\""), std::string::npos) << inUtf8;
        EXPECT_NE(inUtf8.find("caf\xC3\xA9"), std::string::npos) << inUtf8;
        EXPECT_EQ(Canonical(written),
                  "<a x=\"Zo\xC3\xAB\">caf\xC3\xA9 \xE2\x82\xAC \xE6\x9D\xB1</a>")
            << encoding;
    }
}

TEST_F(XmlDocument, ADocumentThatNamesNoEncodingIsWrittenAsUtf8) {
    for (const std::string mark : {"", "\xEF\xBB\xBF"}) {
        const std::string written = Written(Load(mark + "<a>caf\xC3\xA9</a>"));
        EXPECT_EQ(written, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a>caf\xC3\xA9</a>\n");
    }
}

TEST_F(XmlDocument, NodesSayWhatTheyAre) {
    NSXMLElement* root =
        [Load("<r:a xmlns:r='urn:r' r:x='1'>text<!--c--><?p i?><![CDATA[d]]><b>1<c>2</c></b></r:a>")
            rootElement];
    EXPECT_EQ([root kind], NSXMLElementKind);
    EXPECT_EQ(Text([root name]), "r:a");
    NSArray* nodes = [root children];
    ASSERT_EQ([nodes count], 5U);
    const NSXMLNodeKind kinds[] = {NSXMLTextKind, NSXMLCommentKind, NSXMLProcessingInstructionKind,
                                   NSXMLTextKind, NSXMLElementKind};
    const char* const names[] = {"(nil)", "(nil)", "p", "(nil)", "b"};
    const char* const texts[] = {"text", "c", "i", "d", "12"};
    for (NSUInteger i = 0; i < 5; ++i) {
        NSXMLNode* node = [nodes objectAtIndex:i];
        EXPECT_EQ([node kind], kinds[i]);
        EXPECT_EQ(Text([node name]), names[i]);
        EXPECT_EQ(Text([node stringValue]), texts[i]);
    }
    EXPECT_EQ([[nodes objectAtIndex:0] children], nil);
    EXPECT_EQ([nodes objectAtIndex:4], [[root children] lastObject]);  // one object a node
}

TEST_F(XmlDocument, AttributesAreFoundByTheirQualifiedNameOnly) {
    NSXMLElement* root = [Load(
        "<a xmlns:r='urn:r' xmlns:s='urn:r' r:about='with' about='without' u:x='undeclared'/>")
        rootElement];
    EXPECT_EQ(Text([[root attributeForName:@"r:about"] stringValue]), "with");
    EXPECT_EQ(Text([[root attributeForName:@"about"] stringValue]), "without");
    EXPECT_EQ(Text([[root attributeForName:@"u:x"] stringValue]), "undeclared");
    for (NSString *name in
         [NSArray arrayWithObjects:@"s:about", @"R:about", @"r:", @"", @"xmlns:r", nil]) {
        EXPECT_EQ([root attributeForName:name], nil) << Text(name);
    }
    NSXMLElement* bare = [Load("<a xmlns:r='urn:r' about='without'/>") rootElement];
    EXPECT_EQ([bare attributeForName:@"r:about"], nil);
    bare = [Load("<a xmlns:r='urn:r' r:about='with'/>") rootElement];
    EXPECT_EQ([bare attributeForName:@"about"], nil);
    EXPECT_EQ(Text([[bare attributeForName:@"r:about"] name]), "r:about");
    EXPECT_EQ([[bare attributeForName:@"r:about"] kind], NSXMLAttributeKind);
}

TEST_F(XmlDocument, EntitiesInAnAttributeAreResolvedInItsValue) {
    NSXMLElement* root =
        [Load("<!DOCTYPE a [<!ENTITY e 'x&amp;y'>]><a b='1&e;2&amp;3&#65;'/>") rootElement];
    EXPECT_EQ(Text([[root attributeForName:@"b"] stringValue]), "1x&y2&3A");
}

TEST_F(XmlDocument, DetachedNodesAreNotWrittenButStillReadable) {
    NSXMLDocument* document = Load("<a><b x='1'>in b</b><c/><d><e/></d></a>");
    NSArray* nodes = [[document rootElement] children];
    NSXMLElement* first = ElementAt(nodes, 0);
    [first detach];
    [first detach];
    [ElementAt([ElementAt(nodes, 2) children], 0) detach];
    [ElementAt(nodes, 2) detach];
    EXPECT_EQ(Canonical(Written(document)), "<a><c></c></a>");
    EXPECT_EQ(Text([first stringValue]), "in b");
    EXPECT_EQ(Text([[first attributeForName:@"x"] stringValue]), "1");
}

TEST_F(XmlDocument, ANodeKeepsItsDocumentAlive) {
    NSXMLNode* node = nil;
    @autoreleasepool {
        NSXMLDocument* document = Load("<a><b>text</b></a>");
        node = [[[[document rootElement] children] lastObject] retain];
        [node detach];
    }
    EXPECT_EQ(Text([node stringValue]), "text");
    [node release];
}

TEST_F(XmlDocument, EntitiesThatBlowADocumentUpAreAnError) {
    std::string laughs = "<!DOCTYPE r [<!ENTITY l0 'lol'>";
    for (int i = 1; i < 10; ++i) {
        laughs += "<!ENTITY l" + std::to_string(i) + " '" +
                  Repeated("&l" + std::to_string(i - 1) + ";", 10) + "'>";
    }
    laughs += "]>";
    ExpectToFail(laughs + "<r>&l9;</r>");
    ExpectToFail(laughs + "<r a='&l9;'/>");
    ExpectToFail("<!DOCTYPE r [<!ENTITY a '&b;'><!ENTITY b '&a;'>]><r>&a;</r>");
    ExpectToFail("<!DOCTYPE r [<!ENTITY a '&b;'><!ENTITY b '&a;'>]><r a='&a;'/>");

    // One long entity, many times over; and one in two steps, each too short to be noticed.
    const std::string longOne = "<!DOCTYPE r [<!ENTITY b '" + Repeated("x", 100000) + "'>]>";
    ExpectToFail(longOne + "<r>" + Repeated("&b;", 20000) + "</r>");
    ExpectToFail(longOne + "<r a='" + Repeated("&b;", 20000) + "'/>");
    ExpectToFail(longOne + "<r>" + Repeated("<e a='&b;'/>", 20000) + "</r>");
    ExpectToFail("<!DOCTYPE r [<!ENTITY b '" + Repeated("x", 900) + "'><!ENTITY c '" +
                 Repeated("&b;", 900) + "'>]><r>" + Repeated("&c;", 1000) + "</r>");
}

TEST_F(XmlDocument, EntitiesThatSaveTypingAreNone) {
    EXPECT_NE(Load("<!DOCTYPE r [<!ENTITY em 'http://www.mozilla.org/2004/em-rdf#'>]><r>" +
                   Repeated("<e a='&em;id'>&em;</e>", 10000) + "</r>"),
              nil);
    EXPECT_NE(Load("<!DOCTYPE r [<!ENTITY b '" + Repeated("x", 5000) + "'>]><r>" +
                   Repeated("&b;", 100) + "</r>"),
              nil);
}

TEST_F(XmlDocument, ExternalEntitiesAreNotReadFromFiles) {
    folder_.Write("secret", "SECRET");
    folder_.Write("secret.dtd", "<!ENTITY fromDtd 'SECRET'><!ATTLIST r secret CDATA 'SECRET'>");
    const std::string secret = "file://" + folder_ / "secret";
    const std::string text = "<!DOCTYPE r SYSTEM \"" + secret + ".dtd\" [<!ENTITY e SYSTEM \"" +
                             secret + "\"><!ENTITY % p SYSTEM \"" + secret +
                             ".dtd\">%p;]><r>&e;</r>";
    NSXMLDocument* document = Load(text);
    ASSERT_NE(document, nil);
    EXPECT_EQ(Text([[document rootElement] stringValue]), "");
    EXPECT_EQ([[document rootElement] attributeForName:@"secret"], nil);
    const std::string written = Written(document);
    EXPECT_EQ(written.find("SECRET"), std::string::npos) << written;
    EXPECT_NE(written.find("<r>&e;</r>"), std::string::npos) << written;
}

TEST_F(XmlDocument, ExternalEntitiesAreNotFetchedFromTheNetwork) {
    const int server = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const where = reinterpret_cast<sockaddr*>(&address);
    ASSERT_EQ(bind(server, where, size), 0);
    ASSERT_EQ(listen(server, 8), 0);
    ASSERT_EQ(getsockname(server, where, &size), 0);
    const std::string url = "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/x";

    const std::string text = "<!DOCTYPE r SYSTEM \"" + url + "\" [<!ENTITY e SYSTEM \"" + url +
                             "\"><!ENTITY % p SYSTEM \"" + url + "\">%p;]><r>&e;</r>";
    EXPECT_NE(Load(text), nil);
    EXPECT_EQ(accept(server, nullptr, nullptr), -1);
    EXPECT_EQ(errno, EAGAIN) << "somebody called";
    close(server);
}

}  // namespace
