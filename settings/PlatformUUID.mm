#include "settings/PlatformUUID.h"

#include <Foundation/Foundation.h>

#include "crypto/CocoaStrings.h"
#include "platform/ScopedHandles.h"

namespace {

constexpr const char* kPlatformExpert = "IOPlatformExpertDevice";
NSString* const kPlatformUUIDProperty = @"IOPlatformUUID";

}  // namespace

std::string PlatformUUID() {
    const ScopedIOObject machine(
        IOServiceGetMatchingService(kIOMasterPortDefault, IOServiceMatching(kPlatformExpert)));
    if (!machine) {
        return std::string();
    }
    const ScopedCFRef<CFTypeRef> identifier(IORegistryEntryCreateCFProperty(
        machine.Get(), (CFStringRef)kPlatformUUIDProperty, kCFAllocatorDefault, 0));
    if (!identifier || CFGetTypeID(identifier.Get()) != CFStringGetTypeID()) {
        return std::string();
    }
    @autoreleasepool {
        return Utf8Bytes(static_cast<NSString*>(const_cast<void*>(identifier.Get())));
    }
}
