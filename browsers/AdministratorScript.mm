#include "browsers/AdministratorScript.h"

#include "privileged/ElevatedRights.h"

BOOL RunAdministratorScript(NSString* script) {
    NSString* output = nil;
    NSString* errorDescription = nil;
    return [ElevatedRights runStringAsAdministrator:script
                                      withArguments:[NSArray arrayWithObject:@""]
                                             output:&output
                                   errorDescription:&errorDescription];
}
