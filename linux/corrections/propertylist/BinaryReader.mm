#include <algorithm>
#include <cmath>
#include <cstring>

#include "linux/corrections/propertylist/BinaryFormat.h"
#include "linux/corrections/propertylist/Formats.h"
#include "linux/corrections/propertylist/Values.h"

namespace propertylist {

namespace {

/// How much a list may grow to when every reference in it is followed: many times any honest list.
constexpr std::uint64_t kGrowthBase = 128ULL << 20;
constexpr std::uint64_t kGrowthFactor = 16;

/// Roughly what an object takes beside its content.
constexpr std::uint64_t kObjectWeight = 64;
constexpr std::uint64_t kReferenceWeight = 8;

/// Of a long number the last eight bytes count.
std::uint64_t NumberIn(std::string_view bytes) {
    std::uint64_t number = 0;
    for (const char byte : bytes) {
        number = (number << 8) | static_cast<std::uint8_t>(byte);
    }
    return number;
}

std::u16string UnitsIn(std::string_view bytes, std::size_t size) {
    std::u16string units(bytes.size() / size, u'\0');
    for (std::size_t i = 0; i < units.size(); ++i) {
        units[i] = static_cast<char16_t>(NumberIn(bytes.substr(i * size, size)));
    }
    return units;
}

class Reader {
  public:
    Reader(std::string_view bytes, NSPropertyListMutabilityOptions options)
        : bytes_(bytes), maker_(options) {}
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    ~Reader() {
        std::for_each(made_.begin(), made_.end(), [](id object) { [object release]; });
    }

    id ReadRoot();

  private:
    void ReadTrailer();
    std::string_view Take(std::uint64_t size);
    double TakeReal(std::size_t size);
    std::string_view TakeContent(std::uint8_t low, std::size_t unit);
    void Grow(std::uint64_t weight);

    id ReadObject(std::uint64_t object, const Maker& maker, unsigned level);
    id ReadContent(std::uint8_t type, const Maker& maker, unsigned level);
    id ReadNumber(std::uint8_t type);
    id ReadContainer(std::uint8_t type, const Maker& maker, unsigned level);
    NSArray* ReadArray(std::string_view references, const Maker& maker, unsigned level);
    std::vector<id> ReadObjects(std::string_view references, const Maker& maker, unsigned level);

    std::string_view bytes_;
    Maker maker_;
    /// Keys are copied by the dictionaries that get them; all share a copy that cannot change.
    Maker keyMaker_{NSPropertyListImmutable};

