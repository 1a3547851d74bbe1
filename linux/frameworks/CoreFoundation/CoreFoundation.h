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
typedef int8_t SInt8;
typedef uint16_t UInt16;
typedef int16_t SInt16;
typedef uint32_t UInt32;
typedef int32_t SInt32;
typedef uint64_t UInt64;
typedef int64_t SInt64;
typedef UInt32 FourCharCode;
typedef FourCharCode OSType;
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
typedef const struct __CFDate* CFDateRef;
typedef const struct __CFURL* CFURLRef;
typedef const struct __CFArray* CFArrayRef;
typedef const struct __CFDictionary* CFDictionaryRef;
typedef struct __CFDictionary* CFMutableDictionaryRef;
typedef struct __CFError* CFErrorRef;

/// NULL: there is one allocator, and every `allocator` argument is ignored.
extern const CFAllocatorRef kCFAllocatorDefault;

extern const CFBooleanRef kCFBooleanTrue;
extern const CFBooleanRef kCFBooleanFalse;

/// Takes a further reference, which the caller releases. Returns the object itself.
CFTypeRef CFRetain(CFTypeRef cf);
void CFRelease(CFTypeRef cf);

/// The kind of an object, to compare with the answers of the functions below; 0 for another kind.
CFTypeID CFGetTypeID(CFTypeRef cf);
CFTypeID CFArrayGetTypeID(void);
CFTypeID CFBooleanGetTypeID(void);
CFTypeID CFDataGetTypeID(void);
CFTypeID CFDateGetTypeID(void);
CFTypeID CFDictionaryGetTypeID(void);
/// A boolean is not a number here.
CFTypeID CFNumberGetTypeID(void);
CFTypeID CFStringGetTypeID(void);

/// The object under the key, not retained; NULL if there is none.
const void* CFDictionaryGetValue(CFDictionaryRef theDict, const void* key);

typedef CFIndex CFNumberType;
enum {
    kCFNumberSInt8Type = 1,
    kCFNumberSInt16Type = 2,
    kCFNumberSInt32Type = 3,
    kCFNumberSInt64Type = 4,
    kCFNumberFloat32Type = 5,
    kCFNumberFloat64Type = 6,
    kCFNumberCharType = 7,
    kCFNumberShortType = 8,
    kCFNumberIntType = 9,
    kCFNumberLongType = 10,
    kCFNumberLongLongType = 11,
    kCFNumberFloatType = 12,
    kCFNumberDoubleType = 13,
    kCFNumberCFIndexType = 14,
    kCFNumberNSIntegerType = 15,
    kCFNumberCGFloatType = 16
};

/// Writes the number to `valuePtr`, which points to a variable of `theType`. Returns false if that
/// type cannot hold the value; the variable then has the nearest or a truncated value.
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType theType, void* valuePtr);

typedef UInt32 CFStringEncoding;
enum { kCFStringEncodingASCII = 0x0600, kCFStringEncodingUTF8 = 0x08000100 };

/// A string that lives as long as the process, the same one for equal text.
#define CFSTR(cStr) __CFStringMakeConstantString("" cStr "")
CFStringRef __CFStringMakeConstantString(const char* cStr);

/// The length in UTF-16 units.
CFIndex CFStringGetLength(CFStringRef theString);

/// Copies the text with a final NUL into a buffer of `bufferSize` bytes. Returns false if the
/// buffer is too small, or the encoding lacks a character or is not one of the two above.
Boolean CFStringGetCString(CFStringRef theString, char* buffer, CFIndex bufferSize,
                           CFStringEncoding encoding);

typedef CFOptionFlags CFPropertyListMutabilityOptions;
enum {
    kCFPropertyListImmutable = 0,
    kCFPropertyListMutableContainers = 1 << 0,
    kCFPropertyListMutableContainersAndLeaves = 1 << 1
};

/// Parses a property list in any format. Returns NULL if it is malformed, and then a description to
/// release in `*errorString`, unless `errorString` is NULL.
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
