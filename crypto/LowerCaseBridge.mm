#include "crypto/LowerCaseBridge.h"

#include "crypto/CocoaStrings.h"

std::string LowerCaseBridge(const std::string& text) {
    @autoreleasepool {
        return Utf8Bytes([CocoaString(text) lowercaseString]);
    }
}
