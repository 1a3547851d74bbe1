// A user in front of the alert: every way to answer it, again and again.
#include <X11/keysym.h>
#include <gtest/gtest.h>
#include <malloc.h>

#include "tests/support/Asking.h"
#include "ui/QWIAlertUtils.h"

namespace {

constexpr int kTimes = 20;

// The middle of the buttons' row, and of each button, where three are centred.
constexpr int kRow = 38;
constexpr int kOk = 354;
constexpr int kCancel = 241;
constexpr int kIgnore = 128;
// Within a button, beside its title.
constexpr int kBeside = 45;

constexpr Color kBlack = {0, 0, 0};

class Answer : public testing::Test {
  protected:
    int AskAndClick(const Question& question, int x) {
        return AskUser(
            user, [&] { return Ask(question); }, [&] { user.Click(x, kRow); });
    }
    int AskAndType(const Question& question, unsigned long key, unsigned long held = 0) {
        return AskUser(
            user, [&] { return Ask(question); }, [&] { user.Type(key, held); });
    }

    DesktopUser user;
};

/// The buttons of a pair are two; both have to answer.
Question AllOrange() {
    Question question;
    question.isOkOrange = question.isCancelOrange = question.isIgnoreOrange = YES;
    return question;
}

TEST_F(Answer, AShortClickOnAButtonIsItsResult) {
    for (const Question& question : {Question(), AllOrange()}) {
        EXPECT_EQ(AskAndClick(question, kOk), kAlertOk);
        EXPECT_EQ(AskAndClick(question, kCancel), kAlertCancel);
        EXPECT_EQ(AskAndClick(question, kIgnore), kAlertIgnore);
    }
}

TEST_F(Answer, ManyAlertsInARowAreAllAnswered) {
    for (int i = 0; i < kTimes; ++i) {
        const int places[] = {kOk, kCancel, kIgnore};
        ASSERT_EQ(AskAndClick({}, places[i % 3]), i % 3) << "alert " << i;
    }
}

TEST_F(Answer, ASlowPressIsSeenBlackAndAnswersOnRelease) {
    for (const Question& question : {Question(), AllOrange()}) {
        const int result = AskUser(
            user, [&] { return Ask(question); },
            [&] {
                user.MoveTo(kCancel, kRow);
                user.Press();
                user.SeeColor(kCancel - kBeside, kRow, kBlack);
                user.Release();
            });
        EXPECT_EQ(result, kAlertCancel);
    }
}

TEST_F(Answer, APressThatLeavesTheButtonIsNoAnswer) {
    const int result = AskUser(
        user, [] { return Ask({}); },
        [&] {
            const Color atRest = user.ColorAt(kOk - kBeside, kRow);
            user.MoveTo(kOk, kRow);
            user.Press();
            user.SeeColor(kOk - kBeside, kRow, kBlack);
            user.MoveTo(kOk, kRow + 60);
            user.SeeColor(kOk - kBeside, kRow, atRest);
            user.Release();
            user.Click(kIgnore, kRow);
        });
    EXPECT_EQ(result, kAlertIgnore);
}

class AnswerByReturn : public Answer, public testing::WithParamInterface<unsigned long> {};

INSTANTIATE_TEST_SUITE_P(, AnswerByReturn, testing::Values(XK_Return, XK_KP_Enter));

TEST_P(AnswerByReturn, PressesOk) {
    EXPECT_EQ(AskAndType({}, GetParam()), kAlertOk);
    EXPECT_EQ(AskAndType(AllOrange(), GetParam()), kAlertOk);
}

TEST_P(AnswerByReturn, PressesOkWithAnotherInFocus) {
    const int result = AskUser(
        user, [] { return Ask({}); },
        [&] {
            user.Type(XK_Tab);
            user.Type(GetParam());
        });
    EXPECT_EQ(result, kAlertOk);
}

TEST_P(AnswerByReturn, PressesNoOkThatIsNotThere) {
    Question question;
    question.ok = @"";
    const int result = AskUser(
        user, [&] { return Ask(question); },
        [&] {
            user.Type(GetParam());
            user.Click(kCancel, kRow);
        });
    EXPECT_EQ(result, kAlertCancel);
}

TEST_F(Answer, TabGoesFromButtonToButtonAndSpacePressesIt) {
    const int results[] = {kAlertOk, kAlertIgnore, kAlertCancel, kAlertOk};
    for (const Question& question : {Question(), AllOrange()}) {
        for (int tabs = 0; tabs < 4; ++tabs) {
            const int result = AskUser(
                user, [&] { return Ask(question); },
                [&] {
                    for (int i = 0; i < tabs; ++i) {
                        user.Type(XK_Tab);
                    }
                    user.Type(XK_space);
                });
            EXPECT_EQ(result, results[tabs]) << tabs << " tabs";
        }
    }
}

TEST_F(Answer, EscapeDoesNothing) {
    const int result = AskUser(
        user, [] { return Ask({}); },
        [&] {
            user.Type(XK_Escape);
            user.Type(XK_Return);
        });
    EXPECT_EQ(result, kAlertOk);
}

TEST_F(Answer, TheMessageTakesNoKeys) {
    const int result = AskUser(
        user, [] { return Ask({}); },
        [&] {
            user.Click(kIgnore, 140);
            user.Type(XK_x);
            user.Type(XK_Return);
        });
    EXPECT_EQ(result, kAlertOk);
}

TEST_F(Answer, ClosingByTheProgramIsNoButton) {
    for (int i = 0; i < kTimes; ++i) {
        ASSERT_EQ(AskAndLook([] { return Ask({}); }, [](QWStyleAlert*) {}), kAlertClosed)
            << "alert " << i;
    }
}

TEST_F(Answer, AnAlertLeavesLittleInMemory) {
    constexpr int kMany = 12;
    constexpr size_t kLittle = size_t{16} * 1024;
    const auto ask = [] {
        @autoreleasepool {
            AskAndLook([] { return Ask({}); }, [](QWStyleAlert*) {});
        }
    };
    const auto inUse = [] {
        const struct mallinfo2 memory = mallinfo2();
        return memory.uordblks + memory.hblkhd;
    };
    for (int i = 0; i < 3; ++i) {
        ask();
    }
    const size_t before = inUse();
    for (int i = 0; i < kMany; ++i) {
        ask();
    }
    const size_t after = inUse();
    EXPECT_LT(after - std::min(after, before), kMany * kLittle);
}

TEST_F(Answer, TheShortFormAndTheTopMostOneAnswerToo) {
    constexpr int kOnlyOk = 241;
    NSColor* red = [NSColor redColor];
    const auto simple = [&] {
        return [QWIAlertUtils QWIAlertWithMessage:@"Done."
                                            Title:@"Attention"
                                           OkText:@"Ok"
                                       IsCentered:YES
                                          BigText:@""
                                       TitleColor:red
                                          NibName:@"QWSyleAlert"];
    };
    const auto topMost = [&] {
        return [QWIAlertUtils QWIAlertWithMessageTopMost:@"Done."
                                                   Title:@"Attention"
                                                  OkText:@"Ok"
                                              IsCentered:YES
                                                 BigText:@""
                                              TitleColor:red
                                                 NibName:@"QWSyleAlert"];
    };
    const auto click = [&] { user.Click(kOnlyOk, kRow); };
    EXPECT_EQ(AskUser(user, simple, click), kAlertOk);
    EXPECT_EQ(AskUser(user, topMost, click), kAlertOk);
    const auto close = [](QWStyleAlert*) {};
    EXPECT_EQ(AskAndLook(simple, close), kAlertClosed);
    EXPECT_EQ(AskAndLook(topMost, close), kAlertClosed);
}

/// Where somebody frames the windows.
class FramedAnswer : public Answer {
  protected:
    void SetUp() override { ASSERT_TRUE(user.HasWindowManager()); }
};

TEST_F(FramedAnswer, TheCloseButtonIsNoButtonOfTheAlert) {
    for (int i = 0; i < kTimes / 4; ++i) {
        const int result = AskUser(
            user, [] { return Ask({}); }, [&] { user.ClickCloseButton(); });
        ASSERT_EQ(result, kAlertClosed) << "alert " << i;
    }
}

TEST_F(FramedAnswer, AltF4IsNoButtonOfTheAlert) {
    for (int i = 0; i < kTimes / 4; ++i) {
        ASSERT_EQ(AskAndType({}, XK_F4, XK_Alt_L), kAlertClosed) << "alert " << i;
    }
}

TEST_F(FramedAnswer, NoWindowThatComesLaterCoversTheAlert) {
    const int result = AskUser(
        user, [] { return Ask({}); },
        [&] {
            user.SeeState("_NET_WM_STATE_ABOVE");
            user.OpenAnotherWindow();
            EXPECT_TRUE(user.IsOnTop());
            user.Click(kIgnore, kRow);
        });
    EXPECT_EQ(result, kAlertIgnore);
}

TEST_F(FramedAnswer, TheAlertIsModalAndInTheTaskBar) {
    AskUser(
        user, [] { return Ask({}); },
        [&] {
            user.SeeState("_NET_WM_STATE_MODAL");
            EXPECT_FALSE(user.IsInState("_NET_WM_STATE_SKIP_TASKBAR"));
            EXPECT_FALSE(user.IsInState("_NET_WM_STATE_SKIP_PAGER"));
            user.Click(kOk, kRow);
        });
}

TEST_F(FramedAnswer, AMinimisedAlertComesBackWithTheKeyboard) {
    for (int i = 0; i < 3; ++i) {
        const int result = AskUser(
            user, [] { return Ask({}); },
            [&] {
                user.SeeKeyboardTaken();
                user.Minimise();
                user.SeeAlert();
                user.Type(XK_Return);
            });
        ASSERT_EQ(result, kAlertOk) << "alert " << i;
    }
}

TEST_F(FramedAnswer, EveryAlertShowsItsFocus) {
    constexpr Color kWhite = {255, 255, 255};
    for (int i = 0; i < 3; ++i) {
        AskUser(
            user, [] { return Ask({}); },
            [&] {
                user.SeeColor(303 + 3, kRow, kWhite);
                user.Click(kOk, kRow);
            });
    }
}

TEST_F(FramedAnswer, TheFrameIsAsWideAsItsMakerSays) {
    XRectangle frame = {};
    AskUser(
        user, [] { return Ask({}); },
        [&] {
            frame = user.Frame();
            user.Click(kOk, kRow);
        });
    const NSRect content = NSMakeRect(0, 0, 482, 220);
    const NSRect whole =
        [NSWindow frameRectForContentRect:content
                                styleMask:NSTitledWindowMask | NSClosableWindowMask];
    EXPECT_EQ(frame.x, -NSMinX(whole));
    EXPECT_EQ(frame.y, NSMaxY(whole) - NSMaxY(content));
    EXPECT_EQ(frame.width, NSWidth(whole) - NSWidth(content));
    EXPECT_EQ(frame.height, NSHeight(whole) - NSHeight(content));
}

TEST_F(FramedAnswer, AnAlertTakesTheKeyboardAfterAnotherWasClosedFromOutside) {
    for (int i = 0; i < kTimes / 10; ++i) {
        ASSERT_EQ(AskAndType({}, XK_Return), kAlertOk) << "alert " << i;
        AskUser(
            user, [] { return Ask({}); }, [&] { user.ClickCloseButton(); });
    }
}

}  // namespace
