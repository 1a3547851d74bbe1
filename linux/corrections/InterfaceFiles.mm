// Interface files in Xcode's format, which GNUstep reads as they are, but
//  - with the plain system font in the place of the bold one,
//  - without an awakeFromNib to call the super class for,
//  - with a whole tree of the file left in memory after the look at which format it has, and
//  - with an exception where there is no file, for which a Mac only leaves out the window.
#include <AppKit/AppKit.h>
#include <GNUstepGUI/GSXibKeyedUnarchiver.h>

namespace {

NSString* const kFormat = @"com.apple.InterfaceBuilder3";

NSString* const kKindOfFont = @"metaFont";
NSString* const kBoldFont = @"systemBold";

}  // namespace

@implementation NSWindowController (MissingFiles)

- (void)mac_loadWindow {
    if ([self windowNibPath]) {
        [self mac_loadWindow];
    }
}

@end

@implementation NSFont (BoldFonts)

- (id)mac_initWithCoder:(NSCoder*)coder {
    NSFont* font = [self mac_initWithCoder:coder];
    if (![coder allowsKeyedCoding] || ![coder containsValueForKey:kKindOfFont] ||
        ![kBoldFont isEqual:[coder decodeObjectForKey:kKindOfFont]]) {
        return font;
    }
    NSFont* bold = [[NSFont boldSystemFontOfSize:[font pointSize]] retain];
    // NOLINTNEXTLINE(clang-analyzer-osx.cocoa.RetainCount): an initialiser in another's place
    [font release];
    return bold;
}

@end

@implementation NSObject (Awaking)

- (void)awakeFromNib {
}

@end

@implementation GSXibKeyedUnarchiver (Formats)

+ (BOOL)mac_checkXib5:(NSData*)data {
    NSData* format = [kFormat dataUsingEncoding:NSASCIIStringEncoding];
    const NSRange whole = NSMakeRange(0, [data length]);
    return [data rangeOfData:format options:0 range:whole].location != NSNotFound;
}

@end
