#include "ui/QWStyleAlert.h"

#include "product/Applications.h"
#include "ui/QWIControlsUtils.h"

namespace {

NSString* const kDefaultTitle = @KS_PRODUCT_NAME;
const NSInteger kAboveAllWindows = 1000;  // the level of a screen saver

// x positions of the buttons in points, by layout.
struct Placement {
    CGFloat ok;
    CGFloat cancel;
    CGFloat ignore;
};
const Placement kNotCentred = {358, 245, 133};
const Placement kCentredWithIgnore = {303, 190, 77};
const CGFloat kCentredTwoOk = 260;
const CGFloat kCentredTwoCancel = 120;
const CGFloat kCentredOneOk = 190;

// Free space in points: between an edge and what stands next to it, and between two texts.
const CGFloat kMargin = 22;
const CGFloat kTextGap = 10;

// The message's look: an interface file keeps it only as part of a text, and the message has none
// there.
const CGFloat kMessageFontSize = 13;
const CGFloat kMessageLine = 16;
const CGFloat kLeastMessage = 36;
const CGFloat kMessageGray = 0.2;

NSColor* LightGround() {
    return [NSColor colorWithDeviceRed:0.98f green:0.98f blue:0.98f alpha:1];
}

BOOL IsShown(NSButton* plain, NSButton* orange) {
    return ![plain isHidden] || ![orange isHidden];
}

void Show(NSButton* plain, NSButton* orange, BOOL isOrange) {
    [plain setHidden:isOrange];
    [orange setHidden:!isOrange];
}

void Hide(NSButton* plain, NSButton* orange) {
    [plain setHidden:YES];
    [orange setHidden:YES];
}

void MoveToX(NSButton* plain, NSButton* orange, CGFloat x) {
    [plain setFrameOrigin:NSMakePoint(x, NSMinY([plain frame]))];
    [orange setFrameOrigin:NSMakePoint(x, NSMinY([orange frame]))];
}

void SetTitle(NSButton* button, NSString* text) {
    [QWIControlsUtils SetButtonTitleFor:button toString:text withColor:[NSColor whiteColor]];
}

}  // namespace

@implementation QWStyleAlert

@synthesize alertText;
@synthesize titleText;
@synthesize titleTField;
@synthesize bigTextTField;
@synthesize closeRez;

- (void)awakeFromNib {
    [super awakeFromNib];
    closeRez = kAlertClosed;
    [[self window] setBackgroundColor:LightGround()];
    [textView setFont:[NSFont systemFontOfSize:kMessageFontSize]];
    [textView setTextColor:[NSColor colorWithDeviceWhite:kMessageGray alpha:1]];
    [[textView textContainer] setLineFragmentPadding:0];  // on one edge with the other texts
    [cancelButton setHidden:YES];
    [ignoreButton setHidden:YES];
    [okButtonOrange setHidden:YES];
    [cancelButtonOrange setHidden:YES];
    [ignoreButtonOrange setHidden:YES];
    [self setTitleText:kDefaultTitle];
    isOkOrange = NO;
    isCancelOrange = NO;
    isIgnoreOrange = NO;
}

- (void)setAlertText:(NSString*)text {
    alertText = text;
    [self enableTextView];
}

- (void)setTitleText:(NSString*)text {
    titleText = text;
    [titleTField setStringValue:text ? text : @""];
    [self layOutTexts];
}

- (void)setOkButtonIsOrange:(BOOL)isOrange {
    isOkOrange = isOrange;
    Show(okButton, okButtonOrange, isOrange);
}

- (void)setCancelButtonIsOrange:(BOOL)isOrange {
    isCancelOrange = isOrange;
    Show(cancelButton, cancelButtonOrange, isOrange);
}

- (void)setIgnoreButtonIsOrange:(BOOL)isOrange {
    isIgnoreOrange = isOrange;
    Show(ignoreButton, ignoreButtonOrange, isOrange);
}

// clang-format off
- (void)setButtonsTexts:(NSString*)ok :(NSString*)cancel :(NSString*)ignore {
    // clang-format on
    if ([ok length] == 0) {
        Hide(okButton, okButtonOrange);
    } else {
        [self setOkButtonIsOrange:isOkOrange];
        SetTitle(okButton, ok);
        SetTitle(okButtonOrange, ok);
    }
    if ([cancel length] == 0) {
        Hide(cancelButton, cancelButtonOrange);
    } else {
        [self setCancelButtonIsOrange:isCancelOrange];
        SetTitle(cancelButton, cancel);
        SetTitle(cancelButtonOrange, cancel);
    }
    if ([ignore length] == 0) {
        Hide(ignoreButton, ignoreButtonOrange);
    } else {
        [self setIgnoreButtonIsOrange:isIgnoreOrange];
        // Meant: the plain Cancel button takes this text, the orange Ignore button does not.
        SetTitle(cancelButton, ignore);
        SetTitle(ignoreButton, ignore);
    }
    [self centerButtons:isCenter];
    [self centerWindowOnScreen];
    [[self window] setInitialFirstResponder:isOkOrange ? okButtonOrange : okButton];
    [[self window] setLevel:kAboveAllWindows];
    [[self window] makeKeyWindow];
    [[self window] orderFront:nil];
}

