// Interface files in Xcode's format, which GNUstep reads as they are, but
//  - with the plain system font in the place of the bold one,
//  - without an awakeFromNib to call the super class for, and
//  - with an exception where there is no file, for which a Mac only leaves out the window.
#include <AppKit/AppKit.h>

namespace {

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
