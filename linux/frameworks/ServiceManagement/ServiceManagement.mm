#include <ServiceManagement/ServiceManagement.h>

#include <Foundation/Foundation.h>

const CFStringRef kSMDomainSystemLaunchd = (CFStringRef) @"kSMDomainSystemLaunchd";

Boolean SMJobBless(CFStringRef /*domain*/, CFStringRef executableLabel, AuthorizationRef auth,
                   CFErrorRef* outError) {
    const AuthorizationRights none = {0, NULL};
    AuthorizationCopyRights(auth, &none, NULL, 0, NULL);  // ends the program if it was freed
    if (outError != NULL) {
        NSString* text = [NSString
            stringWithFormat:@"There is no launchd to run %@", (NSString*)executableLabel];
        NSDictionary* info = [NSDictionary dictionaryWithObject:text
                                                         forKey:NSLocalizedDescriptionKey];
        *outError = (CFErrorRef)[[NSError alloc] initWithDomain:@"CFErrorDomainLaunchd"
                                                           code:2
                                                       userInfo:info];
    }
    return false;
}
