// What the alert shows and where, for every choice of texts, colours and layout.
#include <gtest/gtest.h>

#include "tests/support/Asking.h"
#include "tests/support/ReplacedMethod.h"
#include "tests/ui/NSLoggerLines.h"
#include "ui/QWIAlertUtils.h"

namespace {

struct Pair {
    NSString* plain;
    NSString* orange;
};
const Pair kOkPair = {@"okButton", @"okButtonOrange"};
const Pair kCancelPair = {@"cancelButton", @"cancelButtonOrange"};
const Pair kIgnorePair = {@"ignoreButton", @"ignoreButtonOrange"};
const Pair kAllPairs[] = {kOkPair, kCancelPair, kIgnorePair};

constexpr CGFloat kUnchanged = -1;
struct Places {
    CGFloat ok;
    CGFloat cancel;
    CGFloat ignore;
};

// The interface file's own places, where nothing else is asked for.
const Places kAtFirst = {358, 245, 133};

bool IsShown(QWStyleAlert* alert, NSString* outlet) {
    return ![Button(alert, outlet) isHidden];
}

std::string Title(QWStyleAlert* alert, NSString* outlet) {
    return Text([[Button(alert, outlet) attributedTitle] string]);
}

NSColor* TitleColor(NSButton* button) {
    return [[button attributedTitle] attribute:NSForegroundColorAttributeName
                                       atIndex:0
                                effectiveRange:NULL];
}

void ExpectPlace(QWStyleAlert* alert, const Pair& pair, CGFloat expected, CGFloat before) {
    const CGFloat x = expected == kUnchanged ? before : expected;
    EXPECT_EQ(NSMinX([Button(alert, pair.plain) frame]), x) << Text(pair.plain);
    EXPECT_EQ(NSMinX([Button(alert, pair.orange) frame]), x) << Text(pair.orange);
}

void ExpectPlaces(QWStyleAlert* alert, const Places& expected, const Places& before) {
    ExpectPlace(alert, kOkPair, expected.ok, before.ok);
    ExpectPlace(alert, kCancelPair, expected.cancel, before.cancel);
    ExpectPlace(alert, kIgnorePair, expected.ignore, before.ignore);
}

struct Row {
    const char* name;
    bool cancel;  // shown
    bool ignore;
    BOOL center;
    Places places;
};

const Row kRows[] = {
    {"centred, OK only", false, false, YES, {190, kUnchanged, kUnchanged}},
    {"centred, with Cancel", true, false, YES, {260, 120, kUnchanged}},
    {"centred, with Ignore", false, true, YES, {303, 190, 77}},
    {"centred, with all three", true, true, YES, {303, 190, 77}},
    {"not centred, OK only", false, false, NO, {358, 245, 133}},
    {"not centred, with Cancel", true, false, NO, {358, 245, 133}},
    {"not centred, with Ignore", false, true, NO, {358, 245, 133}},
    {"not centred, with all three", true, true, NO, {358, 245, 133}},
};

TEST(Placement, FollowsTheButtonsThatAreShownInEitherColour) {
    for (const Row& row : kRows) {
        for (int colours = 0; colours < 4; ++colours) {
            SCOPED_TRACE(testing::Message() << row.name << ", colours " << colours);
            QWStyleAlert* alert = NewAlert();
            const NSRect before = [Button(alert, @"okButton") frame];
            [alert setCancelButtonIsOrange:colours & 1];
            [alert setIgnoreButtonIsOrange:colours >> 1 & 1];
            [alert setButtonsTexts:@"OK":row.cancel ? @"Cancel" : @"":row.ignore ? @"Ignore" : nil];
            ExpectPlaces(alert, kAtFirst, kAtFirst);
            [alert centerButtons:row.center];
            ExpectPlaces(alert, row.places, kAtFirst);
            const NSRect after = [Button(alert, @"okButton") frame];
            EXPECT_EQ(NSMinY(after), NSMinY(before));
            EXPECT_EQ(NSWidth(after), NSWidth(before));
            EXPECT_EQ(NSHeight(after), NSHeight(before));
        }
    }
}

TEST(Placement, TheFirstLayoutFollowsTheAlertsOwnFlag) {
    QWStyleAlert* alert = NewAlert();
    [alert setValue:[NSNumber numberWithBool:YES] forKey:@"isCenter"];
    [alert setButtonsTexts:@"OK":@"Cancel":@"Ignore"];
    ExpectPlaces(alert, {303, 190, 77}, kAtFirst);
}

TEST(Placement, KeepsWhatARowDoesNotName) {
    QWStyleAlert* alert = NewAlert();
    [alert setButtonsTexts:@"OK":@"Cancel":@"Ignore"];
    [alert centerButtons:YES];
    [alert setButtonsTexts:@"OK":@"":@""];
    ExpectPlaces(alert, kAtFirst, kAtFirst);
    [alert centerButtons:YES];
    ExpectPlaces(alert, {190, 245, 133}, kAtFirst);
}

TEST(Placement, ThreeButtonsNeverTouchAndStayInTheWindow) {
    for (NSString* nib : {@"QWSyleAlert", @"QWBrowsersAlert"}) {
        for (const bool center : {true, false}) {
            QWStyleAlert* alert = NewAlert(nib);
            [alert setButtonsTexts:@"OK":@"Cancel":@"Ignore"];
            [alert centerButtons:center];
            const NSRect ok = [Button(alert, @"okButton") frame];
            const NSRect cancel = [Button(alert, @"cancelButton") frame];
            const NSRect ignore = [Button(alert, @"ignoreButton") frame];
            EXPECT_GE(NSMinX(ignore), 20);
            EXPECT_GE(NSMinX(cancel) - NSMaxX(ignore), 8);
            EXPECT_GE(NSMinX(ok) - NSMaxX(cancel), 8);
            EXPECT_GE(NSWidth([[[alert window] contentView] bounds]) - NSMaxX(ok), 20);
        }
    }
}

TEST(Placement, ALongTitleFitsItsButton) {
    QWStyleAlert* alert = NewAlert(@"QWBrowsersAlert");
    [alert setButtonsTexts:@"Close Browsers":@"Close Browsers":@""];
    for (NSString* outlet : {@"okButton", @"okButtonOrange", @"cancelButtonOrange"}) {
        NSButton* button = Button(alert, outlet);
        EXPECT_LE([[button attributedTitle] size].width, NSWidth([button frame]) - 4);
    }
}

TEST(Initially, OnlyThePlainOkIsShownWithTheProductsTitleAndNoResult) {
    for (NSString* nib : {@"QWSyleAlert", @"QWBrowsersAlert"}) {
        QWStyleAlert* alert = NewAlert(nib);
        EXPECT_EQ([alert closeRez], -1);
        EXPECT_EQ(Text([alert titleText]), "Keystrel");
        EXPECT_EQ(Text([[alert titleTField] stringValue]), "Keystrel");
        EXPECT_TRUE(IsShown(alert, @"okButton"));
        for (NSString* outlet : {@"okButtonOrange", @"cancelButton", @"cancelButtonOrange",
                                 @"ignoreButton", @"ignoreButtonOrange"}) {
            EXPECT_FALSE(IsShown(alert, outlet)) << Text(outlet);
        }
        for (NSString* flag : {@"isOkOrange", @"isCancelOrange", @"isIgnoreOrange", @"isCenter"}) {
            EXPECT_FALSE([[alert valueForKey:flag] boolValue]) << Text(flag);
        }
    }
}

TEST(Initially, AnEarlierColourIsForgottenWhenTheFileIsLoaded) {
    [NSApplication sharedApplication];
    QWStyleAlert* alert = [[[QWStyleAlert alloc] initWithWindowNibName:@"QWSyleAlert"] autorelease];
    [alert setOkButtonIsOrange:YES];
    [alert setCancelButtonIsOrange:YES];
    [alert setIgnoreButtonIsOrange:YES];
    [alert window];
    for (NSString* flag : {@"isOkOrange", @"isCancelOrange", @"isIgnoreOrange"}) {
        EXPECT_FALSE([[alert valueForKey:flag] boolValue]) << Text(flag);
    }
    EXPECT_TRUE(IsShown(alert, @"okButton"));
}

TEST(Colour, IsWhichButtonOfAPairIsShown) {
    const SEL setters[] = {
        @selector(setOkButtonIsOrange:),
        @selector(setCancelButtonIsOrange:),
        @selector(setIgnoreButtonIsOrange:)
    };
    NSString* const flags[] = {@"isOkOrange", @"isCancelOrange", @"isIgnoreOrange"};
    QWStyleAlert* alert = NewAlert();
    for (int i = 0; i < 3; ++i) {
        for (const bool orange : {true, false}) {
            using Setter = void (*)(id, SEL, BOOL);
            reinterpret_cast<Setter>([alert methodForSelector:setters[i]])(alert, setters[i],
                                                                           orange);
            EXPECT_EQ(IsShown(alert, kAllPairs[i].orange), orange);
            EXPECT_EQ(IsShown(alert, kAllPairs[i].plain), !orange);
            EXPECT_EQ([[alert valueForKey:flags[i]] boolValue], orange);
        }
    }
}

/// One choice out of all: which texts are given, and which buttons are orange.
struct Choice {
    bool ok, cancel, ignore;
    bool okOrange, cancelOrange, ignoreOrange;
};

class TextsAndColours : public testing::TestWithParam<int> {
  protected:
    Choice Chosen() const {
        const int bits = GetParam();
        const auto bit = [bits](int place) { return (bits >> place & 1) != 0; };
        return {bit(0), bit(1), bit(2), bit(3), bit(4), bit(5)};
    }
};

TEST_P(TextsAndColours, DecideVisibilityAndTitles) {
    const Choice chosen = Chosen();
    for (NSString* nothing : {static_cast<NSString*>(nil), @""}) {
        QWStyleAlert* alert = NewAlert();
        [alert setOkButtonIsOrange:chosen.okOrange];
        [alert setCancelButtonIsOrange:chosen.cancelOrange];
        [alert setIgnoreButtonIsOrange:chosen.ignoreOrange];
        [alert setButtonsTexts:chosen.ok       ? @"Yes"
                               : nothing:chosen.cancel ? @"No"
                               : nothing:chosen.ignore ? @"Later"
                                                       : nothing];

        EXPECT_EQ(IsShown(alert, @"okButton"), chosen.ok && !chosen.okOrange);
        EXPECT_EQ(IsShown(alert, @"okButtonOrange"), chosen.ok && chosen.okOrange);
        EXPECT_EQ(IsShown(alert, @"cancelButton"), chosen.cancel && !chosen.cancelOrange);
        EXPECT_EQ(IsShown(alert, @"cancelButtonOrange"), chosen.cancel && chosen.cancelOrange);
        EXPECT_EQ(IsShown(alert, @"ignoreButton"), chosen.ignore && !chosen.ignoreOrange);
        EXPECT_EQ(IsShown(alert, @"ignoreButtonOrange"), chosen.ignore && chosen.ignoreOrange);

        QWStyleAlert* untouched = NewAlert();
        const std::string noCancel = Title(untouched, @"cancelButtonOrange");
        EXPECT_EQ(Title(alert, @"okButton"), chosen.ok ? "Yes" : Title(untouched, @"okButton"));
        EXPECT_EQ(Title(alert, @"okButtonOrange"),
                  chosen.ok ? "Yes" : Title(untouched, @"okButtonOrange"));
        // The plain Cancel button takes the text for Ignore.
        EXPECT_EQ(Title(alert, @"cancelButton"), chosen.ignore   ? "Later"
                                                 : chosen.cancel ? "No"
                                                                 : noCancel);
        EXPECT_EQ(Title(alert, @"cancelButtonOrange"), chosen.cancel ? "No" : noCancel);
        EXPECT_EQ(Title(alert, @"ignoreButton"),
                  chosen.ignore ? "Later" : Title(untouched, @"ignoreButton"));
        // The orange Ignore button takes none.
        EXPECT_EQ(Title(alert, @"ignoreButtonOrange"), Title(untouched, @"ignoreButtonOrange"));
    }
}

INSTANTIATE_TEST_SUITE_P(All, TextsAndColours, testing::Range(0, 64));

TEST(Buttons, ComeBackWithTheirColoursWhenTheyGetTextsAgain) {
    for (const bool orange : {true, false}) {
        QWStyleAlert* alert = NewAlert();
        [alert setOkButtonIsOrange:orange];
        [alert setCancelButtonIsOrange:orange];
        [alert setIgnoreButtonIsOrange:orange];
        [alert setButtonsTexts:@"":@"":@""];
        [alert setButtonsTexts:@"OK":@"Cancel":@"Ignore"];
        for (const Pair& pair : kAllPairs) {
            EXPECT_EQ(IsShown(alert, pair.orange), orange) << Text(pair.orange);
            EXPECT_EQ(IsShown(alert, pair.plain), !orange) << Text(pair.plain);
        }
    }
}

TEST(ButtonTitles, AreWhite) {
    QWStyleAlert* alert = NewAlert();
    [alert setButtonsTexts:@"Yes":@"No":@"Later"];
    for (const Pair& pair : kAllPairs) {
        EXPECT_TRUE([TitleColor(Button(alert, pair.plain)) isEqual:[NSColor whiteColor]]);
        EXPECT_TRUE([TitleColor(Button(alert, pair.orange)) isEqual:[NSColor whiteColor]]);
    }
}

TEST(Window, IsCentredAndAboveAllOthersWhenTheButtonsAreSet) {
    QWStyleAlert* alert = NewAlert();
    NSWindow* window = [alert window];
    [window setFrameOrigin:NSMakePoint(3, 5)];
    EXPECT_FALSE([window isVisible]);
    [alert setButtonsTexts:@"OK":@"":@""];
    const NSRect frame = [window frame];
    const NSSize screen = [[window screen] frame].size;
    EXPECT_EQ(NSMinX(frame), (screen.width - NSWidth(frame)) / 2);
    EXPECT_EQ(NSMinY(frame), (screen.height - NSHeight(frame)) / 2);
    EXPECT_EQ([window level], 1000);
    EXPECT_TRUE([window isVisible]);
}

TEST(Window, TakesTheKeyboardWhateverItsStyle) {
    [NSApplication sharedApplication];
    NSWindow* window = [[[NSWindow alloc] initWithContentRect:NSMakeRect(0, 0, 50, 50)
                                                    styleMask:NSBorderlessWindowMask
                                                      backing:NSBackingStoreBuffered
                                                        defer:YES] autorelease];
    EXPECT_TRUE([window canBecomeKeyWindow]);
    EXPECT_TRUE([window acceptsFirstResponder]);
    EXPECT_TRUE([window becomeFirstResponder]);
    EXPECT_TRUE([window resignFirstResponder]);
}

TEST(WindowController, PresentsItsWindowInTheMiddle) {
    NSWindow* window = [NewAlert() window];
    QWINSWindowController* controller =
        [[[QWINSWindowController alloc] initWithWindow:window] autorelease];
    [window setFrameOrigin:NSMakePoint(0, 0)];
    [controller presentWindow];
    EXPECT_TRUE([window isVisible]);
    EXPECT_EQ(NSMidX([window frame]), NSMidX([[window screen] frame]));
    EXPECT_EQ(NSMidY([window frame]), NSMidY([[window screen] frame]));
}

static NSRect FrameOfASecondScreen(id, SEL) {
    return NSMakeRect(1024, 300, 1024, 768);
}

TEST(WindowController, LeavesTheScreensOwnOriginOut) {
    NSWindow* window = [NewAlert() window];
    const NSSize size = [window frame].size;
    QWINSWindowController* controller =
        [[[QWINSWindowController alloc] initWithWindow:window] autorelease];
    const ReplacedMethod frame(ReplacedMethod::InstanceMethod, [NSScreen class], @selector(frame),
                               reinterpret_cast<IMP>(FrameOfASecondScreen));
    [controller centerWindowOnScreen];
    EXPECT_EQ(NSMinX([window frame]), (1024 - size.width) / 2);
    EXPECT_EQ(NSMinY([window frame]), (768 - size.height) / 2);
}

TEST(WindowController, PresentingAWindowThatIsShownGivesItTheKeyboard) {
    NSWindow* window = [NewAlert() window];
    [window orderFront:nil];
    EXPECT_FALSE([window isKeyWindow]);
    [[[[QWINSWindowController alloc] initWithWindow:window] autorelease] presentWindow];
    EXPECT_TRUE([window isKeyWindow]);
}

TEST(WindowController, WithoutAWindowDoesNothing) {
    [NSApplication sharedApplication];
    QWINSWindowController* controller =
        [[[QWINSWindowController alloc] initWithWindowNibName:@"NoSuchFile"] autorelease];
    [controller centerWindowOnScreen];
    [controller presentWindow];
    [controller windowWillClose:nil];
    EXPECT_EQ([controller window], nil);
}

TEST(Actions, KeepTheirResultAndCloseTheWindow) {
    const SEL actions[] = {
        @selector(okAction:),
        @selector(cancelAction:),
        @selector(ignoreAction:)
    };
    for (int result = 0; result < 3; ++result) {
        QWStyleAlert* alert = NewAlert();
        [alert setButtonsTexts:@"OK":@"":@""];
        [alert performSelector:actions[result] withObject:nil];
        EXPECT_EQ([alert closeRez], result);
        EXPECT_FALSE([[alert window] isVisible]);
        [alert mainClose:nil];
        EXPECT_EQ([alert closeRez], result);
    }
}

TEST(MessageText, IsShownAndCanNeitherBeSelectedNorEdited) {
    QWStyleAlert* alert = NewAlert();
    [MessageView(alert) setEditable:YES];
    [alert setAlertText:@"One.\nTwo."];
    EXPECT_EQ(Text([MessageView(alert) string]), "One.\nTwo.");
    EXPECT_FALSE([MessageView(alert) isEditable]);
    EXPECT_FALSE([MessageView(alert) isSelectable]);
    [alert setAlertText:nil];
    EXPECT_EQ(Text([MessageView(alert) string]), "");
}

TEST(MessageText, FillsTheRoomThatTheOtherTextsLeave) {
    QWStyleAlert* alert = NewAlert();
    NSScrollView* room = [MessageView(alert) enclosingScrollView];
    const CGFloat band = NSHeight([[alert valueForKey:@"titleBand"] frame]);
    CGFloat before = 0;
    for (NSString* title : {@"Title", @"", @"Title"}) {
        [alert setTitleText:title];
        EXPECT_NE(NSHeight([room frame]), before);
        EXPECT_EQ(NSMaxY([[alert bigTextTField] frame]),
                  NSHeight([[[alert window] contentView] bounds]) - 22 -
                      ([title length] == 0 ? 0 : band));
        EXPECT_EQ([MessageView(alert) minSize].height, [room contentSize].height);
        before = NSHeight([room frame]);
    }
}

TEST(MessageText, GetsTheLastPointOfItsLeastHeight) {
    QWStyleAlert* alert = NewAlert();
    NSScrollView* room = [MessageView(alert) enclosingScrollView];
    NSWindow* window = [alert window];
    [[alert bigTextTField] setStringValue:@"Large"];
    [alert setTitleText:@"Title"];
    NSRect large = [[alert bigTextTField] frame];
    large.size.height += NSHeight([room frame]) - 35;
    [[alert bigTextTField] setFrame:large];
    [alert setTitleText:@"Title"];
    ASSERT_EQ(NSHeight([room frame]), 35);

    const CGFloat height = NSHeight([window frame]);
    [alert makeRoomForMessage];
    EXPECT_EQ(NSHeight([window frame]), height + 1);
    EXPECT_EQ(NSHeight([room frame]), 36);
    [alert makeRoomForMessage];
    EXPECT_EQ(NSHeight([window frame]), height + 1);
}

TEST(MessageText, IsDarkGrayFromTheEdgeOnInTheUsualSize) {
    NSTextView* view = MessageView(NewAlert());
    EXPECT_EQ([[view font] pointSize], 13);
    NSColor* dark = [NSColor colorWithDeviceWhite:0.2 alpha:1];
    EXPECT_TRUE([[view textColor] isEqual:dark]) << Text([[view textColor] description]);
    EXPECT_EQ([[view textContainer] lineFragmentPadding], 0);
}

TEST(MessageText, CanBeCentred) {
    QWStyleAlert* alert = NewAlert();
    [alert setAlertText:@"One."];
    [alert centerTextView];
    EXPECT_EQ([MessageView(alert) alignment], NSCenterTextAlignment);
}

/// What a form of the factory has made of its arguments, seen while the alert runs.
struct Seen {
    std::string message, title, bigText, nib;
    NSInteger level = 0;
    NSRect frame = NSZeroRect;
    bool cancelOrIgnore = false;
    CGFloat okPlace = 0;
    bool isOkPlain = false;
    bool isTitleInColour = false;
};

Seen LookAt(const std::function<int()>& ask, NSColor* titleColor = nil) {
    Seen seen;
    AskAndLook(ask, [&](QWStyleAlert* alert) {
        seen.message = Text([MessageView(alert) string]);
        seen.title = Text([[alert titleTField] stringValue]);
        seen.bigText = Text([[alert bigTextTField] stringValue]);
        seen.nib = Text([alert windowNibName]);
        seen.level = [[alert window] level];
        seen.frame = [[alert window] frame];
        seen.cancelOrIgnore =
            IsShown(alert, @"cancelButton") || IsShown(alert, @"cancelButtonOrange") ||
            IsShown(alert, @"ignoreButton") || IsShown(alert, @"ignoreButtonOrange");
        seen.okPlace = NSMinX([Button(alert, @"okButton") frame]);
        seen.isOkPlain = ![Button(alert, @"okButton") isHidden];
        seen.isTitleInColour = [[[alert titleTField] textColor] isEqual:titleColor];
    });
    return seen;
}

TEST(LongForm, ShowsItsTextsInTheFileThatItNames) {
    Question question;
    question.titleColor = [NSColor greenColor];
    question.bigText = @"Big";
    question.nib = @"QWBrowsersAlert";
    const Seen seen = LookAt([&] { return Ask(question); }, [NSColor greenColor]);
    EXPECT_EQ(seen.message, "The disk is full.");
    EXPECT_EQ(seen.title, "Attention");
    EXPECT_EQ(seen.bigText, "Big");
    EXPECT_EQ(seen.nib, "QWBrowsersAlert");
    EXPECT_EQ(seen.level, 1000);
    EXPECT_EQ(seen.okPlace, 303);
    EXPECT_TRUE(seen.isTitleInColour);
}

TEST(LongForm, OrangeButtonsAreTheOnesThatItNames) {
    for (const int named : {0, 1, 2}) {
        Question question;
        question.isOkOrange = named == 0;
        question.isCancelOrange = named == 1;
        question.isIgnoreOrange = named == 2;
        AskAndLook([&] { return Ask(question); },
                   [&](QWStyleAlert* alert) {
                       for (const int i : {0, 1, 2}) {
                           EXPECT_EQ(IsShown(alert, kAllPairs[i].orange), i == named);
                           EXPECT_EQ(IsShown(alert, kAllPairs[i].plain), i != named);
                       }
                   });
    }
}

TEST(LongForm, KeepsTheFilesFrameUnlessItGetsOne) {
    Question question;
    const NSSize own = [[NewAlert() window] frame].size;
    EXPECT_TRUE(NSEqualSizes(LookAt([&] { return Ask(question); }).frame.size, own));

    question.frame = NSMakeRect(7, 9, 620, 400);
    EXPECT_TRUE(
        NSEqualSizes(LookAt([&] { return Ask(question); }).frame.size, NSMakeSize(620, 400)));
    for (NSRect partly : {NSMakeRect(0, 0, 0, 300), NSMakeRect(0, 0, 600, 0),
                          NSMakeRect(5, 0, 0, 0), NSMakeRect(0, 5, 0, 0)}) {
        question.frame = partly;
        const NSSize size = LookAt([&] { return Ask(question); }).frame.size;
        // No window is smaller than a point.
        EXPECT_EQ(size.width, MAX(NSWidth(partly), 1)) << Text(NSStringFromRect(partly));
        EXPECT_EQ(size.height, MAX(NSHeight(partly), 1)) << Text(NSStringFromRect(partly));
    }
}

TEST(LongForm, TakesNothingForEveryText) {
    Question nothing;
    nothing.message = nothing.title = nothing.bigText = nil;
    nothing.ok = nothing.cancel = nothing.ignore = nil;
    nothing.titleColor = nil;
    const Seen seen = LookAt([&] { return Ask(nothing); });
    EXPECT_EQ(seen.message, "");
    EXPECT_EQ(seen.title, "");
    EXPECT_EQ(seen.bigText, "");
}

TEST(LongForm, IsClosedAtOnceWhereItsFileIsMissing) {
    TakeLoggedLines();
    for (NSString* nib : {@"NoSuchFile", @"", static_cast<NSString*>(nil)}) {
        Question question;
        question.nib = nib;
        EXPECT_EQ(Ask(question), kAlertClosed);
        const std::string name = nib ? Text(nib) : "(null)";
        EXPECT_EQ(TakeLoggedLines(),
                  std::vector<std::string>{"failure: No interface file for the alert: " + name});
    }
}

/// What a short form shows, whichever it is; the rest is its own.
Seen LookAtShortForm(bool center, const std::function<int()>& ask) {
    Seen seen = LookAt(ask, [NSColor redColor]);
    EXPECT_EQ(seen.message, "Done.");
    EXPECT_EQ(seen.title, "Attention");
    EXPECT_EQ(seen.bigText, "Big");
    EXPECT_EQ(seen.okPlace, center ? 190 : 358);
    EXPECT_TRUE(seen.isOkPlain);
    EXPECT_FALSE(seen.cancelOrIgnore);
    EXPECT_TRUE(seen.isTitleInColour);
    return seen;
}

TEST(ShortForm, HasOneButtonInTheFileThatItNames) {
    for (const bool center : {true, false}) {
        const Seen seen = LookAtShortForm(center, [&] {
            return [QWIAlertUtils QWIAlertWithMessage:@"Done."
                                                Title:@"Attention"
                                               OkText:@"Ok"
                                           IsCentered:center
                                              BigText:@"Big"
                                           TitleColor:[NSColor redColor]
                                              NibName:@"QWBrowsersAlert"];
        });
        EXPECT_EQ(seen.nib, "QWBrowsersAlert");
        EXPECT_EQ(seen.level, 1000);
    }
}

TEST(TopMostForm, IgnoresTheFileThatItNamesAndHasItsOwnLevel) {
    for (const bool center : {true, false}) {
        const Seen seen = LookAtShortForm(center, [&] {
            return [QWIAlertUtils QWIAlertWithMessageTopMost:@"Done."
                                                       Title:@"Attention"
                                                      OkText:@"Ok"
                                                  IsCentered:center
                                                     BigText:@"Big"
                                                  TitleColor:[NSColor redColor]
                                                     NibName:@"QWBrowsersAlert"];
        });
        EXPECT_EQ(seen.nib, "QWSyleAlert");
        EXPECT_EQ(seen.level, 14);
    }
}

/// Where the three texts stand, in the window.
struct Stack {
    NSRect band, bigText, message;
    bool hasBand, hasBigText;
};

Stack StackOf(NSString* title, NSString* bigText) {
    QWStyleAlert* alert = NewAlert();
    [[alert bigTextTField] setStringValue:bigText];
    [alert setTitleText:title];
    NSView* band = [alert valueForKey:@"titleBand"];
    return {[band frame],
            [[alert bigTextTField] frame],
            [[MessageView(alert) enclosingScrollView] frame],
            ![band isHidden],
            ![[alert bigTextTField] isHidden]};
}

TEST(Texts, AreStackedWithoutHoles) {
    constexpr CGFloat kMargin = 20;
    constexpr CGFloat kLargestGap = 24;
    const CGFloat top = NSHeight([[[NewAlert() window] contentView] bounds]);
    const Stack all = StackOf(@"Title", @"Big");
    EXPECT_TRUE(all.hasBand);
    EXPECT_TRUE(all.hasBigText);
    EXPECT_EQ(NSMaxY(all.band), top);
    EXPECT_GE(NSMinY(all.band) - NSMaxY(all.bigText), kMargin);
    EXPECT_GT(NSMinY(all.bigText), NSMaxY(all.message));
    EXPECT_LE(NSMinY(all.bigText) - NSMaxY(all.message), kLargestGap);

    const Stack noBig = StackOf(@"Title", @"");
    EXPECT_TRUE(noBig.hasBand);
    EXPECT_FALSE(noBig.hasBigText);
    EXPECT_GE(NSMinY(noBig.band) - NSMaxY(noBig.message), kMargin);
    EXPECT_LE(NSMinY(noBig.band) - NSMaxY(noBig.message), kLargestGap);

    const Stack noTitle = StackOf(@"", @"Big");
    EXPECT_FALSE(noTitle.hasBand);
    EXPECT_LE(top - NSMaxY(noTitle.bigText), kLargestGap);

    const Stack onlyMessage = StackOf(@"", @"");
    EXPECT_FALSE(onlyMessage.hasBand);
    EXPECT_FALSE(onlyMessage.hasBigText);
    EXPECT_GE(top - NSMaxY(onlyMessage.message), kMargin);
    EXPECT_LE(top - NSMaxY(onlyMessage.message), kLargestGap);
    // Downwards the message reaches as far as ever.
    EXPECT_EQ(NSMinY(onlyMessage.message), NSMinY(all.message));
}

TEST(Texts, LeaveTheMessageTwoLinesInTheFilesOwnFrame) {
    constexpr CGFloat kTwoLines = 34;
    Question question;
    question.nib = @"QWBrowsersAlert";
    question.bigText = @"Big";
    const auto look = [&](NSRect* room, NSRect* window, CGFloat* top) {
        AskAndLook([&] { return Ask(question); },
                   [=](QWStyleAlert* alert) {
                       *room = [[MessageView(alert) enclosingScrollView] frame];
                       *window = [[alert window] frame];
                       *top = NSMinY([[alert bigTextTField] frame]);
                       EXPECT_EQ(NSMaxY([[alert valueForKey:@"titleBand"] frame]),
                                 NSHeight([[[alert window] contentView] bounds]));
                       EXPECT_EQ(NSMidY(*window), NSMidY([[[alert window] screen] frame]));
                   });
    };
    NSRect room, window;
    CGFloat bigText;
    look(&room, &window, &bigText);
    EXPECT_GE(NSHeight(room), kTwoLines);
    EXPECT_LT(NSMaxY(room), bigText);
    // A frame of the caller's is kept.
    question.frame = NSMakeRect(0, 0, 482, 170);
    look(&room, &window, &bigText);
    EXPECT_EQ(NSHeight(window), 170);
}

// What a Mac needs and GNUstep does not read.
TEST(InterfaceFiles, AreLightInDarkSurroundingsAndNameTheMessage) {
    for (NSString* nib : {@"QWSyleAlert", @"QWBrowsersAlert"}) {
        NSString* path = [[NSBundle mainBundle] pathForResource:nib ofType:@"xib"];
        NSString* file = [NSString stringWithContentsOfFile:path
                                                   encoding:NSUTF8StringEncoding
                                                      error:NULL];
        for (NSString* words :
             {@"appearanceType=\"aqua\"", @"<accessibility description=\"Message\"/>"}) {
            EXPECT_NE([file rangeOfString:words].location, static_cast<NSUInteger>(NSNotFound))
                << Text(nib) << ": " << Text(words);
        }
    }
}

}  // namespace
