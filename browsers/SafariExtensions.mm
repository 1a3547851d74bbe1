#include "browsers/SafariExtensions.h"

#include "browsers/BinaryPropertyList.h"

namespace {

NSString* const kRegistry = @"~/Library/Safari/Extensions/Extensions.plist";

id LastEntryOf(NSArray* entries, NSString* prefix) {
    for (id entry in [entries reverseObjectEnumerator]) {
        if ([ArchiveName(entry) hasPrefix:prefix]) {
            return entry;
        }
    }
    return nil;
}

NSMutableArray* InstalledExtensions(id root) {
    if (![root isKindOfClass:[NSDictionary class]]) {
        return nil;
    }
    id entries = [root objectForKey:kSafariInstalledExtensions];
    return [entries isKindOfClass:[NSMutableArray class]] ? entries : nil;
}

}  // namespace

NSString* UserLibrary() {
    return [NSSearchPathForDirectoriesInDomains(NSLibraryDirectory, NSUserDomainMask, YES)
        firstObject];
}

NSString* ArchivePrefix(NSString* archive) {
    return [[archive componentsSeparatedByString:@"."] objectAtIndex:0];
}

NSString* ArchiveName(id entry) {
    if (![entry isKindOfClass:[NSDictionary class]]) {
        return nil;
    }
    id name = [entry objectForKey:kSafariArchiveName];
    return [name isKindOfClass:[NSString class]] ? name : nil;
}

NSString* SafariRegistryPath() {
    return [kRegistry stringByExpandingTildeInPath];
}

NSData* ReadSafariRegistry() {
    return [NSData dataWithContentsOfFile:SafariRegistryPath()];
}

BOOL RemoveFromSafariRegistry(NSString* archive, NSData* registry, NSError** error) {
    id root = ParsePropertyList(registry, NULL);
    NSMutableArray* entries = InstalledExtensions(root);
    // The array must not be the last owner of what it is asked to remove.
    id remembered = [[LastEntryOf(entries, ArchivePrefix(archive)) retain] autorelease];
    if (remembered != nil) {
        [entries removeObject:remembered];
    }
    return WriteBinaryPropertyList(root, SafariRegistryPath(), error);
}
