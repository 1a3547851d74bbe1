// Dictionaries as files: Apple reads every format of property list. GNUstep does not read binary
// lists here.
#include <Foundation/Foundation.h>

#include <objc/runtime.h>

@implementation NSDictionary (PropertyListFiles)

+ (void)load {
    method_exchangeImplementations(
        class_getInstanceMethod(self, @selector(initWithContentsOfFile:)),
        class_getInstanceMethod(self, @selector(mac_initWithContentsOfFile:)));
}

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
