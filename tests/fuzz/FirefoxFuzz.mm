// Any bytes as Firefox's registry: the extension's nodes are gone, every other node is as it was.
// libxml2, asked directly, is the judge.
#include <libxml/parser.h>
#include <libxml/tree.h>

#include <memory>
#include <string>
#include <vector>

#include "browsers/FFoxInstall+LegacyCleanup.h"
#include "tests/fuzz/Require.h"
#include "tests/support/Files.h"

namespace {

const std::string kPath = "/private/tmp/extensions.rdf";
const std::string kIdentifier = "ks@corvendale.com";

using Document = std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)>;

Document Parse(const std::string& bytes) {
    constexpr int kQuietly = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;
    const std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> parser(xmlNewParserCtxt(),
                                                                              &xmlFreeParserCtxt);
    // White space is text, in spite of a default that GNUstep sets.
    parser->sax->ignorableWhitespace = parser->sax->characters;
    return {xmlCtxtReadMemory(parser.get(), bytes.data(), static_cast<int>(bytes.size()), nullptr,
                              nullptr, kQuietly),
            &xmlFreeDoc};
}

std::string Text(const xmlChar* text) {
    return text == nullptr ? "" : reinterpret_cast<const char*>(text);
}

template <typename Node>
std::string NameOf(const Node* node) {
    const bool prefixed = node->ns != nullptr && node->ns->prefix != nullptr;
    return prefixed ? Text(node->ns->prefix) + ":" + Text(node->name) : Text(node->name);
}

std::string ValueOf(const xmlAttr* attribute) {
    xmlChar* value = xmlNodeListGetString(attribute->doc, attribute->children, 1);
    const std::string text = Text(value);
    xmlFree(value);
    return text;
}

// "" for an attribute that is not there: no name of the registry is empty.
std::string Attribute(const xmlNode* node, const std::string& name) {
    if (node->type == XML_ELEMENT_NODE) {
        for (const xmlAttr* attribute = node->properties; attribute != nullptr;
             attribute = attribute->next) {
            if (NameOf(attribute) == name) {
                return ValueOf(attribute);
            }
        }
    }
    return "";
}

bool Is(const xmlNode* node, const char* name) {
    return node->type == XML_ELEMENT_NODE && NameOf(node) == name;
}

bool IsOurs(const std::string& name) {
    return name.find(kIdentifier) != std::string::npos;
}

std::vector<xmlNode*> ChildrenOf(const xmlNode* node) {
    std::vector<xmlNode*> children;
    for (xmlNode* child = node->children; child != nullptr; child = child->next) {
        children.push_back(child);
    }
    return children;
}

void Remove(xmlNode* node) {
    xmlUnlinkNode(node);
    xmlFreeNode(node);
}

bool IsPartOfText(const xmlNode* node) {
    return node != nullptr &&
           (node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE ||
            node->type == XML_ENTITY_REF_NODE);
}

// Drops text that is nothing but blanks, unless it is a part of a longer one.
void DropBlanks(xmlNode* node) {
    for (xmlNode* child : ChildrenOf(node)) {
        const bool alone = !IsPartOfText(child->prev) && !IsPartOfText(child->next);
        if (child->type == XML_TEXT_NODE && alone && xmlIsBlankNode(child) == 1) {
            Remove(child);
        } else if (child->type == XML_ELEMENT_NODE) {
            DropBlanks(child);
        }
    }
}

void RemoveExtension(xmlNode* root) {
    std::string target;
    for (xmlNode* node : ChildrenOf(root)) {
        if (Is(node, "RDF:Description") && IsOurs(Attribute(node, "RDF:about"))) {
            for (const xmlNode* child : ChildrenOf(node)) {
                if (Is(child, "NS1:targetApplication")) {
                    const std::string resource = Attribute(child, "RDF:resource");
                    target = resource.empty() ? target : resource;
                }
            }
            Remove(node);
        } else if (Is(node, "RDF:Seq")) {
            for (xmlNode* item : ChildrenOf(node)) {
                if (IsOurs(Attribute(item, "RDF:resource"))) {
                    Remove(item);
                }
            }
        }
    }
    for (xmlNode* node : ChildrenOf(root)) {
        if (!target.empty() && Is(node, "RDF:Description") &&
            Attribute(node, "RDF:about") == target) {
            Remove(node);
        }
    }
}

// All that a document says, in one text. Two texts side by side are one.
void Tell(const xmlNode* node, std::string& told) {
    for (const xmlNode* child : ChildrenOf(node)) {
        if (child->type == XML_TEXT_NODE) {
            told += Text(child->content);
            continue;
        }
        told += "\n" + std::to_string(child->type) + "<" + Text(child->name);
        if (child->type != XML_ELEMENT_NODE) {
            told += " " + Text(child->content) + ">";
            continue;
        }
        told += " as " + NameOf(child);
        for (const xmlNs* space = child->nsDef; space != nullptr; space = space->next) {
            told += " xmlns:" + Text(space->prefix) + "=" + Text(space->href);
        }
        for (const xmlAttr* attribute = child->properties; attribute != nullptr;
             attribute = attribute->next) {
            told += " " + NameOf(attribute) + "=" + ValueOf(attribute);
        }
        told += ">";
        Tell(child, told);
        told += "\n</>";
    }
}

std::string Told(const Document& document) {
    std::string told;
    Tell(reinterpret_cast<const xmlNode*>(document.get()), told);
    return told;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    @autoreleasepool {
        const std::string bytes(reinterpret_cast<const char*>(data), size);
        WriteFile(kPath, bytes);
        [FFoxInstall removeExtension:[NSString stringWithUTF8String:kIdentifier.c_str()]
                         fromRdfFile:[NSString stringWithUTF8String:kPath.c_str()]];
        const std::string left = ReadFile(kPath);
        const Document before = Parse(bytes);
        if (before == nullptr) {
            REQUIRE(left == bytes);
            return 0;
        }
        if (before->intSubset != nullptr && left == bytes) {
            return 0;  // its entities may have been too much
        }
        DropBlanks(reinterpret_cast<xmlNode*>(before.get()));
        RemoveExtension(xmlDocGetRootElement(before.get()));
        const Document after = Parse(left);
        REQUIRE(after != nullptr);
        REQUIRE(Told(before) == Told(after));
    }
    return 0;
}
