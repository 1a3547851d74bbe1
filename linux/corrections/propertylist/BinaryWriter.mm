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

template <typename Bits, typename Real>
void AppendReal(std::uint8_t type, Real real, std::string& bytes) {
    Bits bits = 0;
    static_assert(sizeof bits == sizeof real);
    std::memcpy(&bits, &real, sizeof bits);
    bytes += static_cast<char>(type);
    AppendNumber(bits, sizeof bits, bytes);
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
    bool AddContainer(std::uint8_t type, const std::vector<Number>& parts, Number& number);
    bool AddLeaf(std::size_t start, Number& number);
    bool AppendLeaf(id value, Kind kind);
    void AppendText(std::u16string_view text);

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
    const bool isDictionary = kind == Kind::Dictionary;
    if (kind != Kind::Array && !isDictionary) {
        const std::size_t start = leaves_.size();
        return AppendLeaf(value, kind) && AddLeaf(start, number);
    }
    if (depth >= kDeepestNesting) {
        return Fail(kTooDeep);
    }
    std::vector<Entry> entries;
    if (isDictionary && !GetEntries(value, entries)) {
        return Fail("Property lists can only have strings as keys of dictionaries.");
    }
    std::vector<Number> parts;
    parts.reserve(isDictionary ? 2 * entries.size() : [value count]);
    for (const Entry& entry : entries) {
        const std::size_t start = leaves_.size();
        AppendText(entry.key);
        if (!AddLeaf(start, parts.emplace_back())) {
            return false;
        }
    }
    for (const Entry& entry : entries) {
        if (!Add(entry.value, depth + 1, parts.emplace_back())) {
            return false;
        }
    }
    if (!isDictionary) {
        for (id item in value) {
            if (!Add(item, depth + 1, parts.emplace_back())) {
                return false;
            }
        }
    }
    return AddContainer(isDictionary ? marker::kDictionary : marker::kArray, parts, number);
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

void Writer::AppendText(std::u16string_view text) {
    if (std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit < 0x80; })) {
        AppendHead(marker::kAscii, text.size(), leaves_);
        leaves_.append(text.begin(), text.end());
    } else {
        AppendHead(marker::kUtf16, text.size(), leaves_);
        for (const char16_t unit : text) {
            AppendNumber(unit, sizeof unit, leaves_);
        }
    }
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
            // A number that was made as a float is kept in four bytes.
            if (*[value objCType] == *@encode(float)) {
                AppendReal<std::uint32_t>(marker::kReal | 2, [value floatValue], leaves_);
            } else {
                AppendReal<std::uint64_t>(marker::kReal | 3, [value doubleValue], leaves_);
            }
            return true;
        case Kind::Date:
            AppendReal<std::uint64_t>(marker::kDate, [value timeIntervalSinceReferenceDate],
                                      leaves_);
            return true;
        case Kind::String:
            GetText(value, text_);
            AppendText(text_);
            return true;
        case Kind::Data:
            AppendHead(marker::kData, [value length], leaves_);
            leaves_.append(static_cast<const char*>([value bytes]), [value length]);
            return true;
        case Kind::Uid: {
            const std::size_t size = SizeFor(UidIn(value));
            leaves_ += static_cast<char>(marker::kUid | (size - 1));
            AppendNumber(UidIn(value), size, leaves_);
            return true;
        }
        default:
            return Fail("Property lists cannot contain an object of this class.");
    }
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
