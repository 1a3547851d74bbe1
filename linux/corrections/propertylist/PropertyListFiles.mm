// Dictionaries and arrays as files: Apple reads every format of property list and writes XML.
// GNUstep does not read binary lists here and writes its own text format.
#include <Foundation/Foundation.h>

namespace {

/// @return the list with that kind of root; nil if there is none
id ListFromData(NSData* data, Class rootClass, BOOL isMutable) {
    const NSPropertyListMutabilityOptions options =
        isMutable ? NSPropertyListMutableContainers : NSPropertyListImmutable;
    id list = [NSPropertyListSerialization propertyListWithData:data
                                                        options:options
                                                         format:nullptr
                                                          error:nullptr];
    return [list isKindOfClass:rootClass] ? list : nil;
}

NSData* XMLFromList(id list) {
    return [NSPropertyListSerialization dataWithPropertyList:list
                                                      format:NSPropertyListXMLFormat_v1_0
                                                     options:0
                                                       error:nullptr];
}

BOOL WriteToFile(id list, NSString* path, BOOL atomically) {
    return [XMLFromList(list) writeToFile:path atomically:atomically];
}

BOOL WriteToURL(id list, NSURL* url, BOOL atomically) {
    return [url isFileURL] && WriteToFile(list, [url path], atomically);
}

NSData* DataOfURL(NSURL* url) {
    return [url isFileURL] ? [NSData dataWithContentsOfFile:[url path]]
                           : [NSData dataWithContentsOfURL:url];
}

}  // namespace

@interface NSDictionary (PropertyListData)
- (id)initWithPropertyListData:(NSData*)data;
@end

@implementation NSDictionary (PropertyListData)

- (id)initWithPropertyListData:(NSData*)data {
    const BOOL isMutable = [self isKindOfClass:[NSMutableDictionary class]];
    NSDictionary* list = ListFromData(data, [NSDictionary class], isMutable);
    if (list == nil) {
        [self release];
        return nil;
    }
    return [self initWithDictionary:list];
}

- (id)initWithContentsOfFile:(NSString*)path {
    return [self initWithPropertyListData:[NSData dataWithContentsOfFile:path]];
}

- (id)initWithContentsOfURL:(NSURL*)url {
    return [self initWithPropertyListData:DataOfURL(url)];
}

- (BOOL)writeToFile:(NSString*)path atomically:(BOOL)atomically {
    return WriteToFile(self, path, atomically);
}

- (BOOL)writeToURL:(NSURL*)url atomically:(BOOL)atomically {
    return WriteToURL(self, url, atomically);
}

@end

@interface NSArray (PropertyListData)
- (id)initWithPropertyListData:(NSData*)data;
@end

@implementation NSArray (PropertyListData)

- (id)initWithPropertyListData:(NSData*)data {
    const BOOL isMutable = [self isKindOfClass:[NSMutableArray class]];
    NSArray* list = ListFromData(data, [NSArray class], isMutable);
    if (list == nil) {
        [self release];
        return nil;
    }
    return [self initWithArray:list];
}

- (id)initWithContentsOfFile:(NSString*)path {
    return [self initWithPropertyListData:[NSData dataWithContentsOfFile:path]];
}

- (id)initWithContentsOfURL:(NSURL*)url {
    return [self initWithPropertyListData:DataOfURL(url)];
}

- (BOOL)writeToFile:(NSString*)path atomically:(BOOL)atomically {
    return WriteToFile(self, path, atomically);
}

- (BOOL)writeToURL:(NSURL*)url atomically:(BOOL)atomically {
    return WriteToURL(self, url, atomically);
}

@end
