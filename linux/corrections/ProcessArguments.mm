// GNUstep ends a program whose arguments or environment hold bytes that are not UTF-8, as soon as
// it asks who it is. Such an entry is taken for Latin-1 here, which knows every byte.
#include <Foundation/Foundation.h>
#include <glib.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <string>
#include <vector>

namespace {

/// As the kernel keeps them: main may already have taken some out of its own array.
std::vector<std::string> Arguments() {
    std::vector<std::string> arguments;
    std::ifstream file("/proc/self/cmdline", std::ios::binary);
    for (std::string argument; std::getline(file, argument, '\0');) {
        arguments.push_back(argument);
    }
    return arguments.empty() ? std::vector<std::string>{program_invocation_name} : arguments;
}

std::vector<std::string> Environment() {
    char** end = environ;
    while (end != nullptr && *end != nullptr) {
        ++end;
    }
    return std::vector<std::string>(environ, end);
}

/// The texts as main gets them, in UTF-8, with a null pointer at the end.
std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) {
        if (!g_utf8_validate(text.c_str(), -1, nullptr)) {
            std::string utf8;
            for (const char letter : text) {
                char bytes[6];
                const int length = g_unichar_to_utf8(static_cast<unsigned char>(letter), bytes);
                utf8.append(bytes, static_cast<size_t>(length));
            }
            text = utf8;
        }
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
