// Bundles in Apple's layout ("X.app/Contents/Info.plist") and the main bundle of a plain
// executable, which is the folder that it lies in. GNUstep knows neither; bundles in its own layout
// are left to it.
#include <Foundation/Foundation.h>
#include <unistd.h>

#include <array>
#include <climits>

#include "linux/corrections/FileSystemPath.h"
#include "linux/frameworks/CoreServices/ApplicationBundle.h"

namespace {

NSString* const kInsideBundle = @"Contents/MacOS";

NSString* PathOfExecutable() {
    std::array<char, PATH_MAX + 1> path{};
    return readlink("/proc/self/exe", path.data(), PATH_MAX) < 0
               ? nil
               : StringFromFileSystem(path.data());
}

NSString* PathOfMainBundle() {
    NSString* folder = [PathOfExecutable() stringByDeletingLastPathComponent];
    NSString* inside = [@"/" stringByAppendingString:kInsideBundle];
    return [folder hasSuffix:inside] ? [folder substringToIndex:[folder length] - [inside length]]
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

- (NSString*)mac_executablePath {
    if (IsMain(self)) {
        return PathOfExecutable();
    }
    if (![self hasAppleLayout]) {
        return [self mac_executablePath];
    }
    id name = [[self infoDictionary] objectForKey:@"CFBundleExecutable"];
    if (![name isKindOfClass:[NSString class]]) {
        name = [[[self bundlePath] lastPathComponent] stringByDeletingPathExtension];
    }
    NSString* programs = [[self bundlePath] stringByAppendingPathComponent:kInsideBundle];
    NSString* path = [programs stringByAppendingPathComponent:name];
    return [[NSFileManager defaultManager] fileExistsAtPath:path] ? path : nil;
}

- (NSString*)mac_resourcePath {
    if ([self hasAppleLayout]) {
        return [[self bundlePath] stringByAppendingPathComponent:@"Contents/Resources"];
    }
    return IsMain(self) ? [self bundlePath] : [self mac_resourcePath];
}

@end
