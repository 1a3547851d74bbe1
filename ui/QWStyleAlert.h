#pragma once

#include <AppKit/AppKit.h>

#include "ui/QWINSWindowController.h"

/// What closed an alert: the values of `closeRez`.
enum AlertResult { kAlertClosed = -1, kAlertOk = 0, kAlertCancel = 1, kAlertIgnore = 2 };

/// The styled alert: a title, an optional large text, a message, and up to three buttons. Each
/// button is there twice, plain gray and orange, and at most one of the two is visible.
///
/// The interface file that it is made from fixes everything but the x positions of the buttons and
/// how far up the texts reach: an empty title or large text takes no room. Texts are not owned: a
/// caller keeps them for as long as the alert lives.
@interface QWStyleAlert : QWINSWindowController {
    NSString* alertText;
    NSString* titleText;
    IBOutlet NSTextField* titleTField;
    IBOutlet NSTextView* textView;
    IBOutlet NSTextField* bigTextTField;
    IBOutlet NSButton* okButton;
    IBOutlet NSButton* cancelButton;
    IBOutlet NSButton* ignoreButton;
    IBOutlet NSButton* okButtonOrange;
    IBOutlet NSButton* cancelButtonOrange;
    IBOutlet NSButton* ignoreButtonOrange;
    BOOL isOkOrange;
    BOOL isCancelOrange;
    BOOL isIgnoreOrange;
    BOOL isCenter;
    int32_t closeRez;

    IBOutlet NSView* titleBand;
}

/// The message. Setting it shows it: see `enableTextView`.
@property (nonatomic, assign) NSString* alertText;

/// The title. Setting it shows it, and lays the texts out anew.
@property (nonatomic, assign) NSString* titleText;

/// The fields of the title and of the large text, for their colour and their text.
@property (nonatomic, assign) NSTextField* titleTField;
@property (nonatomic, assign) NSTextField* bigTextTField;

/// What closed the alert, an AlertResult; kAlertClosed as long as no button did.
@property (nonatomic, readonly) int32_t closeRez;

/// The initial state: result kAlertClosed, only the plain OK button visible, title "Keystrel", no
/// button orange. Also sets what an interface file cannot keep: the window's ground, the message's
/// font.
- (void)awakeFromNib;

/// Whether the button is orange. The plain and the orange one of the pair become visible or hidden
/// accordingly.
- (void)setOkButtonIsOrange:(BOOL)isOrange;
- (void)setCancelButtonIsOrange:(BOOL)isOrange;
- (void)setIgnoreButtonIsOrange:(BOOL)isOrange;

/// Shows the buttons that have a text, with white titles, and hides those whose text is nil or
/// empty; places them; centres the window on the screen, raises it above all normal windows (level
/// 1000), and shows it.
///
/// The text for Ignore becomes the title of the plain Cancel and the plain Ignore button. Meant:
/// the plain Cancel button takes this text, the orange Ignore button does not.
// clang-format off
- (void)setButtonsTexts:(NSString*)ok :(NSString*)cancel :(NSString*)ignore;
// clang-format on

/// Sets the x position of every button, in points from the window's left edge; a plain button and
/// its orange one share it. Centred, it depends on which buttons are visible:
///
///     only OK                    OK 190
///     OK and Cancel              OK 260, Cancel 120
///     an Ignore button visible   OK 303, Cancel 190, Ignore 77
///
/// Not centred: OK 358, Cancel 245, Ignore 133. A position that is not named stays as it is.
- (void)centerButtons:(BOOL)center;

/// Makes the window higher where title and large text leave the message less than two lines, and
/// centres it again.
- (void)makeRoomForMessage;

/// Shows `alertText` in the text view, which can be neither selected nor edited.
- (void)enableTextView;

/// Centres the lines of the message.
- (void)centerTextView;

/// The buttons' actions: each keeps its result and closes the window.
- (IBAction)okAction:(id)sender;
- (IBAction)cancelAction:(id)sender;
- (IBAction)ignoreAction:(id)sender;

/// The arrows, Page Up, Page Down, Home and End scroll the message, from wherever the focus is.
- (void)keyDown:(NSEvent*)event;

/// Closes the window and leaves the result as it is.
- (IBAction)mainClose:(id)sender;

/// Ends the modal run, whichever way the window was closed.
- (void)windowWillClose:(NSNotification*)notification;

@end
