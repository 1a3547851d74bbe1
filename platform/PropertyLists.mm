#include "platform/PropertyLists.h"

namespace {

// The platform promises an error, but what it is handed comes from files that anybody may edit.
void Report(NSException* exception, NSError** error) {
    if (error != NULL) {
        NSDictionary* reason = [NSDictionary dictionaryWithObject:[exception description]
                                                           forKey:NSLocalizedDescriptionKey];
        *error = [NSError errorWithDomain:[exception name] code:0 userInfo:reason];
    }
}

}  // namespace

id ParsePropertyList(NSData* data, NSPropertyListMutabilityOptions options, NSError** error) {
    if (data == nil) {
        return nil;
    }
    @try {
        return [NSPropertyListSerialization propertyListWithData:data
                                                         options:options
                                                          format:NULL
                                                           error:error];
    } @catch (NSException* exception) {
        Report(exception, error);
        return nil;
    }
}

NSData* EncodePropertyList(id root, NSPropertyListFormat format, NSError** error) {
    @try {
        return [NSPropertyListSerialization dataWithPropertyList:root
                                                          format:format
                                                         options:0
                                                           error:error];
    } @catch (NSException* exception) {
        Report(exception, error);
        return nil;
    }
}

id ReadPropertyList(NSString* path, NSPropertyListMutabilityOptions options, NSError** error) {
    NSData* data = [NSData dataWithContentsOfFile:path options:0 error:error];
    return ParsePropertyList(data, options, error);
}

BOOL WritePropertyList(id root, NSPropertyListFormat format, NSString* path, NSError** error) {
    return [EncodePropertyList(root, format, error) writeToFile:path
                                                        options:NSDataWritingAtomic
                                                          error:error];
}
