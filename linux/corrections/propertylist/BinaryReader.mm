#include <algorithm>
#include <cmath>
#include <cstring>

#include "linux/corrections/propertylist/BinaryFormat.h"
#include "linux/corrections/propertylist/Formats.h"

namespace propertylist {

namespace {

/// How much a list may grow to when every reference in it is followed: many times any honest list.
constexpr std::uint64_t kGrowthBase = 128ULL << 20;
constexpr std::uint64_t kGrowthFactor = 16;

/// Roughly what an object takes beside its content.
constexpr std::uint64_t kObjectWeight = 64;
constexpr std::uint64_t kReferenceWeight = 8;

constexpr Problem kReachesBeyond =
    "An object of the binary property list lies or reaches outside it.";
constexpr Problem kUnknownType = "The binary property list has an object of unknown type.";

class Reader {
  public:
    Reader(std::string_view bytes, NSPropertyListMutabilityOptions options)
        : bytes_(bytes), maker_(options), keyMaker_(NSPropertyListImmutable) {}
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    ~Reader();

    id NewRoot();
    Problem WhatIsWrong() const { return problem_; }

  private:
    /// Converts to nil and to false.
    std::nullptr_t Fail(Problem problem) {
        problem_ = problem;
        return nullptr;
    }

    std::uint64_t NumberAt(std::size_t offset, std::size_t size) const;
    bool ReadTrailer();
    bool Take(std::uint64_t size, std::string_view& taken);
    bool TakeNumber(std::size_t size, std::uint64_t& number);
    bool TakeReal(std::size_t size, double& number);
    bool TakeContent(std::uint8_t low, std::size_t unit, std::string_view& content);
    bool Grow(std::uint64_t weight);

    id NewObject(std::uint64_t object, unsigned depth, const Maker& maker);
    id NewContent(std::uint8_t type, unsigned depth, const Maker& maker);
    id NewNumber(std::uint8_t type);
    id NewText(std::string_view bigEndian, const Maker& maker);
    bool NewObjects(std::string_view references, unsigned depth, const Maker& maker,
                    References& objects);

    std::string_view bytes_;
    Maker maker_;
    Maker keyMaker_;
    Problem problem_ = nullptr;

