#include <glib.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "linux/corrections/propertylist/Calendar.h"
#include "linux/corrections/propertylist/Formats.h"
#include "linux/corrections/propertylist/Text.h"
#include "linux/corrections/propertylist/Values.h"

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
    void Write(id value, unsigned depth);

    std::string text = kStart;

  private:
    void Line(unsigned depth, std::string_view content) {
        text.append(depth, '\t').append(content).append("\n");
    }
    void Element(unsigned depth, const std::string& name, const std::string& content) {
        Line(depth, "<" + name + ">" + content + "</" + name + ">");
    }
    void WriteText(const char* name, std::u16string_view units, unsigned depth);
    void WriteData(NSData* data, unsigned depth);
    void WriteArray(NSArray* array, unsigned depth);
    void WriteDictionary(NSDictionary* dictionary, unsigned depth);
};

/// @param depth  the number of containers around the value
void Writer::Write(id value, unsigned depth) {
    switch (KindOf(value)) {
        case Kind::Array:
            return WriteArray(value, depth);
        case Kind::Boolean:
            return Line(depth, [value boolValue] ? "<true/>" : "<false/>");
        case Kind::Data:
            return WriteData(value, depth);
        case Kind::Date:
            return Element(depth, "date", TextFromMoment([value timeIntervalSinceReferenceDate]));
        case Kind::Dictionary:
        case Kind::Uid:
            return WriteDictionary(value, depth);
        case Kind::Integer:
            return Element(depth, "integer", IntegerText(value));
        case Kind::Real:
            return Element(depth, "real", RealText([value doubleValue]));
        case Kind::String:
            return WriteText("string", TextOf(value), depth);
    }
}

void Writer::WriteText(const char* name, std::u16string_view units, unsigned depth) {
    std::string escaped;
    for (const char character : EncodeUtf8(units)) {
        if (character == '&' || character == '<' || character == '>') {
            escaped += character == '&' ? "&amp;" : character == '<' ? "&lt;" : "&gt;";
        } else {
            escaped += character;
        }
    }
    Element(depth, name, escaped);
}

void Writer::WriteData(NSData* data, unsigned depth) {
    constexpr std::size_t kLineWidth = 76;
    constexpr std::size_t kTabWidth = 8;
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

void Writer::WriteArray(NSArray* array, unsigned depth) {
    CheckLevel(depth + 1);
    if ([array count] == 0) {
        return Line(depth, "<array/>");
    }
    Line(depth, "<array>");
    for (id value in array) {
        Write(value, depth + 1);
    }
    Line(depth, "</array>");
}

void Writer::WriteDictionary(NSDictionary* dictionary, unsigned depth) {
    CheckLevel(depth + 1);
    const std::map<std::u16string, id> entries = EntriesOf(dictionary);
    if (entries.empty()) {
        return Line(depth, "<dict/>");
    }
    Line(depth, "<dict>");
    for (const auto& [key, value] : entries) {
        WriteText("key", key, depth + 1);
        Write(value, depth + 1);
    }
    Line(depth, "</dict>");
}

}  // namespace

NSData* WriteXML(id root) {
    Writer writer;
    writer.Write(root, 0);
    writer.text += kEnd;
    return [NSData dataWithBytes:writer.text.data() length:writer.text.size()];
}

}  // namespace propertylist
