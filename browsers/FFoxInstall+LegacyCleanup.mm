#include "browsers/FFoxInstall+LegacyCleanup.h"

#include "browsers/FFoxPaths.h"

namespace {

// Qualified names, compared as they are written: the prefixes are Firefox's own.
NSString* const kDescription = @"RDF:Description";
NSString* const kTargetApplication = @"NS1:targetApplication";
NSString* const kList = @"RDF:Seq";
NSString* const kAbout = @"RDF:about";
NSString* const kResource = @"RDF:resource";

BOOL IsElement(NSXMLNode* node, NSString* name) {
    return [node kind] == NSXMLElementKind && [[node name] isEqualToString:name];
}

// nil when the node is no element or has no such attribute.
NSString* Attribute(NSXMLNode* node, NSString* name) {
    if ([node kind] != NSXMLElementKind) {
        return nil;
    }
    return [[static_cast<NSXMLElement*>(node) attributeForName:name] stringValue];
}

BOOL Contains(NSString* text, NSString* part) {
    return text != nil && [text rangeOfString:part options:NSLiteralSearch].location != NSNotFound;
}

// Appends the entries and the list items of the extension. Returns what the last reference to a
// target application names; nil when there is none.
NSString* CollectExtension(NSArray* nodes, NSString* identifier, NSMutableArray* removals) {
    NSString* target = nil;
    for (NSXMLNode* node in nodes) {
        if (IsElement(node, kDescription) && Contains(Attribute(node, kAbout), identifier)) {
            [removals addObject:node];
            for (NSXMLNode* child in [node children]) {
                NSString* resource = Attribute(child, kResource);
                if (resource != nil && IsElement(child, kTargetApplication)) {
                    target = resource;
                }
            }
        } else if (IsElement(node, kList)) {
            for (NSXMLNode* item in [node children]) {
                if (Contains(Attribute(item, kResource), identifier)) {
                    [removals addObject:item];
                }
            }
        }
    }
    return target;
}

// Appends the records of the target application. Unlike an extension's, its name is known in full.
void CollectTarget(NSArray* nodes, NSString* target, NSMutableArray* removals) {
    for (NSXMLNode* node in nodes) {
        if (IsElement(node, kDescription) && [Attribute(node, kAbout) isEqualToString:target]) {
            [removals addObject:node];
        }
    }
}

void RemoveExtension(NSXMLDocument* registry, NSString* identifier) {
    NSArray* nodes = [[registry rootElement] children];
    NSMutableArray* removals = [NSMutableArray array];
    NSString* target = CollectExtension(nodes, identifier, removals);
    if ([target length] > 0) {
        CollectTarget(nodes, target, removals);
    }
    // One that is listed twice has no parent left the second time.
    [removals makeObjectsPerformSelector:@selector(detach)];
}

}  // namespace

@implementation FFoxInstall (LegacyCleanup)

+ (void)removeExtensions:(NSArray*)identifiers fromRdfFile:(NSString*)path {
    if (path == nil) {
        return;
    }
    // A registry can be large, and there may be many: each edit gives back what it took.
    @autoreleasepool {
        NSXMLDocument* registry =
            [[[NSXMLDocument alloc] initWithContentsOfURL:[NSURL fileURLWithPath:path]
                                                  options:NSXMLNodeLoadExternalEntitiesNever
                                                    error:NULL] autorelease];
        if (registry == nil) {
            return;
        }
        for (NSString* identifier in identifiers) {
            RemoveExtension(registry, identifier);
        }
        [[registry XMLData] writeToFile:path atomically:YES];
    }
}

+ (void)removeExtension:(NSString*)identifier fromRdfFile:(NSString*)path {
    if ([identifier length] > 0) {
        [FFoxInstall removeExtensions:[NSArray arrayWithObject:identifier] fromRdfFile:path];
    }
}

+ (void)clearFFoxCache:(NSString*)profile {
    if (profile == nil) {
        return;
    }
    for (NSString* name : kFFoxCacheFiles) {
        [[NSFileManager defaultManager]
            removeItemAtPath:[profile stringByAppendingPathComponent:name]
                       error:NULL];
    }
}

@end
