// The conversions of text, against glibc's iconv, and back.
#include <cstdint>
#include <stdexcept>
#include <string>

#include "crypto/StringUtils.h"
#include "crypto/Utf8.h"
#include "tests/fuzz/Iconv.h"
#include "tests/fuzz/Require.h"

namespace {

/// What a conversion of the product gives; false where it throws the error of that text.
template <typename To, typename From>
bool Try(To (*convert)(const From&), const From& text, const char* error, To& result) {
    try {
        result = convert(text);
        return true;
    } catch (const std::range_error& thrown) {
        REQUIRE(std::string(thrown.what()) == error);
        return false;
    }
}

const char* const kFromError = "wstring_convert: from_bytes error";
const char* const kToError = "wstring_convert: to_bytes error";

void CheckUtf8(const std::string& bytes) {
    std::u16string units;
    std::u16string expected;
    const bool valid = Try(StringUtils::ConvertU8StringtoU16String, bytes, kFromError, units);
    REQUIRE(valid == Convert("UTF-16LE", "UTF-8", bytes, expected));
    REQUIRE(valid == IsUtf8(bytes));
    if (valid) {
        REQUIRE(units == expected);
        REQUIRE(StringUtils::ConvertU16StringtoU8String(units) == bytes);
    }
}

void CheckUtf16(const std::u16string& units) {
    std::string bytes;
    std::string expected;
    const bool valid = Try(StringUtils::ConvertU16StringtoU8String, units, kToError, bytes);
    REQUIRE(valid == Convert("UTF-8", "UTF-16LE", units, expected));
    std::wstring wide;
    REQUIRE(valid == Try(StringUtils::ConvertU16StringToWString, units, kFromError, wide));
    if (valid) {
        REQUIRE(bytes == expected);
        REQUIRE(StringUtils::ConvertWStringToU16String(wide) == units);
    }
}

// Values that are no code points among them.
void CheckWide(const std::wstring& wide) {
    std::u32string points;
    for (const wchar_t letter : wide) {
        const char32_t point = static_cast<char32_t>(letter);
        if (point <= 0x10FFFF) {
            points += point >= 0xD800 && point <= 0xDFFF ? U'\xFFFD' : point;
        }
    }
    std::u16string expected;
    REQUIRE(Convert("UTF-16LE", "UTF-32LE", points, expected));
    REQUIRE(StringUtils::ConvertWStringToU16String(wide) == expected);
}

// In the C locale a byte is a character of the same value.
void CheckLocale(const std::string& bytes) {
    const std::string text = bytes.substr(0, bytes.find('\0'));
    std::wstring expected;
    REQUIRE(Convert("WCHAR_T", "ISO-8859-1", text, expected));
    const std::wstring wide = StringUtils::ConvertStringToWString(bytes);
    REQUIRE(wide == expected);
    REQUIRE(StringUtils::ConvertWStringToString(wide) == text);
}

void CheckLines(std::string text) {
    const std::string before = text;
    StringUtils::ReplaceCRAndLFWithSpaces(text);
    REQUIRE(text.find_first_of("\r\n") == std::string::npos && text.size() == before.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        REQUIRE(text[at] == before[at] || (text[at] == ' ' && before[at] < ' '));
    }
}

// The bytes as wider letters; those left over are dropped.
template <typename Text>
Text As(const std::string& bytes) {
    Text text(bytes.size() / sizeof(typename Text::value_type), typename Text::value_type());
    bytes.copy(reinterpret_cast<char*>(&text[0]), text.size() * sizeof(typename Text::value_type));
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    CheckUtf8(bytes);
    CheckUtf16(As<std::u16string>(bytes));
    CheckWide(As<std::wstring>(bytes));
    CheckLocale(bytes);
    CheckLines(bytes);
    return 0;
}
