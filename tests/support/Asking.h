#pragma once

#include <AppKit/AppKit.h>

#include <functional>
#include <string>

#include "tests/support/DesktopUser.h"
#include "ui/QWStyleAlert.h"

/// What a test asks: everything that the longest form of the factory takes.
struct Question {
    NSString* message = @"The disk is full.";
    NSString* title = @"Attention";
    NSColor* titleColor = [NSColor whiteColor];
    NSString* bigText = @"";
    NSString* ok = @"OK";
    BOOL isOkOrange = NO;
    NSString* cancel = @"Cancel";
    BOOL isCancelOrange = NO;
    NSString* ignore = @"Ignore";
    BOOL isIgnoreOrange = NO;
    BOOL center = YES;
    NSRect frame = NSZeroRect;
    NSString* nib = @"QWSyleAlert";
};

/// Asks by the factory's longest form.
int Ask(const Question& question);

/// Asks, while a user answers on a thread of their own; returns after both.
int AskUser(DesktopUser& user, const std::function<int()>& ask,
            const std::function<void()>& answer);

/// Asks, and as soon as the alert runs looks at it and closes it, on this thread. The result of the
/// alert is the return value.
int AskAndLook(const std::function<int()>& ask, const std::function<void(QWStyleAlert*)>& look);

/// An outlet of an alert.
NSButton* Button(QWStyleAlert* alert, NSString* outlet);
NSTextView* MessageView(QWStyleAlert* alert);

/// An alert in its initial state, autoreleased.
QWStyleAlert* NewAlert(NSString* nib = @"QWSyleAlert");

std::string Text(NSString* text);
