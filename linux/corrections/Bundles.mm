// Bundles in Apple's layout ("X.app/Contents/Info.plist") and the main bundle of a plain
// executable, which is the folder that it lies in. GNUstep knows neither; bundles in its own layout
// are left to it.
#include <Foundation/Foundation.h>

#include <filesystem>

#include "linux/corrections/FileSystemPath.h"
#include "linux/frameworks/CoreServices/ApplicationBundle.h"

namespace {

NSString* const kInsideBundle = @"/Contents/MacOS";

NSString* PathOfMainBundle() {
    std::error_code failure;
    const auto executable = std::filesystem::read_symlink("/proc/self/exe", failure);
    NSString* folder = StringFromFileSystem(executable.parent_path());
    return [folder hasSuffix:kInsideBundle]
               ? [folder substringToIndex:[folder length] - [kInsideBundle length]]
               : folder;
}

bool IsMain(NSBundle* bundle) {
    return bundle == [NSBundle mainBundle];
}

}  // namespace

@implementation NSBundle (AppleLayout)

- (BOOL)hasAppleLayout {
    NSString* contents = [[self bundlePath] stringByAppendingPathComponent:@"Contents"];
    return [[NSFileManager defaultManager]
        fileExistsAtPath:[contents stringByAppendingPathComponent:@"Info.plist"]];
}

- (NSString*)mac_bundlePath {
    return IsMain(self) ? PathOfMainBundle() : [self mac_bundlePath];
}

- (NSDictionary*)mac_infoDictionary {
    if (_infoDict == nil) {
        NSDictionary* info = ApplicationInfo([self bundlePath]);
        _infoDict = [(info == nil && IsMain(self) ? [NSDictionary dictionary] : info) retain];
    }
    return [self mac_infoDictionary];
}

- (NSString*)mac_resourcePath {
    if ([self hasAppleLayout]) {
        return [[self bundlePath] stringByAppendingPathComponent:@"Contents/Resources"];
    }
    return IsMain(self) ? [self bundlePath] : [self mac_resourcePath];
}

/// Beside a plain executable, and nowhere else; GNUstep goes on to a folder "Resources" there.
- (NSString*)mac_pathForResource:(NSString*)name ofType:(NSString*)type {
    if (!IsMain(self) || [self hasAppleLayout]) {
        return [self mac_pathForResource:name ofType:type];
    }
    NSString* file = [type length] == 0 ? name : [name stringByAppendingPathExtension:type];
    NSString* path = file == nil ? nil : [[self resourcePath] stringByAppendingPathComponent:file];
    return [[NSFileManager defaultManager] fileExistsAtPath:path] ? path : nil;
}

@end
