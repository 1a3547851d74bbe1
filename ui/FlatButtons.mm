#include "ui/FlatButtons.h"

#include "ui/QWIControlsUtils.h"

namespace {

const CGFloat kCornerRadius = 4;

NSColor* Gray(CGFloat brightness) {
    return [NSColor colorWithDeviceRed:brightness green:brightness blue:brightness alpha:1];
}

}  // namespace

void StyleFlatButton(NSButton* button, NSColor* ground, NSColor* title) {
    [button setBordered:NO];
    [[button cell] setBackgroundColor:ground];
    [QWIControlsUtils SetButtonTextColor:button andColor:title];
}

void ClipToFlatButton(NSRect bounds) {
    [[NSBezierPath bezierPathWithRoundedRect:bounds xRadius:kCornerRadius
                                     yRadius:kCornerRadius] addClip];
}

void ColourHighlightedCell(NSButtonCell* cell, BOOL highlighted, NSColor* ground) {
    [cell setBackgroundColor:highlighted ? [NSColor blackColor] : ground];
    [QWIControlsUtils SetButtonTextColor:static_cast<NSButton*>([cell controlView])
                                andColor:[NSColor whiteColor]];
}

NSColor* GrayButtonGround() {
    return Gray(0.3f);
}

NSColor* DisabledButtonGround() {
    return Gray(0.6f);
}

NSColor* DisabledButtonTitle() {
    return Gray(0.93f);
}

NSColor* OrangeButtonGround() {
    return [NSColor orangeColor];
}
