#include "ui/QWINSButtonGray.h"

#include "ui/FlatButtons.h"

@implementation QWINSButtonGray

- (void)setData {
    const BOOL enabled = [self isEnabled];
    StyleFlatButton(self, enabled ? GrayButtonGround() : DisabledButtonGround(),
                    enabled ? [NSColor whiteColor] : DisabledButtonTitle());
}

- (void)awakeFromNib {
    [super awakeFromNib];
    [self setData];
}

- (void)drawRect:(NSRect)rect {
    [self setData];
    ClipToFlatButton([self bounds]);
    [super drawRect:rect];
}

@end
