#include "crypto/StringUtils.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>

#include "crypto/LowerCaseBridge.h"

namespace {

constexpr char32_t kLastCodePoint = 0x10FFFF;
constexpr char32_t kFirstSupplementary = 0x10000;
constexpr char32_t kReplacement = 0xFFFD;

// std::wstring_convert itself will not do: its messages and its verdicts on broken text differ from
// one standard library to the next, and some let unpaired surrogates and cut characters pass.
constexpr char kFromBytesError[] = "wstring_convert: from_bytes error";
constexpr char kToBytesError[] = "wstring_convert: to_bytes error";

constexpr size_t kConversionError = static_cast<size_t>(-1);

bool IsHighSurrogate(char32_t c) {
    return c >= 0xD800 && c <= 0xDBFF;
}
bool IsLowSurrogate(char32_t c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}
bool IsSurrogate(char32_t c) {
    return IsHighSurrogate(c) || IsLowSurrogate(c);
}

/// The code point that starts at `at`, which moves behind it.
/// @throws std::range_error `error` for an unpaired surrogate
char32_t TakeFromUtf16(const std::u16string& text, size_t& at, const char* error) {
    const char32_t first = text[at++];
    if (!IsSurrogate(first)) {
        return first;
    }
    if (IsLowSurrogate(first) || at == text.size() || !IsLowSurrogate(text[at])) {
        throw std::range_error(error);
    }
    const char32_t second = text[at++];
    return kFirstSupplementary + ((first & 0x3FF) << 10) + (second & 0x3FF);
}

/// The code point that starts at `at`, which moves behind it.
/// @throws std::range_error when the bytes there are not UTF-8
char32_t TakeFromUtf8(const std::string& text, size_t& at) {
    const uint8_t lead = static_cast<uint8_t>(text[at++]);
    if (lead < 0x80) {
        return lead;
    }
    bool valid = lead >= 0xC0 && lead < 0xF8;
    const int continuations = lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
    char32_t c = lead & (0x3F >> continuations);
    for (int i = 0; valid && i < continuations; ++i, ++at) {
        valid = at < text.size() && (text[at] & 0xC0) == 0x80;
        c = c << 6 | (valid ? text[at] & 0x3F : 0);
    }
    // A smaller code point in as many bytes is an overlong form.
    constexpr char32_t kSmallest[] = {0, 0x80, 0x800, kFirstSupplementary};
    if (!valid || c < kSmallest[continuations] || IsSurrogate(c) || c > kLastCodePoint) {
        throw std::range_error(kFromBytesError);
    }
    return c;
}

void AppendUtf16(std::u16string& text, char32_t c) {
    if (c >= kFirstSupplementary) {
        text += static_cast<char16_t>(((c - kFirstSupplementary) >> 10) + 0xD800);
        text += static_cast<char16_t>((c & 0x3FF) | 0xDC00);
    } else {
        text += static_cast<char16_t>(c);
    }
}

void AppendUtf8(std::string& text, char32_t c) {
    const int continuations = c < 0x80 ? 0 : c < 0x800 ? 1 : c < kFirstSupplementary ? 2 : 3;
    constexpr uint8_t kLeadMarks[] = {0, 0xC0, 0xE0, 0xF0};
    text += static_cast<char>(kLeadMarks[continuations] | c >> (6 * continuations));
    for (int i = continuations - 1; i >= 0; --i) {
        text += static_cast<char>(0x80 | ((c >> (6 * i)) & 0x3F));
    }
}

}  // namespace

std::string StringUtils::ConvertWStringToString(const std::wstring& text) {
    std::string bytes(text.size() + 1, '\0');
    const size_t length = std::wcstombs(&bytes[0], text.c_str(), bytes.size());
    bytes.resize(length == kConversionError ? 0 : length);
    return bytes;
}

std::wstring StringUtils::ConvertStringToWString(const std::string& text) {
    std::wstring wide(text.size() + 1, L'\0');
    const size_t length = std::mbstowcs(&wide[0], text.c_str(), wide.size());
    wide.resize(length == kConversionError ? 0 : length);
    return wide;
}

std::wstring StringUtils::ConvertU16StringToWString(const std::u16string& text) {
    std::wstring wide;
    wide.reserve(text.size());
    for (size_t at = 0; at < text.size();) {
        wide += static_cast<wchar_t>(TakeFromUtf16(text, at, kFromBytesError));
    }
    return wide;
}

std::string StringUtils::ConvertU16StringtoU8String(const std::u16string& text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (size_t at = 0; at < text.size();) {
        AppendUtf8(bytes, TakeFromUtf16(text, at, kToBytesError));
    }
    return bytes;
}

std::u16string StringUtils::ConvertU8StringtoU16String(const std::string& text) {
    std::u16string units;
    units.reserve(text.size());
    for (size_t at = 0; at < text.size();) {
        AppendUtf16(units, TakeFromUtf8(text, at));
    }
    return units;
}

std::u16string StringUtils::ConvertWStringToU16String(const std::wstring& text) {
    std::u16string units;
    units.reserve(2 * text.size() + 1);
    for (const wchar_t wide : text) {
        const char32_t c = static_cast<char32_t>(wide);
        if (c <= kLastCodePoint) {
            AppendUtf16(units, IsSurrogate(c) ? kReplacement : c);
        }
    }
    return units;
}

std::string StringUtils::LowerCase(const std::string& text) {
    return LowerCaseBridge(text);
}

void StringUtils::ReplaceCRAndLFWithSpaces(std::string& text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
}
