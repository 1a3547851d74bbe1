#include "browsers/SafariExtensions.h"

#include "platform/PropertyLists.h"

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

BOOL WriteSafariFile(id root, NSString* path, NSError** error) {
    if (![root isKindOfClass:[NSDictionary class]]) {
        return YES;  // no file of Safari's: not ours to write
    }
    NSData* data = EncodePropertyList(root, NSPropertyListBinaryFormat_v1_0, NULL);
    return data == nil || [data writeToFile:path options:NSDataWritingAtomic error:error];
}

NSData* ReadSafariRegistry() {
    return [NSData dataWithContentsOfFile:SafariRegistryPath()];
}

BOOL RemoveFromSafariRegistry(NSString* archive, NSData* registry, NSError** error) {
    id root = ParsePropertyList(registry, NSPropertyListMutableContainersAndLeaves, NULL);
    NSMutableArray* entries = InstalledExtensions(root);
    // The array must not be the last owner of what it is asked to remove.
    id remembered = [[LastEntryOf(entries, ArchivePrefix(archive)) retain] autorelease];
    if (remembered != nil) {
        [entries removeObject:remembered];
    }
    return WriteSafariFile(root, SafariRegistryPath(), error);
}