    std::size_t at_ = 0;
    std::size_t tableOffset_ = 0;
    std::size_t offsetSize_ = 0;
    std::size_t referenceSize_ = 0;
    std::uint64_t root_ = 0;
    /// What was made of each object the first time, owned: a pool would need more memory.
    std::vector<id> made_;
    std::uint64_t weight_ = 0;
};

void Reader::ReadTrailer() {
    const auto fits = [](std::uint64_t number, std::size_t size) {
        return size >= sizeof number || number < 1ULL << (8 * size);
    };
    const std::size_t end = bytes_.size() - std::min(bytes_.size(), kTrailerSize);
    const std::string_view trailer = bytes_.substr(end);
    const auto number = [&](std::size_t at, std::size_t size) {
        return NumberIn(trailer.substr(std::min(at, trailer.size()), size));
    };
    offsetSize_ = number(6, 1);
    referenceSize_ = number(7, 1);
    const std::uint64_t count = number(8, 8);
    root_ = number(16, 8);
    tableOffset_ = number(24, 8);
    bool isSound = offsetSize_ >= 1 && referenceSize_ >= 1 && root_ < count &&
                   tableOffset_ > kBinaryHeader.size() && tableOffset_ < end &&
                   count <= (end - tableOffset_) / offsetSize_ &&
                   tableOffset_ + count * offsetSize_ == end && fits(count, referenceSize_) &&
                   fits(tableOffset_, offsetSize_);
    for (std::size_t at = tableOffset_; isSound && at < end; at += offsetSize_) {
        isSound = NumberIn(bytes_.substr(at, offsetSize_)) < tableOffset_;
    }
    if (!isSound) {
        @throw @"The end of the binary property list is missing or damaged.";
    }
    made_.resize(count);
}

std::string_view Reader::Take(std::uint64_t size) {
    if (size > tableOffset_ - at_) {
        @throw @"An object of the binary property list lies or reaches outside it.";
    }
    at_ += size;
    return bytes_.substr(at_ - size, size);
}

double Reader::TakeReal(std::size_t size) {
    const std::uint64_t bits = NumberIn(Take(size));
    double number = 0;
    float single = 0;
    if (size == sizeof single) {
        const auto half = static_cast<std::uint32_t>(bits);
        std::memcpy(&single, &half, sizeof single);
        return single;
    }
    std::memcpy(&number, &bits, sizeof number);
    return number;
}

/// Takes the length, which is in the marker or behind it, and so many units.
std::string_view Reader::TakeContent(std::uint8_t low, std::size_t unit) {
    std::uint64_t count = low;
    if (low == marker::kLongLength) {
        const std::uint64_t type = NumberIn(Take(1));
        count = (type & 0xF0) == marker::kInteger
                    ? NumberIn(Take(std::uint64_t{1} << (type & 0x0F)))
                    : UINT64_MAX;
    }
    // A count beyond the list would overflow when it is multiplied.
    return Take(std::min<std::uint64_t>(count, bytes_.size()) * unit);
}

void Reader::Grow(std::uint64_t weight) {
    weight_ += weight;
    if (weight_ > kGrowthBase + kGrowthFactor * bytes_.size()) {
        @throw @"The references of the binary property list multiply beyond measure.";
    }
}

id Reader::ReadRoot() {
    ReadTrailer();
    return [[ReadObject(root_, maker_, 1) retain] autorelease];
}

/// @param level  1 for the root
id Reader::ReadObject(std::uint64_t object, const Maker& maker, unsigned level) {
    if (object >= made_.size()) {
        @throw @"The binary property list refers to an object that it does not have.";
    }
    at_ = NumberIn(bytes_.substr(tableOffset_ + object * offsetSize_, offsetSize_));
    if (at_ < kBinaryHeader.size()) {
        @throw @"An object of the binary property list lies in its header.";
    }
    const auto type = static_cast<std::uint8_t>(NumberIn(Take(1)));
    const std::uint8_t high = type & 0xF0;
    const bool isText = high >= marker::kData && high < marker::kUid;
    // Leaves that nobody can change serve for every further reference.
    if (made_[object] != nil && high < marker::kArray && !(isText && maker.MutableLeaves())) {
        Grow(kReferenceWeight);
        return made_[object];
    }
    Grow(kObjectWeight);
    id content = nil;
    @autoreleasepool {
        content = [ReadContent(type, maker, level) retain];
    }
    if (made_[object] != nil) {
        return [content autorelease];
    }
    return made_[object] = content;
}

id Reader::ReadContent(std::uint8_t type, const Maker& maker, unsigned level) {
    const std::uint8_t low = type & 0x0F;
    const std::uint8_t high = type & 0xF0;
    const std::size_t unit = high == marker::kUtf16 ? sizeof(char16_t) : 1;
    std::string_view content;
    switch (high) {
        case marker::kData:
        case marker::kAscii:
        case marker::kUtf16:
            content = TakeContent(low, unit);
            Grow(content.size());
            return high == marker::kData ? static_cast<id>(maker.Data(content))
                                         : maker.Text(UnitsIn(content, unit));
        case marker::kUid: {
            const std::uint64_t number = NumberIn(Take(low + 1U));
            if (number > UINT32_MAX) {
                @throw @"The binary property list has a UID beyond 32 bits.";
            }
            return MakeUid(static_cast<std::uint32_t>(number));
        }
        case marker::kArray:
        case marker::kSet:
        case marker::kDictionary:
            return ReadContainer(type, maker, level);
        default:
            return ReadNumber(type);
    }
}

/// An object whose size is in its marker.
id Reader::ReadNumber(std::uint8_t type) {
    constexpr std::uint8_t kLongest = 4;
    const unsigned power = type & 0x0F;
    const std::size_t size = std::size_t{1} << power;
    switch (type) {
        case marker::kNull:
            return [NSNull null];
        case marker::kFalse:
        case marker::kTrue:
            return [NSNumber numberWithBool:type == marker::kTrue];
        case marker::kDate:
            return Maker::Date(TakeReal(size));
        case marker::kReal | 2:
        case marker::kReal | 3: {
            const double real = TakeReal(size);
            return size == sizeof(float) && std::isfinite(real)
                       ? [NSNumber numberWithFloat:static_cast<float>(real)]
                       : [NSNumber numberWithDouble:real];
        }
        default:
            break;
    }
    if ((type & 0xF0) != marker::kInteger || power > kLongest) {
        @throw @"The binary property list has an object of unknown type.";
    }
    const std::uint64_t number = NumberIn(Take(size));
    return power == kLongest ? [NSNumber numberWithUnsignedLongLong:number]
                             : [NSNumber numberWithLongLong:static_cast<std::int64_t>(number)];
}

id Reader::ReadContainer(std::uint8_t type, const Maker& maker, unsigned level) {
    CheckLevel(level);
    const std::uint8_t high = type & 0xF0;
    const bool isDictionary = high == marker::kDictionary;
    const std::string_view content =
        TakeContent(type & 0x0F, (isDictionary ? 2 : 1) * referenceSize_);
    if (high == marker::kArray) {
        return ReadArray(content, maker, level + 1);
    }
    const std::size_t half = isDictionary ? content.size() / 2 : 0;
    std::vector<id> keys = ReadObjects(content.substr(0, half), keyMaker_, level + 1);
    std::vector<id> values = ReadObjects(content.substr(half), maker, level + 1);
    if (isDictionary) {
        // Of two entries with equal keys the first one counts here.
        std::reverse(keys.begin(), keys.end());
        std::reverse(values.begin(), values.end());
        return maker.Dictionary(keys, values);
    }
    return [NSSet setWithObjects:values.data() count:values.size()];
}

/// A long array is most of a list's memory: one that may change is filled without another beside it.
NSArray* Reader::ReadArray(std::string_view references, const Maker& maker, unsigned level) {
    if (!maker.MutableContainers()) {
        return maker.Array(ReadObjects(references, maker, level));
    }
    NSMutableArray* array = [NSMutableArray arrayWithCapacity:references.size() / referenceSize_];
    for (std::size_t at = 0; at < references.size(); at += referenceSize_) {
        [array addObject:ReadObject(NumberIn(references.substr(at, referenceSize_)), maker, level)];
    }
    return array;
}

std::vector<id> Reader::ReadObjects(std::string_view references, const Maker& maker,
                                    unsigned level) {
    std::vector<id> objects;
    objects.reserve(references.size() / referenceSize_);
    for (std::size_t at = 0; at < references.size(); at += referenceSize_) {
        objects.push_back(
            ReadObject(NumberIn(references.substr(at, referenceSize_)), maker, level));
    }
    return objects;
}

}  // namespace

id ReadBinary(std::string_view bytes, NSPropertyListMutabilityOptions options) {
    return Reader(bytes, options).ReadRoot();
}

}  // namespace propertylist
