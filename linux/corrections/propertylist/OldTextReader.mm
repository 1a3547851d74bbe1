#include <glib.h>

#include <cstdlib>

#include "linux/corrections/propertylist/Formats.h"
#include "linux/corrections/propertylist/Text.h"
#include "linux/corrections/propertylist/Values.h"

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

class Reader {
  public:
    Reader(std::u16string_view text, NSPropertyListMutabilityOptions options)
        : text_(text), maker_(options) {}

    id ReadRoot();

  private:
    /// The next character as it stands; NUL at the end.
    char16_t Here() const { return at_ < text_.size() ? text_[at_] : u'\0'; }
    /// The next character that counts, behind blanks and comments.
    char16_t Next();
    bool Skip(char16_t expected) {
        const bool found = at_ < text_.size() && Next() == expected;
        at_ += found ? 1 : 0;
        return found;
    }

    void Expect(char16_t expected, NSString* problem) {
        if (!Skip(expected)) {
            @throw problem;
        }
    }

    id ReadValue(unsigned level);
    NSArray* ReadArray(unsigned level);
    NSDictionary* ReadDictionary(unsigned level);
    NSString* TakeString();
    NSString* TakeQuoted();
    NSData* ReadData();
    char16_t TakeEscape();

    std::u16string_view text_;
    Maker maker_;
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
id Reader::ReadRoot() {
    Next();
    if (at_ == text_.size()) {
        return maker_.Dictionary({}, {});
    }
    id root = ReadValue(1);
    Next();
    if (at_ == text_.size()) {
        return root;
    }
    if (![root isKindOfClass:[NSString class]]) {
        @throw @"The property list has something after its end.";
    }
    at_ = 0;
    return ReadDictionary(2);
}

/// @param level  1 for the root
id Reader::ReadValue(unsigned level) {
    const char16_t first = Next();
    if (first == '<') {
        return ReadData();
    }
    if (first != '{' && first != '(') {
        NSString* string = TakeString();
        if (string == nil) {
            @throw @"A value is missing or damaged.";
        }
        return string;
    }
    CheckLevel(level);
    ++at_;
    if (first == '(') {
        return ReadArray(level + 1);
    }
    NSDictionary* dictionary = ReadDictionary(level + 1);
    Expect('}', @"A dictionary is not closed.");
    return dictionary;
}

/// A comma may stand before the closing bracket. A value that cannot be read is passed over when
/// the bracket stands where the reader stumbled.
NSArray* Reader::ReadArray(unsigned level) {
    std::vector<id> values;
    @try {
        do {
            values.push_back(ReadValue(level));
        } while (Skip(','));
    } @catch (NSString*) {
    }
    Expect(')', @"An array has a comma or bracket missing.");
    return maker_.Array(values);
}

/// Reads as many entries as there are. A key alone is its own value.
NSDictionary* Reader::ReadDictionary(unsigned level) {
    std::vector<id> keys;
    std::vector<id> values;
    while (NSString* key = TakeString()) {
        const bool isAlone = Next() == ';';
        if (!isAlone) {
            Expect('=', @"A key in a dictionary has no value.");
        }
        keys.push_back(key);
        values.push_back(isAlone ? key : ReadValue(level));
        Expect(';', @"A semicolon is missing in a dictionary.");
    }
    return maker_.Dictionary(keys, values);
}

/// @return nil when there is none, or its quotes are not closed
NSString* Reader::TakeString() {
    const char16_t first = Next();
    if (first == '"' || first == '\'') {
        return TakeQuoted();
    }
    const std::size_t start = at_;
    while (IsPlain(Here())) {
        ++at_;
    }
    return at_ > start ? maker_.Text(text_.substr(start, at_ - start)) : nil;
}

NSString* Reader::TakeQuoted() {
    const char16_t quote = text_[at_++];
    const std::size_t start = at_;
    std::u16string text;
    while (at_ < text_.size()) {
        const char16_t unit = text_[at_++];
        if (unit == quote) {
            return maker_.Text(text);
        }
        text += unit == '\\' ? TakeEscape() : unit;
    }
    at_ = start;
    return nil;
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
NSData* Reader::ReadData() {
    std::string bytes;
    ++at_;
    for (; Here() != '>'; ++at_) {
        if (IsIn(" \t\n\r", Here()) || IsSeparator(Here())) {
            continue;
        }
        const int high = HexValue(Here());
        at_ += high < 0 ? 0 : 1;
        const int low = high < 0 ? -1 : HexValue(Here());
        if (low < 0) {
            @throw @"Data is damaged.";
        }
        bytes += static_cast<char>(high * 16 + low);
    }
    ++at_;
    return maker_.Data(bytes);
}

}  // namespace

id ReadOldText(std::string_view text, NSPropertyListMutabilityOptions options) {
    return Reader(DecodeUtf8(text), options).ReadRoot();
}

}  // namespace propertylist
