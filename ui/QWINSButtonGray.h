#pragma once

#include <AppKit/AppKit.h>

/// A flat gray button: ground (0.3, 0.3, 0.3), white title, no border. While the button is disabled
/// the ground is (0.6, 0.6, 0.6) and the title (0.93, 0.93, 0.93). Its cell is a
/// QWINSButtonCellGray.
@interface QWINSButtonGray : NSButton

/// Gives the cell its colours, by whether the button is enabled, and takes its border away.
- (void)setData;

/// Styles the button as the interface file has left it.
- (void)awakeFromNib;

/// Styles the button afresh, then draws it.
- (void)drawRect:(NSRect)rect;

@end
