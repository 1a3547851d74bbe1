#include "ui/QWINSButtonGray.h"

#include "ui/QWIControlsUtils.h"
#include "ui/QWINSButtonColors.h"

@implementation QWINSButtonGray

- (void)setData {
    const BOOL enabled = [self isEnabled];
    [self setBordered:NO];
    [[self cell] setBackgroundColor:enabled ? GrayButtonGround() : DisabledButtonGround()];
    [QWIControlsUtils SetButtonTextColor:self
                                andColor:enabled ? [NSColor whiteColor] : DisabledButtonTitle()];
}

- (void)awakeFromNib {
    [self setData];
}

- (void)drawRect:(NSRect)rect {
    [self setData];
    [super drawRect:rect];
}

@end
