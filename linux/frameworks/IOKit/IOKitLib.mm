#include <IOKit/IOKitLib.h>

#include <map>
#include <mutex>
#include <utility>
#include <vector>

#include "linux/frameworks/IOKit/Services.h"

const mach_port_t kIOMasterPortDefault = 0;

namespace {

NSString* const kClassKey = @"IOProviderClass";

const Service* const kServices[] = {&kPlatformExpertDevice, &kHIDSystem};

/// What a handle stands for: a service, or an iterator over those that are still to come.
struct Object {
    const Service* service = nullptr;
    std::vector<const Service*> remaining;
};

/// The objects that callers hold.
class Registry {
  public:
    io_object_t Add(Object object) {
        const std::lock_guard<std::mutex> lock(mutex_);
        objects_.emplace(++last_, std::move(object));
        return last_;
    }

    bool Remove(io_object_t handle) {
        const std::lock_guard<std::mutex> lock(mutex_);
        return objects_.erase(handle) > 0;
    }

    const Service* ServiceOf(io_object_t handle) {
        const std::lock_guard<std::mutex> lock(mutex_);
        const auto found = objects_.find(handle);
        return found == objects_.end() ? nullptr : found->second.service;
    }

    const Service* TakeNext(io_object_t iterator) {
        const std::lock_guard<std::mutex> lock(mutex_);
        const auto found = objects_.find(iterator);
        if (found == objects_.end() || found->second.remaining.empty()) {
            return nullptr;
        }
        const Service* next = found->second.remaining.front();
        found->second.remaining.erase(found->second.remaining.begin());
        return next;
    }

  private:
    std::mutex mutex_;
    std::map<io_object_t, Object> objects_;
    io_object_t last_ = IO_OBJECT_NULL;
};

Registry& TheRegistry() {
    static Registry registry;
    return registry;
}

io_object_t HandleOf(const Service* service) {
    return service == nullptr ? IO_OBJECT_NULL : TheRegistry().Add({service, {}});
}

/// Releases the dictionary.
std::vector<const Service*> Matching(CFDictionaryRef matching) {
    @autoreleasepool {
        id className = [[(NSDictionary*)matching autorelease] objectForKey:kClassKey];
        std::vector<const Service*> services;
        for (const Service* service : kServices) {
            if ([service->className isEqual:className] && service->properties() != nil) {
                services.push_back(service);
            }
        }
        return services;
    }
}

/// The properties of the service behind a handle, autoreleased; nil for anything else.
NSDictionary* PropertiesOf(io_registry_entry_t entry) {
    const Service* service = TheRegistry().ServiceOf(entry);
    return service == nullptr ? nil : service->properties();
}

}  // namespace

CFMutableDictionaryRef IOServiceMatching(const char* name) {
    if (name == nullptr) {
        return nullptr;
    }
    @autoreleasepool {
        NSString* className = [NSString stringWithUTF8String:name];
        return (CFMutableDictionaryRef)
            [[NSMutableDictionary alloc] initWithObjectsAndKeys:className, kClassKey, nil];
    }
}

io_service_t IOServiceGetMatchingService(mach_port_t /*mainPort*/, CFDictionaryRef matching) {
    const std::vector<const Service*> services = Matching(matching);
    return HandleOf(services.empty() ? nullptr : services.front());
}

kern_return_t IOServiceGetMatchingServices(mach_port_t /*mainPort*/, CFDictionaryRef matching,
                                           io_iterator_t* existing) {
    if (matching == nullptr) {
        return kIOReturnBadArgument;
    }
    *existing = TheRegistry().Add({nullptr, Matching(matching)});
    return KERN_SUCCESS;
}

io_object_t IOIteratorNext(io_iterator_t iterator) {
    return HandleOf(TheRegistry().TakeNext(iterator));
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
    return TheRegistry().Remove(object) ? KERN_SUCCESS : kIOReturnBadArgument;
}
