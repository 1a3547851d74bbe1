#pragma once

#include <AppKit/AppKit.h>

/// Lets every window of the process take the keyboard, whatever its style: AppKit gives it only to
/// windows with a title bar or a resize bar. Each operation answers YES. Meant: these take the
/// place of the window's own.
@interface NSWindow (QWINSWindow)

- (BOOL)canBecomeKeyWindow;
- (BOOL)acceptsFirstResponder;
- (BOOL)becomeFirstResponder;
- (BOOL)resignFirstResponder;

@end
