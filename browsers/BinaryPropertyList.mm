#include "browsers/BinaryPropertyList.h"

id ParsePropertyList(NSData* data, NSError** error) {
    if (data == nil) {
        return nil;
    }
    return
        [NSPropertyListSerialization propertyListWithData:data
                                                  options:NSPropertyListMutableContainersAndLeaves
                                                   format:NULL
                                                    error:error];
}

NSData* EncodeBinaryPropertyList(id root, NSError** error) {
    if (root == nil) {
        return nil;
    }
    return [NSPropertyListSerialization dataWithPropertyList:root
                                                      format:NSPropertyListBinaryFormat_v1_0
                                                     options:0
                                                       error:error];
}

BOOL WriteBinaryPropertyList(id root, NSString* path, NSError** error) {
    NSData* data = EncodeBinaryPropertyList(root, NULL);
    return data == nil || [data writeToFile:path options:NSDataWritingAtomic error:error];
}
