#include "platform/AppWorkspaceUtils.h"

#include <AppKit/AppKit.h>

#include "logging/NSLogger.h"

namespace {

NSString* const kMainFolder = @"/Applications/Keystrel.app/Contents/Keystrel/";
NSString* const kMainApplication = @"Keystrel.app";
NSString* const kToolsFolder = @"/Applications/Keystrel.app/Contents/Keystrel/Bin/";
NSString* const kOldToolsFolder =
    @"/Applications/Keystrel.app/Contents/KeystrelOLD/Keystrel.app/Contents/Keystrel/Bin/";
NSString* const kWizardApplication = @"Keystrel Wizard.app";
NSString* const kWizardProgram = @"/Contents/MacOS/Keystrel Wizard";
NSString* const kUpdaterApplication = @"KSUpdater.app";
NSString* const kUpdaterProgram = @"/Contents/MacOS/KSUpdater";

// As the log calls them.
NSString* const kWizardShownName = @"legacy Wizard";
NSString* const kUpdaterShownName = @"KSUpdater";

NSString* const kMarkerFile = @"/Applications/Keystrel.app/Contents/infoDict.plist";
NSString* const kOldGenerationKey = @"IsOldKS";
NSString* const kNewGenerationKey = @"IsNewKS";

NSString* const kWebScheme = @"http";
NSString* const kBareAddress = @"http://%@";

NSString* const kLaunching = @"Launchig application: %@";  // meant: spelt so

struct Browser {
    NSString* name;
    NSString* bundleIdentifier;
};

const Browser kBrowsers[] = {{kBrowserSafari, @"com.apple.Safari"},
                             {kBrowserFirefox, @"org.mozilla.firefox"},
                             {kBrowserChrome, @"com.google.Chrome"}};

// nil for a browser that the table lacks.
NSString* BundleIdentifier(NSString* browser) {
    for (const Browser& known : kBrowsers) {
        if ([browser isEqualToString:known.name]) {
            return known.bundleIdentifier;
        }
    }
    return nil;
}

NSTask* Launch(NSString* program, NSArray* arguments) {
    @try {
        return [NSTask launchedTaskWithLaunchPath:program arguments:arguments];
    } @catch (NSException*) {  // how the platform reports what it cannot start
        return nil;
    }
}

// Starts a child process. A failure is logged, a success is not.
BOOL StartProgram(NSString* program, NSString* shownName, NSArray* arguments) {
    if (![[NSFileManager defaultManager] fileExistsAtPath:program]) {
        [NSLogger LogFailure:@"Can't launch %@: %@. File Not Found", shownName, program];
        return NO;
    }
    if (Launch(program, arguments) == nil) {
        [NSLogger LogFailure:@"Can't launch %@: %@", shownName, program];
        return NO;
    }
    return YES;
}

// An empty dictionary where there is no marker file, nil where there is one without a dictionary.
NSMutableDictionary* ReadMarker() {
    return [[NSFileManager defaultManager] fileExistsAtPath:kMarkerFile]
               ? [NSMutableDictionary dictionaryWithContentsOfFile:kMarkerFile]
               : [NSMutableDictionary dictionary];
}

BOOL WriteMarker(NSDictionary* marker, NSError** error) {
    return [[NSPropertyListSerialization dataWithPropertyList:marker
                                                       format:NSPropertyListXMLFormat_v1_0
                                                      options:0
                                                        error:error] writeToFile:kMarkerFile
                                                                         options:NSDataWritingAtomic
                                                                           error:error];
}

void MarkOldGeneration() {
    NSMutableDictionary* marker = ReadMarker();
    if (marker == nil) {
        return;
    }
    [marker setObject:[NSString stringWithFormat:@"%d", 1] forKey:kOldGenerationKey];
    [marker setObject:[NSString stringWithFormat:@"%d", 0] forKey:kNewGenerationKey];
    NSError* error = nil;
    if (!WriteMarker(marker, &error)) {
        [NSLogger LogFailure:@"Coudn't save local data with error: %@!", [error description]];
    }
}

}  // namespace

@implementation AppWorkspaceUtils

+ (BOOL)IsAppRunning:(NSString*)bundleIdentifier {
    if (bundleIdentifier == nil) {
        return NO;
    }
    // The list changes only while the run loop runs.
    [[NSRunLoop mainRunLoop] runMode:NSDefaultRunLoopMode beforeDate:[NSDate date]];
    for (NSRunningApplication* app in [[NSWorkspace sharedWorkspace] runningApplications]) {
        if ([[app bundleIdentifier] isEqualToString:bundleIdentifier] &&
            [app isFinishedLaunching]) {
            return YES;
        }
    }
    return NO;
}

+ (BOOL)StartKeystrel {
    NSString* path = [kMainFolder stringByAppendingPathComponent:kMainApplication];
    if (![[NSWorkspace sharedWorkspace] launchApplication:path]) {
        [NSLogger LogFailure:@"Can't launch %@", kMainApplication];
        return NO;
    }
    [NSLogger LogInformation:@"Launchig Keystrel!"];
    return YES;
}

+ (void)StartApplication:(NSString*)name {
    if (name == nil) {
        return;
    }
    NSString* path = [kToolsFolder stringByAppendingPathComponent:name];
    [[NSWorkspace sharedWorkspace] launchApplication:path];
    [NSLogger LogInformation:kLaunching, path];  // meant: launched or not
}

+ (BOOL)StartKSWizardOldWithArguments:(NSArray*)arguments {
    NSString* program = [[kOldToolsFolder stringByAppendingPathComponent:kWizardApplication]
        stringByAppendingPathComponent:kWizardProgram];
    if (!StartProgram(program, kWizardShownName, arguments)) {
        return NO;
    }
    MarkOldGeneration();
    [NSLogger LogInformation:kLaunching, program];
    return YES;
}

+ (BOOL)StartKSUpdaterWithArguments:(NSArray*)arguments {
    NSString* program = [[kToolsFolder stringByAppendingPathComponent:kUpdaterApplication]
        stringByAppendingPathComponent:kUpdaterProgram];
    if (!StartProgram(program, kUpdaterShownName, arguments)) {
        return NO;
    }
    [NSLogger LogInformation:kLaunching, program];
    return YES;
}

- (void)OpenURL:(NSString*)address withBrowser:(NSString*)browser {
    NSString* bundleIdentifier = BundleIdentifier(browser);
    NSString* complete = [address hasPrefix:kWebScheme]
                             ? address
                             : [NSString stringWithFormat:kBareAddress, address];
    NSURL* url = address != nil ? [NSURL URLWithString:complete] : nil;
    if (bundleIdentifier == nil || url == nil) {
        return;
    }
    [[NSWorkspace sharedWorkspace] openURLs:[NSArray arrayWithObject:url]
                    withAppBundleIdentifier:bundleIdentifier
                                    options:NSWorkspaceLaunchDefault
             additionalEventParamDescriptor:nil
                          launchIdentifiers:NULL];
}

@end
