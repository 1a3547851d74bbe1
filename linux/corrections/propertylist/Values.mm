#include "linux/corrections/propertylist/Values.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstring>

#include "linux/corrections/propertylist/Text.h"

/// A date whose time is not a number, which GNUstep raises for.
@interface KSUndefinedDate : NSDate
@end

@implementation KSUndefinedDate

- (id)initWithTimeIntervalSinceReferenceDate:(NSTimeInterval)seconds {
    (void)seconds;
    return self;
}

- (NSTimeInterval)timeIntervalSinceReferenceDate {
    return NAN;
}

- (BOOL)isEqual:(id)other {
    return [other isKindOfClass:[KSUndefinedDate class]];
}

- (NSUInteger)hash {
    return 0;
}

- (NSString*)description {
    return @"(undefined)";
}

- (id)copyWithZone:(NSZone*)zone {
    (void)zone;
    return [self retain];
}

@end

namespace propertylist {

namespace {

NSString* const kUidKey = @"CF$UID";

bool IsAscii(std::string_view bytes) {
    return std::none_of(bytes.begin(), bytes.end(), [](char byte) { return (byte & 0x80) != 0; });
}

Kind KindOfNumber(NSNumber* number) {
    static const Class booleanClass = [[NSNumber numberWithBool:YES] class];
    if ([number isKindOfClass:booleanClass]) {
        return Kind::Boolean;
    }
    const char type = *[number objCType];
    return std::strchr("fd", type) != nullptr           ? Kind::Real
           : std::strchr("cCsSiIlLqQ", type) != nullptr ? Kind::Integer
                                                        : Kind::Unsuitable;
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
        id uid = [value count] == 1 ? [value objectForKey:kUidKey] : nil;
        const bool isUid = [uid isKindOfClass:[NSNumber class]] &&
                           KindOfNumber(uid) == Kind::Integer && !IsNegative(uid) &&
                           [uid unsignedLongLongValue] <= UINT32_MAX;
        return isUid ? Kind::Uid : Kind::Dictionary;
    }
    if ([value isKindOfClass:[NSArray class]]) {
        return Kind::Array;
    }
    if ([value isKindOfClass:[NSData class]]) {
        return Kind::Data;
    }
    return [value isKindOfClass:[NSDate class]] ? Kind::Date : Kind::Unsuitable;
}

std::uint32_t UidIn(NSDictionary* dictionary) {
    return static_cast<std::uint32_t>([[dictionary objectForKey:kUidKey] longLongValue]);
}

NSDictionary* NewUid(std::uint32_t uid) {
    return [[NSDictionary alloc]
        initWithObjectsAndKeys:[NSNumber numberWithUnsignedInt:uid], kUidKey, nil];
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

bool GetEntries(NSDictionary* dictionary, std::vector<Entry>& entries) {
    entries.reserve([dictionary count]);
    for (id key in [dictionary keyEnumerator]) {
        if (KindOf(key) != Kind::String) {
            return false;
        }
        entries.push_back({{}, [dictionary objectForKey:key]});
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

bool References::Add(id owned) {
    if (owned != nil) {
        objects_.push_back(owned);
    }
    return owned != nil;
}

void References::Reverse() {
    std::reverse(objects_.begin(), objects_.end());
}

Maker::Maker(NSPropertyListMutabilityOptions options)
    : mutableContainers_(options != NSPropertyListImmutable),
      mutableLeaves_((options & NSPropertyListMutableContainersAndLeaves) != 0) {}

NSString* Maker::NewText(std::u16string_view text) const {
    NSString* string = [[(mutableLeaves_ ? [NSMutableString class] : [NSString class]) alloc]
        initWithCharacters:reinterpret_cast<const unichar*>(text.data())
                    length:text.size()];
    return string != nil ? string : NewBroken(text);
}

/// GNUstep makes no string with half a surrogate pair, but keeps one that is put in.
NSString* Maker::NewBroken(std::u16string_view text) const {
    NSMutableString* string = [[NSMutableString alloc] init];
    for (const char16_t unit : text) {
        [string appendFormat:@"%C", static_cast<unichar>(unit)];
    }
    return mutableLeaves_ ? string : [[string autorelease] copy];
}

NSString* Maker::NewLatin1(std::string_view bytes) const {
    return [[(mutableLeaves_ ? [NSMutableString class] : [NSString class]) alloc]
        initWithBytes:bytes.data()
               length:bytes.size()
             encoding:IsAscii(bytes) ? NSASCIIStringEncoding : NSISOLatin1StringEncoding];
}

NSString* Maker::NewUtf8(std::string_view bytes) const {
    if (IsAscii(bytes)) {
        return NewLatin1(bytes);
    }
    std::u16string text;
    if (!DecodeUtf8(bytes, text)) {
        return nil;
    }
    return NewText(std::u16string_view(text).substr(text[0] == u'\uFEFF' ? 1 : 0));
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

NSDate* Maker::NewDate(double seconds) {
    return std::isnan(seconds) ? [[KSUndefinedDate alloc] init]
                               : [[NSDate alloc] initWithTimeIntervalSinceReferenceDate:seconds];
}

}  // namespace propertylist
