// Dictionaries and arrays print an entry a line, four blanks deeper at each level; GNUstep prints
// them on one line.
#include <Foundation/Foundation.h>

namespace {

NSString* Printed(id value, NSUInteger level);

NSString* Indent(NSUInteger level) {
    return [@"" stringByPaddingToLength:4 * level withString:@" " startingAtIndex:0];
}

NSString* InBrackets(NSString* open, NSString* entries, NSString* close, NSUInteger level) {
    return [NSString
        stringWithFormat:@"%@%@\n%@%@%@", Indent(level), open, entries, Indent(level), close];
}

/// A value by itself, in quotation marks where it needs some.
NSString* PrintedLeaf(id value);

NSString* Printed(id value, NSUInteger level) {
    NSString* indent = Indent(level + 1);
    NSMutableArray* lines = [NSMutableArray array];
    if ([value isKindOfClass:[NSArray class]]) {
        for (id element in value) {
            [lines addObject:[indent stringByAppendingString:Printed(element, level + 1)]];
        }
        NSString* entries = [lines componentsJoinedByString:@",\n"];
        return InBrackets(@"(", [lines count] == 0 ? @"" : [entries stringByAppendingString:@"\n"],
                          @")", level);
    }
    if ([value isKindOfClass:[NSDictionary class]]) {
        for (id key in [[value allKeys] sortedArrayUsingSelector:@selector(compare:)]) {
            [lines
                addObject:[NSString stringWithFormat:@"%@%@ = %@;\n", indent, PrintedLeaf(key),
                                                     Printed([value objectForKey:key], level + 1)]];
        }
        return InBrackets(@"{", [lines componentsJoinedByString:@""], @"}", level);
    }
    return PrintedLeaf(value);
}

}  // namespace

@implementation NSArray (MacDescription)

- (NSString*)mac_description {
    return Printed(self, 0);
}

- (NSString*)mac_descriptionWithLocale:(id)locale {
    (void)locale;
    return Printed(self, 0);
}

/// What GNUstep prints between the parentheses of an array of one.
- (NSString*)onlyElement {
    NSString* text = [self mac_descriptionWithLocale:nil];
    return [text substringWithRange:NSMakeRange(1, [text length] - 2)];
}

@end

@implementation NSDictionary (MacDescription)

- (NSString*)mac_description {
    return Printed(self, 0);
}

- (NSString*)mac_descriptionWithLocale:(id)locale {
    (void)locale;
    return Printed(self, 0);
}

@end

namespace {

NSString* PrintedLeaf(id value) {
    return [[NSArray arrayWithObject:value] onlyElement];
}

}  // namespace
