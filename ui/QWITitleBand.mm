#include "ui/QWITitleBand.h"

@implementation QWITitleBand

- (BOOL)isOpaque {
    return YES;
}

- (void)drawRect:(NSRect)rect {
    [[NSColor blackColor] set];
    NSRectFill(rect);
}

@end
