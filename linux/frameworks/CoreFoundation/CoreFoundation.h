// The part of Core Foundation that the program meets, with Apple's names, types and prototypes.
//
// As on a Mac, objects of Core Foundation and of Foundation are the same objects: a CFStringRef is
// an NSString, and Objective-C code casts between the two. Functions with "Create" or "Copy" in
// their name give the caller a reference to release.
#pragma once

#include <stdbool.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef unsigned char Boolean;
typedef uint8_t UInt8;
typedef uint32_t UInt32;
typedef int32_t SInt32;
typedef int64_t SInt64;
typedef UInt32 OSType;
typedef SInt32 OSStatus;

typedef unsigned long CFTypeID;
typedef unsigned long CFOptionFlags;
typedef signed long CFIndex;

typedef const void* CFTypeRef;
typedef CFTypeRef CFPropertyListRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFString* CFStringRef;
typedef const struct __CFNumber* CFNumberRef;
typedef const struct __CFBoolean* CFBooleanRef;
typedef const struct __CFData* CFDataRef;
typedef const struct __CFURL* CFURLRef;
typedef const struct __CFDictionary* CFDictionaryRef;
typedef struct __CFDictionary* CFMutableDictionaryRef;
typedef struct __CFError* CFErrorRef;

/// NULL: there is one allocator, and every `allocator` argument is ignored.
extern const CFAllocatorRef kCFAllocatorDefault;

extern const CFBooleanRef kCFBooleanTrue;

void CFRelease(CFTypeRef cf);

/// The kind of an object, to compare with the answers of the functions below; 0 for another kind.
CFTypeID CFGetTypeID(CFTypeRef cf);
CFTypeID CFDictionaryGetTypeID(void);
/// A boolean is not a number here.
CFTypeID CFNumberGetTypeID(void);
CFTypeID CFStringGetTypeID(void);

/// The object under the key, not retained; NULL if there is none.
const void* CFDictionaryGetValue(CFDictionaryRef theDict, const void* key);

typedef CFIndex CFNumberType;
enum { kCFNumberSInt64Type = 4 };

/// Writes the number to `valuePtr`, which points to an int64_t, the only type known here. Returns
/// false if that cannot hold the value; the variable then has the nearest or a truncated value.
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType theType, void* valuePtr);

enum { kCFPropertyListImmutable = 0 };

/// Parses a property list in any format. Returns NULL if it is malformed. Nothing is said of the
/// reason: `errorString` must be NULL.
CFPropertyListRef CFPropertyListCreateFromXMLData(CFAllocatorRef allocator, CFDataRef xmlData,
                                                  CFOptionFlags mutabilityOption,
                                                  CFStringRef* errorString);

/// Copies a property list with everything in it. Returns NULL for NULL or for an object that no
/// property list holds.
CFPropertyListRef CFPropertyListCreateDeepCopy(CFAllocatorRef allocator,
                                               CFPropertyListRef propertyList,
                                               CFOptionFlags mutabilityOption);

#ifdef __cplusplus
}
#endif
