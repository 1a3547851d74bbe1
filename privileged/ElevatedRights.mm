#include "privileged/ElevatedRights.h"

#include <ServiceManagement/ServiceManagement.h>
#include <stdlib.h>
#include <unistd.h>

#include "logging/NSLogger.h"
#include "platform/FileModes.h"
#include "platform/ScopedHandles.h"
#include "product/Places.h"
#include "ui/InvalidCredentials.h"

namespace {

// Meant: one script file.
NSString* const kScriptFolder = @"/var/tmp";
NSString* const kScriptName = @"script.sh";

NSString* const kWithRights = @"do shell script \"%@\" with administrator privileges";
NSString* const kWithoutRights = @"do shell script \"%@\"";

const char* const kAdministratorRight = "system.privilege.admin";
// Meant: the right has this name.
const char* const kCommandRight = "com.mycompany.myapplication.command2PA";

NSString* const kJobScript = @"/private/tmp/%@.sh";
NSString* const kJobScriptType = @"sh";
const mode_t kJobScriptMode = 0775;
const char* const kTemporaryFolderVariable = "TMPDIR";
const char* const kTemporaryFolder = "/private/tmp/";
const useconds_t kBlessingPause = 1000000;

const int kUserCancelled = -128;  // AppleScript's error number
NSString* const kPasswordRequired = @"The administrator password is required to do this.";

// What the user is told of a script that failed.
NSString* DescriptionOf(NSDictionary* errorInfo) {
    id number = [errorInfo objectForKey:NSAppleScriptErrorNumber];
    if ([number isKindOfClass:[NSNumber class]] && [number intValue] == kUserCancelled) {
        return kPasswordRequired;
    }
    id message = [errorInfo objectForKey:NSAppleScriptErrorMessage];
    return [message isKindOfClass:[NSString class]] ? message : @"";
}

// Runs a file through AppleScript. Meant: not escaped, neither the path nor the arguments. A caller
// may rely on the shell's reading of its arguments.
BOOL RunFile(NSString* path, NSArray* arguments, NSString* sourceFormat, NSString** output,
             NSString** errorDescription) {
    NSString* command =
        [NSString stringWithFormat:@"'%@' %@", path, [arguments componentsJoinedByString:@" "]];
    if (![[NSFileManager defaultManager] fileExistsAtPath:path]) {
        return NO;
    }
    NSString* source = [NSString stringWithFormat:sourceFormat, command];
    NSAppleScript* script = [[[NSAppleScript alloc] initWithSource:source] autorelease];
    NSDictionary* errorInfo = nil;
    NSAppleEventDescriptor* result = [script executeAndReturnError:&errorInfo];
    if (result == nil) {
        *errorDescription = DescriptionOf(errorInfo);
        return NO;
    }
    *output = [result stringValue];
    return YES;
}

// Writes the script's text to the one script file; nil when it cannot be written.
NSString* SaveScript(NSString* text) {
    NSString* path = [NSString stringWithFormat:@"%@/%@", kScriptFolder, kScriptName];
    NSError* error = nil;
    if (![text writeToFile:path atomically:YES encoding:NSUTF8StringEncoding error:&error]) {
        [NSLogger LogFailure:@"Can't save SH to file! Error: %@", [error description]];
        return nil;
    }
    SetFileMode(path, kOpenToEverybody);
    return path;
}

void RemoveScript(NSString* path) {
    NSError* error = nil;
    if (![[NSFileManager defaultManager] removeItemAtPath:path error:&error] &&
        [error code] != NSFileNoSuchFileError) {
        [NSLogger LogWarning:@"Can't delete saved script. Error: %@", [error description]];
    }
}

BOOL RunText(NSString* script, NSArray* arguments, NSString* sourceFormat, NSString** output,
             NSString** errorDescription) {
    NSString* path = SaveScript(script);
    if (path == nil) {
        return NO;
    }
    const BOOL succeeded = RunFile(path, arguments, sourceFormat, output, errorDescription);
    RemoveScript(path);
    return succeeded;
}

OSStatus RequestRight(AuthorizationRef authorization, const char* name, AuthorizationFlags flags) {
    AuthorizationItem item = {name, 0, NULL, 0};
    AuthorizationRights rights = {1, &item};
    return AuthorizationCopyRights(authorization, &rights, NULL, flags, NULL);
}

OSStatus CreateAuthorization(AuthorizationRef* authorization) {
    return AuthorizationCreate(NULL, NULL, kAuthorizationFlagDefaults, authorization);
}

NSColor* Red() {
    return [NSColor colorWithDeviceRed:0.93 green:0.11 blue:0.14 alpha:1.0];
}

// The last component of the path, up to its first ".".
NSString* BaseName(NSString* path) {
    NSString* name = [[path componentsSeparatedByString:@"/"] lastObject];
    return [[name componentsSeparatedByString:@"."] objectAtIndex:0];
}

// Copies the script to where launchd takes it from; neither the copy nor its mode is checked.
NSString* SaveJobScript(NSString* path) {
    NSString* name = BaseName(path);
    NSString* resource = [[NSBundle mainBundle] pathForResource:name ofType:kJobScriptType];
    NSData* script = [NSData dataWithContentsOfFile:resource != nil ? resource : path];
    NSString* copy = [NSString stringWithFormat:kJobScript, name];
    [script writeToFile:copy atomically:YES];
    SetFileMode(copy, kJobScriptMode);
    return copy;
}

BOOL Bless(NSString* label, AuthorizationRef authorization) {
    ScopedCFRef<CFErrorRef> error;  // nobody is told the reason
    return SMJobBless(kSMDomainSystemLaunchd, (CFStringRef)label, authorization, error.Out()) != 0;
}

}  // namespace

