// Firefox's old registries and caches, judged by xmllint: a registry is compared with the document
// that should be left, both in canonical form.
#include "browsers/FFoxInstall+LegacyCleanup.h"

#include <gtest/gtest.h>
#include <time.h>

#include <random>

#include "tests/support/Command.h"
#include "tests/support/ErrorChecks.h"
#include "tests/support/Growth.h"
#include "tests/support/TemporaryFolder.h"

namespace {

using namespace std::string_literals;

const std::string kOurs = "ks@corvendale.com";
const std::string kRegistry = "extensions.rdf";

const std::string kHead = "<?xml version=\"1.0\"?>\n"
                          "<RDF:RDF xmlns:NS1=\"http://www.mozilla.org/2004/em-rdf#\"\n"
                          "         xmlns:RDF=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">\n";
const std::string kFoot = "</RDF:RDF>\n";

// What Firefox wrote about an extension that refers to `target`.
std::string Entry(const std::string& name, const std::string& target) {
    return "  <RDF:Description RDF:about=\"urn:mozilla:item:" + name +
           "\"\n                   NS1:name=\"A name\" NS1:version=\"1.0\">\n"
           "    <NS1:targetApplication RDF:resource=\"" +
           target + "\"/>\n  </RDF:Description>\n";
}

std::string Record(const std::string& name) {
    return "  <RDF:Description RDF:about=\"" + name +
           "\" NS1:minVersion=\"1.5\" NS1:maxVersion=\"2.0.0.*\"/>\n";
}

std::string Item(const std::string& name) {
    return "    <RDF:li RDF:resource=\"urn:mozilla:item:" + name + "\"/>\n";
}

std::string List(const std::string& items) {
    return "  <RDF:Seq RDF:about=\"urn:mozilla:item:root\">\n" + items + "  </RDF:Seq>\n";
}

std::string Registry(const std::string& content) {
    return kHead + content + kFoot;
}

// `count` extensions, every tenth of them ours, each with a record and a list item, and about 700
// bytes of data.
std::string LargeRegistry(size_t count) {
    std::string entries;
    std::string items;
    for (size_t i = 0; i < count; ++i) {
        const std::string number = std::to_string(i);
        const std::string name = i % 10 == 0 ? kOurs : "other" + number + "@example.org";
        entries += Entry(name, "rdf:#$" + number) + Record("rdf:#$" + number) +
                   "  <RDF:Description RDF:about=\"urn:data:" + number + "\" NS1:data=\"" +
                   std::string(500, 'x') + "\"/>\n";
        items += Item(name);
    }
    return Registry(entries + List(items));
}

double ProcessorTime() {
    return static_cast<double>(clock()) / CLOCKS_PER_SEC;
}

class FFoxLegacyCleanup : public testing::Test {
  protected:
    NSString* Path() { return Text(folder_ / kRegistry); }

    void Remove(const std::string& identifier = kOurs) {
        [FFoxInstall removeExtension:Text(identifier) fromRdfFile:Path()];
    }

    std::string Canonical(const std::string& text) {
        folder_.Write("canonical", text);
        return OutputOf("xmllint --nonet --c14n " + folder_ / "canonical");
    }

    // White space between the tags is dropped by the product and, here, by a plain search.
    static std::string WithoutBlanks(const std::string& text) {
        std::string result;
        for (size_t i = 0; i < text.size();) {
            const size_t end = text.find_first_not_of(" \n", i);
            const bool between = end != i && i > 0 && text[i - 1] == '>' &&
                                 (end == std::string::npos || text[end] == '<');
            if (between) {
                i = end;
            } else {
                result += text[i++];
            }
        }
        return result;
    }

    void Expect(const std::string& before, const std::string& after) {
        folder_.Write(kRegistry, before);
        Remove();
        EXPECT_EQ(Canonical(folder_.Read(kRegistry)), Canonical(WithoutBlanks(after)));
    }

    void ExpectUntouched(const std::string& bytes) {
        folder_.Write(kRegistry, bytes);
        Remove();
        EXPECT_EQ(folder_.Read(kRegistry), bytes);
    }

