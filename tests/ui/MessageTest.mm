// Messages of every kind: they stand in their own room and can be read to the end.
#include <X11/keysym.h>
#include <gtest/gtest.h>

#include "tests/support/Asking.h"

namespace {

constexpr int kOk = 409;  // the middle of the OK button, not centred
constexpr int kRow = 38;
constexpr int kTurnsToTheEnd = 1500;

NSString* Repeated(NSString* text, NSUInteger length) {
    return [@"" stringByPaddingToLength:length withString:text startingAtIndex:0];
}

/// Whether something is written in these rows, from the top, and columns.
bool IsWritten(const Picture& picture, int top, int bottom, int left, int right) {
    for (int y = top; y < bottom; ++y) {
        for (int x = left; x < right; ++x) {
            if (picture.At(x, y).green < 160) {
                return true;
            }
        }
    }
    return false;
}

struct Shown {
    bool isWritten;     // in the message's room
    bool isKeptInRoom;  // and nowhere around it
    bool fits;          // without scrolling
    bool hasScroller;   // on its right
    bool reachesEnd;    // after turning the wheel
    int result;
};

Shown Show(NSString* message) {
    DesktopUser user;
    Picture picture;
    QWStyleAlert* alert = NewAlert();
    [alert setAlertText:message];
    [alert setTitleText:@""];
    [alert setButtonsTexts:@"OK":@"":@""];
    NSScrollView* view = [MessageView(alert) enclosingScrollView];
    const NSRect room = [view frame];
    AskUser(
        user,
        [&] {
            [NSApp runModalForWindow:[alert window]];
            return [alert closeRez];
        },
        [&] {
            picture = user.Look();
            user.MoveTo(static_cast<int>(NSMidX(room)), static_cast<int>(NSMidY(room)));
            user.Wheel(kTurnsToTheEnd);
            user.Click(kOk, kRow);
        });

    const int top = picture.height - static_cast<int>(NSMaxY(room));
    const int bottom = picture.height - static_cast<int>(NSMinY(room));
    const int left = static_cast<int>(NSMinX(room));
    const int right = static_cast<int>(NSMaxX(room));
    const CGFloat height = NSHeight([MessageView(alert) frame]);
    return {IsWritten(picture, top, bottom, left, right),
            !IsWritten(picture, 0, top, 0, picture.width) &&
                !IsWritten(picture, top, bottom, 0, left) &&
                !IsWritten(picture, top, bottom, right, picture.width) &&
                !IsWritten(picture, bottom, picture.height - 56, 0, picture.width),
            height <= NSHeight(room),
            [[view verticalScroller] superview] != nil &&
                NSMinX([[view verticalScroller] frame]) >= NSMaxX([[view contentView] frame]),
            NSMaxY([view documentVisibleRect]) == height,
            [alert closeRez]};
}

void ExpectReadable(NSString* message, bool fits) {
    const Shown shown = Show(message);
    EXPECT_EQ(shown.result, kAlertOk);
    EXPECT_TRUE(shown.isWritten);
    EXPECT_TRUE(shown.isKeptInRoom);
    EXPECT_EQ(shown.fits, fits);
    EXPECT_EQ(shown.hasScroller, !fits);
    EXPECT_TRUE(shown.reachesEnd);
}

/// Where the message stands after keys have been pressed: its first visible point.
CGFloat PlaceAfter(std::vector<unsigned long> keys) {
    DesktopUser user;
    QWStyleAlert* alert = NewAlert();
    [alert setAlertText:Repeated(@"The disk is full. ", 5000)];
    [alert setButtonsTexts:@"OK":@"Cancel":@""];
    AskUser(
        user,
        [&] {
            [NSApp runModalForWindow:[alert window]];
            return [alert closeRez];
        },
        [&] {
            for (const unsigned long key : keys) {
                user.Type(key);
            }
            user.Type(XK_Return);
        });
    EXPECT_EQ([alert closeRez], kAlertOk);
    return NSMinY([[MessageView(alert) enclosingScrollView] documentVisibleRect]);
}

TEST(Message, ScrollsByKeys) {
    constexpr CGFloat kLine = 16;
    QWStyleAlert* alert = NewAlert();
    const CGFloat room = NSHeight([[MessageView(alert) enclosingScrollView] frame]);
    EXPECT_EQ(PlaceAfter({XK_Down}), kLine);
    EXPECT_EQ(PlaceAfter({XK_Down, XK_Down, XK_Up}), kLine);
    EXPECT_EQ(PlaceAfter({XK_Up}), 0);
    const CGFloat page = PlaceAfter({XK_Page_Down});
    EXPECT_GT(page, room / 2);
    EXPECT_LT(page, room);  // a line stays to read on from
    EXPECT_EQ(PlaceAfter({XK_Tab, XK_Page_Down, XK_Page_Down}), 2 * page);
    EXPECT_EQ(PlaceAfter({XK_Page_Down, XK_Page_Up}), 0);
    const CGFloat end = PlaceAfter({XK_End});
    EXPECT_GT(end, 10 * page);
    EXPECT_EQ(PlaceAfter({XK_End, XK_Down, XK_Page_Down}), end);
    EXPECT_EQ(PlaceAfter({XK_End, XK_Home}), 0);
}

TEST(Message, LeavesNoKnobWhereItHasScrolledFrom) {
    constexpr int kColumn = 482 - 22 - 3;
    constexpr Color kKnob = {153, 153, 153};
    DesktopUser user;
    Question question;
    question.message = Repeated(@"The disk is full. ", 1000);
    question.title = @"";
    AskUser(
        user, [&] { return Ask(question); },
        [&] {
            const Color ground = user.ColorAt(kColumn, 70);
            user.SeeColor(kColumn, 190, kKnob);
            for (int i = 0; i < 4; ++i) {
                user.Type(XK_Page_Down);
            }
            user.Type(XK_End);
            user.SeeColor(kColumn, 80, kKnob);
            for (int y = 140; y < 200; ++y) {
                user.SeeColor(kColumn, y, ground);
            }
            user.Type(XK_Return);
        });
}

TEST(Message, OfOneCharacterIsReadable) {
    ExpectReadable(@"X", true);
}

TEST(Message, OfTwoHundredCharactersFits) {
    ExpectReadable(Repeated(@"The disk is full. ", 200), true);
}

TEST(Message, OfTwentyThousandCharactersScrollsToItsEnd) {
    ExpectReadable(Repeated(@"The disk is full. ", 20000), false);
}

TEST(Message, WithManyLineBreaksScrollsToItsEnd) {
    ExpectReadable(Repeated(@"Line\n\n\r\nLine\r", 400), false);
}

TEST(Message, OfOneLongWordStaysInItsRoom) {
    ExpectReadable(Repeated(@"disk", 3000), false);
}

TEST(Message, WithEmojiIsReadable) {
    ExpectReadable(
        @"Done \U0001F600\U0001F44D\U0001F3FD \U0001F468\u200D\U0001F469\u200D\U0001F467", true);
}

TEST(Message, InRightToLeftScriptsIsReadable) {
    ExpectReadable(@"\u05E9\u05DC\u05D5\u05DD \u05E2\u05D5\u05DC\u05DD", true);
    ExpectReadable(@"\u0645\u0631\u062D\u0628\u0627 \u0628\u0627\u0644\u0639\u0627\u0644\u0645",
                   true);
    ExpectReadable(Repeated(@"\u05E9\u05DC\u05D5\u05DD abc \u202E\u0645\u0631\u202C ", 5000),
                   false);
}

TEST(Message, WithOddCharactersIsReadable) {
    for (const unichar odd : std::initializer_list<unichar>{0x0000, 0x0007, 0x200B, 0xFEFF}) {
        SCOPED_TRACE(odd);
        const unichar characters[] = {'A', odd, 'B'};
        ExpectReadable([NSString stringWithCharacters:characters length:3], true);
    }
    ExpectReadable(@"100 %n %@ %s", true);
}

TEST(Message, OfBrokenCharactersDoesNoHarm) {
    for (const unichar broken : std::initializer_list<unichar>{0xD800, 0xDC00, 0xFFFE, 0xFFFF}) {
        const unichar characters[] = {'A', broken, 'B'};
        EXPECT_EQ(Show([NSString stringWithCharacters:characters length:3]).result, kAlertOk);
    }
}

}  // namespace
