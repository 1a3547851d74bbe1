#include "browsers/SafariExtensions.h"

#include "platform/PropertyLists.h"
#include "product/Applications.h"

namespace {

NSString* const kArchivesFolder = @"Safari/Extensions";
NSString* const kPlugInsFolder = @"Internet Plug-Ins";
NSString* const kCacheFolder = @"Caches/" KS_SAFARI_IDENTIFIER "/Extensions/";
NSString* const kRegistry = @"~/Library/Safari/Extensions/Extensions.plist";

NSString* UserLibrary() {
    return [NSSearchPathForDirectoriesInDomains(NSLibraryDirectory, NSUserDomainMask, YES)
        firstObject];
}

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

NSString* SafariButtonPath() {
    return [[UserLibrary() stringByAppendingPathComponent:kArchivesFolder]
        stringByAppendingPathComponent:kSafariButtonArchive];
}

NSString* SafariPlugIn(NSString* name) {
    return [[UserLibrary() stringByAppendingPathComponent:kPlugInsFolder]
        stringByAppendingPathComponent:name];
}

NSString* SafariCacheFolder() {
    return [UserLibrary() stringByAppendingPathComponent:kCacheFolder];
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

void RemoveFromSafariList(id root, NSString* archive) {
    NSMutableArray* entries = InstalledExtensions(root);
    // The array must not be the last owner of what it is asked to remove.
    id remembered = [[LastEntryOf(entries, ArchivePrefix(archive)) retain] autorelease];
    if (remembered != nil) {
        [entries removeObject:remembered];
    }
}

BOOL RemoveFromSafariRegistry(NSString* archive, NSData* registry, NSError** error) {
    id root = ParsePropertyList(registry, NSPropertyListMutableContainersAndLeaves, NULL);
    RemoveFromSafariList(root, archive);
    return WriteSafariFile(root, SafariRegistryPath(), error);
}
