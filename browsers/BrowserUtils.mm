#include "browsers/BrowserUtils.h"

#include <AppKit/AppKit.h>
#include <stdlib.h>

#include "browsers/AdministratorScript.h"
#include "product/Applications.h"
#include "ui/InvalidCredentials.h"
#include "ui/QWIAlertUtils.h"

namespace {

NSString* const kBrowserNames[] = {@KS_SAFARI_NAME, @KS_CHROME_NAME, @KS_EDGE_NAME,
                                   @KS_FIREFOX_NAME, @"FirefoxDeveloperEdition"};

const char* const kCloseCommands[] = {
    "killall Safari",
    "killall firefox-bin",
    "killall firefox",
    "killall aurora",
    "killall nightly",
    "killall \"google chrome\"",
    "killall \"Google Chrome\"",
    "killall \"Google Chrome Canary\"",
    "killall \"Microsoft Edge\"",
};
const char* const kCloseProductCommand = "kill \"Keystrel\"";  // meant: kill takes no names

NSString* const kCloseForInstall =
    @"Keystrel has detected an Internet browser running. In order to continue the installation "
    @"please close all open browsers and Retry or click the Close Browsers button.";
NSString* const kCloseForUninstall =
    @"Keystrel has detected an Internet browser running. In order to continue with the uninstall "
    @"please close all open browsers and Retry or click the Close Browsers button.";

enum Answer { kExit = 0, kCloseBrowsers = 1, kRetry = 2 };

NSColor* Green() {
    return [NSColor colorWithDeviceRed:0.55 green:0.77 blue:0.24 alpha:1.0];
}

NSInteger AskToCloseBrowsers(BOOL isInstall) {
    return [QWIAlertUtils QWIAlertWithMessage:isInstall ? kCloseForInstall : kCloseForUninstall
                                        Title:@""
                                   TitleColor:Green()
                                      BigText:@""
                                       OkText:@"Exit"
                                   IsOKOrange:NO
                                   CancelText:@"Close Browsers"
                               IsCancelOrange:YES
                                   IgnoreText:@"Retry"
                               IsIgnoreOrange:NO
                                       Center:YES
                                    withFrame:NSZeroRect
                                       andNib:@"QWBrowsersAlert"];
}

// A browser that does not run is no failure, so no command's result is looked at.
void Run(const char* command) {
    static_cast<void>(system(command));
}

void CloseBrowsers() {
    for (const char* command : kCloseCommands) {
        Run(command);
    }
}

bool IsBrowser(NSString* applicationName) {
    for (NSString* name : kBrowserNames) {
        if (applicationName != nil &&
            [applicationName caseInsensitiveCompare:name] == NSOrderedSame) {
            return true;
        }
    }
    return false;
}

}  // namespace

@implementation BrowserUtils

+ (BOOL)AreBrowsersStarted {
    // The list changes only while the run loop runs, and each check is a new one.
    [[NSRunLoop mainRunLoop] runMode:NSDefaultRunLoopMode beforeDate:[NSDate date]];
    for (NSRunningApplication* application in [[NSWorkspace sharedWorkspace] runningApplications]) {
        if (IsBrowser([application localizedName])) {
            return YES;
        }
    }
    return NO;
}

+ (BOOL)VerifyBrowsers:(BOOL)isInstall {
    return [BrowserUtils VerifyBrowsers:isInstall:nil];
}

// clang-format off
+ (BOOL)VerifyBrowsers:(BOOL)isInstall :(NSString*)script {
    // clang-format on
    if (![BrowserUtils AreBrowsersStarted]) {
        return YES;
    }
    switch (AskToCloseBrowsers(isInstall)) {
        case kExit:
            return NO;
        case kCloseBrowsers:
            if (script != nil) {
                [BrowserUtils removeTraces:script];
            }
            return YES;  // meant: without a script nothing is closed
        case kRetry:
            return [BrowserUtils VerifyBrowsers:isInstall];  // meant: the script is dropped
        default:
            return YES;
    }
}

+ (BOOL)removeTraces:(NSString*)script {
    if (script == nil) {
        CloseBrowsers();
        return YES;
    }
    if (RunAdministratorScript(script)) {
        return YES;
    }
    ShowInvalidCredentials(Green());
    CloseBrowsers();
    Run(kCloseProductCommand);
    return NO;
}

@end
