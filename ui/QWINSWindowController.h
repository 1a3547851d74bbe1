#pragma once

#include <AppKit/AppKit.h>

#include "ui/NSWindow+QWINSWindow.h"

/// A window controller that can bring its window to the middle of the screen. It adds no state.
@interface QWINSWindowController : NSWindowController

/// Moves the window so that its origin is half of what the screen is wider and higher than it, in
/// points. Meant: the screen's own origin is not added. A missing window or screen counts as a zero
/// frame.
- (void)centerWindowOnScreen;

/// Activates the application, centres the window, makes it the key window and orders it front.
- (void)presentWindow;

/// The window's delegate message; does nothing here.
- (void)windowWillClose:(NSNotification*)notification;

@end
