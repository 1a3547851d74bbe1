#pragma once

#include <AppKit/AppKit.h>

/// The cell of a gray button.
@interface QWINSButtonCellGray : NSButtonCell

/// Black while the cell is highlighted, whatever was set; so the press stays visible although the
/// button sets its colours afresh each time it draws.
- (NSColor*)backgroundColor;

/// The inherited highlighting; then the ground is black while highlighted, else gray again, and the
/// title of the button is white.
- (void)highlight:(BOOL)flag withFrame:(NSRect)cellFrame inView:(NSView*)controlView;

/// The inherited drawing, except that a title in the system's colour for disabled controls, which
/// cannot be read on this ground, is drawn near-white.
/// @return the inherited result, the bounds of the title
- (NSRect)drawTitle:(NSAttributedString*)title withFrame:(NSRect)frame inView:(NSView*)controlView;

@end
