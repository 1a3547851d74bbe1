// Apple reads XML lists without an XML parser, and so do we: what it takes and refuses beyond XML
// is taken and refused here.
#include <glib.h>

#include <algorithm>
#include <charconv>

#include "linux/corrections/propertylist/Calendar.h"
#include "linux/corrections/propertylist/Formats.h"
#include "linux/corrections/propertylist/Text.h"
#include "linux/corrections/propertylist/Values.h"

namespace propertylist {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

bool IsSpace(char character) {
    return static_cast<unsigned char>(character) <= ' ' || character == '\x7F';
}

/// A group of four characters that is cut off is dropped, and so is everything that is no Base64.
std::string DecodeBase64(std::string_view text) {
    if (std::any_of(text.begin(), text.end(), [](char byte) { return (byte & 0x80) != 0; })) {
        @throw @"The XML property list has damaged data.";
    }
    gint state = 0;
    guint save = 0;
    std::string bytes(text.size(), '\0');
    bytes.resize(g_base64_decode_step(text.data(), text.size(),
                                      reinterpret_cast<guchar*>(bytes.data()), &state, &save));
    return bytes;
}

NSNumber* ReadReal(std::string_view text) {
    const std::string number(std::find_if_not(text.begin(), text.end(), IsSpace), text.end());
    const std::size_t sign = std::min(number.find_first_not_of("+-"), number.size());
    const char* const name = number.c_str() + sign;
    const bool isNamed =
        number.size() == text.size() && sign < 2 &&
        (g_ascii_strcasecmp(name, "inf") == 0 || g_ascii_strcasecmp(name, "infinity") == 0 ||
         (sign == 0 && g_ascii_strcasecmp(name, "nan") == 0));
    char* end = nullptr;
    const double real = g_ascii_strtod(number.c_str(), &end);
    if (number.empty() || end != number.c_str() + number.size() ||
        (!isNamed && number.find_first_not_of("0123456789.+-eE") != number.npos)) {
        @throw @"The XML property list has a damaged number.";
    }
    return [NSNumber numberWithDouble:real];
}

class Reader {
  public:
    Reader(std::string_view text, NSPropertyListMutabilityOptions options)
        : text_(text), maker_(options) {}

    id ReadRoot();

  private:
    bool Has(std::string_view start) const { return text_.compare(at_, start.size(), start) == 0; }
    bool Skip(std::string_view start) {
        const bool found = Has(start);
        at_ += found ? start.size() : 0;
        return found;
    }
    void SkipBlanks() { at_ = std::min(text_.find_first_not_of(kBlanks, at_), text_.size()); }
    void SkipSpaces() {
        while (at_ < text_.size() && IsSpace(text_[at_])) {
            ++at_;
        }
    }
    std::string_view TakeUpTo(std::string_view end);
    std::string_view TakeBefore(const char* ends);
    bool SkipRemark(std::size_t shared);
    void Expect(std::string_view expected);

    id ReadContent(unsigned level, bool* isKey = nullptr);
    id ReadElement(unsigned level, bool* isKey = nullptr);
    id EmptyElement(std::string_view name) const;
    id ReadValue(std::string_view name, unsigned level);
    std::string ReadText();
    std::string ReadReference();
    NSNumber* ReadInteger();
    std::vector<id> ReadContents(unsigned level);
    NSDictionary* ReadDictionary(unsigned level);

