#include <glib.h>

#include <cstdlib>

#include "linux/corrections/propertylist/Formats.h"
#include "linux/corrections/propertylist/Text.h"

namespace propertylist {

namespace {

constexpr char16_t kLineSeparator = 0x2028;
constexpr char16_t kParagraphSeparator = 0x2029;

bool IsSeparator(char16_t unit) {
    return unit == kLineSeparator || unit == kParagraphSeparator;
}

bool IsBlank(char16_t unit) {
    return (unit >= '\t' && unit <= '\r') || unit == ' ' || IsSeparator(unit);
}

bool IsIn(std::string_view characters, char16_t unit) {
    return unit < 0x80 && characters.find(static_cast<char>(unit)) != characters.npos;
}

/// Whether it may stand in a word without quotes.
bool IsPlain(char16_t unit) {
    return (unit < 0x80 && g_ascii_isalnum(unit)) || IsIn("_$/:.-", unit);
}

int HexValue(char16_t unit) {
    return unit < 0x80 ? g_ascii_xdigit_value(static_cast<gchar>(unit)) : -1;
}

/// The character of the encoding that NeXT's computers had; NUL if it has none there.
char16_t NextStepCharacter(unsigned char byte) {
    NSString* text = [[[NSString alloc] initWithBytes:&byte
                                               length:1
                                             encoding:NSNEXTSTEPStringEncoding] autorelease];
    const char16_t unit = [text length] == 1 ? [text characterAtIndex:0] : u'\0';
    return unit == 0xFFFD ? u'\0' : unit;
}

/// A reader that fails leaves its place where it stumbled; an array may still end well there.
class Reader {
  public:
    Reader(std::u16string_view text, NSPropertyListMutabilityOptions options)
        : text_(text), maker_(options), keyMaker_(NSPropertyListImmutable) {}

    id NewRoot();
    Problem WhatIsWrong() const { return problem_; }

  private:
    id Fail(Problem problem) {
        problem_ = problem;
        return nil;
    }

    /// The next character as it stands; NUL at the end.
    char16_t Here() const { return at_ < text_.size() ? text_[at_] : u'\0'; }
    /// The next character that counts, behind blanks and comments.
    char16_t Next();
    bool Skip(char16_t expected) {
        const bool found = at_ < text_.size() && Next() == expected;
        at_ += found ? 1 : 0;
        return found;
    }

    id NewValue(unsigned depth);
    id NewArray(unsigned depth);
    id NewDictionary(unsigned depth);
    id NewString(const Maker& maker);
    id NewQuoted(const Maker& maker);
    id NewData();
    char16_t TakeEscape();

