// Apple prints an error with its domain, its code and what is known about it; GNUstep only with its
// text. The program logs descriptions, so a log line tells the cause.
#include <Foundation/Foundation.h>

#include <cstring>

namespace {

/// The user info, sorted by key so that equal errors print alike. An inner error stands in braces,
/// without the address that Apple puts before it: no two runs would log the same line.
NSString* UserInfoText(NSDictionary* userInfo) {
    NSMutableArray* entries = [NSMutableArray array];
    for (NSString* key in [[userInfo allKeys] sortedArrayUsingSelector:@selector(compare:)]) {
        // The text already stands before the user info.
        if ([key isEqual:NSLocalizedDescriptionKey]) {
            continue;
        }
        id value = [userInfo objectForKey:key];
        NSString* format = [value isKindOfClass:[NSError class]] ? @"%@={%@}" : @"%@=%@";
        [entries addObject:[NSString stringWithFormat:format, key, value]];
    }
    return [entries componentsJoinedByString:@", "];
}

}  // namespace

@implementation NSError (AppleDescription)

- (NSString*)mac_description {
    NSString* info = UserInfoText([self userInfo]);
    NSString* head = [NSString stringWithFormat:@"Error Domain=%@ Code=%ld \"%@\"", [self domain],
                                                (long)[self code], [self localizedDescription]];
    return [info length] == 0 ? head : [head stringByAppendingFormat:@" UserInfo={%@}", info];
}

- (NSString*)mac_localizedDescription {
    NSString* text = [[self userInfo] objectForKey:NSLocalizedDescriptionKey];
    if (text != nil) {
        return text;
    }
    if ([[self domain] isEqual:NSPOSIXErrorDomain]) {
        return [NSString stringWithFormat:@"The operation couldn’t be completed. %s",
                                          std::strerror(static_cast<int>([self code]))];
    }
    return [NSString stringWithFormat:@"The operation couldn’t be completed. (%@ error %ld.)",
                                      [self domain], (long)[self code]];
}

@end
