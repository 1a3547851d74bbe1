#pragma once

#include <libxml/tree.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

/// An XML document as NSXMLDocument loads, changes and writes it, on libxml2. Every node, detached
/// ones too, lives as long as the document.
class XmlTree {
  public:
    /// Text of nothing but white space is dropped; comments, processing instructions, CDATA
    /// sections, entity references and the document type are kept. Nothing is ever fetched: neither
    /// external entities nor an external document type.
    /// @param error  gets the parser's message when there is no document
    /// @return null for what is not well-formed, and for a document that its entities blow up
    static std::unique_ptr<XmlTree> Parse(const void* bytes, size_t length, std::string& error);

    ~XmlTree();
    XmlTree(const XmlTree&) = delete;
    XmlTree& operator=(const XmlTree&) = delete;

    xmlNode* Root() const;

    /// Takes the node, with all below it, out of the document. Nothing happens the second time.
    void Detach(xmlNode* node);

    /// The whole document in its own encoding, which is UTF-8 for one that names none.
    /// @return false when that encoding cannot express it
    bool Write(std::string& bytes) const;

  private:
    explicit XmlTree(xmlDoc* document) : document(document) {}

    xmlDoc* const document;
    std::vector<xmlNode*> detached;
};

/// Prefix included; empty for a node that has no name.
std::string QualifiedName(const xmlNode* node);

/// The attribute of this qualified name, nullptr where the element has none.
xmlAttr* AttributeNamed(const xmlNode* element, const std::string& qualifiedName);

/// The text of the node and all below it, its entities resolved.
std::string TextOf(const xmlNode* node);
