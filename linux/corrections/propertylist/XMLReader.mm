// Apple reads XML lists without an XML parser, and so do we: what it takes and refuses beyond XML
// is taken and refused here.
#include <glib.h>

#include <algorithm>
#include <charconv>

#include "linux/corrections/propertylist/Calendar.h"
#include "linux/corrections/propertylist/Formats.h"
#include "linux/corrections/propertylist/Text.h"

namespace propertylist {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr Problem kUnexpected = "The XML property list has something else where an element should "
                                "stand, or ends too early.";

bool IsSpace(char character) {
    return static_cast<unsigned char>(character) <= ' ' || character == '\x7F';
}

/// A group of four characters that is cut off is dropped, and so is everything that is no Base64.
/// @return false when there is a character that is not ASCII
bool DecodeBase64(std::string_view text, std::string& bytes) {
    bytes.clear();
    bytes.reserve(text.size() / 4 * 3);
    std::uint32_t group = 0;
    unsigned digits = 0;
    unsigned padding = 0;
    for (const char character : text) {
        const int value = g_ascii_isupper(character)   ? character - 'A'
                          : g_ascii_islower(character) ? character - 'a' + 26
                          : g_ascii_isdigit(character) ? character - '0' + 52
                          : character == '+'           ? 62
                          : character == '/'           ? 63
                          : character == '='           ? 0
                                                       : -1;
        if (character == '=') {
            ++padding;
        } else if (!g_ascii_isspace(character) && character != '\v') {
            padding = 0;
        }
        if ((character & 0x80) != 0) {
            return false;
        }
        if (value < 0) {
            continue;
        }
        group = (group << 6) | static_cast<std::uint32_t>(value);
        if (++digits % 4 == 0) {
            const char three[] = {static_cast<char>(group >> 16), static_cast<char>(group >> 8),
                                  static_cast<char>(group)};
            bytes.append(three, 3 - std::min(padding, 2U));
        }
    }
    return true;
}

/// @return nil when the text is no number
NSNumber* NewReal(std::string_view text) {
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
        return nil;
    }
    return [[NSNumber alloc] initWithDouble:real];
}

class Reader {
  public:
    Reader(std::string_view text, NSPropertyListMutabilityOptions options)
        : text_(text), maker_(options), keyMaker_(NSPropertyListImmutable) {}

    id NewRoot();
    Problem WhatIsWrong() const { return problem_; }

  private:
    /// The first problem counts. Converts to nil and to false.
    std::nullptr_t Fail(Problem problem) {
        problem_ = problem_ == nullptr ? problem : problem_;
        return nullptr;
    }

    bool Has(std::string_view start) const { return text_.compare(at_, start.size(), start) == 0; }
    void SkipBlanks() { at_ = std::min(text_.find_first_not_of(kBlanks, at_), text_.size()); }
    void SkipSpaces() {
        while (at_ < text_.size() && IsSpace(text_[at_])) {
            ++at_;
        }
    }
    bool SkipPast(std::string_view end, std::size_t from);
    bool Close(std::string_view name);
    bool ReadReference();
    bool ReadText(std::string_view& text);
    std::string_view ReadRaw();

    id NewContent(unsigned depth, bool* isKey = nullptr);
    id NewElement(unsigned depth, bool* isKey);
    id NewValue(std::string_view name, unsigned depth, const Maker& maker);
    id NewOnly(unsigned depth);
    id NewInteger();
    id NewArray(unsigned depth);
    id NewDictionary(unsigned depth);

    std::string_view text_;
    Maker maker_;
    Maker keyMaker_;
    Problem problem_ = nullptr;
    std::size_t at_ = 0;
    std::string gathered_;
};

bool Reader::SkipPast(std::string_view end, std::size_t from) {
    const std::size_t found = text_.find(end, from);
    if (found == text_.npos) {
        return Fail(kUnexpected) != nullptr;
    }
    at_ = found + end.size();
    return true;
}

/// Passes over everything that stands before the root, an internal subset of the document type
/// excepted: Apple stumbles over it.
id Reader::NewRoot() {
    for (;;) {
        SkipBlanks();
        if (Has("<?") || Has("<!--")) {
            if (!SkipPast(Has("<?") ? "?>" : "-->", at_ + (Has("<?") ? 2 : 4))) {
                return nil;
            }
        } else if (Has("<!DOCTYPE")) {
            const std::size_t end = text_.find_first_of("[>", at_);
            if (end == text_.npos || text_[end] == '[') {
                return Fail("The XML property list has a document type with declarations in it.");
            }
            at_ = end + 1;
        } else if (Has("<")) {
            ++at_;
            return NewElement(Has("plist") ? 0 : 1, nullptr);
        } else {
            return Fail(kUnexpected);
        }
    }
}

