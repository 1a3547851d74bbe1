#pragma once

#include <AppKit/AppKit.h>

/// A flat orange button: ground orangeColor, white title, no border, no disabled look of its own.
/// Its cell is a QWINSButtonCellOrange.
@interface QWINSButtonOrange : NSButton

/// Gives the cell its colours and takes its border away.
- (void)setData;

/// Styles the button as the interface file has left it.
- (void)awakeFromNib;

/// Styles the button afresh, then draws it.
- (void)drawRect:(NSRect)rect;

@end