    std::u16string_view text_;
    Maker maker_;
    Maker keyMaker_;
    Problem problem_ = nullptr;
    std::size_t at_ = 0;
};

char16_t Reader::Next() {
    while (at_ < text_.size()) {
        const std::u16string_view next = text_.substr(at_, 2);
        if (IsBlank(next[0])) {
            ++at_;
        } else if (next == u"//") {
            at_ = std::min(text_.find_first_of(u"\n\r\u2028\u2029", at_), text_.size());
        } else if (next == u"/*") {
            const std::size_t end = text_.find(u"*/", at_ + 2);
            at_ = end == text_.npos ? text_.size() : end + 2;
        } else {
            break;
        }
    }
    return Here();
}

/// What has nothing but blanks and comments is an empty dictionary. A word with something behind it
/// may be the first key of a strings file; whatever stands behind its entries is passed over.
id Reader::NewRoot() {
    Next();
    if (at_ == text_.size()) {
        return maker_.NewDictionary({}, {});
    }
    id root = NewValue(1);
    Next();
    if (root == nil || at_ == text_.size()) {
        return root;
    }
    const bool isWord = KindOf(root) == Kind::String;
    [root release];
    if (!isWord) {
        return Fail("The property list has something after its end.");
    }
    at_ = 0;
    return NewDictionary(1);
}

/// @param depth  its level, 1 for the root
id Reader::NewValue(unsigned depth) {
    const char16_t first = Next();
    if (first != '{' && first != '(') {
        return first == '<' ? NewData() : NewString(maker_);
    }
    if (depth > kDeepestNesting) {
        return Fail(kTooDeep);
    }
    ++at_;
    if (first == '(') {
        return NewArray(depth + 1);
    }
    id dictionary = NewDictionary(depth + 1);
    if (dictionary == nil || Skip('}')) {
        return dictionary;
    }
    [dictionary release];
    return Fail("A dictionary is not closed.");
}

/// A comma may stand before the closing bracket.
id Reader::NewArray(unsigned depth) {
    References values;
    while (values.Add(NewValue(depth)) && Skip(',')) {
    }
    return Skip(')') ? maker_.NewArray(values) : Fail("An array has a comma or bracket missing.");
}

/// Reads as many entries as there are. A key alone is its own value.
id Reader::NewDictionary(unsigned depth) {
    References keys;
    References values;
    while (keys.Add(NewString(keyMaker_))) {
        const bool isAlone = Next() == ';';
        if (!isAlone && !Skip('=')) {
            return Fail("A key in a dictionary has no value.");
        }
        id key = keys.data()[keys.size() - 1];
        if (!values.Add(isAlone ? (maker_.MutableLeaves() ? [key mutableCopy] : [key retain])
                                : NewValue(depth))) {
            return nil;
        }
        if (!Skip(';')) {
            return Fail("A semicolon is missing in a dictionary.");
        }
    }
    return maker_.NewDictionary(keys, values);
}

id Reader::NewString(const Maker& maker) {
    const char16_t first = Next();
    if (first == '"' || first == '\'') {
        return NewQuoted(maker);
    }
    const std::size_t start = at_;
    while (IsPlain(Here())) {
        ++at_;
    }
    return at_ > start ? maker.NewText(text_.substr(start, at_ - start))
                       : Fail("A value is missing or damaged.");
}

id Reader::NewQuoted(const Maker& maker) {
    const char16_t quote = text_[at_++];
    const std::size_t start = at_;
    std::u16string text;
    while (at_ < text_.size()) {
        const char16_t unit = text_[at_++];
        if (unit == quote) {
            return maker.NewText(text);
        }
        text += unit == '\\' ? TakeEscape() : unit;
    }
    at_ = start;
    return Fail("The quotes around a text are not closed.");
}

/// Takes what stands behind a backslash.
char16_t Reader::TakeEscape() {
    constexpr std::string_view kLetters = "abfnrtv";
    constexpr std::string_view kCharacters = "\a\b\f\n\r\t\v";
    constexpr unsigned kMostHex = 4;
    constexpr unsigned kMostOctal = 3;

    const bool isHex = Here() == 'U';
    const bool isOctal = IsIn("01234567", Here());
    if (isHex || isOctal) {
        at_ += isHex ? 1 : 0;
        unsigned number = 0;
        for (unsigned digits = isHex ? kMostHex : kMostOctal; digits > 0; --digits) {
            const int value = HexValue(Here());
            if (value < 0 || (isOctal && value > 7)) {
                break;
            }
            number = number * (isHex ? 16 : 8) + static_cast<unsigned>(value);
            ++at_;
        }
        return isHex ? static_cast<char16_t>(number)
                     : NextStepCharacter(static_cast<unsigned char>(number));
    }
    const char16_t unit = Here();
    at_ += at_ < text_.size() ? 1 : 0;
    return IsIn(kLetters, unit)
               ? static_cast<char16_t>(kCharacters[kLetters.find(static_cast<char>(unit))])
               : unit;
}

/// Blanks may stand between the bytes, not between the digits of one.
id Reader::NewData() {
    std::string bytes;
    ++at_;
    for (; at_ < text_.size() && text_[at_] != '>'; ++at_) {
        const char16_t unit = text_[at_];
        if (unit == ' ' || unit == '\t' || unit == '\n' || unit == '\r' || IsSeparator(unit)) {
            continue;
        }
        const int high = HexValue(unit);
        at_ += high < 0 ? 0 : 1;
        const int low = high < 0 ? -1 : HexValue(Here());
        if (low < 0) {
            return Fail("Data is damaged.");
        }
        bytes += static_cast<char>(high * 16 + low);
    }
    return Skip('>') ? maker_.NewData(bytes) : Fail("Data is not closed.");
}

}  // namespace

id NewFromOldText(std::string_view text, NSPropertyListMutabilityOptions options,
                  Problem& problem) {
    std::u16string units;
    if (!DecodeUtf8(text, units)) {
        problem = "The data is no text in its encoding.";
        return nil;
    }
    Reader reader(units, options);
    id root = reader.NewRoot();
    problem = reader.WhatIsWrong();
    return root;
}

}  // namespace propertylist
