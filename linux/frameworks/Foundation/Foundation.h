// GNUstep's Foundation, with the declarations that Apple's has and GNUstep's lacks.
#pragma once

#include_next <Foundation/Foundation.h>

enum {
    NSFileWriteVolumeReadOnlyError = 642,
    NSPropertyListReadCorruptError = 3840,
    NSPropertyListWriteStreamError = 3851,
};

typedef NSUInteger NSDataReadingOptions;

@interface NSData (AppleDeclarations)
+ (id)dataWithContentsOfFile:(NSString*)path
                     options:(NSDataReadingOptions)options
                       error:(NSError**)error;
@end

@interface NSFileManager (AppleDeclarations)
- (NSArray*)subpathsOfDirectoryAtPath:(NSString*)path error:(NSError**)error;
@end
