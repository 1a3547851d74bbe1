#include "ui/QWINSButtonCellGray.h"

#include "ui/FlatButtons.h"

namespace {

NSString* const kSystemCatalog = @"System";
NSString* const kDisabledTextColor = @"disabledControlTextColor";

// Only a colour of a catalogue may be asked for its names.
BOOL IsDisabledTextColor(NSColor* color) {
    return [[color colorSpaceName] isEqualToString:NSNamedColorSpace] &&
           [[color catalogNameComponent] isEqualToString:kSystemCatalog] &&
           [[color colorNameComponent] isEqualToString:kDisabledTextColor];
}

NSAttributedString* ReadableTitle(NSAttributedString* title) {
    if ([title length] == 0) {
        return title;
    }
    NSDictionary* attributes = [title attributesAtIndex:0 effectiveRange:NULL];
    if (!IsDisabledTextColor([attributes objectForKey:NSForegroundColorAttributeName])) {
        return title;
    }
    NSMutableDictionary* readable = [[attributes mutableCopy] autorelease];
    [readable setObject:DisabledButtonTitle() forKey:NSForegroundColorAttributeName];
    return [[[NSAttributedString alloc] initWithString:[title string]
                                            attributes:readable] autorelease];
}

}  // namespace

@implementation QWINSButtonCellGray

- (NSColor*)backgroundColor {
    return [self isHighlighted] ? [NSColor blackColor] : [super backgroundColor];
}

- (void)highlight:(BOOL)flag withFrame:(NSRect)cellFrame inView:(NSView*)controlView {
    [super highlight:flag withFrame:cellFrame inView:controlView];
    ColourHighlightedCell(self, flag, GrayButtonGround());
}

- (NSRect)drawTitle:(NSAttributedString*)title withFrame:(NSRect)frame inView:(NSView*)controlView {
    return [super drawTitle:ReadableTitle(title) withFrame:frame inView:controlView];
}

@end
