#include "platform/AppWorkspaceUtils.h"

#include <AppKit/AppKit.h>

#include "logging/NSLogger.h"
#include "platform/PropertyLists.h"
#include "product/Applications.h"
#include "product/Keys.h"
#include "product/Places.h"

namespace {

NSString* const kMainApplication = @KS_MAIN_APPLICATION;
NSString* const kMainPath = @KS_PROGRAM_FOLDER KS_MAIN_APPLICATION;
NSString* const kToolsFolder = @KS_TOOLS_FOLDER;
NSString* const kWizardProgram =
    @KS_OLD_TOOLS_FOLDER KS_WIZARD_NAME ".app/Contents/MacOS/" KS_WIZARD_NAME;
NSString* const kUpdaterProgram =
    @KS_TOOLS_FOLDER KS_UPDATER_NAME ".app/Contents/MacOS/" KS_UPDATER_NAME;

// As the log calls them.
NSString* const kWizardShownName = @"legacy Wizard";
NSString* const kUpdaterShownName = @KS_UPDATER_NAME;

NSString* const kMarkerFile = @KS_MARKER_FILE;
NSString* const kOldGenerationKey = @KS_OLD_GENERATION_KEY;
NSString* const kNewGenerationKey = @KS_NEW_GENERATION_KEY;

NSString* const kWebScheme = @"http";
NSString* const kBareAddress = @"http://%@";

NSString* const kLaunching = @"Launchig application: %@";  // meant: "Launchig" is spelled so

struct Browser {
    NSString* name;
    NSString* bundleIdentifier;
};

const Browser kBrowsers[] = {{kBrowserSafari, @KS_SAFARI_IDENTIFIER},
                             {kBrowserFirefox, @KS_FIREFOX_IDENTIFIER},
                             {kBrowserChrome, @KS_CHROME_IDENTIFIER}};

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

// An empty dictionary where there is no marker file, nil where there is one without a dictionary,
// or one that cannot be read, of which *error tells.
NSMutableDictionary* ReadMarker(NSError** error) {
    if (![[NSFileManager defaultManager] fileExistsAtPath:kMarkerFile]) {
        return [NSMutableDictionary dictionary];
    }
    id marker = ReadPropertyList(kMarkerFile, NSPropertyListMutableContainers, error);
    return [marker isKindOfClass:[NSDictionary class]] ? marker : nil;
}

// What is there without being a marker is not ours to replace.
BOOL WriteMarker(NSError** error) {
    NSMutableDictionary* marker = ReadMarker(error);
    [marker setObject:[NSString stringWithFormat:@"%d", 1] forKey:kOldGenerationKey];
    [marker setObject:[NSString stringWithFormat:@"%d", 0] forKey:kNewGenerationKey];
    return marker != nil &&
           WritePropertyList(marker, NSPropertyListXMLFormat_v1_0, kMarkerFile, error);
}

void MarkOldGeneration() {
    NSError* error = nil;
    if (!WriteMarker(&error)) {
        // Meant: "Coudn't" is spelled so.
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
    if (![[NSWorkspace sharedWorkspace] launchApplication:kMainPath]) {
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
    if (!StartProgram(kWizardProgram, kWizardShownName, arguments)) {
        return NO;
    }
    MarkOldGeneration();
    [NSLogger LogInformation:kLaunching, kWizardProgram];
    return YES;
}

+ (BOOL)StartKSUpdaterWithArguments:(NSArray*)arguments {
    if (!StartProgram(kUpdaterProgram, kUpdaterShownName, arguments)) {
        return NO;
    }
    [NSLogger LogInformation:kLaunching, kUpdaterProgram];
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
