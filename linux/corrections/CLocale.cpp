// The C locale of a process, and what its bytes mean.
//
//  - Cocoa never touches it: it stays "C" until the program itself names another. GNUstep takes it
//    from the environment when it first needs an encoding. A call that means "as the environment
//    says" only asks here.
//  - On a Mac every byte is a character of the same value in it; glibc refuses those above 127.
#include <dlfcn.h>

#include <climits>
#include <clocale>
#include <cstdlib>
#include <cwchar>
#include <type_traits>

namespace {

template <typename Function>
Function* Next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool IsNamed() {
    return MB_CUR_MAX > 1;  // no language of one byte a character is known by name here
}

/// Between bytes and characters of the same values; nothing is written where `to` is null.
template <typename To, typename From>
size_t Convert(To* to, const From* from, size_t room) {
    size_t count = 0;
    for (; (to == nullptr || count < room) && from[count] != 0; ++count) {
        if (static_cast<std::make_unsigned_t<From>>(from[count]) > UCHAR_MAX) {
            return static_cast<size_t>(-1);
        }
        if (to != nullptr) {
            to[count] = static_cast<To>(static_cast<unsigned char>(from[count]));
        }
    }
    if (to != nullptr && count < room) {
        to[count] = 0;
    }
    return count;
}

}  // namespace

extern "C" char* setlocale(int category, const char* locale) {
    static const auto original = Next<decltype(setlocale)>("setlocale");
    const bool fromEnvironment = locale != nullptr && *locale == '\0';
    return original(category, fromEnvironment ? nullptr : locale);
}

extern "C" size_t mbstowcs(wchar_t* wide, const char* bytes, size_t room) {
    static const auto original = Next<decltype(mbstowcs)>("mbstowcs");
    return IsNamed() ? original(wide, bytes, room) : Convert(wide, bytes, room);
}

extern "C" size_t wcstombs(char* bytes, const wchar_t* wide, size_t room) {
    static const auto original = Next<decltype(wcstombs)>("wcstombs");
    return IsNamed() ? original(bytes, wide, room) : Convert(bytes, wide, room);
}
