#include "platform/Utils_Mac.h"

#include <AppKit/AppKit.h>

#include <algorithm>
#include <limits>

#include "platform/GraphicSession.h"
#include "platform/ScopedHandles.h"
#include "product/Addresses.h"
#include "product/Applications.h"
#include "product/Keys.h"
#include "settings/LocalSettings_Mac.h"

namespace {

NSString* const kSystemVersionFile = @"/System/Library/CoreServices/SystemVersion.plist";
NSString* const kSystemVersionKey = @"ProductVersion";
NSString* const kSystemVersionText = @"OSX: %@";

NSString* const kProductVersionKey = @KS_VERSION_KEY;
NSString* const kDefaultProductVersion = @KS_DEFAULT_VERSION;

constexpr const char* kHIDSystem = "IOHIDSystem";
NSString* const kIdleTimeProperty = @"HIDIdleTime";
constexpr double kNanosecondsPerSecond = 1000000000.0;
constexpr int kUnknown = -1;

NSString* const kHeadRequest = @"HEAD";
constexpr NSInteger kStatusOK = 200;

constexpr NSUInteger kUsualFolderCount = 10;

// HIDIdleTime of the first HID system, in nanoseconds. False where there is none.
bool ReadIdleTime(int64_t& nanoseconds) {
    ScopedIOObject services;
    if (IOServiceGetMatchingServices(kIOMasterPortDefault, IOServiceMatching(kHIDSystem),
                                     services.Out()) != KERN_SUCCESS) {
        return false;
    }
    const ScopedIOObject system(IOIteratorNext(services.Get()));
    if (!system) {
        return false;
    }
    ScopedCFRef<CFMutableDictionaryRef> properties;
    if (IORegistryEntryCreateCFProperties(system.Get(), properties.Out(), kCFAllocatorDefault, 0) !=
            KERN_SUCCESS ||
        !properties) {
        return false;
    }
    const CFTypeRef idle = CFDictionaryGetValue(properties.Get(), (CFStringRef)kIdleTimeProperty);
    return idle != nullptr && CFGetTypeID(idle) == CFNumberGetTypeID() &&
           CFNumberGetValue(static_cast<CFNumberRef>(idle), kCFNumberSInt64Type, &nanoseconds);
}

}  // namespace

@implementation Utils_Mac

+ (int)GetCurrentProcessId {
    return [[NSProcessInfo processInfo] processIdentifier];
}

+ (NSDictionary*)DictionaryWithContentsOfData:(NSData*)data {
    if (data == nil) {
        return nil;
    }
    const ScopedCFRef<CFPropertyListRef> root(CFPropertyListCreateFromXMLData(
        kCFAllocatorDefault, reinterpret_cast<CFDataRef>(data), kCFPropertyListImmutable, nullptr));
    if (!root || CFGetTypeID(root.Get()) != CFDictionaryGetTypeID()) {
        return nil;
    }
    const CFPropertyListRef copy =
        CFPropertyListCreateDeepCopy(kCFAllocatorDefault, root.Get(), kCFPropertyListImmutable);
    return [static_cast<NSDictionary*>(const_cast<void*>(copy)) autorelease];
}

+ (NSString*)getOSVersion {
    NSDictionary* system = [NSDictionary dictionaryWithContentsOfFile:kSystemVersionFile];
    return [NSString stringWithFormat:kSystemVersionText, [system objectForKey:kSystemVersionKey]];
}

+ (NSString*)getKSVersion {
    id version = [[[NSBundle mainBundle] infoDictionary] objectForKey:kProductVersionKey];
    if (![version isKindOfClass:[NSString class]]) {
        return kDefaultProductVersion;
    }
    [LocalSettings_Mac SetSettingValue:version withName:kProductVersionKey];
    return version;
}

+ (void)closeApp {
    if (!HasGraphicSession()) {
        return;
    }
    [[NSApplication sharedApplication] performSelector:@selector(terminate:)
                                            withObject:nil
                                            afterDelay:0.0];
}

+ (NSArray*)arrayOfFoldersInFolder:(NSString*)folder {
    NSMutableArray* folders = [NSMutableArray arrayWithCapacity:kUsualFolderCount];
    if ([folder length] == 0) {
        return folders;
    }
    NSFileManager* files = [NSFileManager defaultManager];
    for (NSString* name in [files contentsOfDirectoryAtPath:folder error:NULL]) {
        BOOL isDirectory = NO;
        if ([files fileExistsAtPath:[folder stringByAppendingPathComponent:name]
                        isDirectory:&isDirectory] &&
            isDirectory) {
            [folders addObject:name];
        }
    }
    return folders;
}

+ (int)hid_reset {
    return -1;
}

+ (int)GetSystemIdleTime {
    int64_t nanoseconds = 0;
    if (!ReadIdleTime(nanoseconds)) {
        return kUnknown;
    }
    const double seconds = static_cast<double>(nanoseconds) / kNanosecondsPerSecond;
    // A nonsensical value must not leave the range of the result.
    return static_cast<int>(std::clamp<double>(seconds, std::numeric_limits<int>::min(),
                                               std::numeric_limits<int>::max()));
}

+ (BOOL)areConnected {
    NSMutableURLRequest* request =
        [NSMutableURLRequest requestWithURL:[NSURL URLWithString:@KS_CONNECTIVITY_PROBE]];
    [request setHTTPMethod:kHeadRequest];
    NSURLResponse* response = nil;
    [NSURLConnection sendSynchronousRequest:request returningResponse:&response error:NULL];
    return [response isKindOfClass:[NSHTTPURLResponse class]] &&
           [static_cast<NSHTTPURLResponse*>(response) statusCode] == kStatusOK;
}

@end
