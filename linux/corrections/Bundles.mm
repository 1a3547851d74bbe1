// Bundles in Apple's layout ("X.app/Contents/Info.plist") and the main bundle of a plain
// executable, which is the folder that it lies in. GNUstep knows neither; bundles in its own layout
// are left to it.
#include <Foundation/Foundation.h>
#include <objc/runtime.h>
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

@interface NSBundle (GNUstepLayout)
- (NSString*)gnustepBundlePath;
- (NSString*)gnustepExecutablePath;
- (NSString*)gnustepResourcePath;
- (NSDictionary*)gnustepInfoDictionary;
@end

@implementation NSBundle (AppleLayout)

+ (void)load {
    // No message may be sent yet: it would initialise classes while this library is half loaded.
    const Class bundle = objc_getClass("NSBundle");
    const auto exchange = [bundle](SEL first, SEL second) {
        method_exchangeImplementations(class_getInstanceMethod(bundle, first),
                                       class_getInstanceMethod(bundle, second));
    };
    // From here on the second name calls what GNUstep does.
    exchange(@selector(bundlePath), @selector(gnustepBundlePath));
    exchange(@selector(executablePath), @selector(gnustepExecutablePath));
    exchange(@selector(resourcePath), @selector(gnustepResourcePath));
    exchange(@selector(infoDictionary), @selector(gnustepInfoDictionary));
}

- (BOOL)hasAppleLayout {
    NSString* contents = [[self bundlePath] stringByAppendingPathComponent:@"Contents"];
    return [[NSFileManager defaultManager]
        fileExistsAtPath:[contents stringByAppendingPathComponent:@"Info.plist"]];
}

- (NSString*)gnustepBundlePath {
    return IsMain(self) ? PathOfMainBundle() : [self gnustepBundlePath];
}

- (NSDictionary*)gnustepInfoDictionary {
    if (_infoDict == nil) {
        NSDictionary* info = ApplicationInfo([self bundlePath]);
        _infoDict = [(info == nil && IsMain(self) ? [NSDictionary dictionary] : info) retain];
    }
    return [self gnustepInfoDictionary];
}

- (NSString*)gnustepExecutablePath {
    if (IsMain(self)) {
        return PathOfExecutable();
    }
    if (![self hasAppleLayout]) {
        return [self gnustepExecutablePath];
    }
    id name = [[self infoDictionary] objectForKey:@"CFBundleExecutable"];
    if (![name isKindOfClass:[NSString class]]) {
        name = [[[self bundlePath] lastPathComponent] stringByDeletingPathExtension];
    }
    NSString* programs = [[self bundlePath] stringByAppendingPathComponent:kInsideBundle];
    NSString* path = [programs stringByAppendingPathComponent:name];
    return [[NSFileManager defaultManager] fileExistsAtPath:path] ? path : nil;
}

- (NSString*)gnustepResourcePath {
    if ([self hasAppleLayout]) {
        return [[self bundlePath] stringByAppendingPathComponent:@"Contents/Resources"];
    }
    return IsMain(self) ? [self bundlePath] : [self gnustepResourcePath];
}

@end
