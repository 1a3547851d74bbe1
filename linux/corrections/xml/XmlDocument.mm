// NSXMLDocument, as far as the program meets it. GNUstep's raises for a file that is missing,
// fetches what a document points to, finds attributes under their bare names, writes everything as
// UTF-8, and searches its list of nodes for each node that it hands out or detaches. This one
// stands on libxml2 directly; +[NSXMLDocument alloc] gives it.
#include <Foundation/Foundation.h>
#include <dlfcn.h>

#include <cstring>

#include "linux/corrections/FileContents.h"
#include "linux/corrections/xml/XmlTree.h"

@interface XmlDocument : NSObject {
    XmlTree* tree;
}
// What the options could change, how much is kept and what is fetched, is the same for all.
- (id)initWithContentsOfURL:(NSURL*)url options:(NSUInteger)mask error:(NSError**)error;
- (XmlTree*)tree;
@end

// A node of a document, which it keeps alive. There is at most one at a time for each node of the
// tree, so that equal nodes are the same object.
@interface XmlNode : NSObject {
    XmlDocument* owner;
    xmlNode* node;
}
- (id)initWithNode:(xmlNode*)treeNode owner:(XmlDocument*)document;
- (NSXMLNodeKind)kind;
- (NSString*)name;
- (NSString*)stringValue;
- (NSArray*)children;
- (XmlNode*)attributeForName:(NSString*)name;
- (void)detach;
@end

namespace {

NSString* Text(const std::string& bytes) {
    return [[[NSString alloc] initWithBytes:bytes.data()
                                     length:bytes.size()
                                   encoding:NSUTF8StringEncoding] autorelease];
}

XmlNode* ObjectFor(xmlNode* node, XmlDocument* owner) {
    if (node == nullptr) {
        return nil;
    }
    if (node->_private != nullptr) {
        return [[static_cast<XmlNode*>(node->_private) retain] autorelease];
    }
    return [[[XmlNode alloc] initWithNode:node owner:owner] autorelease];
}

}  // namespace

@implementation XmlNode

- (id)initWithNode:(xmlNode*)treeNode owner:(XmlDocument*)document {
    self = [super init];
    if (self != nil) {
        owner = [document retain];
        node = treeNode;
        node->_private = self;
    }
    return self;
}

- (void)dealloc {
    node->_private = nullptr;
    [owner release];
    [super dealloc];
}

- (NSXMLNodeKind)kind {
    switch (node->type) {
        case XML_ELEMENT_NODE:
            return NSXMLElementKind;
        case XML_ATTRIBUTE_NODE:
            return NSXMLAttributeKind;
        case XML_PI_NODE:
            return NSXMLProcessingInstructionKind;
        case XML_COMMENT_NODE:
            return NSXMLCommentKind;
        case XML_TEXT_NODE:
        case XML_CDATA_SECTION_NODE:
        case XML_ENTITY_REF_NODE:
            return NSXMLTextKind;
        default:
            return NSXMLInvalidKind;
    }
}

// Text and comments have none.
- (NSString*)name {
    const bool named = node->type == XML_ELEMENT_NODE || node->type == XML_ATTRIBUTE_NODE ||
                       node->type == XML_PI_NODE;
    return named ? Text(QualifiedName(node)) : nil;
}

- (NSString*)stringValue {
    return Text(TextOf(node));
}

// nil unless it is an element that has some.
- (NSArray*)children {
    if (node->type != XML_ELEMENT_NODE || node->children == nullptr) {
        return nil;
    }
    NSMutableArray* children = [NSMutableArray array];
    for (xmlNode* child = node->children; child != nullptr; child = child->next) {
        [children addObject:ObjectFor(child, owner)];
    }
    return children;
}

- (XmlNode*)attributeForName:(NSString*)name {
    if (node->type != XML_ELEMENT_NODE || name == nil) {
        return nil;
    }
    return ObjectFor(reinterpret_cast<xmlNode*>(AttributeNamed(node, [name UTF8String])), owner);
}

- (void)detach {
    [owner tree]->Detach(node);
}

@end

@implementation XmlDocument

- (id)initWithContentsOfURL:(NSURL*)url options:(NSUInteger)mask error:(NSError**)error {
    self = [super init];
    std::string bytes;
    if (self == nil || !ReadFile([url path], bytes, error)) {
        [self release];
        return nil;
    }
    std::string message;
    tree = XmlTree::Parse(bytes.data(), bytes.size(), message).release();
    if (tree == nullptr) {
        if (error != NULL) {
            *error = [NSError errorWithDomain:NSXMLParserErrorDomain
                                         code:NSXMLParserInternalError
                                     userInfo:@{NSLocalizedDescriptionKey : Text(message)}];
        }
        [self release];
        return nil;
    }
    return self;
}

- (void)dealloc {
    delete tree;
    [super dealloc];
}

- (XmlTree*)tree {
    return tree;
}

- (XmlNode*)rootElement {
    return ObjectFor(tree->Root(), self);
}

// nil when it cannot be written in its encoding.
- (NSData*)XMLData {
    std::string bytes;
    return tree->Write(bytes) ? [NSData dataWithBytes:bytes.data() length:bytes.size()] : nil;
}

@end

@implementation NSXMLDocument (Standin)

// GNUstep's own readers, of interface files for one, ask for more than the program does.
+ (id)alloc {
    Dl_info caller;
    const bool isGNUstep = dladdr(__builtin_return_address(0), &caller) != 0 &&
                           std::strstr(caller.dli_fname, "/libgnustep-") != nullptr;
    return isGNUstep ? [super alloc] : static_cast<id>([XmlDocument alloc]);
}

@end
