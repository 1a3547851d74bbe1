// Reading any bytes as an XML document never crashes, and a document that was read, and lost some
// of its nodes, can be written and read again without a difference.
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
    Thin(*tree, root, 2);
    std::string written;
    if (tree->Write(written)) {
        const auto again = XmlTree::Parse(written.data(), written.size(), error);
        std::string rewritten;
        if (!again || !again->Write(rewritten) || rewritten != written) {
            std::abort();
        }
    }
    return 0;
}
