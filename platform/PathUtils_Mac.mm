#include "platform/PathUtils_Mac.h"

#include "platform/FileModes.h"

namespace {

NSFileManager* Files() {
    return [NSFileManager defaultManager];
}

}  // namespace

@implementation PathUtils_Mac

+ (NSString*)FromModuleFileName {
    return [[NSBundle mainBundle] bundlePath];
}

+ (BOOL)DirectoryExists:(NSString*)path {
    BOOL isDirectory = NO;
    return [Files() fileExistsAtPath:path isDirectory:&isDirectory] && isDirectory;
}

+ (BOOL)FileExists:(NSString*)path {
    BOOL isDirectory = NO;
    return [Files() fileExistsAtPath:path isDirectory:&isDirectory] && !isDirectory;
}

+ (BOOL)CreateDirectory:(NSString*)path {
    return [path length] > 0 && CreateOpenFolder(path, NULL);
}

+ (BOOL)EnsureFolderPath:(NSString*)path {
    BOOL isDirectory = NO;
    if (![Files() fileExistsAtPath:path isDirectory:&isDirectory]) {
        [PathUtils_Mac CreateDirectory:path];
    }
    return isDirectory;  // meant: tells what was there before
}

+ (NSString*)ExpandPath:(NSString*)path {
    return [path stringByExpandingTildeInPath];
}

// clang-format off
+ (NSArray*)EnumAllItemsInFolder:(NSString*)folder :(BOOL)foldersOnly {
    // clang-format on
    NSMutableArray* items = [NSMutableArray array];
    if ([folder length] == 0) {
        return items;
    }
    for (NSString* item in [Files() subpathsOfDirectoryAtPath:folder error:NULL]) {
        if (!foldersOnly ||
            [PathUtils_Mac DirectoryExists:[NSString stringWithFormat:@"%@//%@", folder, item]]) {
            [items addObject:item];
        }
    }
    return items;
}

// clang-format off
+ (BOOL)KSDeleteFile:(NSString*)path :(NSInteger*)errorCode {
    // clang-format on
    if (![PathUtils_Mac FileExists:path]) {
        return NO;
    }
    NSError* error = nil;
    const BOOL removed = [Files() removeItemAtPath:path error:&error];
    if (!removed && errorCode != nullptr) {
        *errorCode = [error code];
    }
    return removed;
}

+ (BOOL)KSDeleteFolder:(NSString*)path {
    return [PathUtils_Mac DirectoryExists:path] && [Files() removeItemAtPath:path error:NULL];
}

// clang-format off
+ (BOOL)KSCopyFolder:(NSString*)source :(NSString*)destination :(BOOL)overwrite {
    // clang-format on
    if (![Files() fileExistsAtPath:source] || [destination length] == 0) {
        return NO;
    }
    const BOOL mayCopy = overwrite || ![Files() fileExistsAtPath:destination];
    return mayCopy && [Files() copyItemAtPath:source toPath:destination error:NULL];
}

@end
