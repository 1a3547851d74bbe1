#pragma once

#include <string>

/// Conversions between the forms of text that the product keeps: byte strings, wide strings of
/// 32-bit code points, UTF-16 and Base64. Every operation returns a new string, except
/// ReplaceCRAndLFWithSpaces. Nothing is logged. The program leaves the process's locale at "C",
/// where on a Mac every byte is a character of the same value.
namespace StringUtils {

/// Wide text up to its first NUL as bytes in the process's C locale.
/// @return empty when the locale has no form for one of the characters
std::string ConvertWStringToString(const std::wstring& text);

/// Bytes up to the first NUL, read in the process's C locale.
/// @return empty when one of the bytes means nothing in that locale
std::wstring ConvertStringToWString(const std::string& text);

/// UTF-16 (little-endian, as in memory) to code points. NUL and a byte-order mark are ordinary
/// characters.
/// @throws std::range_error "wstring_convert: from_bytes error" for an unpaired surrogate
std::wstring ConvertU16StringToWString(const std::u16string& text);

/// UTF-16 to UTF-8 (RFC 3629). NUL and a byte-order mark are ordinary characters.
/// @throws std::range_error "wstring_convert: to_bytes error" for an unpaired surrogate
std::string ConvertU16StringtoU8String(const std::u16string& text);

/// UTF-8 (RFC 3629) to UTF-16. NUL and a byte-order mark are ordinary characters.
/// @throws std::range_error "wstring_convert: from_bytes error" for anything that is not UTF-8: a
///         stray or missing continuation byte, an overlong form, a surrogate, a code point above
///         U+10FFFF
std::u16string ConvertU8StringtoU16String(const std::string& text);

/// Code points to UTF-16; never fails. A surrogate becomes U+FFFD, a value from 0x110000 on is left
/// out.
std::u16string ConvertWStringToU16String(const std::wstring& text);

/// Base64 (RFC 4648, section 4) of all bytes, NUL included, with "=" at the end and without line
/// breaks.
std::string Base64Encode(const std::string& bytes);

/// The bytes of a Base64 text (RFC 4648, section 4) up to its first "="; the rest is ignored. Never
/// fails. Meant: a byte outside the alphabet, a blank and a line break too, is taken as the value
/// 255, neither skipped nor refused. A last group of n characters gives n - 1 bytes.
std::string Base64Decode(const std::string& text);

/// See LowerCaseBridge.
std::string LowerCase(const std::string& text);

/// Turns every CR and every LF of `text` into a blank.
void ReplaceCRAndLFWithSpaces(std::string& text);

}  // namespace StringUtils
