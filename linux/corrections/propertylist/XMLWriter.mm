#include <glib.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "linux/corrections/propertylist/Calendar.h"
#include "linux/corrections/propertylist/Formats.h"
#include "linux/corrections/propertylist/Text.h"

namespace propertylist {

namespace {

constexpr const char* kStart = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                               "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                               "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                               "<plist version=\"1.0\">\n";
constexpr const char* kEnd = "</plist>\n";

std::string RealText(double real) {
    if (!std::isfinite(real) || real == 0) {
        return std::isnan(real) ? "nan" : real == 0 ? "0.0" : real > 0 ? "+infinity" : "-infinity";
    }
    char text[32];
    std::snprintf(text, sizeof text, "%.17g", real);
    return text;
}

std::string IntegerText(NSNumber* integer) {
    return IsNegative(integer) ? std::to_string([integer longLongValue])
                               : std::to_string([integer unsignedLongLongValue]);
}

class Writer {
  public:
    explicit Writer(std::string& out) : out_(out) {}

    bool Write(id value, unsigned depth);
    Problem WhatIsWrong() const { return problem_; }

  private:
    bool Fail(Problem problem) {
        problem_ = problem;
        return false;
    }

    void Line(unsigned depth, const char* text) {
        out_.append(depth, '\t').append(text).append("\n");
    }
    void Element(unsigned depth, const char* name, std::string_view text) {
        out_.append(depth, '\t').append("<").append(name).append(">").append(text);
        out_.append("</").append(name).append(">\n");
    }
    bool WriteText(const char* name, std::u16string_view text, unsigned depth);
    bool WriteDate(NSDate* date, unsigned depth);
    void WriteData(NSData* data, unsigned depth);
    bool WriteArray(NSArray* array, unsigned depth);
    bool WriteDictionary(NSDictionary* dictionary, unsigned depth);

    std::string& out_;
    std::u16string text_;
    std::string bytes_;
    std::string escaped_;
    Problem problem_ = nullptr;
};

/// @param depth  the number of containers around the value
bool Writer::Write(id value, unsigned depth) {
    const Kind kind = KindOf(value);
    if ((kind == Kind::Array || kind == Kind::Dictionary) && depth >= kDeepestNesting) {
        return Fail(kTooDeep);
    }
    switch (kind) {
        case Kind::Array:
            return WriteArray(value, depth);
        case Kind::Boolean:
            Line(depth, [value boolValue] ? "<true/>" : "<false/>");
            return true;
        case Kind::Data:
            WriteData(value, depth);
            return true;
        case Kind::Date:
            return WriteDate(value, depth);
        case Kind::Dictionary:
        case Kind::Uid:
            return WriteDictionary(value, depth);
        case Kind::Integer:
            Element(depth, "integer", IntegerText(value));
            return true;
        case Kind::Real:
            Element(depth, "real", RealText([value doubleValue]));
            return true;
        case Kind::String:
            GetText(value, text_);
            return WriteText("string", text_, depth);
        case Kind::Unsuitable:
            break;
    }
    return Fail("Property lists cannot contain an object of this class.");
}

bool Writer::WriteText(const char* name, std::u16string_view text, unsigned depth) {
    bytes_.clear();
    escaped_.clear();
    if (!AppendUtf8(text, bytes_)) {
        return Fail("A string of the property list has half a surrogate pair.");
    }
    for (const char character : bytes_) {
        if (character == '&' || character == '<' || character == '>') {
            escaped_ += character == '&' ? "&amp;" : character == '<' ? "&lt;" : "&gt;";
        } else {
            escaped_ += character;
        }
    }
    Element(depth, name, escaped_);
    return true;
}

bool Writer::WriteDate(NSDate* date, unsigned depth) {
    std::string text;
    if (!AppendMoment([date timeIntervalSinceReferenceDate], text)) {
        return Fail("A date of the property list is beyond any calendar.");
    }
    Element(depth, "date", text);
    return true;
}

void Writer::WriteData(NSData* data, unsigned depth) {
    constexpr std::size_t kLineWidth = 76;
    constexpr unsigned kTabWidth = 8;
    constexpr unsigned kMostTabs = 8;

    const unsigned tabs = std::min(depth, kMostTabs);
    const std::size_t most = (kLineWidth - kTabWidth * tabs) / 4 * 3;
    const auto* const bytes = static_cast<const guchar*>([data bytes]);
    Line(depth, "<data>");
    for (std::size_t at = 0; at < [data length]; at += most) {
        gchar* const line = g_base64_encode(bytes + at, std::min(most, [data length] - at));
        Line(tabs, line);
        g_free(line);
    }
    Line(depth, "</data>");
}

bool Writer::WriteArray(NSArray* array, unsigned depth) {
    if ([array count] == 0) {
        Line(depth, "<array/>");
        return true;
    }
    Line(depth, "<array>");
    for (id value in array) {
        if (!Write(value, depth + 1)) {
            return false;
        }
    }
    Line(depth, "</array>");
    return true;
}

bool Writer::WriteDictionary(NSDictionary* dictionary, unsigned depth) {
    std::vector<Entry> entries;
    if (!GetEntries(dictionary, entries)) {
        return Fail("Property lists can only have strings as keys of dictionaries.");
    }
    if (entries.empty()) {
        Line(depth, "<dict/>");
        return true;
    }
    Line(depth, "<dict>");
    for (const Entry& entry : entries) {
        if (!WriteText("key", entry.key, depth + 1) || !Write(entry.value, depth + 1)) {
            return false;
        }
    }
    Line(depth, "</dict>");
    return true;
}

}  // namespace

bool WriteXML(id root, std::string& text, Problem& problem) {
    text = kStart;
    Writer writer(text);
    const bool written = writer.Write(root, 0);
    problem = writer.WhatIsWrong();
    text += kEnd;
    return written;
}

}  // namespace propertylist
