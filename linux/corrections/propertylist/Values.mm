#include "linux/corrections/propertylist/Values.h"

#include <cctype>
#include <cmath>
#include <cstring>

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

Kind KindOfNumber(NSNumber* number) {
    static const Class booleanClass = [[NSNumber numberWithBool:YES] class];
    if ([number isKindOfClass:booleanClass]) {
        return Kind::Boolean;
    }
    return std::strchr("fd", *[number objCType]) != nullptr ? Kind::Real : Kind::Integer;
}

}  // namespace

void CheckLevel(unsigned level) {
    if (level > 512) {
        @throw @"The property list is nested too deep, or contains itself.";
    }
}

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
    if ([value isKindOfClass:[NSDate class]]) {
        return Kind::Date;
    }
    @throw @"Property lists cannot contain an object of this class.";
}

std::uint32_t UidIn(NSDictionary* dictionary) {
    return static_cast<std::uint32_t>([[dictionary objectForKey:kUidKey] longLongValue]);
}

NSDictionary* MakeUid(std::uint32_t uid) {
    return @{kUidKey : [NSNumber numberWithUnsignedInt:uid]};
}

bool IsNegative(NSNumber* integer) {
    const bool isSigned = std::islower(static_cast<unsigned char>(*[integer objCType])) != 0;
    return isSigned && [integer longLongValue] < 0;
}

std::u16string TextOf(NSString* string) {
    std::u16string text([string length], u'\0');
    [string getCharacters:reinterpret_cast<unichar*>(text.data())
                    range:NSMakeRange(0, text.size())];
    return text;
}

std::map<std::u16string, id> EntriesOf(NSDictionary* dictionary) {
    std::map<std::u16string, id> entries;
    for (id key in dictionary) {
        if (![key isKindOfClass:[NSString class]]) {
            @throw @"Property lists can only have strings as keys of dictionaries.";
        }
        entries[TextOf(key)] = [dictionary objectForKey:key];
    }
    return entries;
}

Maker::Maker(NSPropertyListMutabilityOptions options)
    : mutableContainers_(options != NSPropertyListImmutable),
      mutableLeaves_((options & NSPropertyListMutableContainersAndLeaves) != 0) {}

NSString* Maker::Text(std::u16string_view text) const {
    NSString* string = [[(mutableLeaves_ ? [NSMutableString class] : [NSString class]) alloc]
        initWithCharacters:reinterpret_cast<const unichar*>(text.data())
                    length:text.size()];
    if (string != nil) {
        return [string autorelease];
    }
    // GNUstep makes no string with half a surrogate pair, but keeps one that is put in.
    NSMutableString* broken = [NSMutableString string];
    for (const char16_t unit : text) {
        [broken appendFormat:@"%C", static_cast<unichar>(unit)];
    }
    return mutableLeaves_ ? broken : [[broken copy] autorelease];
}

NSData* Maker::Data(std::string_view bytes) const {
    return [(mutableLeaves_ ? [NSMutableData class] : [NSData class]) dataWithBytes:bytes.data()
                                                                             length:bytes.size()];
}

NSArray* Maker::Array(const std::vector<id>& values) const {
    return [(mutableContainers_ ? [NSMutableArray class]
                                : [NSArray class]) arrayWithObjects:values.data()
                                                              count:values.size()];
}

NSDictionary* Maker::Dictionary(const std::vector<id>& keys, const std::vector<id>& values) const {
    return [(mutableContainers_ ? [NSMutableDictionary class]
                                : [NSDictionary class]) dictionaryWithObjects:values.data()
                                                                      forKeys:keys.data()
                                                                        count:values.size()];
}

NSDate* Maker::Date(double seconds) {
    return std::isnan(seconds) ? [[[KSUndefinedDate alloc] init] autorelease]
                               : [NSDate dateWithTimeIntervalSinceReferenceDate:seconds];
}

}  // namespace propertylist
