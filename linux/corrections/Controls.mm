// Buttons and labels, where GNUstep's look or answer differently from a Mac's:
//
//  - A button that Return presses gets the picture of a return key, which takes the title's room.
//  - A hidden button answers its key all the same, and one that Return presses does not answer the
//    keypad's Enter; a Mac's do the opposite.
//  - Escape ends the modal run of any window; a Mac's hands it on like any other key.
//  - A label's text starts at the very edge of its frame; a Mac leaves 2 points.
//  - The focus is a line of black dots, which nobody sees on a dark button.
//  - A text view lays its text out when somebody moves it; until then it has no scroller.
#include <AppKit/AppKit.h>
#include <GNUstepGUI/GSTheme.h>

namespace {

const unichar kEscape = 0x1B;
const CGFloat kLabelInset = 2;
const CGFloat kFocusInset = 3;

BOOL IsKey(NSEvent* event, unichar key) {
    NSString* characters = [event characters];
    return [characters length] == 1 && [characters characterAtIndex:0] == key;
}

}  // namespace

@implementation NSButtonCell (MacLook)

- (void)mac_setKeyEquivalent:(NSString*)key {
    NSImage* image = [[self image] retain];
    NSImage* alternate = [[self alternateImage] retain];
    [self mac_setKeyEquivalent:key];
    [self setImage:image];
    [self setAlternateImage:alternate];
    [image release];
    [alternate release];
}

@end

@implementation NSButton (MacKeys)

- (BOOL)mac_performKeyEquivalent:(NSEvent*)event {
    if ([self isHiddenOrHasHiddenAncestor]) {
        return NO;
    }
    if ([[self keyEquivalent] isEqualToString:@"\r"] && IsKey(event, NSEnterCharacter)) {
        [self performClick:self];
        return YES;
    }
    return [self mac_performKeyEquivalent:event];
}

@end

@implementation NSWindow (MacKeys)

- (void)mac_keyDown:(NSEvent*)event {
    if (IsKey(event, kEscape)) {
        [super keyDown:event];
    } else {
        [self mac_keyDown:event];
    }
}

@end

@implementation GSTheme (MacLook)

- (void)mac_drawFocusFrame:(NSRect)frame view:(NSView*)view {
    (void)view;
    [[NSColor colorWithDeviceWhite:1 alpha:0.5] set];
    NSFrameRectWithWidthUsingOperation(NSInsetRect(frame, kFocusInset, kFocusInset), 1,
                                       NSCompositeSourceOver);
}

@end

@implementation NSTextView (MacLayout)

- (void)setString:(NSString*)string {
    [super setString:string];
    [self sizeToFit];
}

@end

@implementation NSTextFieldCell (MacLayout)

- (NSRect)drawingRectForBounds:(NSRect)bounds {
    const NSRect rect = [super drawingRectForBounds:bounds];
    return [self isBezeled] || [self isBordered] ? rect : NSInsetRect(rect, kLabelInset, 0);
}

@end
