#include <CoreServices/CoreServices.h>

#include "linux/frameworks/CoreServices/ApplicationBundle.h"

namespace {

bool IsFolder(NSString* path) {
    BOOL isFolder = NO;
    return [[NSFileManager defaultManager] fileExistsAtPath:path isDirectory:&isFolder] && isFolder;
}

/// Notes an error unless it only says that something is not there.
void Note(NSError* error, bool& isUnreadable) {
    isUnreadable |= error != nil && [error code] != NSFileReadNoSuchFileError;
}

bool HasIdentifier(NSString* bundlePath, NSString* identifier, bool& isUnreadable) {
    NSError* error = nil;
    NSString* own = ApplicationIdentifier(ApplicationInfo(bundlePath, &error));
    Note(error, isUnreadable);
    return own != nil && [own caseInsensitiveCompare:identifier] == NSOrderedSame;
}

/// @param levels  how many levels of ordinary folders to look into
/// @param isUnreadable  becomes true when something on the way could not be read
NSString* FindApplication(NSString* identifier, NSString* folder, int levels, bool& isUnreadable) {
    NSError* error = nil;
    NSArray* names = [[NSFileManager defaultManager] contentsOfDirectoryAtPath:folder error:&error];
    Note(error, isUnreadable);
    for (NSString* name in names) {
        NSString* path = [folder stringByAppendingPathComponent:name];
        NSString* found = nil;
        if ([[path pathExtension] caseInsensitiveCompare:@"app"] == NSOrderedSame) {
            found = IsFolder(path) && HasIdentifier(path, identifier, isUnreadable) ? path : nil;
        } else if (levels > 1 && IsFolder(path)) {
            found = FindApplication(identifier, path, levels - 1, isUnreadable);
        }
        if (found != nil) {
            return found;
        }
    }
    return nil;
}

}  // namespace

OSStatus LSFindApplicationForInfo(OSType /*inCreator*/, CFStringRef inBundleID,
                                  CFStringRef /*inName*/, FSRef* /*outAppRef*/,
                                  CFURLRef* outAppURL) {
    @autoreleasepool {
        bool isUnreadable = false;
        for (NSString* folder in @[
                 @"/Applications",
                 [NSHomeDirectory() stringByAppendingPathComponent:@"Applications"],
                 @"/System/Applications"
             ]) {
            NSString* path = FindApplication((NSString*)inBundleID, folder, 2, isUnreadable);
            if (path != nil) {
                *outAppURL = (CFURLRef)[[NSURL fileURLWithPath:path isDirectory:YES] retain];
                return noErr;
            }
        }
        return isUnreadable ? kLSUnknownErr : kLSApplicationNotFoundErr;
    }
}