    std::size_t at_ = 0;
    std::size_t tableOffset_ = 0;
    std::size_t offsetSize_ = 0;
    std::size_t referenceSize_ = 0;
    std::uint64_t root_ = 0;
    /// Leaves that nobody can change, to serve for every further reference; nil where there is
    /// none.
    std::vector<id> made_;
    std::uint64_t weight_ = 0;
};

Reader::~Reader() {
    for (id object : made_) {
        [object release];
    }
}

/// Of a long number the last eight bytes count.
std::uint64_t Reader::NumberAt(std::size_t offset, std::size_t size) const {
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < size; ++i) {
        number = (number << 8) | static_cast<std::uint8_t>(bytes_[offset + i]);
    }
    return number;
}

bool Reader::ReadTrailer() {
    constexpr std::size_t kSizesOffset = 6;
    const auto fits = [](std::uint64_t number, std::size_t size) {
        return size >= sizeof number || number < 1ULL << (8 * size);
    };
    if (bytes_.size() <= kBinarySignature.size() + 1 + kTrailerSize) {
        return false;
    }
    const std::size_t trailer = bytes_.size() - kTrailerSize;
    offsetSize_ = NumberAt(trailer + kSizesOffset, 1);
    referenceSize_ = NumberAt(trailer + kSizesOffset + 1, 1);
    const std::uint64_t count = NumberAt(trailer + 8, 8);
    root_ = NumberAt(trailer + 16, 8);
    tableOffset_ = NumberAt(trailer + 24, 8);
    if (offsetSize_ < 1 || referenceSize_ < 1 || root_ >= count ||
        tableOffset_ <= kBinaryHeader.size() || tableOffset_ >= trailer ||
        count > (trailer - tableOffset_) / offsetSize_ ||
        tableOffset_ + count * offsetSize_ != trailer || !fits(count, referenceSize_) ||
        !fits(tableOffset_, offsetSize_)) {
        return false;
    }
    for (std::size_t at = tableOffset_; at < trailer; at += offsetSize_) {
        if (NumberAt(at, offsetSize_) >= tableOffset_) {
            return false;
        }
    }
    made_.resize(count);
    return true;
}

bool Reader::Take(std::uint64_t size, std::string_view& taken) {
    if (size > tableOffset_ - at_) {
        return Fail(kReachesBeyond) != nullptr;
    }
    taken = bytes_.substr(at_, size);
    at_ += size;
    return true;
}

bool Reader::TakeNumber(std::size_t size, std::uint64_t& number) {
    std::string_view taken;
    if (!Take(size, taken)) {
        return false;
    }
    number = NumberAt(at_ - size, size);
    return true;
}

bool Reader::TakeReal(std::size_t size, double& number) {
    std::uint64_t bits = 0;
    if (!TakeNumber(size, bits)) {
        return false;
    }
    if (size == sizeof(float)) {
        const auto half = static_cast<std::uint32_t>(bits);
        float single = 0;
        std::memcpy(&single, &half, sizeof single);
        number = single;
    } else {
        std::memcpy(&number, &bits, sizeof number);
    }
    return true;
}

/// Takes the length, which is in the marker or behind it, and so many units.
bool Reader::TakeContent(std::uint8_t low, std::size_t unit, std::string_view& content) {
    std::uint64_t count = low;
    std::uint64_t type = marker::kInteger;
    if (low == marker::kLongLength &&
        (!TakeNumber(1, type) || !TakeNumber(std::size_t{1} << (type & 0x0F), count))) {
        return false;
    }
    if ((type & 0xF0) != marker::kInteger || count > bytes_.size()) {
        return Fail(kReachesBeyond) != nullptr;
    }
    return Take(count * unit, content);
}

bool Reader::Grow(std::uint64_t weight) {
    weight_ += weight;
    return weight_ <= kGrowthBase + kGrowthFactor * bytes_.size() ||
           Fail("The references of the binary property list multiply beyond measure.") != nullptr;
}

id Reader::NewRoot() {
    return ReadTrailer() ? NewObject(root_, 1, maker_)
                         : static_cast<id>(
                               Fail("The end of the binary property list is missing or damaged."));
}

/// @param depth  its level, 1 for the root
id Reader::NewObject(std::uint64_t object, unsigned depth, const Maker& maker) {
    if (object >= made_.size()) {
        return Fail("The binary property list refers to an object that it does not have.");
    }
    // With mutable leaves only what was made as a key or can never change is kept.
    const auto isShared = [&](id made) {
        const Kind kind = KindOf(made);
        const bool isLeaf = kind != Kind::Array && kind != Kind::Dictionary;
        return isLeaf && !(maker.MutableLeaves() && (kind == Kind::String || kind == Kind::Data));
    };
    if (made_[object] != nil && isShared(made_[object])) {
        return Grow(kReferenceWeight) ? [made_[object] retain] : nil;
    }
    at_ = NumberAt(tableOffset_ + object * offsetSize_, offsetSize_);
    if (at_ < kBinaryHeader.size()) {
        return Fail(kReachesBeyond);
    }
    const auto type = static_cast<std::uint8_t>(bytes_[at_++]);
    id content = Grow(kObjectWeight) ? NewContent(type, depth, maker) : nil;
    if (made_[object] == nil && content != nil && isShared(content)) {
        made_[object] = [content retain];
    }
    return content;
}

id Reader::NewContent(std::uint8_t type, unsigned depth, const Maker& maker) {
    const std::uint8_t low = type & 0x0F;
    const std::uint8_t high = type & 0xF0;
    std::string_view content;
    std::uint64_t number = 0;
    switch (high) {
        case marker::kData:
        case marker::kAscii:
        case marker::kUtf16:
            if (!TakeContent(low, high == marker::kUtf16 ? sizeof(char16_t) : 1, content) ||
                !Grow(content.size())) {
                return nil;
            }
            return high == marker::kData    ? maker.NewData(content)
                   : high == marker::kAscii ? maker.NewLatin1(content)
                                            : NewText(content, maker);
        case marker::kUid:
            if (!TakeNumber(low + 1U, number)) {
                return nil;
            }
            return number <= UINT32_MAX
                       ? NewUid(static_cast<std::uint32_t>(number))
                       : static_cast<id>(
                             Fail("The binary property list has a UID beyond 32 bits."));
        case marker::kArray:
        case marker::kSet:
        case marker::kDictionary: {
            const bool isDictionary = high == marker::kDictionary;
            References keys;
            References values;
            if (depth > kDeepestNesting) {
                return Fail(kTooDeep);
            }
            if (!TakeContent(low, (isDictionary ? 2 : 1) * referenceSize_, content)) {
                return nil;
            }
            const std::size_t half = isDictionary ? content.size() / 2 : 0;
            if (!NewObjects(content.substr(0, half), depth + 1, keyMaker_, keys) ||
                !NewObjects(content.substr(half), depth + 1, maker_, values)) {
                return nil;
            }
            if (isDictionary) {
                // Of two entries with equal keys the first one counts here.
                keys.Reverse();
                values.Reverse();
                return maker_.NewDictionary(keys, values);
            }
            return high == marker::kArray
                       ? maker_.NewArray(values)
                       : [[NSSet alloc] initWithObjects:values.data() count:values.size()];
        }
        default:
            return NewNumber(type);
    }
}

/// An object whose size is in its marker.
id Reader::NewNumber(std::uint8_t type) {
    constexpr std::uint8_t kLongest = 4;
    const unsigned power = type & 0x0F;
    const std::size_t size = std::size_t{1} << power;
    std::uint64_t number = 0;
    double real = 0;
    switch (type) {
        case marker::kNull:
            return [[NSNull null] retain];
        case marker::kFalse:
        case marker::kTrue:
            return [[NSNumber numberWithBool:type == marker::kTrue] retain];
        case marker::kDate:
            return TakeReal(size, real) ? Maker::NewDate(real) : nil;
        case marker::kReal | 2:
        case marker::kReal | 3:
            if (!TakeReal(size, real)) {
                return nil;
            }
            return size == sizeof(float) && std::isfinite(real)
                       ? [[NSNumber alloc] initWithFloat:static_cast<float>(real)]
                       : [[NSNumber alloc] initWithDouble:real];
        default:
            break;
    }
    if ((type & 0xF0) != marker::kInteger || power > kLongest) {
        return Fail(kUnknownType);
    }
    if (!TakeNumber(size, number)) {
        return nil;
    }
    return power == kLongest
               ? [[NSNumber alloc] initWithUnsignedLongLong:number]
               : [[NSNumber alloc] initWithLongLong:static_cast<std::int64_t>(number)];
}

id Reader::NewText(std::string_view bigEndian, const Maker& maker) {
    std::u16string text(bigEndian.size() / sizeof(char16_t), u'\0');
    for (std::size_t i = 0; i < text.size(); ++i) {
        text[i] = static_cast<char16_t>(static_cast<std::uint8_t>(bigEndian[2 * i]) << 8 |
                                        static_cast<std::uint8_t>(bigEndian[2 * i + 1]));
    }
    return maker.NewText(text);
}

bool Reader::NewObjects(std::string_view references, unsigned depth, const Maker& maker,
                        References& objects) {
    const std::size_t start = static_cast<std::size_t>(references.data() - bytes_.data());
    objects.Reserve(references.size() / referenceSize_);
    for (std::size_t at = start; at < start + references.size(); at += referenceSize_) {
        if (!objects.Add(NewObject(NumberAt(at, referenceSize_), depth, maker))) {
            return false;
        }
    }
    return true;
}

}  // namespace

id NewFromBinary(std::string_view bytes, NSPropertyListMutabilityOptions options,
                 Problem& problem) {
    Reader reader(bytes, options);
    id root = reader.NewRoot();
    problem = reader.WhatIsWrong();
    return root;
}

}  // namespace propertylist
