// A scroller as on a Mac: on the right (Application.mm), a plain thin knob without arrows, and no
// line between it and what it scrolls.
#include <AppKit/AppKit.h>

#include "linux/corrections/ApplicationParts.h"
#include "linux/corrections/Replacement.h"

namespace {

const CGFloat kWidth = 18;
const CGFloat kKnobWidth = 6;

void (*setVerticalScroller)(id, SEL, NSScroller*) = nullptr;
void (*drawScrollView)(id, SEL, NSRect) = nullptr;
CGFloat (*scrollerWidth)(id, SEL) = nullptr;
void (*drawScroller)(id, SEL, NSRect) = nullptr;

void SetScrollerWithoutArrows(id self, SEL selector, NSScroller* scroller) {
    [scroller setArrowsPosition:NSScrollerArrowsNone];
    setVerticalScroller(self, selector, scroller);
}

void DrawBorder(NSScrollView* self, SEL selector, NSRect rect) {
    if ([self borderType] != NSNoBorder) {
        drawScrollView(self, selector, rect);
    }
}

CGFloat Width(id /*self*/, SEL /*selector*/) {
    return kWidth;
}

void DrawKnob(NSScroller* self, SEL /*selector*/, NSRect /*rect*/) {
    NSRect knob = [self rectForPart:NSScrollerKnob];
    knob.origin.x = NSMaxX(knob) - kKnobWidth;
    knob.size.width = kKnobWidth;
    const CGFloat radius = kKnobWidth / 2;
    [[NSColor colorWithDeviceWhite:0.6 alpha:1] set];
    [[NSBezierPath bezierPathWithRoundedRect:knob xRadius:radius yRadius:radius] fill];
}

}  // namespace

void CorrectScrollers() {
    ReplaceMethod([NSScrollView class], @selector(setVerticalScroller:), SetScrollerWithoutArrows,
                  &setVerticalScroller);
    ReplaceMethod([NSScrollView class], @selector(drawRect:), DrawBorder, &drawScrollView);
    ReplaceMethod(object_getClass([NSScroller class]), @selector(scrollerWidth), Width,
                  &scrollerWidth);
    ReplaceMethod([NSScroller class], @selector(drawRect:), DrawKnob, &drawScroller);
}
