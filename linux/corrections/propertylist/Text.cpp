#include "linux/corrections/propertylist/Text.h"

#include <glib.h>
#include <strings.h>

namespace {

using namespace std::string_view_literals;

struct Mark {
    std::string_view bytes;
    const char* encoding;
};

// UTF-32's before UTF-16's, which they begin with.
constexpr Mark kMarks[] = {
    {"\xEF\xBB\xBF"sv, "UTF-8"},        {"\x00\x00\xFE\xFF"sv, "UTF-32BE"},
    {"\xFF\xFE\x00\x00"sv, "UTF-32LE"}, {"\xFE\xFF"sv, "UTF-16BE"},
    {"\xFF\xFE"sv, "UTF-16LE"},
};

bool StartsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

/// The encoding that an XML declaration names. One that is no longer searched for as soon as a
/// question mark or a bracket comes is UTF-8, and so is a text without a declaration.
std::string DeclaredEncoding(std::string_view bytes) {
    constexpr std::string_view kStart = "<?xml"sv;
    constexpr std::string_view kName = "encoding="sv;
    const std::string_view declaration =
        StartsWith(bytes, kStart)
            ? bytes.substr(0, bytes.find_first_of("?>", kStart.size())).substr(kStart.size())
            : std::string_view();
    const std::size_t name = declaration.find(kName);
    if (name == declaration.npos || name + kName.size() == declaration.size()) {
        return "UTF-8";
    }
    const std::string_view value = declaration.substr(name + kName.size());
    const std::size_t end = value.find(value[0], 1);
    const bool isQuoted = (value[0] == '"' || value[0] == '\'') && end != value.npos;
    return isQuoted ? std::string(value.substr(1, end - 1)) : "UTF-8";
}

/// Takes the mark off, or what stands in its place.
std::string TakeEncoding(std::string_view& bytes) {
    for (const Mark& mark : kMarks) {
        if (bytes.size() > 2 && StartsWith(bytes, mark.bytes)) {
            bytes.remove_prefix(mark.bytes.size());
            return mark.encoding;
        }
    }
    // Apple takes the first character of UTF-16 without a mark for the mark.
    if (bytes.size() > 2 && (bytes[0] == '\0' || bytes[1] == '\0')) {
        bytes.remove_prefix(2);
        return "UTF-16LE";
    }
    return DeclaredEncoding(bytes);
}

}  // namespace

bool DecodeUtf8(std::string_view bytes, std::u16string& text) {
    text.clear();
    text.reserve(bytes.size());
    const char* const end = bytes.data() + bytes.size();
    for (const char* at = bytes.data(); at < end; at = g_utf8_next_char(at)) {
        // NUL is a character like any other here, GLib would stop at it.
        const bool isAscii = static_cast<unsigned char>(*at) < 0x80;
        const gunichar character =
            isAscii ? static_cast<gunichar>(*at) : g_utf8_get_char_validated(at, end - at);
        if (character > 0x10FFFF) {
            return false;
        }
        if (character < 0x10000) {
            text += static_cast<char16_t>(character);
        } else {
            text += static_cast<char16_t>(0xD7C0 + (character >> 10));
            text += static_cast<char16_t>(0xDC00 + (character & 0x3FF));
        }
    }
    return true;
}

bool AppendUtf8(std::u16string_view text, std::string& bytes) {
    for (std::size_t at = 0; at < text.size(); ++at) {
        gunichar character = text[at];
        if ((character & 0xF800) == 0xD800) {
            const char16_t next = at + 1 < text.size() ? text[at + 1] : 0;
            if (character >= 0xDC00 || (next & 0xFC00) != 0xDC00) {
                return false;
            }
            character = ((character - 0xD7C0) << 10) + (next & 0x3FF);
            ++at;
        }
        char utf8[6];
        bytes.append(utf8, static_cast<std::size_t>(g_unichar_to_utf8(character, utf8)));
    }
    return true;
}

bool TextAsUtf8(std::string_view bytes, std::string& converted, std::string_view& text) {
    const std::string encoding = TakeEncoding(bytes);
    text = bytes;
    if (strcasecmp(encoding.c_str(), "UTF-8") == 0) {
        return true;
    }
    // What follows a slash would be an order to the converter.
    gsize length = 0;
    gchar* const utf8 = encoding.find('/') != encoding.npos
                            ? nullptr
                            : g_convert(bytes.data(), static_cast<gssize>(bytes.size()), "UTF-8",
                                        encoding.c_str(), nullptr, &length, nullptr);
    if (utf8 == nullptr) {
        return false;
    }
    converted.assign(utf8, length);
    g_free(utf8);
    text = converted;
    return true;
}
