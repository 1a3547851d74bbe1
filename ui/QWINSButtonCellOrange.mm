#include "ui/QWINSButtonCellOrange.h"

#include "ui/QWIControlsUtils.h"

@implementation QWINSButtonCellOrange

- (NSColor*)backgroundColor {
    return [self isHighlighted] ? [NSColor blackColor] : [super backgroundColor];
}

- (void)highlight:(BOOL)flag withFrame:(NSRect)cellFrame inView:(NSView*)controlView {
    [super highlight:flag withFrame:cellFrame inView:controlView];
    [self setBackgroundColor:flag ? [NSColor blackColor] : [NSColor orangeColor]];
    [QWIControlsUtils SetButtonTextColor:(NSButton*)[self controlView]
                                andColor:[NSColor whiteColor]];
}

@end
