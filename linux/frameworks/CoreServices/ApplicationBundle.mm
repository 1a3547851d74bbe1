#include "linux/frameworks/CoreServices/ApplicationBundle.h"

namespace {

NSString* const kInfoFile = @"Contents/Info.plist";
NSString* const kProgramsFolder = @"Contents/MacOS";

/// nil for anything but a text that says something.
NSString* TextUnder(NSString* key, NSDictionary* info) {
    id value = [info objectForKey:key];
    return [value isKindOfClass:[NSString class]] && [value length] > 0 ? value : nil;
}

NSString* NameOfFolder(NSString* bundlePath) {
    return [[bundlePath lastPathComponent] stringByDeletingPathExtension];
}

}  // namespace

NSDictionary* ApplicationInfo(NSString* bundlePath, NSError** error) {
    NSData* data =
        [NSData dataWithContentsOfFile:[bundlePath stringByAppendingPathComponent:kInfoFile]
                               options:0
                                 error:error];
    id info = data == nil ? nil
                          : [NSPropertyListSerialization propertyListWithData:data
                                                                      options:0
                                                                       format:NULL
                                                                        error:NULL];
    return [info isKindOfClass:[NSDictionary class]] ? info : nil;
}

NSString* ApplicationIdentifier(NSDictionary* info) {
    return TextUnder(@"CFBundleIdentifier", info);
}

NSString* ApplicationName(NSString* bundlePath, NSDictionary* info) {
    for (NSString* key in @[ @"CFBundleDisplayName", @"CFBundleName" ]) {
        if (NSString* name = TextUnder(key, info)) {
            return name;
        }
    }
    return NameOfFolder(bundlePath);
}

NSString* ApplicationProgram(NSString* bundlePath) {
    NSDictionary* info = ApplicationInfo(bundlePath);
    if (info == nil) {
        return nil;
    }
    NSString* named = TextUnder(@"CFBundleExecutable", info);
    return [[bundlePath stringByAppendingPathComponent:kProgramsFolder]
        stringByAppendingPathComponent:named != nil ? named : NameOfFolder(bundlePath)];
}
