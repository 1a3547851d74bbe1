#pragma once

#include <AppKit/AppKit.h>

// What the gray and the orange buttons share: functions, as their classes are AppKit's own
// children.

/// Gives the button's cell its ground and its title a colour, and takes the border away.
void StyleFlatButton(NSButton* button, NSColor* ground, NSColor* title);

/// Rounds what is drawn next in these bounds.
void ClipToFlatButton(NSRect bounds);

/// After the inherited highlighting: the ground is black while highlighted, else `ground` again,
/// and the title of the cell's button is white.
void ColourHighlightedCell(NSButtonCell* cell, BOOL highlighted, NSColor* ground);

/// The colours. Device colours, opaque.
NSColor* GrayButtonGround();      ///< about 76 of 255
NSColor* DisabledButtonGround();  ///< of a gray button, about 153 of 255
NSColor* DisabledButtonTitle();   ///< of a gray button, about 237 of 255
NSColor* OrangeButtonGround();