/// The next element inside of another one.
/// @param isKey  not null where a key should stand; gets whether one does
/// @return nil, without a problem, at a closing tag
id Reader::NewContent(unsigned depth, bool* isKey) {
    for (;;) {
        SkipBlanks();
        if (Has("</")) {
            return nil;
        }
        // Two characters of the start may serve for the end.
        if (Has("<?") || Has("<!--")) {
            if (!SkipPast(Has("<?") ? "?>" : "-->", at_ + (Has("<?") ? 1 : 3))) {
                return nil;
            }
        } else if (Has("<") && !Has("<!")) {
            ++at_;
            return NewElement(depth, isKey);
        } else {
            return Fail(kUnexpected);
        }
    }
}

/// Reads an element from behind its opening bracket. Attributes do not matter.
/// @param depth  its level, 1 for the root
id Reader::NewElement(unsigned depth, bool* isKey) {
    const std::size_t end = text_.find('>', at_);
    if (end == text_.npos) {
        return Fail(kUnexpected);
    }
    const std::string_view tag = text_.substr(at_, end - at_);
    const bool isEmpty = !tag.empty() && tag.back() == '/';
    const std::string_view name =
        tag.substr(0, std::min(tag.find_first_of(kBlanks), tag.size() - (isEmpty ? 1 : 0)));
    at_ = end + 1;
    if (isKey != nullptr) {
        *isKey = name == "key";
    }
    const Maker& maker = isKey != nullptr ? keyMaker_ : maker_;
    if (isEmpty) {
        return name == "array"                     ? maker.NewArray({})
               : name == "dict"                    ? maker.NewDictionary({}, {})
               : name == "string" || name == "key" ? maker.NewLatin1({})
               : name == "true" || name == "false"
                   ? [[NSNumber numberWithBool:name == "true"] retain]
                   : static_cast<id>(Fail("The XML property list has an element that may not be "
                                          "empty, or is unknown."));
    }
    id value = NewValue(name, depth, maker);
    if (value == nil || Close(name)) {
        return value;
    }
    [value release];
    return nil;
}

bool Reader::Close(std::string_view name) {
    bool closed = Has("</");
    at_ += closed ? 2 : 0;
    closed = closed && Has(name);
    at_ += closed ? name.size() : 0;
    SkipBlanks();
    closed = closed && Has(">");
    at_ += closed ? 1 : 0;
    return closed || Fail("The XML property list has an element that is not closed.") != nullptr;
}

/// Reads up to the closing tag.
id Reader::NewValue(std::string_view name, unsigned depth, const Maker& maker) {
    std::string_view text;
    if (name == "plist" || name == "array" || name == "dict") {
        if (depth > kDeepestNesting) {
            return Fail(kTooDeep);
        }
        return name == "plist"   ? NewOnly(depth + 1)
               : name == "array" ? NewArray(depth + 1)
                                 : NewDictionary(depth + 1);
    }
    if (name == "string" || name == "key") {
        id string = ReadText(text) ? maker.NewUtf8(text) : nil;
        return string != nil ? string : Fail("The XML property list has text that is no UTF-8.");
    }
    if (name == "true" || name == "false") {
        return [[NSNumber numberWithBool:name == "true"] retain];
    }
    if (name == "integer") {
        return NewInteger();
    }
    if (name == "real") {
        id real = ReadText(text) ? NewReal(text) : nil;
        return real != nil ? real : Fail("The XML property list has a damaged number.");
    }
    if (name == "date") {
        double seconds = 0;
        return MomentFromText(ReadRaw(), seconds)
                   ? Maker::NewDate(seconds)
                   : static_cast<id>(Fail("The XML property list has a damaged date."));
    }
    if (name == "data") {
        return DecodeBase64(ReadRaw(), gathered_)
                   ? maker.NewData(gathered_)
                   : static_cast<id>(Fail("The XML property list has damaged data."));
    }
    return Fail("The XML property list has an element of unknown name.");
}

/// Everything before the next tag.
std::string_view Reader::ReadRaw() {
    const std::size_t start = at_;
    at_ = std::min(text_.find('<', at_), text_.size());
    return text_.substr(start, at_ - start);
}

