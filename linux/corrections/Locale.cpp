// Cocoa never touches the C locale of a process: it stays "C" until the program itself says
// otherwise. GNUstep sets it from the environment while its classes load, which would change what
// mbstowcs and wcstombs accept. Its attempts end here; asking for the current locale still works.
#include <clocale>
#include <cstring>

extern "C" char* setlocale(int /*category*/, const char* locale) {
    static char current[] = "C";
    if (locale == nullptr || *locale == '\0' || std::strcmp(locale, "C") == 0 ||
        std::strcmp(locale, "POSIX") == 0) {
        return current;
    }
    return nullptr;
}
