// The applications that run, from the machine's processes; GNUstep knows none.
#include <AppKit/AppKit.h>

#include <cerrno>
#include <csignal>

#include "linux/corrections/FileSystemPath.h"
#include "linux/frameworks/AppKit/RunningProcesses.h"
#include "linux/frameworks/CoreServices/ApplicationBundle.h"

/// One process that runs a program of a bundle. It counts as launched: nothing on Debian tells when
/// an application has finished that.
@interface RunningBundleApplication : NSRunningApplication {
    pid_t process_;
    NSString* executable_;
    NSString* bundle_;
    NSDictionary* info_;
}
/// @return nil for a process whose path is not a text
- (id)initWithProcess:(const RunningProcess&)process;
@end

@implementation RunningBundleApplication

- (id)initWithProcess:(const RunningProcess&)process {
    self = [super init];
    if (self == nil) {
        return nil;
    }
    process_ = process.identifier;
    executable_ = [StringFromFileSystem(process.executable) retain];
    bundle_ = [StringFromFileSystem(process.bundle) retain];
    if (executable_ == nil || bundle_ == nil) {
        [self release];
        return nil;
    }
    info_ = [ApplicationInfo(bundle_) retain];
    return self;
}

- (void)dealloc {
    [executable_ release];
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

- (NSURL*)bundleURL {
    return [NSURL fileURLWithPath:bundle_ isDirectory:YES];
}

- (NSURL*)executableURL {
    return [NSURL fileURLWithPath:executable_ isDirectory:NO];
}

- (pid_t)processIdentifier {
    return process_;
}

- (BOOL)isFinishedLaunching {
    return YES;
}

- (BOOL)isTerminated {
    return kill(process_, 0) != 0 && errno == ESRCH;
}

- (BOOL)terminate {
    return kill(process_, SIGTERM) == 0;
}

- (BOOL)forceTerminate {
    return kill(process_, SIGKILL) == 0;
}

- (NSString*)description {
    return [NSString stringWithFormat:@"<%@: %p (%@ - %d)>", [self class], self,
                                      [self bundleIdentifier], process_];
}

@end

@implementation NSWorkspace (RunningApplications)

- (NSArray*)runningApplications {
    NSMutableArray* applications = [NSMutableArray array];
    for (const RunningProcess& process : RunningProcessesOfBundles()) {
        RunningBundleApplication* application =
            [[RunningBundleApplication alloc] initWithProcess:process];
        if (application != nil) {
            [applications addObject:application];
            [application release];
        }
    }
    return applications;
}

@end

@implementation NSRunningApplication (RunningApplications)

+ (NSArray*)runningApplicationsWithBundleIdentifier:(NSString*)identifier {
    NSMutableArray* matching = [NSMutableArray array];
    for (NSRunningApplication* application in [[NSWorkspace sharedWorkspace] runningApplications]) {
        if ([[application bundleIdentifier] isEqual:identifier]) {
            [matching addObject:application];
        }
    }
    return matching;
}

+ (id)runningApplicationWithProcessIdentifier:(pid_t)identifier {
    for (NSRunningApplication* application in [[NSWorkspace sharedWorkspace] runningApplications]) {
        if ([application processIdentifier] == identifier) {
            return application;
        }
    }
    return nil;
}

@end