    TemporaryFolder folder_;
};

TEST_F(FFoxLegacyCleanup, TheEntryItsRecordAndItsListItemGo) {
    Expect(Registry(Entry("weather@example.org", "rdf:#$1") + Record("rdf:#$1") +
                    Entry(kOurs, "rdf:#$2") + Record("rdf:#$2") +
                    List(Item("weather@example.org") + Item(kOurs) + Item("last@example.org"))),
           Registry(Entry("weather@example.org", "rdf:#$1") + Record("rdf:#$1") +
                    List(Item("weather@example.org") + Item("last@example.org"))));
}

TEST_F(FFoxLegacyCleanup, ARegistryWithoutTheExtensionIsWrittenBack) {
    const std::string text = Registry(Entry("weather@example.org", "rdf:#$1") + Record("rdf:#$1") +
                                      List(Item("weather@example.org")));
    Expect(text, text);
    EXPECT_NE(folder_.Read(kRegistry), text);
    EXPECT_EQ(folder_.Read(kRegistry).substr(0, 38), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
}

TEST_F(FFoxLegacyCleanup, OfTwoReferencesTheLastCounts) {
    Expect(Registry(Record("rdf:#$2") + Entry(kOurs, "rdf:#$1") + Record("rdf:#$1") +
                    Entry(kOurs, "rdf:#$2")),
           Registry(Record("rdf:#$1")));
    // Of two in one entry, too.
    Expect(Registry("<RDF:Description RDF:about=\"" + kOurs +
                    "\"><NS1:targetApplication RDF:resource=\"a\"/>"
                    "<NS1:targetApplication RDF:resource=\"b\"/></RDF:Description>" +
                    Record("a") + Record("b")),
           Registry(Record("a")));
    // Only those to a target application.
    Expect(Registry("<RDF:Description RDF:about=\"" + kOurs +
                    "\"><NS1:targetApplication RDF:resource=\"a\"/>"
                    "<NS1:homepage RDF:resource=\"b\"/></RDF:Description>" +
                    Record("a") + Record("b")),
           Registry(Record("b")));
}

TEST_F(FFoxLegacyCleanup, TheIdentifierMayStandInsideALongerName) {
    Expect(Registry(Entry("bricks@corvendale.com.old", "rdf:#$1") + List(Item("x" + kOurs + "y"))),
           Registry(List("")));
}

TEST_F(FFoxLegacyCleanup, TheIdentifierMayBeOneLetter) {
    folder_.Write(kRegistry, Registry(Entry("Q", "rdf:#$1") + Record("rdf:#$1")));
    Remove("Q");
    EXPECT_EQ(Canonical(folder_.Read(kRegistry)), Canonical(WithoutBlanks(Registry(""))));
}

TEST_F(FFoxLegacyCleanup, LetterCaseCounts) {
    const std::string text =
        Registry(Entry("KS@corvendale.com", "rdf:#$1") + Entry("ks@CORVENDALE.com", "rdf:#$1") +
                 Record("rdf:#$1") + List(Item("Ks@corvendale.com")));
    Expect(text, text);
}

TEST_F(FFoxLegacyCleanup, AnEntryWithoutATargetTakesNoRecordAlong) {
    const std::string rest = Record("rdf:#$1") + Record("");
    Expect(Registry("<RDF:Description RDF:about=\"" + kOurs + "\"/>" + rest), Registry(rest));
    Expect(Registry("<RDF:Description RDF:about=\"" + kOurs +
                    "\"><NS1:targetApplication/></RDF:Description>" + rest),
           Registry(rest));
    // A reference to nothing is none, also after one to a record.
    Expect(Registry(Entry(kOurs, "rdf:#$1") + Entry(kOurs, "") + rest), Registry(rest));
}

TEST_F(FFoxLegacyCleanup, ARecordIsKnownByItsWholeName) {
    const std::string rest =
        Record("rdf:#$11") + Record("xrdf:#$1") + Record("RDF:#$1") + Record(" rdf:#$1") +
        "<RDF:Other RDF:about=\"rdf:#$1\"/><RDF:Description about=\"rdf:#$1\"/>" +
        List("<RDF:Description RDF:about=\"rdf:#$1\"/>");
    Expect(Registry(Record("rdf:#$1") + Entry(kOurs, "rdf:#$1") + Record("rdf:#$1") + rest),
           Registry(rest));
}

TEST_F(FFoxLegacyCleanup, AnEntryThatRefersToItselfIsRemovedOnce) {
    const std::string self = "urn:mozilla:item:" + kOurs;
    Expect(Registry(Entry(kOurs, self) + Entry("weather@example.org", "a")),
           Registry(Entry("weather@example.org", "a")));
}

TEST_F(FFoxLegacyCleanup, EveryListAndEveryItemOfItIsLookedAt) {
    const std::string ours = "RDF:resource=\"urn:mozilla:item:" + kOurs + "\"";
    Expect(Registry(List(Item(kOurs) + Item(kOurs)) + List("text<!-- c --><x " + ours + "/>") +
                    List("<x><y " + ours + "/></x>")),
           Registry(List("") + List("text<!-- c -->") + List("<x><y " + ours + "/></x>")));
}

TEST_F(FFoxLegacyCleanup, OnlyTheNamesThatFirefoxWritesCount) {
    const std::string ours = "\"urn:mozilla:item:" + kOurs + "\"";
    const std::string text =
        "<RDF:RDF xmlns:NS1=\"http://www.mozilla.org/2004/em-rdf#\"\n"
        "         xmlns:RDF=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"\n"
        "         xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">\n"
        "<rdf:Description RDF:about=" +
        ours +
        "/>"
        "<RDF:description RDF:about=" +
        ours +
        "/>"
        "<Description xmlns=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\" RDF:about=" +
        ours +
        "/>"
        "<RDF:Description about=" +
        ours +
        "/>"
        "<RDF:Description rdf:about=" +
        ours +
        "/>"
        "<RDF:Description RDF:resource=" +
        ours +
        "/>"
        "<RDF:Description>urn:mozilla:item:" +
        kOurs +
        "</RDF:Description>"
        "<RDF:Bag><RDF:li RDF:resource=" +
        ours +
        "/></RDF:Bag>"
        "<rdf:Seq><RDF:li RDF:resource=" +
        ours +
        "/></rdf:Seq>"
        "<RDF:Seq><RDF:li resource=" +
        ours + "/><RDF:li RDF:about=" + ours +
        "/></RDF:Seq>"
        "<x><RDF:Description RDF:about=" +
        ours + "/></x></RDF:RDF>";
    Expect(text, text);
}

TEST_F(FFoxLegacyCleanup, WhatBelongsToOthersIsKept) {
    const auto text = [](const std::string& entry) {
        return "<!-- before " + kOurs +
               " -->"
               "<?style sheet?><RDF:RDF xmlns:RDF=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"\n"
               "  xmlns:NS1=\"urn:1\" xmlns:em=\"urn:em\"><!-- inside -->" +
               entry +
               "<em:thing xmlns:deep=\"urn:deep\" deep:a=\"&lt;&amp;&quot;&#10;'\">mixed <b/> text"
               "<![CDATA[ <raw> & " +
               kOurs +
               " ]]>&#233;&#x1F600;&gt;</em:thing><?inside it?></RDF:RDF>"
               "<?after it?><!-- after -->";
    };
    Expect(text(Entry(kOurs, "a")), text(""));
}

TEST_F(FFoxLegacyCleanup, EntitiesOfTheDocumentTypeAreResolvedWhereNamesAreCompared) {
    const std::string type =
        "<!DOCTYPE RDF:RDF [<!ENTITY id \"ks@corvendale\"><!ENTITY t \"rdf:#$1\">]>\n";
    const std::string rest = "<NS1:text>&id;, &lt;&t; &id;</NS1:text>";
    const std::string head = kHead.substr(kHead.find("<RDF"));
    Expect(type + head + Entry("&id;.com", "&t;") + Record("rdf:#$1") + List(Item("&id;.com")) +
               rest + kFoot,
           type + head + List("") + rest + kFoot);
    EXPECT_NE(folder_.Read(kRegistry).find("<!ENTITY id \"ks@corvendale\">"), std::string::npos);
}

TEST_F(FFoxLegacyCleanup, TheEncodingIsKept) {
    for (const char* encoding : {"UTF-8", "UTF-16", "ISO-8859-1"}) {
        const auto text = [encoding](const std::string& entry) {
            return "<?xml version=\"1.0\" encoding=\""s + encoding + "\"?>" +
                   kHead.substr(kHead.find("<RDF")) + entry + "<NS1:name>Zo\xC3\xAB</NS1:name>" +
                   kFoot;
        };
        folder_.Write("utf8", text(Entry(kOurs, "a")));
        OutputOf("iconv -f UTF-8 -t "s + encoding + " " + folder_ / "utf8" + " >" +
                 folder_ / kRegistry);
        Remove();
        const std::string inUtf8 =
            OutputOf("iconv -f "s + encoding + " -t UTF-8 " + folder_ / kRegistry);
        EXPECT_NE(inUtf8.find("encoding=\""s + encoding + "\""), std::string::npos) << inUtf8;
        EXPECT_EQ(OutputOf("xmllint --c14n " + folder_ / kRegistry),
                  Canonical(WithoutBlanks(kHead + "<NS1:name>Zo\xC3\xAB</NS1:name>" + kFoot)));
    }
}

TEST_F(FFoxLegacyCleanup, ARegistryThatEndsTooSoonIsLeftAsItWas) {
    std::string content;
    for (int i = 0; i < 14; ++i) {
        const std::string number = std::to_string(i);
        content += Entry(i == 4 ? kOurs : "other" + number + "@example.org", "rdf:#$" + number) +
                   Record("rdf:#$" + number);
    }
    const std::string text = Registry(content + List(Item(kOurs)));
    ASSERT_GT(text.size(), 4000U);
    const size_t rootEnd = text.rfind('>') + 1;
    // Every beginning of the first entries, where a reader's piece ends, and at the end; between
    // them the text repeats itself.
    const auto counts = [rootEnd](size_t length) {
        return length < 600 || (length > 3900 && length < 4200) || length + 300 > rootEnd;
    };
    for (size_t length = 0; length < rootEnd; ++length) {
        if (counts(length) || length % 11 == 0) {
            ExpectUntouched(text.substr(0, length));
        }
    }
    folder_.Write(kRegistry, text.substr(0, rootEnd));
    Remove();
    EXPECT_EQ(folder_.Read(kRegistry).find(kOurs), std::string::npos);
}

TEST_F(FFoxLegacyCleanup, WhatIsNoRegistryIsLeftAsItWas) {
    for (const std::string& bytes : {""s, " \n"s, "no XML"s, "\0\0\0"s, "{ \"json\": 1 }"s,
                                     "<a>" + kOurs + "</b>", "SQLite format 3\0"s}) {
        ExpectUntouched(bytes);
    }
}

TEST_F(FFoxLegacyCleanup, NothingIsMadeWhereThereIsNoRegistry) {
    Remove();
    EXPECT_EQ(folder_.Everything(), "");
    folder_.MakeFolder(kRegistry);
    folder_.Write(kRegistry + "/inside", "mine");
    Remove();
    EXPECT_EQ(folder_.Everything(), "extensions.rdf extensions.rdf/inside");
}

TEST_F(FFoxLegacyCleanup, ARegistryThatMayNotBeReadIsLeftAsItWas) {
    const std::string text = Registry(Entry(kOurs, "a"));
    folder_.Write(kRegistry, text, 0);
    Remove();
    EXPECT_EQ(folder_.Mode(kRegistry), 0U);
    chmod((folder_ / kRegistry).c_str(), 0644);
    EXPECT_EQ(folder_.Read(kRegistry), text);
}

TEST_F(FFoxLegacyCleanup, ARegistryInAFolderThatMayNotBeWrittenIsLeftAsItWas) {
    const std::string text = Registry(Entry(kOurs, "a"));
    folder_.MakeFolder("closed");
    folder_.Write("closed/" + kRegistry, text);
    chmod((folder_ / "closed").c_str(), 0555);
    [FFoxInstall removeExtension:Text(kOurs) fromRdfFile:Text(folder_ / "closed/" + kRegistry)];
    chmod((folder_ / "closed").c_str(), 0755);
    EXPECT_EQ(folder_.Read("closed/" + kRegistry), text);
    EXPECT_EQ(folder_.Everything(), "closed closed/extensions.rdf");
}

TEST_F(FFoxLegacyCleanup, ADiskThatFillsUpLeavesTheRegistryAsItWas) {
    const std::string text = LargeRegistry(100);
    folder_.Write(kRegistry, text);
    {
        const LargestFile limit(20000);
        Remove();
    }
    EXPECT_EQ(folder_.Read(kRegistry), text);
    EXPECT_EQ(folder_.Everything(), kRegistry);
}

TEST_F(FFoxLegacyCleanup, AReadOnlyRegistryIsReplacedAndKeepsItsMode) {
    folder_.Write(kRegistry, Registry(Entry(kOurs, "a")), 0440);
    Remove();
    EXPECT_EQ(Canonical(folder_.Read(kRegistry)), Canonical(WithoutBlanks(Registry(""))));
    EXPECT_EQ(folder_.Mode(kRegistry), 0440U);
}

TEST_F(FFoxLegacyCleanup, ALinkIsReplacedByTheEditedRegistry) {
    const std::string text = Registry(Entry(kOurs, "a"));
    folder_.Write("elsewhere", text);
    folder_.MakeLink(kRegistry, folder_ / "elsewhere");
    Remove();
    EXPECT_EQ(folder_.Read("elsewhere"), text);
    EXPECT_EQ(Canonical(folder_.Read(kRegistry)), Canonical(WithoutBlanks(Registry(""))));
    EXPECT_EQ(OutputOf("find " + folder_ / kRegistry + " -type l"), "");
}

TEST_F(FFoxLegacyCleanup, AnEntityBombIsLeftAsItWas) {
    std::string laughs = "<!DOCTYPE RDF:RDF [<!ENTITY l0 \"ks@corvendale.com\">";
    for (int i = 1; i < 10; ++i) {
        laughs += "<!ENTITY l" + std::to_string(i) + " \"";
        for (int j = 0; j < 10; ++j) {
            laughs += "&l" + std::to_string(i - 1) + ";";
        }
        laughs += "\">";
    }
    laughs += "]>" + kHead.substr(kHead.find("<RDF"));
    ExpectUntouched(laughs + "<RDF:Description RDF:about=\"&l9;\"/>" + kFoot);
    ExpectUntouched(laughs + "<RDF:Description RDF:about=\"&l0;\">&l9;</RDF:Description>" + kFoot);
}

TEST_F(FFoxLegacyCleanup, ExternalEntitiesAreNotRead) {
    folder_.Write("secret", "SECRET " + kOurs);
    const std::string head = kHead.substr(kHead.find("<RDF"));
    folder_.Write(kRegistry, "<!DOCTYPE RDF:RDF [<!ENTITY e SYSTEM \"secret\">]>" + head +
                                 Entry(kOurs, "a") + "<NS1:x>&e;</NS1:x>" + kFoot);
    Remove();
    const std::string written = folder_.Read(kRegistry);
    EXPECT_EQ(written.find("SECRET"), std::string::npos);
    EXPECT_EQ(written.find(kOurs), std::string::npos);
    EXPECT_NE(written.find("<NS1:x>&e;</NS1:x>"), std::string::npos);
}

// Registries drawn by lot from what makes one removal meet another: names that hold several
// identifiers, references across the extensions, pieces of text beside what goes, entities.
TEST_F(FFoxLegacyCleanup, SeveralExtensionsGoAsOneByOneWithTheSameBytes) {
    const std::vector<std::string> names = {"button@a.com", "ks@a.com", "xks@a.com", "other@b.org"};
    std::vector<std::string> pieces = {"<!-- c -->",   "text",     " \n ",  "<![CDATA[ ]]>",
                                       "<![CDATA[]]>", "&e;",      "&#32;", "&#13;",
                                       "<?p i?>",      "<x> </x>", "&lt;"};
    for (const std::string& name : names) {
        for (const std::string& target : {"button@a.com"s, "rdf:#$1"s, "rdf:#$2"s, ""s}) {
            pieces.push_back(Entry(name, target));
            pieces.push_back(Entry(name + " " + names[1], target));
        }
        pieces.push_back(List("a" + Item(name) + " " + Item(names[0]) + "<![CDATA[b]]>"));
        pieces.push_back(Record(name));
    }
    pieces.insert(pieces.end(), {Record("rdf:#$1"), Record("rdf:#$2")});

    const std::vector<std::string> removed = {"button@a.com", "ks@a.com", "other@b.org"};
    std::mt19937 lot(1);
    size_t shrunk = 0;
    for (int i = 0; i < 60; ++i) {
        std::string text =
            "<!DOCTYPE RDF:RDF [<!ENTITY e \" \">]>" + kHead.substr(kHead.find("<RDF"));
        for (size_t count = lot() % 20; count > 0; --count) {
            text += pieces[lot() % pieces.size()];
        }
        text += kFoot;
        folder_.Write(kRegistry, text);
        NSMutableArray* identifiers = [NSMutableArray array];
        for (const std::string& identifier : removed) {
            Remove(identifier);
            [identifiers addObject:Text(identifier)];
        }
        const std::string oneByOne = folder_.Read(kRegistry);
        shrunk += oneByOne.size() < text.size() / 2;

        folder_.Write(kRegistry, text);
        [FFoxInstall removeExtensions:identifiers fromRdfFile:Path()];
        ASSERT_EQ(folder_.Read(kRegistry), oneByOne) << text;
    }
    EXPECT_GT(shrunk, 20U);
}

TEST_F(FFoxLegacyCleanup, TimeGrowsWithTheRegistryAndNotFaster) {
    const auto seconds = [this](size_t count) {
        const std::string text = LargeRegistry(count);
        folder_.Write(kRegistry, text);
        const double start = ProcessorTime();
        Remove();
        const double end = ProcessorTime();
        const std::string written = folder_.Read(kRegistry);
        EXPECT_EQ(written.find(kOurs), std::string::npos);
        EXPECT_GT(written.size(), text.size() / 2);
        return end - start;
    };
    seconds(100);  // what is made once is not counted
    EXPECT_LT(Growth(seconds, 125, 1000, 16), 16);
}

TEST_F(FFoxLegacyCleanup, TheFiveCachesGoAndNothingElse) {
    folder_.MakeFolder("profile");
    for (const char* name :
         {"extensions.ini", "extensions.cache", "compreg.dat", "extensiondev.rdf", "extensions.rdf",
          "prefs.js", "compreg.data", "Extensions.ini"}) {
        folder_.Write("profile/"s + name, "content");
    }
    folder_.MakeFolder("profile/xpti.dat");
    folder_.Write("profile/xpti.dat/inside", "content");
    [FFoxInstall clearFFoxCache:Text(folder_ / "profile")];
    EXPECT_EQ(folder_.Everything(),
              "profile profile/Extensions.ini profile/compreg.data profile/extensions.rdf "
              "profile/prefs.js");
    [FFoxInstall clearFFoxCache:Text(folder_ / "profile")];
    [FFoxInstall clearFFoxCache:Text(folder_ / "missing")];
    [FFoxInstall clearFFoxCache:Text(folder_ / "profile/prefs.js")];
    EXPECT_EQ(folder_.Read("profile/prefs.js"), "content");
}

TEST_F(FFoxLegacyCleanup, ACacheThatCannotBeRemovedDoesNotKeepTheOthers) {
    folder_.MakeFolder("profile");
    folder_.MakeFolder("profile/extensions.ini");
    folder_.Write("profile/extensions.ini/inside", "content");
    folder_.Write("profile/extensiondev.rdf", "content");
    chmod((folder_ / "profile/extensions.ini").c_str(), 0555);
    [FFoxInstall clearFFoxCache:Text(folder_ / "profile")];
    chmod((folder_ / "profile/extensions.ini").c_str(), 0755);
    EXPECT_EQ(folder_.Everything(), "profile profile/extensions.ini profile/extensions.ini/inside");
}

TEST_F(FFoxLegacyCleanup, NothingIsDoneWithoutAPathOrAnIdentifier) {
    const std::string text = Registry(Entry(kOurs, "a"));
    folder_.Write(kRegistry, text);
    [FFoxInstall removeExtension:nil fromRdfFile:Path()];
    [FFoxInstall removeExtension:@"" fromRdfFile:Path()];
    [FFoxInstall removeExtension:Text(kOurs) fromRdfFile:nil];
    [FFoxInstall removeExtension:Text(kOurs) fromRdfFile:@""];
    [FFoxInstall clearFFoxCache:nil];
    [FFoxInstall clearFFoxCache:@""];
    EXPECT_EQ(folder_.Read(kRegistry), text);
}

}  // namespace
