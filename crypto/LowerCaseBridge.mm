#include "crypto/LowerCaseBridge.h"

#include <Foundation/Foundation.h>

std::string LowerCaseBridge(const std::string& text) {
    @autoreleasepool {
        NSString* string = [NSString stringWithCString:text.c_str()
                                              encoding:[NSString defaultCStringEncoding]];
        const char* lowered = [[string lowercaseString] UTF8String];
        return lowered != nullptr ? lowered : "";
    }
}
