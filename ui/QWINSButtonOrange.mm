#include "ui/QWINSButtonOrange.h"

#include "ui/FlatButtons.h"

@implementation QWINSButtonOrange

- (void)setData {
    StyleFlatButton(self, OrangeButtonGround(), [NSColor whiteColor]);
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
