// Core Foundation over Foundation: the references are the objects of the latter.
#include <CoreFoundation/CoreFoundation.h>
#include <Foundation/Foundation.h>
#include <objc/runtime.h>

#include <cmath>
#include <limits>
#include <map>
#include <mutex>
#include <string>

namespace {

enum TypeID : CFTypeID {
    kUnknown,
    kString,
    kDictionary,
    kArray,
    kData,
    kBoolean,
    kNumber,
    kDate,
};

id Object(CFTypeRef reference) {
    return static_cast<id>(const_cast<void*>(reference));
}

/// One of the two booleans, which live as long as the process. The constants below are made before
/// the runtime knows this file's selectors, hence its functions instead of a message.
CFBooleanRef NumberWithBool(BOOL value) {
    using Method = CFBooleanRef (*)(id, SEL, BOOL);
    const SEL selector = sel_registerName("numberWithBool:");
    Class number = objc_getClass("NSNumber");
    const IMP method = class_getMethodImplementation(object_getClass(number), selector);
    return reinterpret_cast<Method>(method)(number, selector, value);
}

bool IsBoolean(id object) {
    return object == Object(kCFBooleanTrue) || object == Object(kCFBooleanFalse);
}

/// Every integer and every double is exact in here.
using Exact = long double;
static_assert(std::numeric_limits<Exact>::digits >= 64);

Exact ValueOf(NSNumber* number) {
    switch (*[number objCType]) {
        case 'f':
        case 'd':
            return [number doubleValue];
        case 'Q':
        case 'L':
            return [number unsignedLongLongValue];
        default:
            return [number longLongValue];
    }
}

template <typename Number>
Boolean Store(Exact value, void* slot) {
    using Limits = std::numeric_limits<Number>;
    auto& stored = *static_cast<Number*>(slot);
    if (std::isnan(value)) {
        stored = Limits::has_quiet_NaN ? Limits::quiet_NaN() : Number{};
        return Limits::has_quiet_NaN;
    }
    if (value < Limits::lowest() || value > Limits::max()) {
        const Number nearest = value < 0 ? Limits::lowest() : Limits::max();
        const bool holds = Limits::has_infinity && std::isinf(value);
        stored = holds ? static_cast<Number>(value) : nearest;
        return holds;
    }
    stored = static_cast<Number>(value);
    return static_cast<Exact>(stored) == value;
}

NSStringEncoding FoundationEncoding(CFStringEncoding encoding) {
    switch (encoding) {
        case kCFStringEncodingASCII:
            return NSASCIIStringEncoding;
        case kCFStringEncodingUTF8:
            return NSUTF8StringEncoding;
        default:
            return static_cast<NSStringEncoding>(0);
    }
}

}  // namespace

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFBooleanRef kCFBooleanTrue = NumberWithBool(YES);
const CFBooleanRef kCFBooleanFalse = NumberWithBool(NO);

CFTypeRef CFRetain(CFTypeRef cf) {
    return [Object(cf) retain];
}

void CFRelease(CFTypeRef cf) {
    [Object(cf) release];
}

CFTypeID CFGetTypeID(CFTypeRef cf) {
    id object = Object(cf);
    if (IsBoolean(object)) {
        return kBoolean;
    }
    const struct {
        Class kind;
        CFTypeID identifier;
    } kinds[] = {
        {[NSString class], kString}, {[NSDictionary class], kDictionary}, {[NSArray class], kArray},
        {[NSData class], kData},     {[NSNumber class], kNumber},         {[NSDate class], kDate},
    };
    for (const auto& known : kinds) {
        if ([object isKindOfClass:known.kind]) {
            return known.identifier;
        }
    }
    return kUnknown;
}

CFTypeID CFArrayGetTypeID(void) {
    return kArray;
}

CFTypeID CFBooleanGetTypeID(void) {
    return kBoolean;
}

CFTypeID CFDataGetTypeID(void) {
    return kData;
}

