#include "linux/corrections/propertylist/Values.h"

#include <algorithm>
#include <cctype>
#include <cstring>

#include "linux/corrections/propertylist/Unicode.h"

namespace propertylist {

NSString* const kUidKey = @"CF$UID";

}  // namespace propertylist

@implementation KSPropertyListUID

- (id)initWithUID:(unsigned long long)uid {
    self = [super init];
    if (self != nil) {
        NSNumber* value = [NSNumber numberWithUnsignedLongLong:uid];
        _entry = [[NSDictionary alloc] initWithObjectsAndKeys:value, propertylist::kUidKey, nil];
    }
    return self;
}

- (void)dealloc {
    [_entry release];
    [super dealloc];
}

- (unsigned long long)uid {
    return [[_entry objectForKey:propertylist::kUidKey] unsignedLongLongValue];
}

- (NSUInteger)count {
    return [_entry count];
}

- (id)objectForKey:(id)key {
    return [_entry objectForKey:key];
}

- (NSEnumerator*)keyEnumerator {
    return [_entry keyEnumerator];
}

- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id*)objects
                                    count:(NSUInteger)count {
    return [_entry countByEnumeratingWithState:state objects:objects count:count];
}

- (id)copyWithZone:(NSZone*)zone {
    (void)zone;
    return [self retain];
}

@end

namespace propertylist {

namespace {

constexpr const char* kIntegerTypes = "cCsSiIlLqQ";
constexpr const char* kRealTypes = "fd";

Kind KindOfNumber(NSNumber* number) {
    static const Class booleanClass = [[NSNumber numberWithBool:YES] class];
    if ([number isKindOfClass:booleanClass]) {
        return Kind::Boolean;
    }
    const char type = *[number objCType];
    if (type != '\0' && std::strchr(kIntegerTypes, type) != nullptr) {
        return Kind::Integer;
    }
    return type != '\0' && std::strchr(kRealTypes, type) != nullptr ? Kind::Real : Kind::Unsuitable;
}

bool IsAscii(std::string_view bytes) {
    return std::none_of(bytes.begin(), bytes.end(), [](char byte) { return (byte & 0x80) != 0; });
}

}  // namespace

Kind KindOf(id value) {
    if ([value isKindOfClass:[NSString class]]) {
        return Kind::String;
    }
    if ([value isKindOfClass:[NSNumber class]]) {
        return KindOfNumber(value);
    }
    if ([value isKindOfClass:[NSDictionary class]]) {
        return [value isKindOfClass:[KSPropertyListUID class]] ? Kind::Uid : Kind::Dictionary;
    }
    if ([value isKindOfClass:[NSArray class]]) {
        return Kind::Array;
    }
    if ([value isKindOfClass:[NSData class]]) {
        return Kind::Data;
    }
    return [value isKindOfClass:[NSDate class]] ? Kind::Date : Kind::Unsuitable;
}

bool IsNegative(NSNumber* integer) {
    const bool isSigned = std::islower(static_cast<unsigned char>(*[integer objCType])) != 0;
    return isSigned && [integer longLongValue] < 0;
}

void GetText(NSString* string, std::u16string& text) {
    text.resize([string length]);
    [string getCharacters:reinterpret_cast<unichar*>(text.data())
                    range:NSMakeRange(0, text.size())];
}

bool GetAscii(std::u16string_view text, std::string& bytes) {
    bytes.clear();
    bytes.reserve(text.size());
    for (const char16_t unit : text) {
        if (unit >= 0x80) {
            return false;
        }
        bytes += static_cast<char>(unit);
    }
    return true;
}

bool GetEntries(NSDictionary* dictionary, std::vector<Entry>& entries) {
    entries.reserve([dictionary count]);
    for (id key in [dictionary keyEnumerator]) {
        if (![key isKindOfClass:[NSString class]]) {
            return false;
        }
        entries.push_back({{}, key, [dictionary objectForKey:key]});
        GetText(key, entries.back().key);
    }
    std::sort(entries.begin(), entries.end(),
              [](const Entry& left, const Entry& right) { return left.key < right.key; });
    return true;
}

References::~References() {
    for (id object : objects_) {
        [object release];
    }
}

Maker::Maker(NSPropertyListMutabilityOptions options)
    : mutableContainers_(options != NSPropertyListImmutable),
      mutableLeaves_((options & NSPropertyListMutableContainersAndLeaves) != 0) {}

NSString* Maker::NewAscii(std::string_view ascii) const {
    return [[(mutableLeaves_ ? [NSMutableString class] : [NSString class]) alloc]
        initWithBytes:ascii.data()
               length:ascii.size()
             encoding:NSASCIIStringEncoding];
}

NSString* Maker::NewText(std::u16string_view text) const {
    return [[(mutableLeaves_ ? [NSMutableString class] : [NSString class]) alloc]
        initWithCharacters:reinterpret_cast<const unichar*>(text.data())
                    length:text.size()];
}

NSString* Maker::NewUtf8(std::string_view bytes) const {
    if (IsAscii(bytes)) {
        return NewAscii(bytes);
    }
    std::u16string text;
    return DecodeUtf8(bytes, text) ? NewText(text) : nil;
}

NSData* Maker::NewData(std::string_view bytes) const {
    return [[(mutableLeaves_ ? [NSMutableData class] : [NSData class]) alloc]
        initWithBytes:bytes.data()
               length:bytes.size()];
}

NSArray* Maker::NewArray(const References& values) const {
    return [[(mutableContainers_ ? [NSMutableArray class] : [NSArray class]) alloc]
        initWithObjects:values.data()
                  count:values.size()];
}

NSDictionary* Maker::NewDictionary(const References& keys, const References& values) const {
    return [[(mutableContainers_ ? [NSMutableDictionary class] : [NSDictionary class]) alloc]
        initWithObjects:values.data()
                forKeys:keys.data()
                  count:values.size()];
}

}  // namespace propertylist
