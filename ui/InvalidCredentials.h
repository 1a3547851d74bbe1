#pragma once

#include <AppKit/AppKit.h>

/// Tells the user that administrator rights were refused: shows the alert "Invalid credentials",
/// above other windows, until it is closed. Main thread only.
/// @param titleColor  of the alert's title, "NOTICE!"
void ShowInvalidCredentials(NSColor* titleColor);
