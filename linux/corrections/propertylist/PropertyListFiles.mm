// Dictionaries as files: Apple reads every format of property list. GNUstep does not read binary
// lists here.
#include <Foundation/Foundation.h>

@implementation NSDictionary (PropertyListFiles)

- (id)mac_initWithContentsOfFile:(NSString*)path {
    const BOOL isMutable = [self isKindOfClass:[NSMutableDictionary class]];
    NSData* data = [NSData dataWithContentsOfFile:path];
    id list = [NSPropertyListSerialization
        propertyListWithData:data
                     options:isMutable ? NSPropertyListMutableContainers : NSPropertyListImmutable
                      format:nullptr
                       error:nullptr];
    if (![list isKindOfClass:[NSDictionary class]]) {
        [self release];
        return nil;
    }
    return [self initWithDictionary:list];
}

@end
