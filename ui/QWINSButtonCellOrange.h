#pragma once

#include <AppKit/AppKit.h>

/// The cell of an orange button.
@interface QWINSButtonCellOrange : NSButtonCell

/// Black while the cell is highlighted, whatever was set; so the press stays visible although the
/// button sets its colours afresh each time it draws.
- (NSColor*)backgroundColor;

/// The inherited highlighting; then the ground is black while highlighted, else orange again, and
/// the title of the button is white.
- (void)highlight:(BOOL)flag withFrame:(NSRect)cellFrame inView:(NSView*)controlView;

@end
