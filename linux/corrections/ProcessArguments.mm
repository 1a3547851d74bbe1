// GNUstep ends a program whose arguments or environment hold bytes that are not UTF-8, as soon as
// it asks who it is. Such an entry is taken for Latin-1 here, which knows every byte.
#include <Foundation/Foundation.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <string>
#include <vector>

#include "linux/corrections/propertylist/Unicode.h"

namespace {

/// As the kernel keeps them: main may already have taken some out of its own array.
std::vector<std::string> Arguments() {
    std::vector<std::string> arguments;
    std::ifstream file("/proc/self/cmdline", std::ios::binary);
    for (std::string argument; std::getline(file, argument, '\0');) {
        arguments.push_back(argument);
    }
    if (arguments.empty()) {
        arguments.push_back(program_invocation_name);
    }
    return arguments;
}

std::vector<std::string> Environment() {
    std::vector<std::string> variables;
    for (char** variable = environ; variable != nullptr && *variable != nullptr; ++variable) {
        variables.push_back(*variable);
    }
    return variables;
}

std::string AsUtf8(const std::string& bytes) {
    std::u16string text;
    if (DecodeUtf8(bytes, text)) {
        return bytes;
    }
    std::string utf8;
    for (const char byte : bytes) {
        AppendUtf8(static_cast<unsigned char>(byte), utf8);
    }
    return utf8;
}

/// The texts as main gets them, with a null pointer at the end.
std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) {
        text = AsUtf8(text);
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

}  // namespace

@implementation NSProcessInfo (AnyBytes)

+ (void)mac_initialize {
    if (self != [NSProcessInfo class]) {
        return;
    }
    std::vector<std::string> arguments = Arguments();
    std::vector<std::string> environment = Environment();
    GSInitializeProcess(static_cast<int>(arguments.size()), Pointers(arguments).data(),
                        Pointers(environment).data());
}

@end
