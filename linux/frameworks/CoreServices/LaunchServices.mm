#include <CoreServices/CoreServices.h>

#include "linux/frameworks/CoreServices/ApplicationBundle.h"

namespace {

NSString* const kApplicationExtension = @"app";

NSArray* ApplicationFolders() {
    return @[
        @"/Applications", [NSHomeDirectory() stringByAppendingPathComponent:@"Applications"],
        @"/System/Applications"
    ];
}

bool IsFolder(NSString* path) {
    BOOL isFolder = NO;
    return [[NSFileManager defaultManager] fileExistsAtPath:path isDirectory:&isFolder] && isFolder;
}

bool IsApplication(NSString* path) {
    return [[path pathExtension] caseInsensitiveCompare:kApplicationExtension] == NSOrderedSame &&
           IsFolder(path);
}

bool HasIdentifier(NSString* bundlePath, NSString* identifier) {
    NSString* own = ApplicationIdentifier(ApplicationInfo(bundlePath));
    return own != nil && [own caseInsensitiveCompare:identifier] == NSOrderedSame;
}

/// @param levels  how many levels of ordinary folders to look into
NSString* FindApplication(NSString* identifier, NSString* folder, int levels) {
    NSArray* names = [[NSFileManager defaultManager] contentsOfDirectoryAtPath:folder error:NULL];
    for (NSString* name in names) {
        NSString* path = [folder stringByAppendingPathComponent:name];
        if (IsApplication(path)) {
            if (HasIdentifier(path, identifier)) {
                return path;
            }
        } else if (levels > 1 && IsFolder(path)) {
            if (NSString* found = FindApplication(identifier, path, levels - 1)) {
                return found;
            }
        }
    }
    return nil;
}

}  // namespace

OSStatus LSFindApplicationForInfo(OSType /*inCreator*/, CFStringRef inBundleID,
                                  CFStringRef /*inName*/, FSRef* /*outAppRef*/,
                                  CFURLRef* outAppURL) {
    if (inBundleID == NULL) {
        return paramErr;
    }
    @autoreleasepool {
        for (NSString* folder in ApplicationFolders()) {
            NSString* path = FindApplication((NSString*)inBundleID, folder, 2);
            if (path != nil) {
                if (outAppURL != NULL) {
                    *outAppURL = (CFURLRef)[[NSURL fileURLWithPath:path isDirectory:YES] retain];
                }
                return noErr;
            }
        }
    }
    return kLSApplicationNotFoundErr;
}
