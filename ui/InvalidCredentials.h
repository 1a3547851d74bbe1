#pragma once

#include <AppKit/AppKit.h>

/// Tells the user that administrator rights were refused: shows the alert "Invalid credentials",
/// above other windows, until it is closed. Main thread only. Logs what QWIAlertUtils logs where it
/// cannot show an alert.
/// @param titleColor  of the alert's title, "NOTICE!"
void ShowInvalidCredentials(NSColor* titleColor);
