#include "ui/QWIAlertUtils.h"

#include "logging/NSLogger.h"
#include "platform/GraphicSession.h"
#include "ui/QWIControlsUtils.h"
#include "ui/QWStyleAlert.h"

namespace {

NSString* const kTopMostNib = @"QWSyleAlert";  // meant: always the same file
const NSInteger kTopMostLevel = 14;

struct ButtonSpec {
    NSString* text;
    BOOL isOrange;
};

struct AlertContent {
    NSString* message;
    NSString* title;
    NSColor* titleColor;
    NSString* bigText;
    ButtonSpec ok;
    ButtonSpec cancel;
    ButtonSpec ignore;
    BOOL center;
};

// A plain executable has no application until it asks for one, and takes no keyboard until it says
// that it shows windows.
BOOL HasDisplay() {
    if (!HasGraphicSession()) {
        return NO;
    }
    NSApplication* application = [NSApplication sharedApplication];
    [application setActivationPolicy:NSApplicationActivationPolicyAccessory];
    [application activateIgnoringOtherApps:YES];
    return application != nil;
}

// An alert in its initial state, or nil, with a line in the log, if nobody could answer it. The
// window is loaded here: loading it resets the state.
QWStyleAlert* LoadAlert(NSString* nib, NSString* message) {
    if (!HasDisplay()) {
        [NSLogger LogWarning:@"No display for the alert: %@", message];
        return nil;
    }
    QWStyleAlert* alert =
        [[[QWStyleAlert alloc] initWithWindowNibName:nib ? nib : @""] autorelease];
    if (![alert window]) {
        [NSLogger LogFailure:@"No interface file for the alert: %@", nib];
        return nil;
    }
    return alert;
}

void Fill(QWStyleAlert* alert, const AlertContent& content) {
    [alert setAlertText:content.message];
    [alert setOkButtonIsOrange:content.ok.isOrange];
    [alert setCancelButtonIsOrange:content.cancel.isOrange];
    [alert setIgnoreButtonIsOrange:content.ignore.isOrange];
    [alert setButtonsTexts:content.ok.text:content.cancel.text:content.ignore.text];
    [alert centerButtons:content.center];
    if (content.titleColor) {
        [[alert titleTField] setTextColor:content.titleColor];
    }
    [[alert bigTextTField] setStringValue:content.bigText ? content.bigText : @""];
    [alert setTitleText:content.title];
}

int Run(QWStyleAlert* alert) {
    NSWindow* window = [alert window];
    [NSApp runModalForWindow:window];
    [NSApp endSheet:window];
    [window orderOut:nil];
    return [alert closeRez];
}

}  // namespace

@implementation QWIAlertUtils

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
                    andNib:(NSString*)nib {
    @autoreleasepool {
        QWStyleAlert* alert = LoadAlert(nib, message);
        if (!alert) {
            return kAlertClosed;
        }
        if (!NSEqualRects(frame, NSZeroRect)) {
            [[alert window] setFrame:frame display:NO];
        }
        Fill(alert, {message,
                     title,
                     titleColor,
                     bigText,
                     {okText, isOkOrange},
                     {cancelText, isCancelOrange},
                     {ignoreText, isIgnoreOrange},
                     center});
        if (NSEqualRects(frame, NSZeroRect)) {
            [alert makeRoomForMessage];
        }
        return Run(alert);
    }
}

+ (int)QWIAlertWithMessage:(NSString*)message
                     Title:(NSString*)title
                    OkText:(NSString*)okText
                IsCentered:(BOOL)center
                   BigText:(NSString*)bigText
                TitleColor:(NSColor*)titleColor
                   NibName:(NSString*)nib {
    return [QWIAlertUtils QWIAlertWithMessage:message
                                        Title:title
                                   TitleColor:titleColor
                                      BigText:bigText
                                       OkText:okText
                                   IsOKOrange:NO
                                   CancelText:@""
                               IsCancelOrange:NO
                                   IgnoreText:@""
                               IsIgnoreOrange:NO
                                       Center:center
                                    withFrame:NSZeroRect
                                       andNib:nib];
}

+ (int)QWIAlertWithMessageTopMost:(NSString*)message
                            Title:(NSString*)title
                           OkText:(NSString*)okText
                       IsCentered:(BOOL)center
                          BigText:(NSString*)bigText
                       TitleColor:(NSColor*)titleColor
                          NibName:(NSString*)nib {
    (void)nib;
    @autoreleasepool {
        QWStyleAlert* alert = LoadAlert(kTopMostNib, message);
        if (!alert) {
            return kAlertClosed;
        }
        Fill(alert,
             {message, title, titleColor, bigText, {okText, NO}, {nil, NO}, {nil, NO}, center});
        [[alert window] setLevel:kTopMostLevel];
        return Run(alert);
    }
}

+ (void)SetButtonTitleFor:(NSButton*)button toString:(NSString*)text withColor:(NSColor*)color {
    [QWIControlsUtils SetButtonTitleFor:button toString:text withColor:color];
}

+ (void)SetTextViewTextFor:(NSTextView*)textView
                  toString:(NSString*)text
                 withColor:(NSColor*)color {
    [QWIControlsUtils SetTextViewTextFor:textView toString:text withColor:color];
}

+ (void)SetButtonTextColor:(NSButton*)button andColor:(NSColor*)color {
    [QWIControlsUtils SetButtonTextColor:button andColor:color];
}

@end
