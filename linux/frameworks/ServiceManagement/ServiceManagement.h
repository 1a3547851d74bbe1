// Service Management, as far as the program uses it, with Apple's names and prototypes.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <Security/Security.h>

#ifdef __cplusplus
extern "C" {
#endif

extern const CFStringRef kSMDomainSystemLaunchd;

/// There is no launchd here to bless a job, so this always fails, with an error for the caller to
/// release.
Boolean SMJobBless(CFStringRef domain, CFStringRef executableLabel, AuthorizationRef auth,
                   CFErrorRef* outError);

#ifdef __cplusplus
}
#endif
