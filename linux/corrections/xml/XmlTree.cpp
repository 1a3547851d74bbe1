#include "linux/corrections/xml/XmlTree.h"

#include <libxml/entities.h>
#include <libxml/parser.h>
#include <libxml/xmlsave.h>

#include <algorithm>
#include <cstring>
#include <map>

namespace {

constexpr const char* kDefaultEncoding = "UTF-8";

// Entities may make a document this much larger: libxml2 stops most that do worse, but not one that
// repeats a single long entity.
constexpr double kFreeExpansion = 1000000;
constexpr double kExpansionFactor = 10;

const char* Chars(const xmlChar* text) {
    return reinterpret_cast<const char*>(text);
}

// How long the text of a document's entities is once they are resolved. Counted in floating point:
// it may be astronomical.
class Expansion {
  public:
    explicit Expansion(xmlDoc* document) : document(document) {}

    // Of all references in the node and below it.
    double Below(const xmlNode* parent) {
        double length = 0;
        for (const xmlNode* node = parent->children; node != nullptr; node = node->next) {
            if (node->type == XML_ENTITY_REF_NODE) {
                length += Of(node->name);
            } else if (node->type == XML_ELEMENT_NODE) {
                length += Below(node);
                for (const xmlAttr* attribute = node->properties; attribute != nullptr;
                     attribute = attribute->next) {
                    length += Below(reinterpret_cast<const xmlNode*>(attribute));
                }
            }
        }
        return length;
    }

  private:
    double Of(const xmlChar* name) {
        const xmlEntity* entity = xmlGetDocEntity(document, name);
        if (entity == nullptr || entity->etype != XML_INTERNAL_GENERAL_ENTITY) {
            return 1;
        }
        const auto known = lengths.find(entity);
        if (known != lengths.end()) {
            return known->second;
        }
        // One that refers to itself is found here by its own expansion; the parser rejects it.
        lengths[entity] = 0;
        return lengths[entity] = OfText(Chars(entity->content));
    }

    double OfText(const char* text) {
        double length = static_cast<double>(std::strlen(text));
        while ((text = std::strchr(text, '&')) != nullptr) {
            const char* end = std::strchr(text, ';');
            if (end == nullptr) {
                break;
            }
            const std::string name(text + 1, end);
            length += Of(reinterpret_cast<const xmlChar*>(name.c_str()));
            text = end;
        }
        return length;
    }

    xmlDoc* const document;
    std::map<const xmlEntity*, double> lengths;
};

bool IsText(const xmlNode* node) {
    return node != nullptr &&
           (node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE ||
            node->type == XML_ENTITY_REF_NODE);
}

// Blanks between entity references or beside a CDATA section are part of a longer text.
bool IsBlankText(const xmlNode* node) {
    return node->type == XML_TEXT_NODE && xmlIsBlankNode(node) == 1 && !IsText(node->prev) &&
           !IsText(node->next);
}

void DropBlankText(xmlNode* parent) {
    xmlNode* next = nullptr;
    for (xmlNode* node = parent->children; node != nullptr; node = next) {
        next = node->next;
        if (node->type == XML_ELEMENT_NODE) {
            DropBlankText(node);
        } else if (IsBlankText(node)) {
            xmlUnlinkNode(node);
            xmlFreeNode(node);
        }
    }
}

struct Input {
    const char* rest;
    size_t length;
};

int Read(void* source, char* buffer, int size) {
    Input& input = *static_cast<Input*>(source);
    const size_t count = std::min(input.length, static_cast<size_t>(size));
    std::memcpy(buffer, input.rest, count);
    input.rest += count;
    input.length -= count;
    return static_cast<int>(count);
}

int Append(void* bytes, const char* chunk, int length) {
    static_cast<std::string*>(bytes)->append(chunk, static_cast<size_t>(length));
    return length;
}

}  // namespace

std::unique_ptr<XmlTree> XmlTree::Parse(const void* bytes, size_t length, std::string& error) {
    const std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> context(xmlNewParserCtxt(),
                                                                               &xmlFreeParserCtxt);
    context->sax->serror = [](void*, auto*) {};  // nothing is printed
    // All white space is text: GNUstep asks for less by a default of the whole process.
    context->sax->ignorableWhitespace = context->sax->characters;
    // Read piece by piece: of a document in one piece, libxml2 refuses what is longer than 10 MB.
    Input input{static_cast<const char*>(bytes), length};
    xmlDoc* const document =
        xmlCtxtReadIO(context.get(), &Read, nullptr, &input, nullptr, nullptr, XML_PARSE_NONET);
    if (document == nullptr) {
        const xmlError* last = xmlCtxtGetLastError(context.get());
        error = last != nullptr && last->message != nullptr ? last->message : "No XML document";
        return nullptr;
    }
    std::unique_ptr<XmlTree> tree(new XmlTree(document));
    xmlNode* const top = reinterpret_cast<xmlNode*>(document);
    const double limit = kFreeExpansion + kExpansionFactor * static_cast<double>(length);
    if (Expansion(document).Below(top) > limit) {
        error = "Entities expand too far";
        return nullptr;
    }
    DropBlankText(top);
    return tree;
}

XmlTree::~XmlTree() {
    for (xmlNode* node : detached) {
        xmlFreeNode(node);
    }
    xmlFreeDoc(document);
}

xmlNode* XmlTree::Root() const {
    return xmlDocGetRootElement(document);
}

void XmlTree::Detach(xmlNode* node) {
    if (node->parent != nullptr) {
        xmlUnlinkNode(node);
        detached.push_back(node);
    }
}

bool XmlTree::Write(std::string& bytes) const {
    const char* encoding =
        document->encoding != nullptr ? Chars(document->encoding) : kDefaultEncoding;
    xmlSaveCtxt* const save = xmlSaveToIO(&Append, nullptr, &bytes, encoding, XML_SAVE_NO_EMPTY);
    if (save == nullptr) {
        return false;
    }
    const bool saved = xmlSaveDoc(save, document) >= 0;
    return xmlSaveClose(save) >= 0 && saved;
}

std::string QualifiedName(const xmlNode* node) {
    if (node->name == nullptr) {
        return {};
    }
    const bool mayHavePrefix = node->type == XML_ELEMENT_NODE || node->type == XML_ATTRIBUTE_NODE;
    if (mayHavePrefix && node->ns != nullptr && node->ns->prefix != nullptr) {
        return std::string(Chars(node->ns->prefix)) + ":" + Chars(node->name);
    }
    return Chars(node->name);
}

xmlAttr* AttributeNamed(const xmlNode* element, const std::string& qualifiedName) {
    for (xmlAttr* attribute = element->properties; attribute != nullptr;
         attribute = attribute->next) {
        if (QualifiedName(reinterpret_cast<const xmlNode*>(attribute)) == qualifiedName) {
            return attribute;
        }
    }
    return nullptr;
}

std::string TextOf(const xmlNode* node) {
    xmlChar* const content = xmlNodeGetContent(node);
    std::string text = content != nullptr ? Chars(content) : "";
    xmlFree(content);
    return text;
}
