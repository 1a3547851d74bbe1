// A scroller as on a Mac: on the right (Application.mm), a plain thin knob without arrows, on the
// window's own ground, and no line between it and what it scrolls.
#include <AppKit/AppKit.h>

namespace {

const CGFloat kWidth = 18;
const CGFloat kKnobWidth = 6;

}  // namespace

@implementation NSScrollView (MacLook)

- (void)mac_setVerticalScroller:(NSScroller*)scroller {
    [scroller setArrowsPosition:NSScrollerArrowsNone];
    [self mac_setVerticalScroller:scroller];
}

- (void)mac_drawRect:(NSRect)rect {
    if ([self borderType] != NSNoBorder) {
        [self mac_drawRect:rect];
    }
}

@end

@implementation NSScroller (MacLook)

+ (CGFloat)mac_scrollerWidth {
    return kWidth;
}

- (void)mac_drawRect:(NSRect)rect {
    [[[self window] backgroundColor] set];
    NSRectFill(rect);
    NSRect knob = [self rectForPart:NSScrollerKnob];
    knob.origin.x = NSMaxX(knob) - kKnobWidth;
    knob.size.width = kKnobWidth;
    const CGFloat radius = kKnobWidth / 2;
    [[NSColor colorWithDeviceWhite:0.6 alpha:1] set];
    [[NSBezierPath bezierPathWithRoundedRect:knob xRadius:radius yRadius:radius] fill];
}

@end
