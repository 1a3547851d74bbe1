// The part of IOKit that the program meets, with Apple's names, types and prototypes. The registry
// here holds two services:
//
//   IOPlatformExpertDevice: "IOPlatformUUID", a text made from the machine's own identifier
//   IOHIDSystem: "HIDIdleTime", the nanoseconds since the user's last key or mouse event on the X
//   display, without which there is no such service
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef int kern_return_t;
typedef unsigned int mach_port_t;
typedef kern_return_t IOReturn;
typedef UInt32 IOOptionBits;
typedef mach_port_t io_object_t;
typedef io_object_t io_iterator_t;
typedef io_object_t io_registry_entry_t;
typedef io_object_t io_service_t;

#define IO_OBJECT_NULL ((io_object_t)0)
#define KERN_SUCCESS 0
#define kIOReturnBadArgument ((IOReturn)0xe00002c2)

extern const mach_port_t kIOMasterPortDefault;

/// A dictionary that matches the service of a class; the functions that take one release it.
CFMutableDictionaryRef IOServiceMatching(const char* name);

/// @return the service, for the caller to release, or IO_OBJECT_NULL
io_service_t IOServiceGetMatchingService(mach_port_t mainPort, CFDictionaryRef matching);

/// @param existing  gets an iterator, for the caller to release
kern_return_t IOServiceGetMatchingServices(mach_port_t mainPort, CFDictionaryRef matching,
                                           io_iterator_t* existing);

/// @return the next service, for the caller to release, or IO_OBJECT_NULL after the last one
io_object_t IOIteratorNext(io_iterator_t iterator);

/// @return the property, for the caller to release, or NULL
CFTypeRef IORegistryEntryCreateCFProperty(io_registry_entry_t entry, CFStringRef key,
                                          CFAllocatorRef allocator, IOOptionBits options);

/// @param properties  gets all properties, for the caller to release
/// @return KERN_SUCCESS, or kIOReturnBadArgument for a service that is not there (any more)
kern_return_t IORegistryEntryCreateCFProperties(io_registry_entry_t entry,
                                                CFMutableDictionaryRef* properties,
                                                CFAllocatorRef allocator, IOOptionBits options);

/// @return KERN_SUCCESS, or kIOReturnBadArgument for a handle that stands for nothing (any more)
kern_return_t IOObjectRelease(io_object_t object);

#ifdef __cplusplus
}
#endif
