// Lower case by Unicode's rules: the sigma at a word's end, the dotted capital I, letters beyond
// the BMP. GNUstep's tables lack them.
#include <Foundation/Foundation.h>
#include <glib.h>

#include <memory>

namespace {

/// @return nil for text that UTF-8 cannot hold
NSString* Lowered(NSString* text) {
    NSMutableArray* parts = [NSMutableArray array];
    // A NUL character would end the text for GLib.
    const unichar nul = 0;
    NSString* separator = [NSString stringWithCharacters:&nul length:1];
    for (NSString* part in [text componentsSeparatedByString:separator]) {
        NSData* bytes = [part dataUsingEncoding:NSUTF8StringEncoding];
        if ([bytes length] == 0 && [part length] > 0) {
            return nil;
        }
        const std::unique_ptr<char, decltype(&g_free)> lowered(
            g_utf8_strdown(static_cast<const char*>([bytes bytes]),
                           static_cast<gssize>([bytes length])),
            &g_free);
        [parts addObject:[NSString stringWithUTF8String:lowered.get()]];
    }
    return [parts componentsJoinedByString:separator];
}

}  // namespace

@implementation NSString (LowerCase)

- (NSString*)mac_lowercaseString {
    NSString* lowered = Lowered(self);
    return lowered != nil ? lowered : [self mac_lowercaseString];
}

@end
