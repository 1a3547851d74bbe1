// Reading any bytes as an XML document never crashes, and a document that was read can be written
// and read again without a difference; so can one that lost some of its nodes, when the blanks
// that stood beside them are gone, too.
#include <cstdint>
#include <cstdlib>

#include "linux/corrections/xml/XmlTree.h"

namespace {

// Takes out every other node below the root, and every other one below those that stay.
void Thin(XmlTree& tree, xmlNode* parent, int levels) {
    bool stays = false;
    for (xmlNode *node = parent->children, *next = nullptr; node != nullptr; node = next) {
        next = node->next;
        stays = !stays;
        if (!stays) {
            tree.Detach(node);
            tree.Detach(node);
        } else if (levels > 1 && node->type == XML_ELEMENT_NODE) {
            Thin(tree, node, levels - 1);
        }
    }
}

// What becomes of a document that is read and written; it aborts where it cannot be.
std::string ReadAndWritten(const std::string& document) {
    std::string error;
    std::string written;
    const auto tree = XmlTree::Parse(document.data(), document.size(), error);
    if (!tree || !tree->Write(written)) {
        std::abort();
    }
    return written;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    std::string error;
    const auto tree = XmlTree::Parse(bytes, size, error);
    if (!tree) {
        return error.empty() ? std::abort(), 0 : 0;
    }
    xmlNode* const root = tree->Root();
    for (const xmlAttr* attribute = root->properties; attribute != nullptr;
         attribute = attribute->next) {
        const auto* const node = reinterpret_cast<const xmlNode*>(attribute);
        if (AttributeNamed(root, QualifiedName(node)) == nullptr) {
            std::abort();
        }
        TextOf(node);
    }
    std::string whole;
    if (tree->Write(whole) && ReadAndWritten(whole) != whole) {
        std::abort();
    }
    Thin(*tree, root, 2);
    std::string thinned;
    if (tree->Write(thinned)) {
        const std::string settled = ReadAndWritten(thinned);
        if (ReadAndWritten(settled) != settled) {
            std::abort();
        }
    }
    return 0;
}