@implementation ElevatedRights

+ (BOOL)runStringAsAdministrator:(NSString*)script
                   withArguments:(NSArray*)arguments
                          output:(NSString**)output
                errorDescription:(NSString**)errorDescription {
    return RunText(script, arguments, kWithRights, output, errorDescription);
}

+ (BOOL)runString:(NSString*)script
       withArguments:(NSArray*)arguments
              output:(NSString**)output
    errorDescription:(NSString**)errorDescription {
    return RunText(script, arguments, kWithoutRights, output, errorDescription);
}

+ (BOOL)runProcessAsAdministrator:(NSString*)path
                    withArguments:(NSArray*)arguments
                           output:(NSString**)output
                 errorDescription:(NSString**)errorDescription {
    return RunFile(path, arguments, kWithRights, output, errorDescription);
}

+ (BOOL)runProcess:(NSString*)path
       withArguments:(NSArray*)arguments
              output:(NSString**)output
    errorDescription:(NSString**)errorDescription {
    return RunFile(path, arguments, kWithoutRights, output, errorDescription);
}

+ (OSStatus)elevate:(AuthorizationRef*)authorization {
    const OSStatus status = CreateAuthorization(authorization);
    if (status != errAuthorizationSuccess) {
        return status;
    }
    return RequestRight(*authorization, kCommandRight,
                        kAuthorizationFlagInteractionAllowed | kAuthorizationFlagExtendRights);
}

// A platform's reference may be freed once; what was freed is never handed to it again.
- (void)FreeAuthorization {
    if (authorizationRef != NULL && !isAuthorizationFreed) {
        AuthorizationFree(authorizationRef, kAuthorizationFlagDestroyRights);
    }
    isAuthorizationFreed = YES;
}

- (OSStatus)GetElevatedRights {
    [self FreeAuthorization];
    authorizationRef = NULL;
    isAuthorizationFreed = NO;
    const OSStatus status = CreateAuthorization(&authorizationRef);
    if (status != errAuthorizationSuccess) {
        return status;
    }
    return RequestRight(authorizationRef, kAdministratorRight,
                        kAuthorizationFlagInteractionAllowed | kAuthorizationFlagExtendRights |
                            kAuthorizationFlagPreAuthorize);
}

- (AuthorizationRef)GetAuthorization {
    if (authorizationRef == NULL && [self GetElevatedRights] != errAuthorizationSuccess) {
        ShowInvalidCredentials(Red());
        return NULL;  // meant: the reference stays, so the next call returns it
    }
    return authorizationRef;
}

- (BOOL)executeScriptWithRights:(NSString*)path {
    const AuthorizationRef authorization = [self GetAuthorization];
    if (authorization == NULL) {
        return NO;
    }
    NSString* script = SaveJobScript(path);
    usleep(kBlessingPause);
    if (setenv(kTemporaryFolderVariable, kTemporaryFolder, 1) != 0) {
        [NSLogger LogFailure:@"Fail to set TMPFIR"];  // meant: "ELEVL" and "TMPFIR" are spelled so
    }
    [NSLogger LogInformation:@"PATH ELEVL %@", script];
    if (isAuthorizationFreed || !Bless(script, authorization)) {
        [NSLogger LogInformation:@"SMJOB FAILS FOR PATH ELEVL %@", script];
        // Meant: the object keeps the freed reference. A later GetAuthorization returns it.
        [self FreeAuthorization];
        return NO;
    }
    usleep(kBlessingPause);
    return YES;
}

- (void)dealloc {
    [self FreeAuthorization];
    [super dealloc];
}

@end
