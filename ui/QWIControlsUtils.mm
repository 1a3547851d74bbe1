#include "ui/QWIControlsUtils.h"

namespace {

// Clears the shadow that a theme may put under a title: a shadow in a colour that nobody sees.
NSShadow* InvisibleShadow() {
    NSShadow* shadow = [[[NSShadow alloc] init] autorelease];
    [shadow setShadowColor:[NSColor colorWithDeviceRed:1 green:1 blue:1 alpha:0]];
    return shadow;
}

NSParagraphStyle* CentredParagraph() {
    NSMutableParagraphStyle* style = [[[NSMutableParagraphStyle alloc] init] autorelease];
    [style setAlignment:NSCenterTextAlignment];
    [style setLineBreakMode:NSLineBreakByTruncatingTail];
    return style;
}

}  // namespace

@implementation QWIControlsUtils

+ (void)SetButtonTitleFor:(NSButton*)button toString:(NSString*)text withColor:(NSColor*)color {
    if (!color) {
        return;
    }
    NSMutableAttributedString* title =
        [[[NSMutableAttributedString alloc] initWithString:text ? text : @""] autorelease];
    const NSRange whole = NSMakeRange(0, [title length]);
    [title addAttribute:NSForegroundColorAttributeName value:color range:whole];
    [title addAttribute:NSParagraphStyleAttributeName value:CentredParagraph() range:whole];
    [title addAttribute:NSShadowAttributeName value:InvisibleShadow() range:whole];
    [button setAttributedTitle:title];
}

+ (void)SetTextViewTextFor:(NSTextView*)textView
                  toString:(NSString*)text
                 withColor:(NSColor*)color {
    if (!color) {
        return;
    }
    NSDictionary* attributes = [NSDictionary dictionaryWithObject:color
                                                           forKey:NSForegroundColorAttributeName];
    NSAttributedString* coloured =
        [[[NSAttributedString alloc] initWithString:text ? text : @""
                                         attributes:attributes] autorelease];
    [textView setTextColor:color];
    [textView setString:[coloured string]];
}

+ (void)SetButtonTextColor:(NSButton*)button andColor:(NSColor*)color {
    NSAttributedString* current = [button attributedTitle];
    if (!current || !color) {
        return;
    }
    NSMutableAttributedString* title = [[current mutableCopy] autorelease];
    const NSRange whole = NSMakeRange(0, [title length]);
    [title addAttribute:NSForegroundColorAttributeName value:color range:whole];
    [title addAttribute:NSShadowAttributeName value:InvisibleShadow() range:whole];
    [button setAttributedTitle:title];
}

@end
