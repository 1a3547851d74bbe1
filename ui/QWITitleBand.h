#pragma once

#include <AppKit/AppKit.h>

/// The ground of an alert's title: plain black, because a caller chooses the title's colour, and
/// the bright green and red that are in use can be read on nothing lighter (4.5 to 1 and more). A
/// thin gray edge sets it off from a black screen.
@interface QWITitleBand : NSView

/// YES: nothing behind it shows.
- (BOOL)isOpaque;
/// Fills the ground and draws the edge.
- (void)drawRect:(NSRect)rect;

@end
