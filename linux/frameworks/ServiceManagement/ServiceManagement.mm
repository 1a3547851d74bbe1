#include <ServiceManagement/ServiceManagement.h>

#include <Foundation/Foundation.h>

const CFStringRef kSMDomainSystemLaunchd = (CFStringRef) @"kSMDomainSystemLaunchd";

Boolean SMJobBless(CFStringRef /*domain*/, CFStringRef /*executableLabel*/, AuthorizationRef auth,
                   CFErrorRef* outError) {
    const AuthorizationRights none = {0, NULL};
    AuthorizationCopyRights(auth, &none, NULL, 0, NULL);  // ends the program if it was freed
    if (outError != NULL) {
        *outError = (CFErrorRef)[[NSError alloc] initWithDomain:@"CFErrorDomainLaunchd"
                                                           code:2
                                                       userInfo:nil];
    }
    return false;
}
