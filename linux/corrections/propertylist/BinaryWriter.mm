#include <algorithm>
#include <cstring>
#include <functional>
#include <unordered_set>

#include "linux/corrections/propertylist/BinaryFormat.h"
#include "linux/corrections/propertylist/Formats.h"

namespace propertylist {

namespace {

/// The number of bytes that hold every number up to this one: 1, 2, 4 or 8.
std::size_t SizeFor(std::uint64_t highest) {
    return highest < (1ULL << 8) ? 1 : highest < (1ULL << 16) ? 2 : highest < (1ULL << 32) ? 4 : 8;
}

void AppendNumber(std::uint64_t number, std::size_t size, std::string& bytes) {
    for (std::size_t i = size; i-- > 0;) {
        bytes += static_cast<char>(number >> (8 * i));
    }
}

/// Appends an integer object; one of 8 bytes is read as signed.
void AppendInteger(std::uint64_t number, bool negative, std::string& bytes) {
    if (!negative && number > INT64_MAX) {
        bytes += static_cast<char>(marker::kInteger | 4);
        AppendNumber(0, 8, bytes);
        AppendNumber(number, 8, bytes);
        return;
    }
    const std::size_t size = negative ? 8 : SizeFor(number);
    bytes += static_cast<char>(marker::kInteger | (size == 8 ? 3 : size / 2));
    AppendNumber(number, size, bytes);
}

void AppendHead(std::uint8_t type, std::size_t length, std::string& bytes) {
    if (length < marker::kLongLength) {
        bytes += static_cast<char>(type | length);
        return;
    }
    bytes += static_cast<char>(type | marker::kLongLength);
    AppendInteger(length, false, bytes);
}

class Writer {
  public:
    Writer() : known_(0, Hash{this}, Equal{this}) {}
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    bool Write(id root, std::string& bytes);
    Problem WhatIsWrong() const { return problem_; }

  private:
    using Number = std::uint32_t;

    /// A leaf lies encoded in leaves_, a container in references_, as the numbers of what it holds.
    struct Object {
        std::size_t start;
        std::uint32_t length;
        std::uint8_t container;
    };

    // Leaves are the same if they are encoded alike.
    struct Hash {
        const Writer* writer;
        std::size_t operator()(Number number) const {
            return std::hash<std::string_view>()(writer->Leaf(number));
        }
    };
    struct Equal {
        const Writer* writer;
        bool operator()(Number left, Number right) const {
            return writer->Leaf(left) == writer->Leaf(right);
        }
    };

    std::string_view Leaf(Number number) const {
        const Object& object = objects_[number];
        return std::string_view(leaves_).substr(object.start, object.length);
    }

    bool Fail(Problem problem) {
        problem_ = problem;
        return false;
    }

    bool Add(id value, unsigned depth, Number& number);
    bool AddArray(NSArray* array, unsigned depth, Number& number);
    bool AddDictionary(NSDictionary* dictionary, unsigned depth, Number& number);
    bool AddContainer(std::uint8_t type, const std::vector<Number>& parts, Number& number);
    bool AddLeaf(std::size_t start, Number& number);
    bool AddText(std::u16string_view text, Number& number);
    bool AppendLeaf(id value, Kind kind);
    void AppendReal(NSNumber* real);

    std::vector<Object> objects_;
    std::string leaves_;
    std::vector<Number> references_;
    std::unordered_set<Number, Hash, Equal> known_;
    std::u16string text_;
    Problem problem_ = nullptr;
};

/// @param depth  the number of containers around the value
/// @param number  gets the object's number
bool Writer::Add(id value, unsigned depth, Number& number) {
    const Kind kind = KindOf(value);
    if ((kind == Kind::Array || kind == Kind::Dictionary) && depth >= kDeepestNesting) {
        return Fail(kTooDeep);
    }
    if (kind == Kind::Array) {
        return AddArray(value, depth, number);
    }
    if (kind == Kind::Dictionary) {
        return AddDictionary(value, depth, number);
    }
    if (kind == Kind::String) {
        GetText(value, text_);
        return AddText(text_, number);
    }
    const std::size_t start = leaves_.size();
    return AppendLeaf(value, kind) && AddLeaf(start, number);
}

bool Writer::AddArray(NSArray* array, unsigned depth, Number& number) {
    std::vector<Number> parts;
    parts.reserve([array count]);
    for (id value in array) {
        Number part = 0;
        if (!Add(value, depth + 1, part)) {
            return false;
        }
        parts.push_back(part);
    }
    return AddContainer(marker::kArray, parts, number);
}

bool Writer::AddDictionary(NSDictionary* dictionary, unsigned depth, Number& number) {
    std::vector<Entry> entries;
    if (!GetEntries(dictionary, entries)) {
        return Fail("Property lists can only have strings as keys of dictionaries.");
    }
    std::vector<Number> parts(2 * entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (!AddText(entries[i].key, parts[i]) ||
            !Add(entries[i].value, depth + 1, parts[entries.size() + i])) {
            return false;
        }
    }
    return AddContainer(marker::kDictionary, parts, number);
}

bool Writer::AddContainer(std::uint8_t type, const std::vector<Number>& parts, Number& number) {
    if (objects_.size() >= UINT32_MAX || parts.size() > UINT32_MAX) {
        return Fail("The property list is too large for the binary format.");
    }
    number = static_cast<Number>(objects_.size());
    objects_.push_back({references_.size(), static_cast<std::uint32_t>(parts.size()), type});
    references_.insert(references_.end(), parts.begin(), parts.end());
    return true;
}

/// Adds the leaf that was just encoded, or finds the one that is the same.
bool Writer::AddLeaf(std::size_t start, Number& number) {
    if (objects_.size() >= UINT32_MAX || leaves_.size() - start > UINT32_MAX) {
        return Fail("The property list is too large for the binary format.");
    }
    const auto candidate = static_cast<Number>(objects_.size());
    objects_.push_back({start, static_cast<std::uint32_t>(leaves_.size() - start), 0});
    const auto [found, isNew] = known_.insert(candidate);
    number = *found;
    if (!isNew) {
        objects_.pop_back();
        leaves_.resize(start);
    }
    return true;
}

bool Writer::AddText(std::u16string_view text, Number& number) {
    const std::size_t start = leaves_.size();
    if (std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit < 0x80; })) {
        AppendHead(marker::kAscii, text.size(), leaves_);
        leaves_.append(text.begin(), text.end());
    } else {
        AppendHead(marker::kUtf16, text.size(), leaves_);
        for (const char16_t unit : text) {
            AppendNumber(unit, sizeof unit, leaves_);
        }
    }
    return AddLeaf(start, number);
}