- (void)centerButtons:(BOOL)center {
    if (!center) {
        [self placeButtons:kNotCentred];
    } else if (IsShown(ignoreButton, ignoreButtonOrange)) {
        [self placeButtons:kCentredWithIgnore];
    } else if (IsShown(cancelButton, cancelButtonOrange)) {
        MoveToX(okButton, okButtonOrange, kCentredTwoOk);
        MoveToX(cancelButton, cancelButtonOrange, kCentredTwoCancel);
    } else {
        MoveToX(okButton, okButtonOrange, kCentredOneOk);
    }
}

- (void)makeRoomForMessage {
    NSScrollView* message = [textView enclosingScrollView];
    const CGFloat missing = kLeastMessage - ([self topOfMessage] - NSMinY([message frame]));
    if (missing <= 0) {
        return;
    }
    NSRect frame = [[self window] frame];
    frame.size.height += missing;
    [[self window] setFrame:frame display:NO];
    [self layOutTexts];
    [self centerWindowOnScreen];
}

- (void)enableTextView {
    [textView setSelectable:NO];
    [textView setEditable:NO];
    [textView setString:alertText ? alertText : @""];
}

- (void)centerTextView {
    [textView setAlignment:NSCenterTextAlignment];
}

- (IBAction)okAction:(id)sender {
    (void)sender;
    closeRez = kAlertOk;
    [self close];
}

- (IBAction)cancelAction:(id)sender {
    (void)sender;
    closeRez = kAlertCancel;
    [self close];
}

- (IBAction)ignoreAction:(id)sender {
    (void)sender;
    closeRez = kAlertIgnore;
    [self close];
}

- (IBAction)mainClose:(id)sender {
    (void)sender;
    [[self window] close];
}

- (void)windowWillClose:(NSNotification*)notification {
    (void)notification;
    [NSApp stopModal];
}

#pragma mark - Keys

// No button takes these keys; they move the message.
- (void)keyDown:(NSEvent*)event {
    const CGFloat page = NSHeight([[textView enclosingScrollView] frame]) - kMessageLine;
    const CGFloat all = NSHeight([textView frame]);
    NSString* keys = [event charactersIgnoringModifiers];
    switch ([keys length] == 0 ? 0 : [keys characterAtIndex:0]) {
        case NSUpArrowFunctionKey:
            return [self scrollMessageBy:-kMessageLine];
        case NSDownArrowFunctionKey:
            return [self scrollMessageBy:kMessageLine];
        case NSPageUpFunctionKey:
            return [self scrollMessageBy:-page];
        case NSPageDownFunctionKey:
            return [self scrollMessageBy:page];
        case NSHomeFunctionKey:
            return [self scrollMessageBy:-all];
        case NSEndFunctionKey:
            return [self scrollMessageBy:all];
        default:
            [super keyDown:event];
    }
}

- (void)scrollMessageBy:(CGFloat)distance {
    NSScrollView* message = [textView enclosingScrollView];
    NSClipView* room = [message contentView];
    const NSPoint wanted = NSMakePoint(0, NSMinY([room bounds]) + distance);
    [room scrollToPoint:[room constrainScrollPoint:wanted]];
    [message reflectScrolledClipView:room];
}

#pragma mark - Layout

- (void)placeButtons:(Placement)x {
    MoveToX(okButton, okButtonOrange, x.ok);
    MoveToX(cancelButton, cancelButtonOrange, x.cancel);
    MoveToX(ignoreButton, ignoreButtonOrange, x.ignore);
}

// From the top down: title, large text, message. An empty one takes no room.
- (CGFloat)topOfBigText {
    const CGFloat top = NSHeight([[[self window] contentView] bounds]);
    return top - ([titleBand isHidden] ? 0 : NSHeight([titleBand frame])) - kMargin;
}

- (CGFloat)topOfMessage {
    const CGFloat top = [self topOfBigText];
    return [bigTextTField isHidden] ? top : top - NSHeight([bigTextTField frame]) - kTextGap;
}

// The message reaches down to where the interface file ends it.
- (void)layOutTexts {
    [titleBand setHidden:[titleText length] == 0];
    [bigTextTField setHidden:[[bigTextTField stringValue] length] == 0];
    NSRect bigText = [bigTextTField frame];
    bigText.origin.y = [self topOfBigText] - NSHeight(bigText);
    [bigTextTField setFrame:bigText];
    NSScrollView* message = [textView enclosingScrollView];
    NSRect room = [message frame];
    room.size.height = MAX([self topOfMessage] - NSMinY(room), 0);
    [message setFrame:room];
    // No scroller for empty room.
    [textView setMinSize:NSMakeSize(0, [message contentSize].height)];
    [[[self window] contentView] setNeedsDisplay:YES];
}

@end
