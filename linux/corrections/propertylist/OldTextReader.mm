#include "linux/corrections/propertylist/OldTextReader.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

#include "linux/corrections/propertylist/Base64.h"
#include "linux/corrections/propertylist/Numbers.h"
#include "linux/corrections/propertylist/Unicode.h"

namespace propertylist {

namespace {

/// What ends a word that stands without quotes.
constexpr std::string_view kDelimiters = " \t\r\n\v\f(){}<>=;,\"'\\";
constexpr std::string_view kHexDigits = "0123456789abcdefABCDEF";
constexpr std::string_view kOctalDigits = "01234567";

/// Passes over blanks and comments.
std::size_t SkipBlanks(std::string_view text, std::size_t at) {
    while (at < text.size()) {
        const std::string_view next = text.substr(at, 2);
        if (next == "/*" || next == "//") {
            const std::string_view end = next == "/*" ? "*/" : "\n";
            const std::size_t found = text.find(end, at + 2);
            at = found == std::string_view::npos ? text.size() : found + end.size();
        } else if (std::isspace(static_cast<unsigned char>(text[at])) != 0) {
            ++at;
        } else {
            break;
        }
    }
    return at;
}

/// A moment as GNUstep writes it, such as 2001-01-01 00:00:00 +0000.
NSDate* NewDate(std::string_view text) {
    NSString* string = [Maker(NSPropertyListImmutable).NewUtf8(text) autorelease];
    return string == nil ? nil : [[NSDate alloc] initWithString:string];
}

class Reader {
  public:
    Reader(std::string_view text, NSPropertyListMutabilityOptions options)
        : text_(text), maker_(options), keyMaker_(NSPropertyListImmutable) {}

    id NewRoot();
    Problem WhatIsWrong() const { return problem_; }

  private:
    id Fail(Problem problem) {
        problem_ = problem;
        return nil;
    }

    /// The next character that counts; NUL at the end.
    char Next() {
        at_ = SkipBlanks(text_, at_);
        return at_ < text_.size() ? text_[at_] : '\0';
    }
    bool Skip(char expected) {
        const bool found = Next() == expected;
        at_ += found ? 1 : 0;
        return found;
    }
    std::string_view TakeDigits(std::string_view digits, std::size_t most);

    id NewValue(unsigned depth);
    id NewArray(unsigned depth);
    id NewDictionary(unsigned depth);
    id NewString(const Maker& maker);
    id NewQuoted(const Maker& maker);
    id NewAngled();
    id NewTyped(std::string_view content);
    id NewData(std::string_view content);
    void AppendEscape(std::u16string& text);

