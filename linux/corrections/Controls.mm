// Buttons and labels, where GNUstep's look or answer differently from a Mac's:
//
//  - A button that Return presses gets the picture of a return key, which takes the title's room.
//  - A hidden button answers its key all the same; a Mac's does not.
//  - A label's text starts at the very edge of its frame; a Mac leaves 2 points.
//  - The focus is a line of black dots, which nobody sees on a dark button.
//  - A text view lays its text out when somebody moves it; until then it has no scroller.
#include <AppKit/AppKit.h>
#include <GNUstepGUI/GSTheme.h>

#include "linux/corrections/ApplicationParts.h"
#include "linux/corrections/Replacement.h"

namespace {

const CGFloat kLabelInset = 2;
const CGFloat kFocusInset = 3;

void (*setKeyEquivalent)(id, SEL, NSString*) = nullptr;
BOOL (*performKeyEquivalent)(id, SEL, NSEvent*) = nullptr;
void (*drawFocus)(id, SEL, NSRect, NSView*) = nullptr;
void (*setString)(id, SEL, NSString*) = nullptr;
NSRect (*textRect)(id, SEL, NSRect) = nullptr;

void SetKeyEquivalentOnly(NSButtonCell* self, SEL selector, NSString* key) {
    NSImage* image = [[self image] retain];
    NSImage* alternate = [[self alternateImage] retain];
    setKeyEquivalent(self, selector, key);
    [self setImage:image];
    [self setAlternateImage:alternate];
    [image release];
    [alternate release];
}

BOOL PerformIfVisible(NSButton* self, SEL selector, NSEvent* event) {
    return ![self isHiddenOrHasHiddenAncestor] && performKeyEquivalent(self, selector, event);
}

void DrawLightFocus(id /*self*/, SEL /*selector*/, NSRect frame, NSView* /*view*/) {
    [[NSColor colorWithDeviceWhite:1 alpha:0.5] set];
    NSFrameRectWithWidthUsingOperation(NSInsetRect(frame, kFocusInset, kFocusInset), 1,
                                       NSCompositeSourceOver);
}

void SetStringAndSize(NSTextView* self, SEL selector, NSString* string) {
    setString(self, selector, string);
    [self sizeToFit];
}

NSRect InsetTextRect(NSTextFieldCell* self, SEL selector, NSRect bounds) {
    const NSRect rect = textRect(self, selector, bounds);
    return [self isBezeled] || [self isBordered] ? rect : NSInsetRect(rect, kLabelInset, 0);
}

}  // namespace

void CorrectControls() {
    ReplaceMethod([NSButtonCell class], @selector(setKeyEquivalent:), SetKeyEquivalentOnly,
                  &setKeyEquivalent);
    ReplaceMethod([NSButton class], @selector(performKeyEquivalent:), PerformIfVisible,
                  &performKeyEquivalent);
    ReplaceMethod([GSTheme class], @selector(drawFocusFrame:view:), DrawLightFocus, &drawFocus);
    ReplaceMethod([NSTextView class], @selector(setString:), SetStringAndSize, &setString);
    ReplaceMethod([NSTextFieldCell class], @selector(drawingRectForBounds:), InsetTextRect,
                  &textRect);
}
