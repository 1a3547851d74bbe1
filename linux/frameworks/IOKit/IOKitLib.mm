#include <Foundation/Foundation.h>
#include <IOKit/IOKitLib.h>
#include <X11/extensions/scrnsaver.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <utility>

const mach_port_t kIOMasterPortDefault = 0;

namespace {

constexpr char kMachineIdentifier[] = "/etc/machine-id";
constexpr size_t kHyphens[] = {8, 13, 18, 23};
constexpr long long kNanosecondsPerMillisecond = 1'000'000;

NSString* const kClassKey = @"IOProviderClass";

NSDictionary* PlatformExpertDevice() {
    std::string identifier;
    std::ifstream(kMachineIdentifier) >> identifier;
    for (const size_t hyphen : kHyphens) {
        identifier.insert(std::min(hyphen, identifier.size()), "-");
    }
    NSUUID* uuid = [[[NSUUID alloc]
        initWithUUIDString:[NSString stringWithUTF8String:identifier.c_str()]] autorelease];
    return uuid == nil ? @{} : @{@"IOPlatformUUID" : [uuid UUIDString]};
}

NSDictionary* HIDSystem() {
    const std::unique_ptr<Display, decltype(&XCloseDisplay)> display(XOpenDisplay(nullptr),
                                                                     &XCloseDisplay);
    int event = 0;
    int error = 0;
    XScreenSaverInfo info{};
    if (!display || !XScreenSaverQueryExtension(display.get(), &event, &error) ||
        !XScreenSaverQueryInfo(display.get(), DefaultRootWindow(display.get()), &info)) {
        return nil;
    }
    const auto idle = static_cast<long long>(info.idle) * kNanosecondsPerMillisecond;
    return @{@"HIDIdleTime" : [NSNumber numberWithLongLong:idle]};
}

/// A service tells its properties at this moment; nil when the machine has no such service.
using Service = NSDictionary* (*)();

struct Object {
    Service service;
    bool isIterator;  ///< over that one service, or over none
};

/// The objects that callers hold, by their handles.
std::map<io_object_t, Object>& HeldObjects() {
    static std::map<io_object_t, Object> objects;
    return objects;
}

io_object_t Hold(Object object) {
    static io_object_t last = IO_OBJECT_NULL;
    HeldObjects()[++last] = object;
    return last;
}

/// Releases the dictionary.
Service Matching(CFDictionaryRef matching) {
    @autoreleasepool {
        id name = [[(NSDictionary*)matching autorelease] objectForKey:kClassKey];
        const Service service = [name isEqual:@"IOPlatformExpertDevice"] ? PlatformExpertDevice
                                : [name isEqual:@"IOHIDSystem"]          ? HIDSystem
                                                                         : nullptr;
        return service != nullptr && service() != nil ? service : nullptr;
    }
}

NSDictionary* PropertiesOf(io_registry_entry_t entry) {
    const auto held = HeldObjects().find(entry);
    return held == HeldObjects().end() || held->second.isIterator ? nil : held->second.service();
}

}  // namespace

CFMutableDictionaryRef IOServiceMatching(const char* name) {
    return (CFMutableDictionaryRef)
        [[NSMutableDictionary alloc] initWithObjectsAndKeys:@(name), kClassKey, nil];
}

io_service_t IOServiceGetMatchingService(mach_port_t /*mainPort*/, CFDictionaryRef matching) {
    const Service service = Matching(matching);
    return service == nullptr ? IO_OBJECT_NULL : Hold({service, false});
}

kern_return_t IOServiceGetMatchingServices(mach_port_t /*mainPort*/, CFDictionaryRef matching,
                                           io_iterator_t* existing) {
    *existing = Hold({Matching(matching), true});
    return KERN_SUCCESS;
}

io_object_t IOIteratorNext(io_iterator_t iterator) {
    const auto held = HeldObjects().find(iterator);
    if (held == HeldObjects().end() || !held->second.isIterator) {
        return IO_OBJECT_NULL;
    }
    const Service service = std::exchange(held->second.service, nullptr);
    return service == nullptr ? IO_OBJECT_NULL : Hold({service, false});
}

CFTypeRef IORegistryEntryCreateCFProperty(io_registry_entry_t entry, CFStringRef key,
                                          CFAllocatorRef /*allocator*/, IOOptionBits /*options*/) {
    @autoreleasepool {
        return (CFTypeRef)[[PropertiesOf(entry) objectForKey:(NSString*)key] retain];
    }
}

kern_return_t IORegistryEntryCreateCFProperties(io_registry_entry_t entry,
                                                CFMutableDictionaryRef* properties,
                                                CFAllocatorRef /*allocator*/,
                                                IOOptionBits /*options*/) {
    @autoreleasepool {
        NSDictionary* current = PropertiesOf(entry);
        if (current == nil) {
            return kIOReturnBadArgument;
        }
        *properties = (CFMutableDictionaryRef)[current mutableCopy];
        return KERN_SUCCESS;
    }
}

kern_return_t IOObjectRelease(io_object_t object) {
    return HeldObjects().erase(object) == 1 ? KERN_SUCCESS : kIOReturnBadArgument;
}
