// What the alert looks like on the screen.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/support/Asking.h"
#include "ui/QWIControlsUtils.h"
#include "ui/QWINSButtonGray.h"
#include "ui/QWINSButtonOrange.h"

namespace {

constexpr Color kGray = {76, 76, 76};
constexpr Color kDisabledGray = {153, 153, 153};
constexpr Color kDisabledTitle = {237, 237, 237};
constexpr Color kOrange = {255, 128, 0};
constexpr Color kBlack = {0, 0, 0};
constexpr Color kWhite = {255, 255, 255};

constexpr int kRow = 38;
constexpr int kButtonWidth = 102;
constexpr int kButtonHeight = 32;
constexpr int kButtonBottom = 22;

// A title without a thin line in it: the letters of others are smoothed into their ground.
NSString* const kSolid = @"\u2588\u2588";

Question WithSolidTitles() {
    Question question;
    question.ok = question.cancel = question.ignore = kSolid;
    return question;
}

/// Rounding may go either way.
bool IsNear(const Color& left, const Color& right) {
    return std::abs(left.red - right.red) <= 1 && std::abs(left.green - right.green) <= 1 &&
           std::abs(left.blue - right.blue) <= 1;
}

/// A part of a picture, in the alert's own points.
struct Area {
    int x, y, width, height;
};

Area ButtonAt(int x) {
    return {x, kButtonBottom, kButtonWidth, kButtonHeight};
}

/// How many points of the area have the colour, of a hundred.
int Share(const Picture& picture, const Area& area, const Color& color) {
    int count = 0;
    for (int y = area.y; y < area.y + area.height; ++y) {
        for (int x = area.x; x < area.x + area.width; ++x) {
            count += IsNear(picture.At(x, picture.height - 1 - y), color);
        }
    }
    return count * 100 / (area.width * area.height);
}

/// The part of `color` that lies between ground and text, as a luminance of WCAG 2.
double Luminance(const Color& color) {
    const auto linear = [](int value) {
        const double part = value / 255.0;
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

double Contrast(const Color& left, const Color& right) {
    const double a = Luminance(left);
    const double b = Luminance(right);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

/// The colour that stands out most from the ground of the area.
Color Ink(const Picture& picture, const Area& area, const Color& ground) {
    Color ink = ground;
    for (int y = area.y; y < area.y + area.height; ++y) {
        for (int x = area.x; x < area.x + area.width; ++x) {
            const Color color = picture.At(x, picture.height - 1 - y);
            if (Contrast(color, ground) > Contrast(ink, ground)) {
                ink = color;
            }
        }
    }
    return ink;
}

/// The first column of the area with something else than the ground in it.
int LeftEdge(const Picture& picture, const Area& area, const Color& ground) {
    for (int x = area.x; x < area.x + area.width; ++x) {
        for (int y = area.y; y < area.y + area.height; ++y) {
            if (Contrast(picture.At(x, picture.height - 1 - y), ground) > 1.5) {
                return x;
            }
        }
    }
    return -1;
}

class Pixels : public testing::Test {
  protected:
    Picture PictureOf(const Question& question) {
        Picture picture;
        AskUser(
            user, [&] { return Ask(question); },
            [&] {
                picture = user.Look();
                user.Click(303 + kButtonWidth / 2, kRow);
            });
        return picture;
    }

    DesktopUser user;
};

TEST_F(Pixels, PlainButtonsAreFlatGrayWithWhiteTitles) {
    const Picture picture = PictureOf(WithSolidTitles());
    for (int x : {77, 190, 303}) {
        EXPECT_GE(Share(picture, ButtonAt(x), kGray), 80) << "button at " << x;
        EXPECT_TRUE(IsNear(Ink(picture, ButtonAt(x), kGray), kWhite)) << "button at " << x;
    }
}

TEST_F(Pixels, OrangeButtonsAreFlatOrangeWithWhiteTitles) {
    Question question = WithSolidTitles();
    question.isOkOrange = question.isCancelOrange = YES;
    const Picture picture = PictureOf(question);
    EXPECT_GE(Share(picture, ButtonAt(77), kGray), 80);
    for (int x : {190, 303}) {
        EXPECT_GE(Share(picture, ButtonAt(x), kOrange), 80) << "button at " << x;
        EXPECT_TRUE(
            IsNear(Ink(picture, {x + 4, kButtonBottom + 4, kButtonWidth - 8, 24}, kOrange), kWhite))
            << "button at " << x;
    }
}

TEST_F(Pixels, APressedButtonIsBlackWithItsTitleStillWhite) {
    for (const bool orange : {false, true}) {
        Question question = WithSolidTitles();
        question.isOkOrange = orange;
        Picture pressed;
        AskUser(
            user, [&] { return Ask(question); },
            [&] {
                user.MoveTo(303 + kButtonWidth / 2, kRow);
                user.Press();
                user.SeeColor(303 + 6, kRow, kBlack);
                pressed = user.Look();
                user.Release();
            });
        EXPECT_GE(Share(pressed, ButtonAt(303), kBlack), 80) << "orange: " << orange;
        EXPECT_TRUE(IsNear(Ink(pressed, ButtonAt(303), kBlack), kWhite)) << "orange: " << orange;
    }
}

TEST_F(Pixels, ADisabledButtonIsLighterWithANearWhiteTitleAndDoesNotAnswer) {
    Picture picture;
    QWStyleAlert* alert = NewAlert();
    [alert setButtonsTexts:kSolid:kSolid:kSolid];
    [alert centerButtons:YES];
    [Button(alert, @"ignoreButton") setEnabled:NO];
    AskUser(
        user,
        [&] {
            [NSApp runModalForWindow:[alert window]];
            return [alert closeRez];
        },
        [&] {
            user.Click(77 + kButtonWidth / 2, kRow);
            picture = user.Look();
            user.Click(303 + kButtonWidth / 2, kRow);
        });
    EXPECT_EQ([alert closeRez], kAlertOk);
    EXPECT_GE(Share(picture, ButtonAt(77), kDisabledGray), 80);
    const Area inside = {77 + 4, kButtonBottom + 4, kButtonWidth - 8, kButtonHeight - 8};
    EXPECT_TRUE(IsNear(Ink(picture, inside, kDisabledGray), kDisabledTitle));
    EXPECT_GE(Share(picture, ButtonAt(190), kGray), 80);
}

TEST_F(Pixels, EveryTextOfTheAlertsOwnColoursCanBeRead) {
    constexpr double kReadable = 4.5;
    Question question;
    question.bigText = @"Large";
    // The colours that the program's own callers give to a title.
    for (NSColor* titleColor : {[NSColor colorWithDeviceRed:0.55 green:0.77 blue:0.24 alpha:1],
                                [NSColor colorWithDeviceRed:0.93 green:0.11 blue:0.14 alpha:1]}) {
        question.titleColor = titleColor;
        const Picture picture = PictureOf(question);
        const int top = picture.height;
        const Color dark = picture.At(5, 5);
        const Color light = picture.At(5, top - 5);
        EXPECT_GE(Contrast(Ink(picture, {20, top - 44, 200, 40}, dark), dark), kReadable);
        EXPECT_GE(Contrast(Ink(picture, {20, top - 100, 200, 40}, light), light), kReadable);
        EXPECT_GE(Contrast(Ink(picture, {20, top - 150, 200, 40}, light), light), kReadable);
        EXPECT_GE(Contrast(kWhite, kGray), kReadable);
    }
}

TEST_F(Pixels, TheTextsStartOnOneEdgeWithAMargin) {
    constexpr int kMargin = 20;
    Question question;
    question.message = question.title = question.bigText = @"HHHH";
    const Picture picture = PictureOf(question);
    const int top = picture.height;
    const Color light = picture.At(5, top - 5);
    const int title = LeftEdge(picture, {1, top - 44, 200, 40}, kBlack);
    const int bigText = LeftEdge(picture, {0, top - 96, 200, 40}, light);
    const int message = LeftEdge(picture, {0, top - 140, 200, 30}, light);
    EXPECT_GE(title, kMargin);
    // Letters keep a little room of their own, more of it the larger they are.
    EXPECT_NEAR(title, message, 1);
    EXPECT_NEAR(bigText, message, 1);
}

TEST_F(Pixels, NothingIsLeftWhereAMessageHasMadeRoomForALargeText) {
    Question question;
    question.bigText = @"I";
    question.message = [@"" stringByPaddingToLength:400
                                         withString:@"Many words. "
                                    startingAtIndex:0];
    const Picture picture = PictureOf(question);
    const int top = picture.height;
    EXPECT_EQ(LeftEdge(picture, {60, top - 98, 400, 48}, picture.At(5, top - 5)), -1);
    EXPECT_NE(LeftEdge(picture, {60, top - 140, 400, 30}, picture.At(5, top - 5)), -1);
}

TEST_F(Pixels, ATextThatIsTooLongEndsInAnEllipsisBeforeItsEdge) {
    constexpr int kRight = 482 - 22;
    Question question;
    NSString* tooLong = [@"" stringByPaddingToLength:200 withString:kSolid startingAtIndex:0];
    question.title = question.bigText = question.cancel = tooLong;
    question.isCancelOrange = YES;
    question.titleColor = [NSColor redColor];
    const Picture picture = PictureOf(question);
    const int top = picture.height;
    // Three dots on the base line leave the upper half of the last character's room empty.
    EXPECT_NE(LeftEdge(picture, {200, top - 20, 100, 1}, kBlack), -1);
    EXPECT_EQ(LeftEdge(picture, {kRight - 10, top - 20, 10, 1}, kBlack), -1);
    const Color light = picture.At(5, top - 5);
    EXPECT_NE(LeftEdge(picture, {200, top - 80, 100, 1}, light), -1);
    EXPECT_EQ(LeftEdge(picture, {kRight - 10, top - 80, 10, 1}, light), -1);
    EXPECT_NE(LeftEdge(picture, {240, 42, 10, 1}, kOrange), -1);
    EXPECT_EQ(LeftEdge(picture, {190 + kButtonWidth - 8, 42, 8, 1}, kOrange), -1);
}

TEST_F(Pixels, TheLongestButtonTextOfTheProductIsWhole) {
    Question question;
    question.cancel = @"Close Browsers";
    question.isCancelOrange = YES;
    const Picture picture = PictureOf(question);
    // The last letter, above the base line.
    EXPECT_NE(LeftEdge(picture, {190 + kButtonWidth - 14, 37, 10, 5}, kOrange), -1);
}

TEST_F(Pixels, TheFocusCanBeSeenOnEveryGround) {
    for (const bool orange : {false, true}) {
        const Color line = orange ? kBlack : kWhite;
        ASSERT_GE(Contrast(line, orange ? kOrange : kGray), 3);
        Question question;
        question.isOkOrange = orange;
        AskUser(
            user, [&] { return Ask(question); },
            [&] {
                user.SeeColor(303 + 3, kRow, line);
                user.Click(303 + kButtonWidth / 2, kRow);
            });
    }
}

TEST_F(Pixels, TheTitleStandsOutFromABlackScreen) {
    constexpr double kVisible = 3;
    const Picture picture = PictureOf({});
    for (const Area& edge :
         {Area{100, picture.height - 1, 1, 1}, Area{0, picture.height - 20, 1, 1},
          Area{picture.width - 1, picture.height - 20, 1, 1}}) {
        EXPECT_GE(Contrast(Ink(picture, edge, kBlack), kBlack), kVisible);
    }
}

TEST_F(Pixels, TheButtonsAreRoundedAtRestAndPressed) {
    for (const bool orange : {false, true}) {
        Question question;
        question.isOkOrange = orange;
        AskUser(
            user, [&] { return Ask(question); },
            [&] {
                const Color light = user.ColorAt(5, 5);
                EXPECT_EQ(user.ColorAt(303, kButtonBottom), light);
                EXPECT_TRUE(IsNear(user.ColorAt(303, kRow), orange ? kOrange : kGray));
                user.MoveTo(303 + kButtonWidth / 2, kRow);
                user.Press();
                user.SeeColor(303 + 6, kRow, kBlack);
                EXPECT_EQ(user.ColorAt(303, kButtonBottom), light);
                user.Release();
            });
    }
}

// The pieces by themselves.

TEST(Title, IsBoldAndTheLargeTextLarger) {
    QWStyleAlert* alert = NewAlert();
    NSFont* title = [[alert titleTField] font];
    EXPECT_TRUE([[NSFontManager sharedFontManager] traitsOfFont:title] & NSBoldFontMask);
    EXPECT_EQ([title pointSize], 16);
    EXPECT_EQ([[[alert bigTextTField] font] pointSize], 20);
    EXPECT_EQ([[MessageView(alert) font] pointSize], 13);
    EXPECT_EQ([[Button(alert, @"okButton") font] pointSize], 12);
}

TEST(Button, KeepsItsColoursWhetherEnabledOrNot) {
    [NSApplication sharedApplication];
    QWStyleAlert* alert = NewAlert();
    NSButton* gray = Button(alert, @"okButton");
    const auto ground = [&] {
        return [[[gray cell] backgroundColor] colorUsingColorSpaceName:NSDeviceRGBColorSpace];
    };
    EXPECT_FLOAT_EQ([ground() redComponent], 0.3F);
    EXPECT_FALSE([gray isBordered]);
    [gray setEnabled:NO];
    [static_cast<QWINSButtonGray*>(gray) setData];
    EXPECT_FLOAT_EQ([ground() greenComponent], 0.6F);
    [gray setEnabled:YES];
    [static_cast<QWINSButtonGray*>(gray) setData];
    EXPECT_FLOAT_EQ([ground() blueComponent], 0.3F);

    NSButton* orange = Button(alert, @"okButtonOrange");
    [orange setEnabled:NO];
    [static_cast<QWINSButtonOrange*>(orange) setData];
    EXPECT_TRUE([[[orange cell] backgroundColor] isEqual:[NSColor orangeColor]]);
}

TEST(Button, IsFlatAndOfItsColoursWhateverItIsGiven) {
    [NSApplication sharedApplication];
    NSWindow* window = [[[NSWindow alloc] initWithContentRect:NSMakeRect(0, 0, 80, 30)
                                                    styleMask:NSBorderlessWindowMask
                                                      backing:NSBackingStoreBuffered
                                                        defer:NO] autorelease];
    for (Class kind : {[QWINSButtonGray class], [QWINSButtonOrange class]}) {
        NSButton* button = [[[kind alloc] initWithFrame:NSMakeRect(0, 0, 80, 30)] autorelease];
        [[window contentView] addSubview:button];
        [button awakeFromNib];
        EXPECT_FALSE([button isBordered]);
        NSColor* ground = [[[[button cell] backgroundColor] copy] autorelease];

        [button setBordered:YES];
        [[button cell] setBackgroundColor:[NSColor redColor]];
        [button lockFocus];
        [button drawRect:[button bounds]];
        [button unlockFocus];
        EXPECT_FALSE([button isBordered]);
        EXPECT_TRUE([[[button cell] backgroundColor] isEqual:ground]);
        [button removeFromSuperview];
    }
}

NSDictionary* AttributesOf(NSButton* button) {
    return [[button attributedTitle] attributesAtIndex:0 effectiveRange:NULL];
}

TEST(ButtonCell, IsBlackWhileHighlighted) {
    QWStyleAlert* alert = NewAlert();
    [alert setButtonsTexts:@"OK":@"Cancel":@""];
    for (NSString* outlet : {@"okButton", @"okButtonOrange"}) {
        NSButton* button = Button(alert, outlet);
        [button setHidden:NO];
        [button lockFocus];
        NSColor* atRest = [[[[button cell] backgroundColor] copy] autorelease];
        [QWIControlsUtils SetButtonTextColor:button andColor:[NSColor redColor]];
        [[button cell] highlight:YES withFrame:[button bounds] inView:button];
        NSColor* title = [AttributesOf(button) objectForKey:NSForegroundColorAttributeName];
        EXPECT_TRUE([title isEqual:[NSColor whiteColor]]);
        EXPECT_TRUE([[button cell] isHighlighted]);
        EXPECT_TRUE([[[button cell] backgroundColor] isEqual:[NSColor blackColor]]);
        [[button cell] setBackgroundColor:[NSColor redColor]];
        [[button cell] highlight:NO withFrame:[button bounds] inView:button];
        EXPECT_FALSE([[button cell] isHighlighted]);
        EXPECT_TRUE([[[button cell] backgroundColor] isEqual:atRest]);
        [button unlockFocus];
    }
}

/// The colour in the middle of a title that the cell of a gray button draws.
Color DrawnTitle(NSColor* color, NSString* text = kSolid) {
    NSButton* button = Button(NewAlert(), @"okButton");
    NSDictionary* attributes = [NSDictionary dictionaryWithObject:color
                                                           forKey:NSForegroundColorAttributeName];
    NSAttributedString* title =
        [[[NSAttributedString alloc] initWithString:text attributes:attributes] autorelease];
    [[button window] orderFront:nil];
    [button lockFocus];
    [[button cell] drawTitle:title withFrame:[button bounds] inView:button];
    NSBitmapImageRep* bitmap =
        [[[NSBitmapImageRep alloc] initWithFocusedViewRect:[button bounds]] autorelease];
    [button unlockFocus];
    const NSSize size = [title size];
    NSColor* drawn = [[bitmap colorAtX:static_cast<NSInteger>(size.width / 2)
                                     y:static_cast<NSInteger>([bitmap pixelsHigh] / 2)]
        colorUsingColorSpaceName:NSDeviceRGBColorSpace];
    const auto part = [](CGFloat value) { return static_cast<int>(std::lround(value * 255)); };
    return {part([drawn redComponent]), part([drawn greenComponent]), part([drawn blueComponent])};
}

TEST(ButtonCell, DrawsATitleInTheSystemsDisabledColourNearWhite) {
    EXPECT_TRUE(IsNear(DrawnTitle([NSColor disabledControlTextColor]), kDisabledTitle));
    EXPECT_TRUE(IsNear(DrawnTitle([NSColor disabledControlTextColor], @"\u2588"), kDisabledTitle));
    EXPECT_TRUE(IsNear(DrawnTitle([NSColor redColor]), {255, 0, 0}));
    // A colour of the same kind under another name.
    EXPECT_TRUE(IsNear(DrawnTitle([NSColor controlTextColor]), kBlack));
}

TEST(ButtonCell, DrawsAnEmptyTitleAsNothing) {
    NSButton* button = Button(NewAlert(), @"okButton");
    NSAttributedString* nothing = [[[NSAttributedString alloc] init] autorelease];
    [[button window] orderFront:nil];
    [button lockFocus];
    const NSRect drawn = [[button cell] drawTitle:nothing withFrame:[button bounds] inView:button];
    [button unlockFocus];
    EXPECT_TRUE(NSIsEmptyRect(drawn) || NSContainsRect([button bounds], drawn));
}

void ExpectInvisibleShadow(NSDictionary* attributes) {
    NSShadow* shadow = [attributes objectForKey:NSShadowAttributeName];
    ASSERT_NE(shadow, nil);
    EXPECT_EQ([[shadow shadowColor] alphaComponent], 0);
}

class Styling : public testing::TestWithParam<NSString*> {
  protected:
    void SetUp() override {
        [NSApplication sharedApplication];
        styler = NSClassFromString(GetParam());
        button = [[[NSButton alloc] initWithFrame:NSMakeRect(0, 0, 80, 30)] autorelease];
    }

    Class styler = Nil;
    NSButton* button = nil;
};

TEST_P(Styling, GivesAButtonItsTitle) {
    [styler SetButtonTitleFor:button toString:@"Yes" withColor:[NSColor redColor]];
    NSDictionary* attributes = AttributesOf(button);
    EXPECT_EQ(Text([[button attributedTitle] string]), "Yes");
    EXPECT_TRUE(
        [[attributes objectForKey:NSForegroundColorAttributeName] isEqual:[NSColor redColor]]);
    EXPECT_EQ([[attributes objectForKey:NSParagraphStyleAttributeName] alignment],
              NSCenterTextAlignment);
    ExpectInvisibleShadow(attributes);
}

TEST_P(Styling, RecoloursATitleAndKeepsItsOtherAttributes) {
    NSFont* font = [NSFont boldSystemFontOfSize:19];
    NSDictionary* own = [NSDictionary dictionaryWithObject:font forKey:NSFontAttributeName];
    [button setAttributedTitle:[[[NSAttributedString alloc] initWithString:@"Yes"
                                                                attributes:own] autorelease]];
    [styler SetButtonTextColor:button andColor:[NSColor blueColor]];
    NSDictionary* attributes = AttributesOf(button);
    EXPECT_EQ(Text([[button attributedTitle] string]), "Yes");
    EXPECT_TRUE(
        [[attributes objectForKey:NSForegroundColorAttributeName] isEqual:[NSColor blueColor]]);
    EXPECT_TRUE([[attributes objectForKey:NSFontAttributeName] isEqual:font]);
    ExpectInvisibleShadow(attributes);
}

TEST_P(Styling, ShowsATextInATextView) {
    NSTextView* view = [[[NSTextView alloc] initWithFrame:NSMakeRect(0, 0, 80, 30)] autorelease];
    [styler SetTextViewTextFor:view toString:@"Done." withColor:[NSColor redColor]];
    EXPECT_EQ(Text([view string]), "Done.");
    EXPECT_TRUE([[view textColor] isEqual:[NSColor redColor]]);
    [styler SetTextViewTextFor:view toString:nil withColor:[NSColor redColor]];
    EXPECT_EQ(Text([view string]), "");
}

TEST_P(Styling, TakesNothing) {
    [styler SetButtonTitleFor:button toString:nil withColor:[NSColor redColor]];
    EXPECT_EQ([[button attributedTitle] length], 0U);
    [button setAttributedTitle:[[[NSAttributedString alloc] initWithString:@"Yes"] autorelease]];
    [styler SetButtonTextColor:button andColor:nil];
    EXPECT_EQ([AttributesOf(button) objectForKey:NSShadowAttributeName], nil);
    [styler SetButtonTextColor:nil andColor:[NSColor redColor]];
    [styler SetButtonTitleFor:nil toString:@"Yes" withColor:nil];
    [styler SetTextViewTextFor:nil toString:nil withColor:nil];
    EXPECT_EQ(Text([[button attributedTitle] string]), "Yes");
}

INSTANTIATE_TEST_SUITE_P(Classes, Styling, testing::Values(@"QWIControlsUtils", @"QWIAlertUtils"));

}  // namespace