    std::string_view text_;
    Maker maker_;
    std::size_t at_ = 0;
};

/// Takes everything before a text, and the text.
std::string_view Reader::TakeUpTo(std::string_view end) {
    const std::size_t start = at_;
    const std::size_t found = text_.find(end, start);
    if (found == text_.npos) {
        @throw @"The XML property list ends too early.";
    }
    at_ = found + end.size();
    return text_.substr(start, found - start);
}

/// Takes everything before the next of some characters, or the end.
std::string_view Reader::TakeBefore(const char* ends) {
    const std::size_t start = at_;
    at_ = std::min(text_.find_first_of(ends, at_), text_.size());
    return text_.substr(start, at_ - start);
}

/// Passes over a comment or an instruction.
/// @param shared  how many characters of the start may serve for the end
bool Reader::SkipRemark(std::size_t shared) {
    const bool isComment = Skip("<!--");
    if (!isComment && !Skip("<?")) {
        return false;
    }
    at_ -= shared;
    TakeUpTo(isComment ? "-->" : "?>");
    return true;
}

void Reader::Expect(std::string_view expected) {
    if (!Skip(expected)) {
        @throw @"The XML property list has something else where a tag should stand.";
    }
}

/// Passes over everything that stands before the root, an internal subset of the document type
/// excepted: Apple stumbles over it.
id Reader::ReadRoot() {
    SkipBlanks();
    while (SkipRemark(0) || Has("<!DOCTYPE")) {
        if (Has("<!DOCTYPE")) {
            TakeBefore("[>");
            Expect(">");
        }
        SkipBlanks();
    }
    Expect("<");
    return ReadElement(Has("plist") ? 0 : 1);
}

/// The next element inside of another one.
/// @param isKey  gets whether it is a key
/// @return nil at a closing tag
id Reader::ReadContent(unsigned level, bool* isKey) {
    SkipBlanks();
    while (SkipRemark(1)) {
        SkipBlanks();
    }
    if (Has("</")) {
        return nil;
    }
    Expect("<");
    return ReadElement(level, isKey);
}

/// Reads an element from behind its opening bracket. Attributes do not matter.
/// @param level  1 for the root
id Reader::ReadElement(unsigned level, bool* isKey) {
    const std::string_view tag = TakeUpTo(">");
    const bool isEmpty = !tag.empty() && tag.back() == '/';
    const std::string_view name =
        tag.substr(0, std::min(tag.find_first_of(kBlanks), tag.size() - (isEmpty ? 1 : 0)));
    if (isKey != nullptr) {
        *isKey = name == "key";
    }
    if (isEmpty) {
        return EmptyElement(name);
    }
    id value = ReadValue(name, level);
    Expect("</");
    Expect(name);
    SkipBlanks();
    Expect(">");
    return value;
}

id Reader::EmptyElement(std::string_view name) const {
    if (name == "true" || name == "false") {
        return [NSNumber numberWithBool:name == "true"];
    }
    if (name == "array") {
        return maker_.Array({});
    }
    if (name == "dict") {
        return maker_.Dictionary({}, {});
    }
    if (name == "string" || name == "key") {
        return maker_.Text({});
    }
    @throw @"The XML property list has an element that may not be empty, or is unknown.";
}

/// Reads up to the closing tag.
id Reader::ReadValue(std::string_view name, unsigned level) {
    if (name == "plist") {
        const std::vector<id> values = ReadContents(level);
        if (values.size() != 1) {
            @throw @"The XML property list has no root, or several.";
        }
        return values.front();
    }
    if (name == "array") {
        return maker_.Array(ReadContents(level));
    }
    if (name == "dict") {
        return ReadDictionary(level);
    }
    if (name == "true" || name == "false") {
        return [NSNumber numberWithBool:name == "true"];
    }
    if (name == "string" || name == "key") {
        // One byte-order mark does not count.
        const std::u16string text = DecodeUtf8(ReadText());
        return maker_.Text(std::u16string_view(text).substr(text[0] == u'\uFEFF' ? 1 : 0));
    }
    if (name == "integer") {
        return ReadInteger();
    }
    if (name == "real") {
        return ReadReal(ReadText());
    }
    if (name == "date") {
        return Maker::Date(MomentFromText(TakeBefore("<")));
    }
    if (name == "data") {
        return maker_.Data(DecodeBase64(TakeBefore("<")));
    }
    @throw @"The XML property list has an element of unknown name.";
}

/// Text with references and sections, in UTF-8.
std::string Reader::ReadText() {
    std::string text;
    for (;;) {
        text += TakeBefore("<&");
        if (Has("&")) {
            text += ReadReference();
        } else if (Has("<!")) {
            Expect("<![CDATA[");
            text += TakeUpTo("]]>");
        } else {
            return text;
        }
    }
}

/// The character that a reference stands for.
std::string Reader::ReadReference() {
    constexpr std::pair<std::string_view, const char*> kEntities[] = {
        {"&amp;", "&"}, {"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&apos;", "'"}};
    constexpr std::size_t kMostDigits = 8;

    for (const auto& [name, character] : kEntities) {
        if (Skip(name)) {
            return character;
        }
    }
    Expect("&#");
    const bool isHex = Skip("x");
    const std::string_view digits = TakeBefore(";").substr(0, kMostDigits + 1);
    std::uint32_t number = 0;
    const char* const end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, number, isHex ? 16 : 10);
    Expect(";");
    if (result.ptr != end || digits.size() > kMostDigits || number > 0x10FFFF ||
        (number >= 0xD800 && number <= 0xDFFF)) {
        @throw @"The XML property list has a reference to nothing known.";
    }
    char utf8[6];
    return {utf8, static_cast<std::size_t>(g_unichar_to_utf8(number, utf8))};
}

/// Blanks may stand before the sign and before the digits, not behind them.
NSNumber* Reader::ReadInteger() {
    SkipSpaces();
    const bool negative = Has("-");
    if (negative || Has("+")) {
        ++at_;
        SkipSpaces();
    }
    const bool isHex = Skip("0x") || Skip("0X");
    std::uint64_t number = 0;
    const auto [end, error] =
        std::from_chars(text_.data() + at_, text_.data() + text_.size(), number, isHex ? 16 : 10);
    if (error != std::errc() || (negative && number > 1ULL << 63)) {
        @throw @"The XML property list has a damaged integer.";
    }
    at_ = static_cast<std::size_t>(end - text_.data());
    return negative ? [NSNumber numberWithLongLong:static_cast<std::int64_t>(0 - number)]
                    : [NSNumber numberWithUnsignedLongLong:number];
}

std::vector<id> Reader::ReadContents(unsigned level) {
    CheckLevel(level);
    std::vector<id> values;
    while (id value = ReadContent(level + 1)) {
        values.push_back(value);
    }
    return values;
}

NSDictionary* Reader::ReadDictionary(unsigned level) {
    CheckLevel(level);
    std::vector<id> keys;
    std::vector<id> values;
    bool isKey = false;
    while (id key = ReadContent(level + 1, &isKey)) {
        id value = isKey ? ReadContent(level + 1) : nil;
        if (value == nil) {
            @throw @"The XML property list has a dictionary with a key or a value missing.";
        }
        keys.push_back(key);
        values.push_back(value);
    }
    NSDictionary* dictionary = maker_.Dictionary(keys, values);
    // A real makes a reference as well, and a number beyond 32 bits wraps around.
    id uid = [dictionary count] == 1 ? [dictionary objectForKey:@"CF$UID"] : nil;
    const bool isUid = [uid isKindOfClass:[NSNumber class]] && KindOf(uid) != Kind::Boolean;
    return isUid ? MakeUid(UidIn(dictionary)) : dictionary;
}

}  // namespace

id ReadXML(std::string_view text, NSPropertyListMutabilityOptions options) {
    return Reader(text, options).ReadRoot();
}

}  // namespace propertylist
