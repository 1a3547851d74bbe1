#pragma once

#include <AppKit/AppKit.h>

/// Alerts that are built, shown and answered in one call. Class operations only; nothing is kept
/// from one call to the next. Main thread only.
///
/// Each form of `QWIAlertWithMessage…` blocks its caller until the alert is closed, and returns the
/// AlertResult that closed it: -1 without a button, 0 OK, 1 Cancel, 2 Ignore. The styling
/// operations are those of QWIControlsUtils.
///
/// Where nobody can answer, the result is -1 at once, with one line in the log:
///  - without a display, the warning "No display for the alert: %@", with the message;
///  - without the interface file, the failure "No interface file for the alert: %@", with its name.
@interface QWIAlertUtils : NSObject

/// The whole choice. A button without a text stays hidden. What becomes of an Ignore text stands
/// with QWStyleAlert `setButtonsTexts:::`.
/// @param frame of the window, in points; if all four values are zero, the interface file's frame
///     stays, but for the room that a message needs below a title and a large text. The window is centred on the screen in either case.
/// @param nib name of the interface file, without extension
+ (int)QWIAlertWithMessage:(NSString*)message
                     Title:(NSString*)title
                TitleColor:(NSColor*)titleColor
                   BigText:(NSString*)bigText
                    OkText:(NSString*)okText
                IsOKOrange:(BOOL)isOkOrange
                CancelText:(NSString*)cancelText
            IsCancelOrange:(BOOL)isCancelOrange
                IgnoreText:(NSString*)ignoreText
            IsIgnoreOrange:(BOOL)isIgnoreOrange
                    Center:(BOOL)center
                 withFrame:(NSRect)frame
                    andNib:(NSString*)nib;

/// One plain OK button, in the frame of the interface file.
+ (int)QWIAlertWithMessage:(NSString*)message
                     Title:(NSString*)title
                    OkText:(NSString*)okText
                IsCentered:(BOOL)center
                   BigText:(NSString*)bigText
                TitleColor:(NSColor*)titleColor
                   NibName:(NSString*)nib;

/// The same, at window level 14 instead of 1000.
/// @param nib ignored. Meant: always the same file, "QWSyleAlert", which is spelled so.
+ (int)QWIAlertWithMessageTopMost:(NSString*)message
                            Title:(NSString*)title
                           OkText:(NSString*)okText
                       IsCentered:(BOOL)center
                          BigText:(NSString*)bigText
                       TitleColor:(NSColor*)titleColor
                          NibName:(NSString*)nib;

/// As QWIControlsUtils' operations of the same names.
+ (void)SetButtonTitleFor:(NSButton*)button toString:(NSString*)text withColor:(NSColor*)color;
+ (void)SetTextViewTextFor:(NSTextView*)textView toString:(NSString*)text withColor:(NSColor*)color;
+ (void)SetButtonTextColor:(NSButton*)button andColor:(NSColor*)color;

@end
