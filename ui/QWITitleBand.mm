#include "ui/QWITitleBand.h"

namespace {

const CGFloat kEdgeGray = 0.36;  // 3 to 1 on black

}  // namespace

@implementation QWITitleBand

- (BOOL)isOpaque {
    return YES;
}

- (void)drawRect:(NSRect)rect {
    [[NSColor blackColor] set];
    NSRectFill(rect);
    [[NSColor colorWithDeviceWhite:kEdgeGray alpha:1] set];
    NSRect edge = [self bounds];
    edge.size.height += 1;  // none at the bottom, where the band is on the window's light ground
    edge.origin.y -= 1;
    NSFrameRect(edge);
}

@end
