#include <algorithm>
#include <cstring>
#include <deque>
#include <string_view>

#include "linux/corrections/propertylist/BinaryFormat.h"
#include "linux/corrections/propertylist/Formats.h"
#include "linux/corrections/propertylist/LeafTable.h"
#include "linux/corrections/propertylist/Values.h"

namespace propertylist {

namespace {

using Number = LeafTable::Number;

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

/// Where objects begin. In pieces: a vector would hold them twice over while it grows.
using Offsets = std::deque<std::size_t>;

/// A number that is mostly small, seven bits a byte and the last ones first.
void Pack(std::size_t number, std::string& bytes) {
    for (; number >= 0x80; number >>= 7) {
        bytes += static_cast<char>(number | 0x80);
    }
    bytes += static_cast<char>(number);
}

std::size_t Unpack(const char*& at) {
    std::size_t number = 0;
    unsigned shift = 0;
    for (; (*at & 0x80) != 0; shift += 7) {
        number |= static_cast<std::size_t>(*at++ & 0x7F) << shift;
    }
    return number | static_cast<std::size_t>(*at++) << shift;
}

std::size_t HeadSize(std::size_t length) {
    std::string head;
    AppendHead(0, length, head);
    return head.size();
}

/// Data of a size that is known before, so that it is never copied while it grows.
class Output {
  public:
    explicit Output(std::size_t size) : data([NSMutableData dataWithCapacity:size]) {}

    std::string& Next() {
        constexpr std::size_t kMost = 4096;
        if (pending_.size() >= kMost) {
            Flush();
        }
        return pending_;
    }
    void Flush() {
        [data appendBytes:pending_.data() length:pending_.size()];
        pending_.clear();
    }

    NSMutableData* const data;

  private:
    std::string pending_;
};

/// Leaves stand before all containers, each once, and are written as they are met: a list of a
/// million numbers takes little more than its bytes.
class Writer {
  public:
    NSData* Write(id root);

  private:
    Number Add(id value, unsigned level);
    Number AddContainer(std::uint8_t type, std::size_t count, const std::string& parts);
    Number AddLeaf(const std::string& leaf);
    std::string_view LeafAt(Number leaf) const;
    void WriteContainers(std::size_t referenceSize, Output& output);

    std::string leaves_{kBinaryHeader};
    Offsets offsets_;  // a container's: where the next leaf stands, until it is written
    /// Each container's number, type, number of parts and parts, keys first; all packed.
    std::string containers_;
    std::size_t headBytes_ = 0;
    std::size_t references_ = 0;
    LeafTable known_;
};

/// @param level  1 for the root
Number Writer::Add(id value, unsigned level) {
    const Kind kind = KindOf(value);
    if (kind != Kind::Array && kind != Kind::Dictionary) {
        return AddLeaf(Leaf(value, kind));
    }
    CheckLevel(level);
    std::string parts;
    if (kind == Kind::Array) {
        for (id item in value) {
            Pack(Add(item, level + 1), parts);
        }
        return AddContainer(marker::kArray, [value count], parts);
    }
    const std::map<std::u16string, id> entries = EntriesOf(value);
    for (const auto& [key, item] : entries) {
        Pack(AddLeaf(TextLeaf(key)), parts);
    }
    for (const auto& [key, item] : entries) {
        Pack(Add(item, level + 1), parts);
    }
    return AddContainer(marker::kDictionary, entries.size(), parts);
}

Number Writer::AddContainer(std::uint8_t type, std::size_t count, const std::string& parts) {
    const Number number = offsets_.size();
    offsets_.push_back(leaves_.size());
    Pack(number, containers_);
    containers_ += static_cast<char>(type);
    Pack(count, containers_);
    containers_ += parts;
    headBytes_ += HeadSize(count);
    references_ += type == marker::kDictionary ? 2 * count : count;
    return number;
}

/// Adds a leaf, or finds the one that is the same.
Number Writer::AddLeaf(const std::string& leaf) {
    const Number number = offsets_.size();
    offsets_.push_back(leaves_.size());
    leaves_ += leaf;
    const Number found = known_.FindOrAdd(number, [this](Number one) { return LeafAt(one); });
    if (found != number) {
        leaves_.resize(offsets_.back());
        offsets_.pop_back();
    }
    return found;
}

std::string_view Writer::LeafAt(Number leaf) const {
    const std::size_t end = leaf + 1 < offsets_.size() ? offsets_[leaf + 1] : leaves_.size();
    return std::string_view(leaves_).substr(offsets_[leaf], end - offsets_[leaf]);
}

void Writer::WriteContainers(std::size_t referenceSize, Output& output) {
    std::size_t offset = leaves_.size();
    const char* at = containers_.data();
    const char* const end = at + containers_.size();
    while (at < end) {
        offsets_[Unpack(at)] = offset;
        const auto type = static_cast<std::uint8_t>(*at++);
        const std::size_t count = Unpack(at);
        const std::size_t references = type == marker::kDictionary ? 2 * count : count;
        AppendHead(type, count, output.Next());
        for (std::size_t i = 0; i < references; ++i) {
            AppendNumber(Unpack(at), referenceSize, output.Next());
        }
        offset += HeadSize(count) + references * referenceSize;
    }
}

NSData* Writer::Write(id root) {
    const Number rootNumber = Add(root, 1);
    const std::size_t referenceSize = SizeFor(offsets_.size());
    const std::size_t table = leaves_.size() + headBytes_ + references_ * referenceSize;
    const std::size_t offsetSize = SizeFor(table);
    Output output(table + offsets_.size() * offsetSize + kTrailerSize);
    [output.data appendBytes:leaves_.data() length:leaves_.size()];
    WriteContainers(referenceSize, output);
    for (const std::size_t offset : offsets_) {
        AppendNumber(offset, offsetSize, output.Next());
    }
    std::string& trailer = output.Next();
    trailer.append(6, '\0');
    AppendNumber(offsetSize, 1, trailer);
    AppendNumber(referenceSize, 1, trailer);
    AppendNumber(offsets_.size(), 8, trailer);
    AppendNumber(rootNumber, 8, trailer);
    AppendNumber(table, 8, trailer);
    output.Flush();
    return output.data;
}

}  // namespace

NSData* WriteBinary(id root) {
    return Writer().Write(root);
}

}  // namespace propertylist
