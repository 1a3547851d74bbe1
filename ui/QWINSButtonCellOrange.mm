#include "ui/QWINSButtonCellOrange.h"

#include "ui/FlatButtons.h"

@implementation QWINSButtonCellOrange

- (NSColor*)backgroundColor {
    return [self isHighlighted] ? [NSColor blackColor] : [super backgroundColor];
}

- (void)highlight:(BOOL)flag withFrame:(NSRect)cellFrame inView:(NSView*)controlView {
    [super highlight:flag withFrame:cellFrame inView:controlView];
    ColourHighlightedCell(self, flag, OrangeButtonGround());
}

@end
