#pragma once

#include <iconv.h>

#include <cstddef>

/// What iconv makes of a text; false where it refuses it.
template <typename To, typename From>
bool Convert(const char* to, const char* from, const From& text, To& result) {
    iconv_t converter = iconv_open(to, from);
    result.assign(4 * text.size() + 1, typename To::value_type());
    char* in = reinterpret_cast<char*>(const_cast<typename From::value_type*>(text.data()));
    std::size_t inLeft = text.size() * sizeof(typename From::value_type);
    char* out = reinterpret_cast<char*>(&result[0]);
    const std::size_t room = result.size() * sizeof(typename To::value_type);
    std::size_t outLeft = room;
    const bool converted = iconv(converter, &in, &inLeft, &out, &outLeft) != std::size_t(-1);
    iconv_close(converter);
    result.resize((room - outLeft) / sizeof(typename To::value_type));
    return converted;
}
