// A dictionary of texts prints an entry a line, sorted by key; GNUstep prints it on one line.
#include <Foundation/Foundation.h>

namespace {

/// In quotation marks where it needs some, as GNUstep puts it between the parentheses of an array.
NSString* Quoted(NSString* text) {
    NSString* array = [[NSArray arrayWithObject:text] description];
    return [array substringWithRange:NSMakeRange(1, [array length] - 2)];
}

}  // namespace

@implementation NSDictionary (MacDescription)

- (NSString*)mac_descriptionWithLocale:(id)locale {
    (void)locale;
    NSMutableString* lines = [NSMutableString string];
    for (NSString* key in [[self allKeys] sortedArrayUsingSelector:@selector(compare:)]) {
        [lines appendFormat:@"    %@ = %@;\n", Quoted(key), Quoted([self objectForKey:key])];
    }
    return [NSString stringWithFormat:@"{\n%@}", lines];
}

@end
