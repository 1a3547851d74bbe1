#include "linux/corrections/propertylist/XMLReader.h"

#include <algorithm>
#include <cstdlib>

#include "linux/corrections/propertylist/Base64.h"
#include "linux/corrections/propertylist/Calendar.h"
#include "linux/corrections/propertylist/Numbers.h"
#include "linux/corrections/propertylist/Unicode.h"

namespace propertylist {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr Problem kUnexpectedEnd = "The XML property list ends too early.";

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

id NewDate(std::string_view text) {
    double seconds = 0;
    if (!MomentFromText(text, seconds)) {
        return nil;
    }
    return [[NSDate alloc] initWithTimeIntervalSinceReferenceDate:seconds];
}

class Reader {
  public:
    Reader(std::string_view text, NSPropertyListMutabilityOptions options)
        : text_(text), maker_(options), keyMaker_(NSPropertyListImmutable) {}

    id NewRoot();
    Problem WhatIsWrong() const { return problem_; }

  private:
    struct Tag {
        std::string_view name;
        bool closes;
        bool isEmpty;
    };

    bool Fail(Problem problem) {
        problem_ = problem;
        return false;
    }
    id FailNil(Problem problem) {
        problem_ = problem;
        return nil;
    }

    bool StartsWith(std::string_view start) const {
        return text_.compare(at_, start.size(), start) == 0;
    }
    bool SkipPast(std::string_view end);
    bool SkipDocumentType();
    bool SkipOther();
    bool ReadTag(Tag& tag);
    bool ReadClosingTag(std::string_view name);
    bool ReadReference();
    bool ReadText(const Tag& tag, std::string_view& text);

    id NewList();
    id NewValue(const Tag& tag, unsigned depth);
    id NewNumberOrDate(const Tag& tag);
    id NewBoolean(const Tag& tag, BOOL value);
    id NewString(const Tag& tag, const Maker& maker);
    id NewData(const Tag& tag);
    id NewArray(const Tag& tag, unsigned depth);
    id NewDictionary(const Tag& tag, unsigned depth);