    std::string_view text_;
    Maker maker_;
    Maker keyMaker_;
    Problem problem_ = nullptr;
    std::size_t at_ = 0;
};

id Reader::NewRoot() {
    id root = NewValue(0);
    at_ = SkipBlanks(text_, at_);
    if (root != nil && at_ < text_.size()) {
        [root release];
        return Fail("The property list has something after its end.");
    }
    return root;
}

/// @param depth  the number of containers around the value
id Reader::NewValue(unsigned depth) {
    const char first = Next();
    if (first == '{' || first == '(') {
        if (depth >= kDeepestNesting) {
            return Fail("The property list is nested too deep.");
        }
        return first == '{' ? NewDictionary(depth) : NewArray(depth);
    }
    return first == '<' ? NewAngled() : NewString(maker_);
}

/// A comma may stand before the closing bracket.
id Reader::NewArray(unsigned depth) {
    References values;
    Skip('(');
    while (!Skip(')')) {
        if (values.size() > 0 && !Skip(',')) {
            return Fail("A comma or closing bracket is missing in an array.");
        }
        if (values.size() > 0 && Skip(')')) {
            break;
        }
        id value = NewValue(depth + 1);
        if (value == nil) {
            return nil;
        }
        values.Add(value);
    }
    return maker_.NewArray(values);
}

id Reader::NewDictionary(unsigned depth) {
    References keys;
    References values;
    Skip('{');
    while (!Skip('}')) {
        id key = NewString(keyMaker_);
        if (key == nil) {
            return nil;
        }
        keys.Add(key);
        if (!Skip('=')) {
            return Fail("A key in a dictionary has no value.");
        }
        id value = NewValue(depth + 1);
        if (value == nil) {
            return nil;
        }
        values.Add(value);
        if (!Skip(';')) {
            return Fail("A semicolon is missing in a dictionary.");
        }
    }
    return maker_.NewDictionary(keys, values);
}

id Reader::NewString(const Maker& maker) {
    const char first = Next();
    if (first == '"' || first == '\'') {
        return NewQuoted(maker);
    }
    const std::size_t start = at_;
    at_ = std::min(text_.find_first_of(kDelimiters, at_), text_.size());
    NSString* word = at_ == start ? nil : maker.NewUtf8(text_.substr(start, at_ - start));
    return word != nil ? word : Fail("A value is missing or damaged.");
}

id Reader::NewQuoted(const Maker& maker) {
    const char delimiters[] = {text_[at_++], '\\'};
    std::u16string text;
    std::u16string run;
    for (;;) {
        const std::size_t end = text_.find_first_of({delimiters, sizeof delimiters}, at_);
        if (end == std::string_view::npos) {
            return Fail("The quotes around a text are not closed.");
        }
        if (!DecodeUtf8(text_.substr(at_, end - at_), run)) {
            return Fail("A text is no UTF-8.");
        }
        text += run;
        at_ = end + 1;
        if (text_[end] != '\\') {
            NSString* string = maker.NewText(text);
            return string != nil ? string : Fail("A text has half a surrogate pair.");
        }
        AppendEscape(text);
    }
}

std::string_view Reader::TakeDigits(std::string_view digits, std::size_t most) {
    const std::string_view rest = text_.substr(at_, most);
    const std::string_view taken = rest.substr(0, rest.find_first_not_of(digits));
    at_ += taken.size();
    return taken;
}

/// Appends what the escape behind a backslash stands for.
void Reader::AppendEscape(std::u16string& text) {
    constexpr std::string_view kLetters = "abfnrtv";
    constexpr std::string_view kCharacters = "\a\b\f\n\r\t\v";
    constexpr std::size_t kMostHex = 4;
    constexpr std::size_t kMostOctal = 3;

    if (at_ < text_.size() && (text_[at_] == 'U' || text_[at_] == 'u')) {
        ++at_;
        const std::string digits(TakeDigits(kHexDigits, kMostHex));
        text += static_cast<char16_t>(std::strtoul(digits.c_str(), nullptr, 16));
        return;
    }
    const std::string octal(TakeDigits(kOctalDigits, kMostOctal));
    if (!octal.empty()) {
        text += static_cast<char16_t>(std::strtoul(octal.c_str(), nullptr, 8));
        return;
    }
    if (at_ < text_.size() && static_cast<unsigned char>(text_[at_]) < 0x80) {
        const std::size_t letter = kLetters.find(text_[at_]);
        text += static_cast<char16_t>(letter == kLetters.npos ? text_[at_] : kCharacters[letter]);
        ++at_;
    }
}

/// Reads what stands in angle brackets.
id Reader::NewAngled() {
    const std::size_t start = at_ + 1;
    const std::size_t end = text_.find('>', start);
    if (end == std::string_view::npos) {
        return Fail("The angle brackets around data are not closed.");
    }
    at_ = end + 1;
    const std::string_view content = text_.substr(start, end - start);
    id value = content.substr(0, 1) == "*" ? NewTyped(content.substr(1)) : NewData(content);
    return value != nil ? value : Fail("The data or value in angle brackets is damaged.");
}

id Reader::NewTyped(std::string_view content) {
    if (content == "BY" || content == "BN") {
        return [[NSNumber numberWithBool:content == "BY"] retain];
    }
    const std::string_view text = content.substr(std::min<std::size_t>(content.size(), 1));
    switch (content.empty() ? '\0' : content[0]) {
        case 'I':
            return NewInteger(text);
        case 'R':
            return NewReal(text);
        case 'D':
            return NewDate(text);
        default:
            return nil;
    }
}

id Reader::NewData(std::string_view content) {
    std::string bytes;
    if (content.size() >= 2 && content.front() == '[' && content.back() == ']') {
        return DecodeBase64(content.substr(1, content.size() - 2), bytes) ? maker_.NewData(bytes)
                                                                          : nil;
    }
    std::string digits;
    for (const char character : content) {
        if (std::isspace(static_cast<unsigned char>(character)) == 0) {
            digits += character;
        }
    }
    if (digits.size() % 2 != 0 || digits.find_first_not_of(kHexDigits) != std::string::npos) {
        return nil;
    }
    for (std::size_t at = 0; at < digits.size(); at += 2) {
        bytes += static_cast<char>(std::strtoul(digits.substr(at, 2).c_str(), nullptr, 16));
    }
    return maker_.NewData(bytes);
}

}  // namespace

bool IsOldText(std::string_view text) {
    const std::size_t start = SkipBlanks(text, 0);
    return start < text.size() && (text[start] == '{' || text[start] == '(');
}

id NewFromOldText(std::string_view text, NSPropertyListMutabilityOptions options,
                  Problem& problem) {
    Reader reader(text, options);
    id root = reader.NewRoot();
    problem = reader.WhatIsWrong();
    return root;
}

}  // namespace propertylist
