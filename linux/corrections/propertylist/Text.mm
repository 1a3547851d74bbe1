#include "linux/corrections/propertylist/Text.h"

#include <glib.h>
#include <strings.h>

#include <algorithm>
#include <locale>
#include <memory>

namespace propertylist {

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

std::string ConvertToUtf8(std::string_view bytes, const std::string& from) {
    // What follows a slash would be an order to the converter.
    gsize length = 0;
    const std::unique_ptr<gchar, void (*)(void*)> converted(
        from.find('/') != from.npos ? nullptr
                                    : g_convert(bytes.data(), static_cast<gssize>(bytes.size()),
                                                "UTF-8", from.c_str(), nullptr, &length, nullptr),
        g_free);
    if (!converted) {
        @throw @"The data is no text in its encoding.";
    }
    return {converted.get(), length};
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

/// Between UTF-8 and UTF-16. Opening one of the system's converters would cost more than it takes to
/// convert a key or a value.
const std::codecvt<char16_t, char, std::mbstate_t>& Codec() {
    static const auto& codec =
        std::use_facet<std::codecvt<char16_t, char, std::mbstate_t>>(std::locale::classic());
    return codec;
}

}  // namespace

std::u16string DecodeUtf8(std::string_view bytes) {
    // The library takes halves of surrogate pairs for characters here.
    const bool hasHalves =
        std::adjacent_find(bytes.begin(), bytes.end(), [](char first, char second) {
            return first == '\xED' && static_cast<unsigned char>(second) >= 0xA0;
        }) != bytes.end();
    std::u16string text(bytes.size(), u'\0');
    std::mbstate_t state{};
    const char* read = bytes.data();
    char16_t* written = text.data();
    const auto result = Codec().in(state, bytes.data(), bytes.data() + bytes.size(), read,
                                   text.data(), text.data() + text.size(), written);
    if (hasHalves || result != std::codecvt_base::ok || read != bytes.data() + bytes.size()) {
        @throw @"The data is no text in its encoding.";
    }
    text.resize(static_cast<std::size_t>(written - text.data()));
    return text;
}

std::string EncodeUtf8(std::u16string_view text) {
    constexpr std::size_t kMostBytesAUnit = 3;
    std::string bytes(text.size() * kMostBytesAUnit, '\0');
    std::mbstate_t state{};
    const char16_t* read = text.data();
    char* written = bytes.data();
    const auto result = Codec().out(state, text.data(), text.data() + text.size(), read,
                                    bytes.data(), bytes.data() + bytes.size(), written);
    if (result != std::codecvt_base::ok || read != text.data() + text.size()) {
        @throw @"The text has half a surrogate pair.";
    }
    bytes.resize(static_cast<std::size_t>(written - bytes.data()));
    return bytes;
}

std::string TextAsUtf8(std::string_view bytes) {
    const std::string encoding = TakeEncoding(bytes);
    if (strcasecmp(encoding.c_str(), "UTF-8") == 0) {
        return std::string(bytes);
    }
    return ConvertToUtf8(bytes, encoding);
}

}  // namespace propertylist