    std::string_view text_;
    Maker maker_;
    Maker keyMaker_;
    Problem problem_ = nullptr;
    std::size_t at_ = 0;
    std::string gathered_;
};

bool Reader::SkipPast(std::string_view end) {
    const std::size_t found = text_.find(end, at_);
    if (found == std::string_view::npos) {
        return Fail(kUnexpectedEnd);
    }
    at_ = found + end.size();
    return true;
}

/// Passes over a document type with all declarations that stand in it.
bool Reader::SkipDocumentType() {
    bool isInside = false;
    while (at_ < text_.size()) {
        const char next = text_[at_];
        if (StartsWith("<!--") || StartsWith("<?")) {
            if (!SkipPast(StartsWith("<?") ? "?>" : "-->")) {
                return false;
            }
        } else if (next == '"' || next == '\'') {
            ++at_;
            if (!SkipPast(std::string_view(&next, 1))) {
                return false;
            }
        } else {
            ++at_;
            if (next == '>' && !isInside) {
                return true;
            }
            isInside = next == '[' || (isInside && next != ']');
        }
    }
    return Fail(kUnexpectedEnd);
}

/// Passes over blanks and everything that is no element.
bool Reader::SkipOther() {
    for (;;) {
        at_ = std::min(text_.find_first_not_of(kBlanks, at_), text_.size());
        bool skipped = false;
        if (StartsWith("<!--")) {
            skipped = SkipPast("-->");
        } else if (StartsWith("<?")) {
            skipped = SkipPast("?>");
        } else if (StartsWith("<!DOCTYPE")) {
            skipped = SkipDocumentType();
        } else {
            return true;
        }
        if (!skipped) {
            return false;
        }
    }
}

/// Reads the tag that has to stand here; its attributes do not matter.
bool Reader::ReadTag(Tag& tag) {
    if (at_ >= text_.size()) {
        return Fail(kUnexpectedEnd);
    }
    if (text_[at_] != '<') {
        return Fail("The XML property list has text where a tag is expected.");
    }
    ++at_;
    tag.closes = StartsWith("/");
    at_ += tag.closes ? 1 : 0;
    const std::size_t start = at_;
    at_ = std::min(text_.find_first_of(" \t\r\n/>", at_), text_.size());
    tag.name = text_.substr(start, at_ - start);
    while (at_ < text_.size() && text_[at_] != '>') {
        const char next = text_[at_++];
        if ((next == '"' || next == '\'') && !SkipPast(std::string_view(&next, 1))) {
            return false;
        }
    }
    if (at_ >= text_.size()) {
        return Fail(kUnexpectedEnd);
    }
    tag.isEmpty = !tag.closes && text_[at_ - 1] == '/';
    ++at_;
    return true;
}

bool Reader::ReadClosingTag(std::string_view name) {
    Tag tag;
    if (!ReadTag(tag)) {
        return false;
    }
    return (tag.closes && tag.name == name) ||
           Fail("An element of the XML property list is not closed where it should be.");
}

/// Appends the character that a reference such as &amp; or &#x41; stands for.
bool Reader::ReadReference() {
    struct Entity {
        std::string_view name;
        char character;
    };
    constexpr Entity kEntities[] = {
        {"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
    constexpr std::size_t kLongest = 12;

    const std::string_view rest = text_.substr(at_ + 1, kLongest);
    const std::string_view name = rest.substr(0, rest.find(';'));
    if (name.size() == rest.size()) {
        return Fail("The XML property list has an ampersand that begins no reference.");
    }
    at_ += name.size() + 2;
    for (const Entity& entity : kEntities) {
        if (name == entity.name) {
            gathered_ += entity.character;
            return true;
        }
    }
    const bool isHex = name.substr(0, 2) == "#x";
    const std::string digits(name.substr(std::min<std::size_t>(name.size(), isHex ? 2 : 1)));
    const char* allowed = isHex ? "0123456789abcdefABCDEF" : "0123456789";
    if (name.substr(0, 1) != "#" || digits.empty() ||
        digits.find_first_not_of(allowed) != std::string::npos) {
        return Fail("The XML property list has a reference to an unknown entity.");
    }
    const unsigned long character = std::strtoul(digits.c_str(), nullptr, isHex ? 16 : 10);
    if (character == 0 || character > 0x10FFFF || (character >= 0xD800 && character <= 0xDFFF)) {
        return Fail("The XML property list has a reference to no character.");
    }
    AppendUtf8(static_cast<char32_t>(character), gathered_);
    return true;
}

/// Reads the text of an element and its closing tag.
/// @param text  gets the text; it is valid until the next call
bool Reader::ReadText(const Tag& tag, std::string_view& text) {
    constexpr std::string_view kSectionStart = "<![CDATA[";
    constexpr std::string_view kSectionEnd = "]]>";

    text = {};
    if (tag.isEmpty) {
        return true;
    }
    gathered_.clear();
    for (;;) {
        const std::size_t end = text_.find_first_of("<&", at_);
        if (end == std::string_view::npos) {
            return Fail(kUnexpectedEnd);
        }
        const std::string_view run = text_.substr(at_, end - at_);
        at_ = end;
        if (text_[at_] == '&') {
            gathered_ += run;
            if (!ReadReference()) {
                return false;
            }
        } else if (StartsWith(kSectionStart)) {
            gathered_ += run;
            const std::size_t start = at_ + kSectionStart.size();
            if (!SkipPast(kSectionEnd)) {
                return false;
            }
            gathered_ += text_.substr(start, at_ - kSectionEnd.size() - start);
        } else if (StartsWith("<!--") || StartsWith("<?")) {
            gathered_ += run;
            if (!SkipPast(StartsWith("<?") ? "?>" : "-->")) {
                return false;
            }
        } else if (gathered_.empty()) {
            text = run;
            return ReadClosingTag(tag.name);
        } else {
            gathered_ += run;
            text = gathered_;
            return ReadClosingTag(tag.name);
        }
    }
}

id Reader::NewRoot() {
    id root = NewList();
    if (root != nil && (!SkipOther() || at_ < text_.size())) {
        [root release];
        return FailNil("The XML property list has something after its end.");
    }
    return root;
}

/// Reads the root value, with or without the element "plist" around it.
id Reader::NewList() {
    Tag tag;
    if (!SkipOther() || !ReadTag(tag)) {
        return nil;
    }
    if (tag.name != "plist" || tag.closes) {
        return NewValue(tag, 0);
    }
    if (tag.isEmpty) {
        return FailNil("The XML property list is empty.");
    }
    if (!SkipOther() || !ReadTag(tag)) {
        return nil;
    }
    id root = NewValue(tag, 0);
    if (root != nil && (!SkipOther() || !ReadClosingTag("plist"))) {
        [root release];
        return nil;
    }
    return root;
}

/// @param depth  the number of containers around the value
id Reader::NewValue(const Tag& tag, unsigned depth) {
    if (tag.closes) {
        return FailNil("The XML property list closes an element that is not open.");
    }
    if (tag.name == "dict" || tag.name == "array") {
        if (depth >= kDeepestNesting) {
            return FailNil("The property list is nested too deep.");
        }
        return tag.name == "dict" ? NewDictionary(tag, depth) : NewArray(tag, depth);
    }
    if (tag.name == "string") {
        return NewString(tag, maker_);
    }
    if (tag.name == "true" || tag.name == "false") {
        return NewBoolean(tag, tag.name == "true");
    }
    if (tag.name == "data") {
        return NewData(tag);
    }
    if (tag.name == "integer" || tag.name == "real" || tag.name == "date") {
        return NewNumberOrDate(tag);
    }
    return FailNil("The XML property list has an element of unknown name.");
}

id Reader::NewNumberOrDate(const Tag& tag) {
    std::string_view text;
    if (!ReadText(tag, text)) {
        return nil;
    }
    text = Trimmed(text);
    id value = tag.name == "integer" ? NewInteger(text)
               : tag.name == "real"  ? NewReal(text)
                                     : NewDate(text);
    return value != nil ? value : FailNil("The XML property list has a damaged number or date.");
}

id Reader::NewBoolean(const Tag& tag, BOOL value) {
    std::string_view text;
    if (!ReadText(tag, text)) {
        return nil;
    }
    if (!Trimmed(text).empty()) {
        return FailNil("The XML property list has a boolean with text in it.");
    }
    return [[NSNumber numberWithBool:value] retain];
}

id Reader::NewString(const Tag& tag, const Maker& maker) {
    std::string_view text;
    if (!ReadText(tag, text)) {
        return nil;
    }
    NSString* string = maker.NewUtf8(text);
    return string != nil ? string : FailNil("The XML property list has text that is no UTF-8.");
}

id Reader::NewData(const Tag& tag) {
    std::string_view text;
    if (!ReadText(tag, text)) {
        return nil;
    }
    std::string bytes;
    if (!DecodeBase64(text, bytes)) {
        return FailNil("The XML property list has damaged data.");
    }
    return maker_.NewData(bytes);
}

id Reader::NewArray(const Tag& tag, unsigned depth) {
    References values;
    for (Tag next = {"array", true, true}; !tag.isEmpty;) {
        if (!SkipOther() || !ReadTag(next)) {
            return nil;
        }
        if (next.closes && next.name == tag.name) {
            break;
        }
        id value = NewValue(next, depth + 1);
        if (value == nil) {
            return nil;
        }
        values.Add(value);
    }
    return maker_.NewArray(values);
}

id Reader::NewDictionary(const Tag& tag, unsigned depth) {
    References keys;
    References values;
    Tag next;
    while (!tag.isEmpty) {
        if (!SkipOther() || !ReadTag(next)) {
            return nil;
        }
        if (next.closes && next.name == tag.name) {
            break;
        }
        if (next.name != "key" || next.closes) {
            return FailNil("The XML property list has a dictionary with a value but no key.");
        }
        id key = NewString(next, keyMaker_);
        if (key == nil) {
            return nil;
        }
        keys.Add(key);
        if (!SkipOther() || !ReadTag(next)) {
            return nil;
        }
        if (next.closes) {
            return FailNil("The XML property list has a dictionary with a key but no value.");
        }
        id value = NewValue(next, depth + 1);
        if (value == nil) {
            return nil;
        }
        values.Add(value);
    }
    if (keys.size() == 1 && [keys[0] isEqual:kUidKey] && KindOf(values[0]) == Kind::Integer &&
        !IsNegative(values[0])) {
        return [[KSPropertyListUID alloc] initWithUID:[values[0] unsignedLongLongValue]];
    }
    return maker_.NewDictionary(keys, values);
}

}  // namespace

id NewFromXML(std::string_view text, NSPropertyListMutabilityOptions options, Problem& problem) {
    Reader reader(text, options);
    id root = reader.NewRoot();
    problem = reader.WhatIsWrong();
    return root;
}

}  // namespace propertylist