bool Writer::AppendLeaf(id value, Kind kind) {
    switch (kind) {
        case Kind::Boolean:
            leaves_ += static_cast<char>([value boolValue] ? marker::kTrue : marker::kFalse);
            return true;
        case Kind::Integer:
            AppendInteger([value unsignedLongLongValue], IsNegative(value), leaves_);
            return true;
        case Kind::Real:
            AppendReal(value);
            return true;
        case Kind::Date: {
            const double seconds = [value timeIntervalSinceReferenceDate];
            std::uint64_t bits = 0;
            std::memcpy(&bits, &seconds, sizeof bits);
            leaves_ += static_cast<char>(marker::kDate);
            AppendNumber(bits, sizeof bits, leaves_);
            return true;
        }
        case Kind::Data:
            AppendHead(marker::kData, [value length], leaves_);
            leaves_.append(static_cast<const char*>([value bytes]), [value length]);
            return true;
        case Kind::Uid: {
            const std::size_t size = SizeFor([value uid]);
            leaves_ += static_cast<char>(marker::kUid | (size - 1));
            AppendNumber([value uid], size, leaves_);
            return true;
        }
        default:
            return Fail("Property lists cannot contain an object of this class.");
    }
}

/// A number that was made as a float is kept in four bytes.
void Writer::AppendReal(NSNumber* real) {
    if (*[real objCType] == *@encode(float)) {
        const float number = [real floatValue];
        std::uint32_t bits = 0;
        std::memcpy(&bits, &number, sizeof bits);
        leaves_ += static_cast<char>(marker::kReal | 2);
        AppendNumber(bits, sizeof bits, leaves_);
        return;
    }
    const double number = [real doubleValue];
    std::uint64_t bits = 0;
    std::memcpy(&bits, &number, sizeof bits);
    leaves_ += static_cast<char>(marker::kReal | 3);
    AppendNumber(bits, sizeof bits, leaves_);
}

bool Writer::Write(id root, std::string& bytes) {
    Number rootNumber = 0;
    if (!Add(root, 0, rootNumber)) {
        return false;
    }
    bytes = kBinaryHeader;
    bytes += leaves_;
    const std::size_t referenceSize = SizeFor(objects_.size());
    std::vector<std::size_t> offsets;
    offsets.reserve(objects_.size());
    for (const Object& object : objects_) {
        if (object.container == 0) {
            offsets.push_back(kBinaryHeader.size() + object.start);
            continue;
        }
        offsets.push_back(bytes.size());
        const bool isPairs = object.container == marker::kDictionary;
        AppendHead(object.container, isPairs ? object.length / 2 : object.length, bytes);
        for (std::size_t i = 0; i < object.length; ++i) {
            AppendNumber(references_[object.start + i], referenceSize, bytes);
        }
    }
    const std::size_t table = bytes.size();
    const std::size_t offsetSize = SizeFor(table);
    for (const std::size_t offset : offsets) {
        AppendNumber(offset, offsetSize, bytes);
    }
    bytes.append(6, '\0');
    AppendNumber(offsetSize, 1, bytes);
    AppendNumber(referenceSize, 1, bytes);
    AppendNumber(objects_.size(), 8, bytes);
    AppendNumber(rootNumber, 8, bytes);
    AppendNumber(table, 8, bytes);
    return true;
}

}  // namespace

bool WriteBinary(id root, std::string& bytes, Problem& problem) {
    Writer writer;
    const bool written = writer.Write(root, bytes);
    problem = writer.WhatIsWrong();
    return written;
}

}  // namespace propertylist
