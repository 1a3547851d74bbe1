#pragma once

#include <AppKit/AppKit.h>

/// The colours of the flat buttons, in one place. Device colours, opaque.

/// The ground of a gray button, about 76 of 255.
inline NSColor* GrayButtonGround() {
    return [NSColor colorWithDeviceRed:0.3f green:0.3f blue:0.3f alpha:1];
}

/// The ground of a gray button that is disabled, about 153 of 255.
inline NSColor* DisabledButtonGround() {
    return [NSColor colorWithDeviceRed:0.6f green:0.6f blue:0.6f alpha:1];
}

/// The title of a gray button that is disabled, about 237 of 255.
inline NSColor* DisabledButtonTitle() {
    return [NSColor colorWithDeviceRed:0.93f green:0.93f blue:0.93f alpha:1];
}
