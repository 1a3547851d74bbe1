#include "linux/corrections/FileSystemPath.h"

bool FileSystemPath(NSString* path, std::string& result) {
    NSData* bytes = [path dataUsingEncoding:NSUTF8StringEncoding];
    result.assign(static_cast<const char*>([bytes bytes]), [bytes length]);
    while (result.size() > 1 && result.back() == '/') {
        result.pop_back();
    }
    return !result.empty() && result.find('\0') == std::string::npos;
}

NSString* StringFromFileSystem(const std::string& name) {
    return [NSString stringWithUTF8String:name.c_str()];
}