CFTypeID CFDateGetTypeID(void) {
    return kDate;
}

CFTypeID CFDictionaryGetTypeID(void) {
    return kDictionary;
}

CFTypeID CFNumberGetTypeID(void) {
    return kNumber;
}

CFTypeID CFStringGetTypeID(void) {
    return kString;
}

const void* CFDictionaryGetValue(CFDictionaryRef theDict, const void* key) {
    return [Object(theDict) objectForKey:Object(key)];
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType theType, void* valuePtr) {
    const Exact value = ValueOf(Object(number));
    switch (theType) {
        case kCFNumberSInt8Type:
        case kCFNumberCharType:
            return Store<SInt8>(value, valuePtr);
        case kCFNumberSInt16Type:
        case kCFNumberShortType:
            return Store<SInt16>(value, valuePtr);
        case kCFNumberSInt32Type:
        case kCFNumberIntType:
            return Store<SInt32>(value, valuePtr);
        case kCFNumberSInt64Type:
        case kCFNumberLongType:
        case kCFNumberLongLongType:
        case kCFNumberCFIndexType:
        case kCFNumberNSIntegerType:
            return Store<SInt64>(value, valuePtr);
        case kCFNumberFloat32Type:
        case kCFNumberFloatType:
            return Store<float>(value, valuePtr);
        case kCFNumberFloat64Type:
        case kCFNumberDoubleType:
        case kCFNumberCGFloatType:
            return Store<double>(value, valuePtr);
        default:
            return false;
    }
}

CFStringRef __CFStringMakeConstantString(const char* cStr) {
    static std::mutex guard;
    static std::map<std::string, NSString*> strings;
    const std::lock_guard<std::mutex> lock(guard);
    NSString*& string = strings[cStr];
    if (string == nil) {
        string = [[NSString alloc] initWithUTF8String:cStr];
    }
    return reinterpret_cast<CFStringRef>(string);
}

CFIndex CFStringGetLength(CFStringRef theString) {
    return static_cast<CFIndex>([static_cast<NSString*>(Object(theString)) length]);
}

Boolean CFStringGetCString(CFStringRef theString, char* buffer, CFIndex bufferSize,
                           CFStringEncoding encoding) {
    NSData* bytes =
        [static_cast<NSString*>(Object(theString)) dataUsingEncoding:FoundationEncoding(encoding)];
    const auto length = static_cast<CFIndex>([bytes length]);
    if (bytes == nil || length >= bufferSize) {
        return false;
    }
    [bytes getBytes:buffer length:static_cast<NSUInteger>(length)];
    buffer[length] = '\0';
    return true;
}

CFPropertyListRef CFPropertyListCreateFromXMLData(CFAllocatorRef /*allocator*/, CFDataRef xmlData,
                                                  CFOptionFlags mutabilityOption,
                                                  CFStringRef* errorString) {
    NSError* error = nil;
    id list = [NSPropertyListSerialization propertyListWithData:Object(xmlData)
                                                        options:mutabilityOption
                                                         format:nullptr
                                                          error:&error];
    if (errorString != nullptr) {
        NSString* text = list == nil ? [error localizedDescription] : nil;
        *errorString = reinterpret_cast<CFStringRef>([text retain]);
    }
    return [list retain];
}

CFPropertyListRef CFPropertyListCreateDeepCopy(CFAllocatorRef /*allocator*/,
                                               CFPropertyListRef propertyList,
                                               CFOptionFlags mutabilityOption) {
    // The binary format holds every list exactly.
    NSData* data = [NSPropertyListSerialization dataWithPropertyList:Object(propertyList)
                                                              format:NSPropertyListBinaryFormat_v1_0
                                                             options:0
                                                               error:nullptr];
    return [[NSPropertyListSerialization propertyListWithData:data
                                                      options:mutabilityOption
                                                       format:nullptr
                                                        error:nullptr] retain];
}
