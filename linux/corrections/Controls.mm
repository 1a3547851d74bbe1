// Buttons and labels, where GNUstep's look or answer differently from a Mac's:
//
//  - A button that Return presses gets the picture of a return key, which takes the title's room.
//  - A hidden button answers its key all the same, and one that Return presses does not answer the
//    keypad's Enter; a Mac's do the opposite.
//  - Escape ends the modal run of any window; a Mac's hands it on like any other key.
//  - A label's text starts at the very edge of its frame; a Mac leaves 2 points.
//  - The focus is a line of black dots, which nobody sees on a dark button: here it is white, or
//    black on a light one.
//  - A text that ends in an ellipsis where it is too long runs out of its frame.
//  - A text view lays its text out when somebody moves it; until then it has no scroller.
#include <AppKit/AppKit.h>
#include <GNUstepGUI/GSTheme.h>

namespace {

const unichar kEscape = 0x1B;
const CGFloat kLabelInset = 2;
const CGFloat kFocusInset = 3;
const CGFloat kTitleInset = 2;

BOOL IsKey(NSEvent* event, unichar key) {
    NSString* characters = [event characters];
    return [characters length] == 1 && [characters characterAtIndex:0] == key;
}

BOOL IsLight(NSColor* color) {
    return [[color colorUsingColorSpaceName:NSDeviceWhiteColorSpace] whiteComponent] > 0.45;
}

BOOL Ends(NSAttributedString* text) {
    NSParagraphStyle* style = [text attribute:NSParagraphStyleAttributeName
                                      atIndex:0
                               effectiveRange:NULL];
    return [style lineBreakMode] == NSLineBreakByTruncatingTail;
}

NSAttributedString* Shortened(NSAttributedString* text, CGFloat width) {
    NSMutableAttributedString* shorter = [[text mutableCopy] autorelease];
    for (NSUInteger kept = [text length]; kept > 0 && [shorter size].width > width;) {
        kept = [[text string] rangeOfComposedCharacterSequenceAtIndex:kept - 1].location;
        [shorter replaceCharactersInRange:NSMakeRange(kept, [shorter length] - kept)
                               withString:@"\u2026"];
    }
    return shorter;
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
    NSColor* ground = [view isKindOfClass:[NSButton class]]
                          ? [[static_cast<NSButton*>(view) cell] backgroundColor]
                          : [[view window] backgroundColor];
    [IsLight(ground) ? [NSColor blackColor] : [NSColor whiteColor] set];
    NSFrameRect(NSInsetRect(frame, kFocusInset, kFocusInset));
}

@end

@implementation NSCell (MacLayout)

- (void)mac__drawAttributedText:(NSAttributedString*)text inFrame:(NSRect)frame {
    const BOOL ends = [text length] > 0 && Ends(text);
    [self mac__drawAttributedText:ends ? Shortened(text, NSWidth(frame) - 2 * kTitleInset) : text
                          inFrame:frame];
}

@end

@implementation NSTextView (MacLayout)

- (void)setString:(NSString*)string {
    [super setString:string];
    [self sizeToFit];
}

@end

@implementation NSTextFieldCell (MacLayout)

- (NSAttributedString*)mac__drawAttributedString {
    NSAttributedString* text = [self mac__drawAttributedString];
    const CGFloat width = NSWidth([self titleRectForBounds:[[self controlView] bounds]]);
    return [self lineBreakMode] == NSLineBreakByTruncatingTail ? Shortened(text, width) : text;
}

- (NSRect)drawingRectForBounds:(NSRect)bounds {
    const NSRect rect = [super drawingRectForBounds:bounds];
    return [self isBezeled] || [self isBordered] ? rect : NSInsetRect(rect, kLabelInset, 0);
}

@end
