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
    if (arguments.empty()) {
        arguments.push_back(program_invocation_name);
    }
    return arguments;
}

std::string AsUtf8(const std::string& bytes) {
    if (g_utf8_validate(bytes.c_str(), -1, nullptr)) {
        return bytes;
    }
    g_autofree char* text =
        g_convert(bytes.c_str(), -1, "UTF-8", "ISO-8859-1", nullptr, nullptr, nullptr);
    return text;
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
    std::vector<std::string> environment;
    for (char** variable = environ; variable != nullptr && *variable != nullptr; ++variable) {
        environment.push_back(*variable);
    }
    GSInitializeProcess(static_cast<int>(arguments.size()), Pointers(arguments).data(),
                        Pointers(environment).data());
}

@end
