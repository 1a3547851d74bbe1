// The C locale of a process, and what its bytes mean.
//
//  - Cocoa never touches it: it stays "C" until the program itself names another. GNUstep takes it
//    from the environment when it first needs an encoding. A call that means "as the environment
//    says" only asks here.
//  - On a Mac every byte is a character of the same value in it; glibc refuses those above 127.
#include <dlfcn.h>

#include <clocale>
#include <cstdlib>
#include <cwchar>

namespace {

template <typename Function>
Function* Next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool IsNamed() {
    return MB_CUR_MAX > 1;  // no language of one byte a character is known by name here
}

}  // namespace

extern "C" char* setlocale(int category, const char* locale) {
    static const auto original = Next<decltype(setlocale)>("setlocale");
    const bool fromEnvironment = locale != nullptr && *locale == '\0';
    return original(category, fromEnvironment ? nullptr : locale);
}

extern "C" size_t mbstowcs(wchar_t* wide, const char* bytes, size_t room) {
    static const auto original = Next<decltype(mbstowcs)>("mbstowcs");
    if (IsNamed()) {
        return original(wide, bytes, room);
    }
    size_t count = 0;
    for (; (wide == nullptr || count < room) && bytes[count] != '\0'; ++count) {
        if (wide != nullptr) {
            wide[count] = static_cast<unsigned char>(bytes[count]);
        }
    }
    if (wide != nullptr && count < room) {
        wide[count] = L'\0';
    }
    return count;
}

extern "C" size_t wcstombs(char* bytes, const wchar_t* wide, size_t room) {
    static const auto original = Next<decltype(wcstombs)>("wcstombs");
    if (IsNamed()) {
        return original(bytes, wide, room);
    }
    size_t count = 0;
    for (; (bytes == nullptr || count < room) && wide[count] != L'\0'; ++count) {
        if (static_cast<unsigned>(wide[count]) > 255) {
            return static_cast<size_t>(-1);
        }
        if (bytes != nullptr) {
            bytes[count] = static_cast<char>(wide[count]);
        }
    }
    if (bytes != nullptr && count < room) {
        bytes[count] = '\0';
    }
    return count;
}
