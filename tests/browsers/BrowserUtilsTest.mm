// The guard's decisions. This program takes the place of the running applications, of the user
// before the alert, of the administrator and of the shell.
#include "browsers/BrowserUtils.h"

#include <AppKit/AppKit.h>
#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "Security/Administrator.h"
#include "tests/support/ReplacedMethod.h"
#include "ui/QWIAlertUtils.h"

@interface NamedApplication : NSObject {
    NSString* name;
}
- (id)initWithName:(NSString*)aName;
- (NSString*)localizedName;
@end

@implementation NamedApplication

- (id)initWithName:(NSString*)aName {
    self = [super init];
    if (self != nil) {
        name = [aName copy];
    }
    return self;
}

- (void)dealloc {
    [name release];
    [super dealloc];
}

- (NSString*)localizedName {
    return name;
}

@end

namespace {

using Lines = std::vector<std::string>;

std::vector<NSString*> running;
Lines happened;  // alerts, scripts and commands, in their order
std::function<int()> answer;
Verdict verdict = Verdict::Allowed;

Lines operator+(Lines first, const Lines& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

const Lines kClosing = {"killall Safari",
                        "killall firefox-bin",
                        "killall firefox",
                        "killall aurora",
                        "killall nightly",
                        "killall \"google chrome\"",
                        "killall \"Google Chrome\"",
                        "killall \"Google Chrome Canary\"",
                        "killall \"Microsoft Edge\""};
const Lines kClosingProductToo = kClosing + Lines{"kill \"Keystrel\""};
const std::string kInstallAlert =
    "[Keystrel has detected an Internet browser running. In order to continue the installation "
    "please close all open browsers and Retry or click the Close Browsers button.] title [] "
    "0.55 0.77 0.24 1.00 big [] ok [Exit] 0 cancel [Close Browsers] 1 ignore [Retry] 0 "
    "center 1 frame 0 0 0 0 nib [QWBrowsersAlert]";
const std::string kUninstallAlert =
    "[Keystrel has detected an Internet browser running. In order to continue with the uninstall "
    "please close all open browsers and Retry or click the Close Browsers button.] title [] "
    "0.55 0.77 0.24 1.00 big [] ok [Exit] 0 cancel [Close Browsers] 1 ignore [Retry] 0 "
    "center 1 frame 0 0 0 0 nib [QWBrowsersAlert]";
const std::string kCredentialsAlert =
    "top most [Invalid credentials] title [NOTICE!] ok [Ok] center 1 big [] 0.55 0.77 0.24 1.00 "
    "nib [QWSyleAlert]";

std::string Components(NSColor* color) {
    return [[NSString stringWithFormat:@"%.2f %.2f %.2f %.2f", [color redComponent],
                                       [color greenComponent], [color blueComponent],
                                       [color alphaComponent]] UTF8String];
}

NSArray* RunningApplications(id, SEL) {
    NSMutableArray* applications = [NSMutableArray array];
    for (NSString* name : running) {
        [applications addObject:[[[NamedApplication alloc] initWithName:name] autorelease]];
    }
    return applications;
}

int ShowAlert(id, SEL, NSString* message, NSString* title, NSColor* color, NSString* big,
              NSString* ok, BOOL okOrange, NSString* cancel, BOOL cancelOrange, NSString* ignore,
              BOOL ignoreOrange, BOOL center, NSRect frame, NSString* nib) {
    EXPECT_TRUE([[color colorSpaceName] isEqualToString:NSDeviceRGBColorSpace]);
    NSString* line = [NSString
        stringWithFormat:@"[%@] title [%@] %s big [%@] ok [%@] %d cancel [%@] %d ignore [%@] %d "
                         @"center %d frame %g %g %g %g nib [%@]",
                         message, title, Components(color).c_str(), big, ok, okOrange, cancel,
                         cancelOrange, ignore, ignoreOrange, center, frame.origin.x, frame.origin.y,
                         frame.size.width, frame.size.height, nib];
    happened.push_back([line UTF8String]);
    return answer();
}

int ShowTopMostAlert(id, SEL, NSString* message, NSString* title, NSString* ok, BOOL center,
                     NSString* big, NSColor* color, NSString* nib) {
    NSString* line = [NSString
        stringWithFormat:@"top most [%@] title [%@] ok [%@] center %d big [%@] %s nib [%@]",
                         message, title, ok, center, big, Components(color).c_str(), nib];
    happened.push_back([line UTF8String]);
    return 0;
}

}  // namespace

CommandResult RunAsAdministrator(const std::string& /*command*/) {
    NSString* script = [NSString stringWithContentsOfFile:@"/var/tmp/script.sh"
                                                 encoding:NSUTF8StringEncoding
                                                    error:NULL];
    happened.push_back("script " + std::string([script UTF8String]));
    return {verdict, 0, "", ""};
}

extern "C" int system(const char* command) {
    happened.push_back(command);
    return 256;
}

namespace {

class BrowserUtilsTest : public testing::Test {
  protected:
    BrowserUtilsTest() {
        running = {@"Finder", @"Safari"};
        happened.clear();
        verdict = Verdict::Allowed;
        Answer({});
    }

