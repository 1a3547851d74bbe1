#include "ui/QWINSButtonOrange.h"

#include "ui/QWIControlsUtils.h"

@implementation QWINSButtonOrange

- (void)setData {
    [self setBordered:NO];
    [[self cell] setBackgroundColor:[NSColor orangeColor]];
    [QWIControlsUtils SetButtonTextColor:self andColor:[NSColor whiteColor]];
}

- (void)awakeFromNib {
    [self setData];
}

- (void)drawRect:(NSRect)rect {
    [self setData];
    [super drawRect:rect];
}

@end
