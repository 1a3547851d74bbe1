// Core Foundation over Foundation: the references are the objects of the latter.
#include <CoreFoundation/CoreFoundation.h>
#include <Foundation/Foundation.h>
#include <objc/runtime.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

enum TypeID : CFTypeID { kUnknown, kString, kDictionary, kNumber };

id Object(CFTypeRef reference) {
    return static_cast<id>(const_cast<void*>(reference));
}

/// One of the two booleans, which live as long as the process. The constant below is made before
/// the runtime knows this file's selectors, hence its functions instead of a message.
CFBooleanRef NumberWithBool(BOOL value) {
    using Method = CFBooleanRef (*)(id, SEL, BOOL);
    const SEL selector = sel_registerName("numberWithBool:");
    Class number = objc_getClass("NSNumber");
    const IMP method = class_getMethodImplementation(object_getClass(number), selector);
    return reinterpret_cast<Method>(method)(number, selector, value);
}

bool IsBoolean(id object) {
    return object == Object(kCFBooleanTrue) || object == [NSNumber numberWithBool:NO];
}

/// Every integer and every double is exact in here.
using Exact = long double;
static_assert(std::numeric_limits<Exact>::digits >= 64);

Exact ValueOf(NSNumber* number) {
    const char type = *[number objCType];
    if (type == 'f' || type == 'd') {
        return [number doubleValue];
    }
    const bool isUnsigned = type == 'Q' || type == 'L';
    return isUnsigned ? Exact([number unsignedLongLongValue]) : Exact([number longLongValue]);
}

}  // namespace

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFBooleanRef kCFBooleanTrue = NumberWithBool(YES);

void CFRelease(CFTypeRef cf) {
    [Object(cf) release];
}

CFTypeID CFGetTypeID(CFTypeRef cf) {
    id object = Object(cf);
    if ([object isKindOfClass:[NSString class]]) {
        return kString;
    }
    if ([object isKindOfClass:[NSDictionary class]]) {
        return kDictionary;
    }
    return [object isKindOfClass:[NSNumber class]] && !IsBoolean(object) ? kNumber : kUnknown;
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

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType /*theType*/, void* valuePtr) {
    using Limits = std::numeric_limits<SInt64>;
    const Exact value = ValueOf(Object(number));
    auto& stored = *static_cast<SInt64*>(valuePtr);
    stored = std::isnan(value)
                 ? 0
                 : static_cast<SInt64>(std::clamp<Exact>(value, Limits::lowest(), Limits::max()));
    return static_cast<Exact>(stored) == value;
}

CFPropertyListRef CFPropertyListCreateFromXMLData(CFAllocatorRef /*allocator*/, CFDataRef xmlData,
                                                  CFOptionFlags mutabilityOption,
                                                  CFStringRef* /*errorString*/) {
    return [[NSPropertyListSerialization propertyListWithData:Object(xmlData)
                                                      options:mutabilityOption
                                                       format:nullptr
                                                        error:nullptr] retain];
}

CFPropertyListRef CFPropertyListCreateDeepCopy(CFAllocatorRef /*allocator*/,
                                               CFPropertyListRef propertyList,
                                               CFOptionFlags mutabilityOption) {
    // The binary format holds every list exactly.
    NSData* data = [NSPropertyListSerialization dataWithPropertyList:Object(propertyList)
                                                              format:NSPropertyListBinaryFormat_v1_0
                                                             options:0
                                                               error:nullptr];
    return CFPropertyListCreateFromXMLData(nullptr, (CFDataRef)data, mutabilityOption, nullptr);
}
