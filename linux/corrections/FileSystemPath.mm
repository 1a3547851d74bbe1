#include "linux/corrections/FileSystemPath.h"

bool FileSystemPath(NSString* path, std::string& result) {
    NSData* bytes = [path dataUsingEncoding:NSUTF8StringEncoding];
    result.assign(static_cast<const char*>([bytes bytes]), [bytes length]);
    while (result.size() > 1 && result.back() == '/') {
        result.pop_back();
    }
    return !result.empty() && result.find('\0') == std::string::npos;
}

// GNUstep drops one byte-order mark that a text begins with, and a name may well begin so.
NSString* StringFromFileSystem(const std::string& name) {
    const std::string mark = "\xEF\xBB\xBF";
    const bool isMarked = name.compare(0, mark.size(), mark) == 0;
    return [NSString stringWithUTF8String:(isMarked ? mark + name : name).c_str()];
}
