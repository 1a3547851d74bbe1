#pragma once

#include <Foundation/Foundation.h>
#include <Security/Security.h>

/// The one place where the program runs something with administrator rights. The system asks the
/// user for them; every operation blocks until it is answered and done.
///
/// Scripts and files run through AppleScript's `do shell script`. Their operations take
/// out-parameters that must be valid: `output` gets, on success, the text that AppleScript makes of
/// the standard output (line feeds become returns, one line end at the end is dropped);
/// `errorDescription` gets, on failure, "The administrator password is required to do this." when
/// the user cancelled the prompt (AppleScript's error -128), else AppleScript's message, else an
/// empty text. The other one is not touched.
///
/// Meant: one script file, /var/tmp/script.sh. So run one script at a time. An operation that runs
/// a file logs nothing by itself.
@interface ElevatedRights : NSObject {
    AuthorizationRef authorizationRef;
    BOOL isAuthorizationFreed;  // the reference stays all the same
}

/// Writes a shell script to a file, with mode 0777, runs it with administrator rights and removes
/// it. Logs the failure "Can't save SH to file! Error: %@" when the file cannot be written (nothing
/// is run and no out-parameter touched), and the warning "Can't delete saved script. Error: %@"
/// when it cannot be removed, unless it is gone already.
/// @param script     the script's text
/// @param arguments  strings, joined by blanks. Meant: not escaped, so the shell splits them again.
/// @return whether the rights were given and the script ended with status 0
+ (BOOL)runStringAsAdministrator:(NSString*)script
                   withArguments:(NSArray*)arguments
                          output:(NSString**)output
                errorDescription:(NSString**)errorDescription;

/// The same without administrator rights.
+ (BOOL)runString:(NSString*)script
       withArguments:(NSArray*)arguments
              output:(NSString**)output
    errorDescription:(NSString**)errorDescription;

/// Runs an executable file with administrator rights.
/// @param path       the file; its path must hold no quotes and no backslashes
/// @param arguments  see above
/// @return whether it ended with status 0; NO, with no out-parameter touched, when there is no
///         such file
+ (BOOL)runProcessAsAdministrator:(NSString*)path
                    withArguments:(NSArray*)arguments
                           output:(NSString**)output
                 errorDescription:(NSString**)errorDescription;

/// The same without administrator rights.
+ (BOOL)runProcess:(NSString*)path
       withArguments:(NSArray*)arguments
              output:(NSString**)output
    errorDescription:(NSString**)errorDescription;

/// Requests the right "com.mycompany.myapplication.command2PA" with a new authorization. Nothing is
/// logged. Meant: the right has this name.
/// @param authorization  gets the reference, which the caller frees, also when the right is refused
/// @return the platform's status, 0 on success
+ (OSStatus)elevate:(AuthorizationRef*)authorization;

/// Makes the object's authorization and requests the right "system.privilege.admin". A refused
/// request leaves the authorization in place. An earlier authorization is freed. Nothing is logged.
/// @return the platform's status, 0 on success
- (OSStatus)GetElevatedRights;

/// The object's authorization, made and requested first if there is none. A refused request shows
/// the alert "Invalid credentials". Meant: the reference stays, so the next call returns it without
/// the right and without asking. Logs nothing but what QWIAlertUtils logs where it cannot show an
/// alert.
/// @return NULL when the request was refused; owned by the object
- (AuthorizationRef)GetAuthorization;

/// Copies a script to /private/tmp, with mode 0775, and has launchd bless it as a privileged job.
/// The main bundle's script of the same base name, where there is one, is taken in its place. Sets
/// TMPDIR to "/private/tmp/" for the process, and sleeps a second before and one after.
///
/// Logs the information "PATH ELEVL %@" with the copy's path; when the job is not blessed the
/// information "SMJOB FAILS FOR PATH ELEVL %@", and the authorization is freed; the failure "Fail
/// to set TMPFIR" when TMPDIR cannot be set, and goes on. Meant: "ELEVL" and "TMPFIR" are spelled
/// so. Meant: the object keeps the freed reference. With it launchd is not asked: the job counts as
/// not blessed.
/// @param path  the script; one that cannot be read is blessed all the same
/// @return whether the job was blessed; NO, without a line, when GetAuthorization returns NULL
- (BOOL)executeScriptWithRights:(NSString*)path;

@end
