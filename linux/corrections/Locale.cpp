// Cocoa never touches the C locale of a process: it stays "C" until the program itself names
// another. GNUstep takes it from the environment when it first needs an encoding, which would
// change what mbstowcs and wcstombs accept. A call that means "as the environment says" only asks
// here.
#include <dlfcn.h>

#include <clocale>

extern "C" char* setlocale(int category, const char* locale) {
    static const auto original =
        reinterpret_cast<decltype(&setlocale)>(dlsym(RTLD_NEXT, "setlocale"));
    const bool fromEnvironment = locale != nullptr && *locale == '\0';
    return original(category, fromEnvironment ? nullptr : locale);
}