/// @param text  is valid until the next call
bool Reader::ReadText(std::string_view& text) {
    constexpr std::string_view kSection = "<![CDATA[";

    gathered_.clear();
    for (;;) {
        const std::size_t start = at_;
        while (at_ < text_.size() && text_[at_] != '<' && text_[at_] != '&') {
            ++at_;
        }
        text = text_.substr(start, at_ - start);
        const bool isReference = Has("&");
        if (!isReference && !Has("<!")) {
            if (!gathered_.empty()) {
                text = gathered_.append(text);
            }
            return true;
        }
        gathered_ += text;
        if (isReference) {
            if (!ReadReference()) {
                return false;
            }
            continue;
        }
        const std::size_t content = at_ + kSection.size();
        if (!Has(kSection) || !SkipPast("]]>", content)) {
            return Fail(kUnexpected) != nullptr;
        }
        gathered_ += text_.substr(content, at_ - 3 - content);
    }
}

/// Gathers the character that a reference stands for.
bool Reader::ReadReference() {
    constexpr std::pair<std::string_view, char> kEntities[] = {
        {"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}};
    constexpr Problem kUnknown = "The XML property list has a reference to nothing known.";
    constexpr unsigned kMostDigits = 8;

    for (const auto& [name, character] : kEntities) {
        if (Has(name)) {
            gathered_ += character;
            at_ += name.size();
            return true;
        }
    }
    const bool isHex = Has("&#x");
    if (!Has("&#")) {
        return Fail(kUnknown) != nullptr;
    }
    at_ += isHex ? 3 : 2;
    std::uint32_t number = 0;
    for (unsigned digits = 0; !Has(";"); ++digits, ++at_) {
        const int value = at_ < text_.size() ? g_ascii_xdigit_value(text_[at_]) : -1;
        if (value < 0 || (value > 9 && !isHex) || digits == kMostDigits) {
            return Fail(kUnknown) != nullptr;
        }
        number = number * (isHex ? 16 : 10) + static_cast<std::uint32_t>(value);
    }
    ++at_;
    if (number > 0x10FFFF || (number >= 0xD800 && number <= 0xDFFF)) {
        return Fail(kUnknown) != nullptr;
    }
    char utf8[6];
    gathered_.append(utf8, static_cast<std::size_t>(g_unichar_to_utf8(number, utf8)));
    return true;
}

id Reader::NewOnly(unsigned depth) {
    References values;
    while (values.Add(NewContent(depth))) {
    }
    if (values.size() != 1) {
        return Fail("The XML property list has no root, or several.");
    }
    return problem_ == nullptr ? [*values.data() retain] : nil;
}

/// Blanks may stand before the sign and before the digits, not behind them.
id Reader::NewInteger() {
    SkipSpaces();
    const bool negative = Has("-");
    if (negative || Has("+")) {
        ++at_;
        SkipSpaces();
    }
    const bool isHex = Has("0x") || Has("0X");
    at_ += isHex ? 2 : 0;
    std::uint64_t number = 0;
    const auto [end, error] =
        std::from_chars(text_.data() + at_, text_.data() + text_.size(), number, isHex ? 16 : 10);
    if (error != std::errc() || (negative && number > 1ULL << 63)) {
        return Fail("The XML property list has a damaged integer.");
    }
    at_ = static_cast<std::size_t>(end - text_.data());
    if (negative) {
        return [[NSNumber alloc] initWithLongLong:static_cast<std::int64_t>(0 - number)];
    }
    return [[NSNumber alloc] initWithUnsignedLongLong:number];
}

id Reader::NewArray(unsigned depth) {
    References values;
    while (values.Add(NewContent(depth))) {
    }
    return problem_ == nullptr ? maker_.NewArray(values) : nil;
}

id Reader::NewDictionary(unsigned depth) {
    References keys;
    References values;
    for (bool isKey = false; keys.Add(NewContent(depth, &isKey));) {
        if (!isKey || !values.Add(NewContent(depth))) {
            return Fail("The XML property list has a dictionary with a key or a value missing.");
        }
    }
    if (problem_ != nullptr) {
        return nil;
    }
    NSDictionary* dictionary = maker_.NewDictionary(keys, values);
    // A real makes a reference as well, and a number beyond 32 bits wraps around.
    id uid = [dictionary count] == 1 ? [dictionary objectForKey:@"CF$UID"] : nil;
    const Kind kind = KindOf(uid);
    if (kind != Kind::Integer && kind != Kind::Real) {
        return dictionary;
    }
    const std::uint32_t number = UidIn(dictionary);
    [dictionary release];
    return NewUid(number);
}

}  // namespace

id NewFromXML(std::string_view text, NSPropertyListMutabilityOptions options, Problem& problem) {
    Reader reader(text, options);
    id root = reader.NewRoot();
    problem = reader.WhatIsWrong();
    return root;
}

}  // namespace propertylist