    // These answers, one after the other.
    void Answer(std::vector<int> answers) {
        answer = [answers, next = size_t(0)]() mutable {
            if (next < answers.size()) {
                return answers[next++];
            }
            ADD_FAILURE() << "asked once too often";
            return 0;
        };
    }

    const ReplacedMethod applications {
        ReplacedMethod::InstanceMethod, [NSWorkspace class], @selector(runningApplications),
            reinterpret_cast<IMP>(RunningApplications)
    };
    const ReplacedMethod alert {
        ReplacedMethod::ClassMethod, [QWIAlertUtils class],
            @selector
            (QWIAlertWithMessage:
                           Title:TitleColor:BigText:OkText:IsOKOrange:CancelText:IsCancelOrange
                                :IgnoreText:IsIgnoreOrange:Center:withFrame:andNib:),
            reinterpret_cast<IMP>(ShowAlert)
    };
    const ReplacedMethod topMostAlert {
        ReplacedMethod::ClassMethod, [QWIAlertUtils class],
            @selector
            (QWIAlertWithMessageTopMost:Title:OkText:IsCentered:BigText:TitleColor:NibName:),
            reinterpret_cast<IMP>(ShowTopMostAlert)
    };
};

TEST_F(BrowserUtilsTest, EachBrowserCountsInAnyCaseByItsWholeName) {
    for (NSString* name :
         {@"Safari", @"safari", @"SAFARI", @"sAfArI", @"Google Chrome", @"google chrome",
          @"GOOGLE CHROME", @"Microsoft Edge", @"microsoft edge", @"Firefox", @"firefox",
          @"FirefoxDeveloperEdition", @"firefoxdeveloperedition"}) {
        running = {@"Finder", name, @"Dock"};
        EXPECT_TRUE([BrowserUtils AreBrowsersStarted]) << [name UTF8String];
    }
}

TEST_F(BrowserUtilsTest, NothingElseCounts) {
    running.clear();
    EXPECT_FALSE([BrowserUtils AreBrowsersStarted]);
    running = {@"Safari Technology Preview",
               @"Safar",
               @" Safari",
               @"Safari.app",
               @"Google",
               @"Google Chrome Canary",
               @"GoogleChrome",
               @"Firefox Nightly",
               @"Firefox Developer Edition",
               @"Microsoft Edge Beta",
               @"",
               nil};
    EXPECT_FALSE([BrowserUtils AreBrowsersStarted]);
    running.push_back(@"Firefox");
    EXPECT_TRUE([BrowserUtils AreBrowsersStarted]);
}

TEST_F(BrowserUtilsTest, NobodyIsAskedWhenNoBrowserRuns) {
    running = {@"Finder"};
    EXPECT_TRUE([BrowserUtils VerifyBrowsers:YES]);
    EXPECT_TRUE([BrowserUtils VerifyBrowsers:NO:@"exit 0"]);
    EXPECT_EQ(happened, Lines());
}

TEST_F(BrowserUtilsTest, ExitStops) {
    Answer({0, 0});
    EXPECT_FALSE([BrowserUtils VerifyBrowsers:YES]);
    EXPECT_FALSE([BrowserUtils VerifyBrowsers:NO:@"exit 0"]);
    EXPECT_EQ(happened, (Lines{kInstallAlert, kUninstallAlert}));
}

TEST_F(BrowserUtilsTest, CloseBrowsersWithoutAScriptClosesNothingAndGoesOn) {
    Answer({1, 1});
    EXPECT_TRUE([BrowserUtils VerifyBrowsers:YES]);
    EXPECT_TRUE([BrowserUtils VerifyBrowsers:NO:nil]);
    EXPECT_EQ(happened, (Lines{kInstallAlert, kUninstallAlert}));
}

TEST_F(BrowserUtilsTest, CloseBrowsersWithAScriptThatSucceedsClosesNothingItself) {
    Answer({1});
    EXPECT_TRUE([BrowserUtils VerifyBrowsers:NO:@"rm traces"]);
    EXPECT_EQ(happened, (Lines{kUninstallAlert, "script rm traces"}));
}

TEST_F(BrowserUtilsTest, CloseBrowsersWithAScriptThatIsRefusedClosesThemAndGoesOn) {
    for (const Verdict refusal : {Verdict::Refused, Verdict::Cancelled}) {
        happened.clear();
        verdict = refusal;
        Answer({1});
        EXPECT_TRUE([BrowserUtils VerifyBrowsers:NO:@"rm traces"]);
        EXPECT_EQ(happened, (Lines{kUninstallAlert, "script rm traces", kCredentialsAlert} +
                             kClosingProductToo));
    }
}

TEST_F(BrowserUtilsTest, RetryLooksAgain) {
    answer = [] {
        running = {@"Finder"};
        return 2;
    };
    EXPECT_TRUE([BrowserUtils VerifyBrowsers:YES:@"rm traces"]);
    EXPECT_EQ(happened, (Lines{kInstallAlert}));
}

TEST_F(BrowserUtilsTest, RetryAsksTheSameAgainAndDropsTheScript) {
    Answer({2, 2, 1});
    EXPECT_TRUE([BrowserUtils VerifyBrowsers:NO:@"rm traces"]);
    EXPECT_EQ(happened, (Lines{kUninstallAlert, kUninstallAlert, kUninstallAlert}));
    Answer({2, 0});
    EXPECT_FALSE([BrowserUtils VerifyBrowsers:YES:@"rm traces"]);
}

TEST_F(BrowserUtilsTest, AnAlertThatIsClosedOtherwiseGoesOn) {
    Answer({-1, 3});
    EXPECT_TRUE([BrowserUtils VerifyBrowsers:YES:@"rm traces"]);
    EXPECT_TRUE([BrowserUtils VerifyBrowsers:YES]);
    EXPECT_EQ(happened, (Lines{kInstallAlert, kInstallAlert}));
}

TEST_F(BrowserUtilsTest, TracesAreRemovedByTheScriptElseTheBrowsersAreClosed) {
    EXPECT_TRUE([BrowserUtils removeTraces:nil]);
    EXPECT_EQ(happened, kClosing);
    happened.clear();
    EXPECT_TRUE([BrowserUtils removeTraces:@"rm traces"]);
    EXPECT_EQ(happened, (Lines{"script rm traces"}));
    happened.clear();
    verdict = Verdict::Refused;
    EXPECT_FALSE([BrowserUtils removeTraces:@"rm traces"]);
    EXPECT_EQ(happened, (Lines{"script rm traces", kCredentialsAlert} + kClosingProductToo));
}

}  // namespace
