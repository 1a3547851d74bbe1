#include <algorithm>
#include <cstring>
#include <string_view>
#include <unordered_set>

#include "linux/corrections/propertylist/BinaryFormat.h"
#include "linux/corrections/propertylist/Formats.h"
#include "linux/corrections/propertylist/Values.h"

namespace propertylist {

namespace {

using Number = std::size_t;

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

std::string TextLeaf(std::u16string_view text) {
    const bool isAscii =
        std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit < 0x80; });
    std::string leaf;
    AppendHead(isAscii ? marker::kAscii : marker::kUtf16, text.size(), leaf);
    for (const char16_t unit : text) {
        AppendNumber(unit, isAscii ? 1 : sizeof unit, leaf);
    }
    return leaf;
}

std::string Leaf(id value, Kind kind) {
    std::string leaf;
    switch (kind) {
        case Kind::Boolean:
            leaf += static_cast<char>([value boolValue] ? marker::kTrue : marker::kFalse);
            break;
        case Kind::Integer:
            AppendInteger([value unsignedLongLongValue], IsNegative(value), leaf);
            break;
        case Kind::Real:
            // A number that was made as a float is kept in four bytes.
            if (*[value objCType] == *@encode(float)) {
                AppendReal<std::uint32_t>(marker::kReal | 2, [value floatValue], leaf);
            } else {
                AppendReal<std::uint64_t>(marker::kReal | 3, [value doubleValue], leaf);
            }
            break;
        case Kind::Date:
            AppendReal<std::uint64_t>(marker::kDate, [value timeIntervalSinceReferenceDate], leaf);
            break;
        case Kind::Data:
            AppendHead(marker::kData, [value length], leaf);
            leaf.append(static_cast<const char*>([value bytes]), [value length]);
            break;
        case Kind::Uid: {
            const std::size_t size = SizeFor(UidIn(value));
            leaf += static_cast<char>(marker::kUid | (size - 1));
            AppendNumber(UidIn(value), size, leaf);
            break;
        }
        default:
            return TextLeaf(TextOf(value));
    }
    return leaf;
}

/// Leaves stand before all containers, each once, and are written as they are met: a list of a
/// million numbers takes little more than its bytes.
class Writer {
  public:
    std::string Write(id root);

  private:
    struct Container {
        Number number;
        std::uint8_t type;
        std::vector<Number> parts;  // keys first
    };

    /// Compares leaves by their bytes.
    struct Bytes {
        const Writer* writer;
        std::size_t operator()(Number leaf) const {
            return std::hash<std::string_view>{}(writer->LeafAt(leaf));
        }
        bool operator()(Number one, Number other) const {
            return writer->LeafAt(one) == writer->LeafAt(other);
        }
    };

    Number Add(id value, unsigned level);
    Number AddLeaf(const std::string& leaf);
    std::string_view LeafAt(Number leaf) const;

    std::string bytes_{kBinaryHeader};
    std::vector<std::size_t>
        offsets_;  // a container's: where the next leaf stands, until it is written
    std::vector<Container> containers_;
    std::unordered_set<Number, Bytes, Bytes> known_{0, Bytes{this}, Bytes{this}};
};

/// @param level  1 for the root
Number Writer::Add(id value, unsigned level) {
    const Kind kind = KindOf(value);
    const bool isDictionary = kind == Kind::Dictionary;
    if (kind != Kind::Array && !isDictionary) {
        return AddLeaf(Leaf(value, kind));
    }
    CheckLevel(level);
    std::vector<Number> parts;
    if (isDictionary) {
        const std::map<std::u16string, id> entries = EntriesOf(value);
        for (const auto& [key, item] : entries) {
            parts.push_back(AddLeaf(TextLeaf(key)));
        }
        for (const auto& [key, item] : entries) {
            parts.push_back(Add(item, level + 1));
        }
    } else {
        for (id item in value) {
            parts.push_back(Add(item, level + 1));
        }
    }
    const Number number = offsets_.size();
    offsets_.push_back(bytes_.size());
    containers_.push_back(
        {number, isDictionary ? marker::kDictionary : marker::kArray, std::move(parts)});
    return number;
}

/// Adds a leaf, or finds the one that is the same.
Number Writer::AddLeaf(const std::string& leaf) {
    offsets_.push_back(bytes_.size());
    bytes_ += leaf;
    const auto [found, isNew] = known_.insert(offsets_.size() - 1);
    if (!isNew) {
        bytes_.resize(offsets_.back());
        offsets_.pop_back();
    }
    return *found;
}

std::string_view Writer::LeafAt(Number leaf) const {
    const std::size_t end = leaf + 1 < offsets_.size() ? offsets_[leaf + 1] : bytes_.size();
    return std::string_view(bytes_).substr(offsets_[leaf], end - offsets_[leaf]);
}

std::string Writer::Write(id root) {
    const Number rootNumber = Add(root, 1);
    const std::size_t referenceSize = SizeFor(offsets_.size());
    for (const Container& container : containers_) {
        offsets_[container.number] = bytes_.size();
        const bool isPairs = container.type == marker::kDictionary;
        AppendHead(container.type, container.parts.size() / (isPairs ? 2 : 1), bytes_);
        for (const Number part : container.parts) {
            AppendNumber(part, referenceSize, bytes_);
        }
    }
    const std::size_t table = bytes_.size();
    const std::size_t offsetSize = SizeFor(table);
    for (const std::size_t offset : offsets_) {
        AppendNumber(offset, offsetSize, bytes_);
    }
    bytes_.append(6, '\0');
    AppendNumber(offsetSize, 1, bytes_);
    AppendNumber(referenceSize, 1, bytes_);
    AppendNumber(offsets_.size(), 8, bytes_);
    AppendNumber(rootNumber, 8, bytes_);
    AppendNumber(table, 8, bytes_);
    return std::move(bytes_);
}

}  // namespace

std::string WriteBinary(id root) {
    return Writer().Write(root);
}

}  // namespace propertylist
