#pragma once

#include <AppKit/AppKit.h>

/// Styling of texts in controls. Class operations only. A nil text counts as an empty one, and a
/// nil control or colour leaves everything as it is.
@interface QWIControlsUtils : NSObject

/// Gives the button the text as its title: centred, in the colour, without a shadow, and with an
/// ellipsis where it is too long.
+ (void)SetButtonTitleFor:(NSButton*)button toString:(NSString*)text withColor:(NSColor*)color;

/// Shows the text in the text view and makes the colour its text colour.
+ (void)SetTextViewTextFor:(NSTextView*)textView toString:(NSString*)text withColor:(NSColor*)color;

/// Recolours the button's title, whole and without a shadow; its other attributes stay.
+ (void)SetButtonTextColor:(NSButton*)button andColor:(NSColor*)color;

@end
