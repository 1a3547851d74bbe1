// The applications that run, from the machine's processes; GNUstep knows none.
//
// The list changes only while the main run loop runs in a common mode, as on a Mac: who asks twice
// without a turn of the loop gets the first answer again. After a turn the next question reads it
// anew.
#include <AppKit/AppKit.h>

#include "linux/corrections/FileSystemPath.h"
#include "linux/frameworks/AppKit/RunningProcesses.h"
#include "linux/frameworks/CoreServices/ApplicationBundle.h"

/// One process that runs a program of a bundle. It counts as launched: nothing on Debian tells when
/// an application has finished that.
@interface RunningBundleApplication : NSRunningApplication {
    NSString* bundle_;
    NSDictionary* info_;
}
- (id)initWithBundle:(NSString*)path;
@end

@implementation RunningBundleApplication

- (id)initWithBundle:(NSString*)path {
    self = [super init];
    if (self != nil) {
        bundle_ = [path copy];
        info_ = [ApplicationInfo(path) retain];
    }
    return self;
}

- (void)dealloc {
    [bundle_ release];
    [info_ release];
    [super dealloc];
}

- (NSString*)bundleIdentifier {
    return ApplicationIdentifier(info_);
}

- (NSString*)localizedName {
    return ApplicationName(bundle_, info_);
}

- (BOOL)isFinishedLaunching {
    return YES;
}

@end

namespace {

NSArray* known = nil;

NSArray* NewApplications() {
    NSMutableArray* applications = [[NSMutableArray alloc] init];
    for (const std::string& bundle : BundlesOfProcesses()) {
        if (NSString* path = StringFromFileSystem(bundle)) {
            [applications
                addObject:[[[RunningBundleApplication alloc] initWithBundle:path] autorelease]];
        }
    }
    return applications;
}

}  // namespace

@implementation NSRunLoop (RunningApplications)

- (BOOL)mac_runMode:(NSString*)mode beforeDate:(NSDate*)limit {
    const BOOL didRun = [self mac_runMode:mode beforeDate:limit];
    NSArray* common =
        @[ NSDefaultRunLoopMode, NSModalPanelRunLoopMode, NSEventTrackingRunLoopMode ];
    if (known != nil && self == [NSRunLoop mainRunLoop] && [common containsObject:mode]) {
        [known release];
        known = nil;
    }
    return didRun;
}

@end

@implementation NSWorkspace (RunningApplications)

- (NSArray*)runningApplications {
    if (known == nil) {
        known = NewApplications();
    }
    return [[known retain] autorelease];
}

@end
