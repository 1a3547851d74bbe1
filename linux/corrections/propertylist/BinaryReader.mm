#include "linux/corrections/propertylist/BinaryReader.h"

#include <algorithm>
#include <cstring>

#include "linux/corrections/propertylist/BinaryFormat.h"

namespace propertylist {

namespace {

/// How much a list may grow to when every reference in it is followed: many times any honest list.
constexpr std::uint64_t kGrowthBase = 128ULL << 20;
constexpr std::uint64_t kGrowthFactor = 16;

/// Roughly what an object takes beside its content.
constexpr std::uint64_t kObjectWeight = 64;
constexpr std::uint64_t kReferenceWeight = 8;

std::u16string Utf16(std::string_view bigEndian) {
    std::u16string text(bigEndian.size() / sizeof(char16_t), u'\0');
    for (std::size_t i = 0; i < text.size(); ++i) {
        text[i] = static_cast<char16_t>(static_cast<std::uint8_t>(bigEndian[2 * i]) << 8 |
                                        static_cast<std::uint8_t>(bigEndian[2 * i + 1]));
    }
    return text;
}

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
    /// An object that was made already and serves every further reference to it.
    struct Made {
        id object = nil;
        std::uint64_t weight = 0;
        unsigned height = 0;
    };

    id Fail(Problem problem) {
        problem_ = problem;
        return nil;
    }

    bool ReadTrailer();
    std::uint64_t NumberAt(std::size_t offset, std::size_t size) const;
    bool Take(std::size_t size, std::string_view& taken);
    bool TakeNumber(std::size_t size, std::uint64_t& number);
    bool TakeLength(std::uint8_t low, std::size_t unit, std::size_t& length);
    bool GoTo(std::uint64_t object);
    bool Grow(std::uint64_t weight);

    id NewObject(std::uint64_t object, unsigned depth, unsigned& height);
    id NewKey(std::uint64_t object);
    id NewContent(std::uint8_t marker, unsigned depth, unsigned& height);
    id NewInteger(std::uint8_t low);
    id NewReal(std::uint8_t low);
    id NewDate();
    id NewUid(std::uint8_t low);
    id NewString(const Maker& maker, std::uint8_t marker);
    id NewArray(std::uint8_t low, unsigned depth, unsigned& height);
    id NewDictionary(std::uint8_t low, unsigned depth, unsigned& height);
    bool IsShared(id object) const;

    std::string_view bytes_;
    Maker maker_;
    Maker keyMaker_;
    Problem problem_ = nullptr;

    std::size_t at_ = 0;
    std::size_t tableOffset_ = 0;
    std::size_t offsetSize_ = 0;
    std::size_t referenceSize_ = 0;
    std::uint64_t root_ = 0;
    std::vector<Made> made_;
    std::uint64_t weight_ = 0;
};

Reader::~Reader() {
    for (const Made& made : made_) {
        [made.object release];
    }
}

std::uint64_t Reader::NumberAt(std::size_t offset, std::size_t size) const {
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < size; ++i) {
        number = (number << 8) | static_cast<std::uint8_t>(bytes_[offset + i]);
    }
    return number;
}

bool Reader::ReadTrailer() {
    constexpr std::size_t kSizesOffset = 6;
    if (bytes_.size() < kBinaryHeader.size() + kTrailerSize) {
        return false;
    }
    const std::size_t trailer = bytes_.size() - kTrailerSize;
    offsetSize_ = NumberAt(trailer + kSizesOffset, 1);
    referenceSize_ = NumberAt(trailer + kSizesOffset + 1, 1);
    const std::uint64_t count = NumberAt(trailer + 8, 8);
    root_ = NumberAt(trailer + 16, 8);
    const std::uint64_t table = NumberAt(trailer + 24, 8);
    if (offsetSize_ < 1 || offsetSize_ > 8 || referenceSize_ < 1 || referenceSize_ > 8 ||
        table < kBinaryHeader.size() || table > trailer || root_ >= count ||
        count > table - kBinaryHeader.size() || count > (trailer - table) / offsetSize_ ||
        table + count * offsetSize_ != trailer) {
        return false;
    }
    tableOffset_ = table;
    made_.resize(count);
    return true;
}

bool Reader::Take(std::size_t size, std::string_view& taken) {
    if (size > tableOffset_ - at_) {
        Fail("An object of the binary property list reaches beyond its end.");
        return false;
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

/// @param length  gets the content's size in bytes
bool Reader::TakeLength(std::uint8_t low, std::size_t unit, std::size_t& length) {
    std::uint64_t count = low;
    if (low == marker::kLongLength) {
        std::uint64_t type = 0;
        if (!TakeNumber(1, type)) {
            return false;
        }
        if ((type & 0xF0) != marker::kInteger || (type & 0x0F) > 3) {
            Fail("A length in the binary property list is no integer.");
            return false;
        }
        if (!TakeNumber(std::size_t{1} << (type & 0x0F), count)) {
            return false;
        }
    }
    if (count > (tableOffset_ - at_) / unit) {
        Fail("An object of the binary property list reaches beyond its end.");
        return false;
    }
    length = count * unit;
    return true;
}

bool Reader::GoTo(std::uint64_t object) {
    if (object >= made_.size()) {
        Fail("The binary property list refers to an object that it does not have.");
        return false;
    }
    const std::uint64_t offset = NumberAt(tableOffset_ + object * offsetSize_, offsetSize_);
    if (offset < kBinaryHeader.size() || offset >= tableOffset_) {
        Fail("An object of the binary property list lies outside it.");
        return false;
    }
    at_ = offset;
    return true;
}

bool Reader::Grow(std::uint64_t weight) {
    weight_ += weight;
    if (weight_ > kGrowthBase + kGrowthFactor * bytes_.size()) {
        Fail("The references of the binary property list multiply beyond measure.");
        return false;
    }
    return true;
}

id Reader::NewRoot() {
    if (!ReadTrailer()) {
        return Fail("The end of the binary property list is missing or damaged.");
    }
    unsigned height = 0;
    return NewObject(root_, 0, height);
}

/// What nobody can change may stand in several places of a list.
bool Reader::IsShared(id object) const {
    switch (KindOf(object)) {
        case Kind::Array:
        case Kind::Dictionary:
            return !maker_.MutableContainers();
        case Kind::Data:
        case Kind::String:
            return !maker_.MutableLeaves();
        default:
            return true;
    }
}

/// @param depth  the number of containers around the object
/// @param height  gets the number of levels of containers in it
id Reader::NewObject(std::uint64_t object, unsigned depth, unsigned& height) {
    if (!GoTo(object)) {
        return nil;
    }
    const Made& made = made_[object];
    if (made.object != nil && IsShared(made.object)) {
        height = made.height;
        if (depth + height > kDeepestNesting) {
            return Fail("The property list is nested too deep.");
        }
        return Grow(made.weight + kReferenceWeight) ? [made.object retain] : nil;
    }
    const std::uint64_t before = weight_;
    const auto type = static_cast<std::uint8_t>(bytes_[at_++]);
    height = 0;
    id content = Grow(kObjectWeight) ? NewContent(type, depth, height) : nil;
    if (content != nil && IsShared(content)) {
        made_[object] = {[content retain], weight_ - before, height};
    }
    return content;
}

id Reader::NewKey(std::uint64_t object) {
    if (!GoTo(object)) {
        return nil;
    }
    // With mutable leaves a string found here was made as a key: strings are not shared then.
    const Made& made = made_[object];
    if (KindOf(made.object) == Kind::String) {
        return Grow(kReferenceWeight) ? [made.object retain] : nil;
    }
    const auto type = static_cast<std::uint8_t>(bytes_[at_++]);
    id key = Grow(kObjectWeight) ? NewString(keyMaker_, type) : nil;
    if (key != nil) {
        made_[object] = {[key retain], kObjectWeight, 0};
    }
    return key;
}

id Reader::NewContent(std::uint8_t type, unsigned depth, unsigned& height) {
    const std::uint8_t low = type & 0x0F;
    switch (type) {
        case marker::kFalse:
            return [[NSNumber numberWithBool:NO] retain];
        case marker::kTrue:
            return [[NSNumber numberWithBool:YES] retain];
        case marker::kDate:
            return NewDate();
        default:
            break;
    }
    std::size_t length = 0;
    std::string_view content;
    switch (type & 0xF0) {
        case marker::kInteger:
            return NewInteger(low);
        case marker::kReal:
            return NewReal(low);
        case marker::kData:
            if (!TakeLength(low, 1, length) || !Take(length, content) || !Grow(length)) {
                return nil;
            }
            return maker_.NewData(content);
        case marker::kAscii:
        case marker::kUtf16:
            return NewString(maker_, type);
        case marker::kUid:
            return NewUid(low);
        case marker::kArray:
            return NewArray(low, depth, height);
        case marker::kDictionary:
            return NewDictionary(low, depth, height);
        default:
            return Fail("The binary property list has an object of unknown type.");
    }
}

id Reader::NewInteger(std::uint8_t low) {
    constexpr std::uint8_t kSixteenBytes = 4;
    if (low > kSixteenBytes) {
        return Fail("The binary property list has an integer of unknown size.");
    }
    std::uint64_t high = 0;
    std::uint64_t number = 0;
    const bool isLong = low == kSixteenBytes;
    if ((isLong && !TakeNumber(8, high)) ||
        !TakeNumber(isLong ? 8 : std::size_t{1} << low, number)) {
        return nil;
    }
    const auto asSigned = static_cast<std::int64_t>(number);
    if (isLong && high == 0) {
        return [[NSNumber alloc] initWithUnsignedLongLong:number];
    }
    if (isLong && (high != UINT64_MAX || asSigned >= 0)) {
        return Fail("The binary property list has an integer beyond 64 bits.");
    }
    return [[NSNumber alloc] initWithLongLong:asSigned];
}

id Reader::NewReal(std::uint8_t low) {
    std::uint64_t number = 0;
    if (low == 2 && TakeNumber(sizeof(float), number)) {
        const auto bits = static_cast<std::uint32_t>(number);
        float real = 0;
        std::memcpy(&real, &bits, sizeof real);
        return [[NSNumber alloc] initWithFloat:real];
    }
    if (low == 3 && TakeNumber(sizeof(double), number)) {
        double real = 0;
        std::memcpy(&real, &number, sizeof real);
        return [[NSNumber alloc] initWithDouble:real];
    }
    return Fail("The binary property list has a damaged real number.");
}

id Reader::NewDate() {
    std::uint64_t number = 0;
    if (!TakeNumber(sizeof(double), number)) {
        return nil;
    }
    double seconds = 0;
    std::memcpy(&seconds, &number, sizeof seconds);
    return [[NSDate alloc] initWithTimeIntervalSinceReferenceDate:seconds];
}

id Reader::NewUid(std::uint8_t low) {
    const std::size_t size = low + std::size_t{1};
    std::uint64_t number = 0;
    if (size > sizeof number) {
        return Fail("The binary property list has a UID beyond 64 bits.");
    }
    return TakeNumber(size, number) ? [[KSPropertyListUID alloc] initWithUID:number] : nil;
}

id Reader::NewString(const Maker& maker, std::uint8_t type) {
    const bool isAscii = (type & 0xF0) == marker::kAscii;
    if (!isAscii && (type & 0xF0) != marker::kUtf16) {
        return Fail("A key in the binary property list is no string.");
    }
    std::size_t length = 0;
    std::string_view content;
    if (!TakeLength(type & 0x0F, isAscii ? 1 : sizeof(char16_t), length) ||
        !Take(length, content) || !Grow(length)) {
        return nil;
    }
    NSString* string = isAscii ? maker.NewAscii(content) : maker.NewText(Utf16(content));
    // Neither a byte above 127 nor half a surrogate pair makes a string.
    return string != nil ? string : Fail("A string in the binary property list is damaged.");
}

id Reader::NewArray(std::uint8_t low, unsigned depth, unsigned& height) {
    std::size_t length = 0;
    if (depth >= kDeepestNesting) {
        return Fail("The property list is nested too deep.");
    }
    if (!TakeLength(low, referenceSize_, length)) {
        return nil;
    }
    const std::size_t start = at_;
    References values;
    values.Reserve(length / referenceSize_);
    for (std::size_t at = start; at < start + length; at += referenceSize_) {
        unsigned below = 0;
        id value = NewObject(NumberAt(at, referenceSize_), depth + 1, below);
        if (value == nil) {
            return nil;
        }
        values.Add(value);
        height = std::max(height, below);
    }
    ++height;
    return maker_.NewArray(values);
}

id Reader::NewDictionary(std::uint8_t low, unsigned depth, unsigned& height) {
    std::size_t length = 0;
    if (depth >= kDeepestNesting) {
        return Fail("The property list is nested too deep.");
    }
    if (!TakeLength(low, 2 * referenceSize_, length)) {
        return nil;
    }
    const std::size_t start = at_;
    References keys;
    References values;
    keys.Reserve(length / 2 / referenceSize_);
    values.Reserve(length / 2 / referenceSize_);
    for (std::size_t at = start; at < start + length / 2; at += referenceSize_) {
        id key = NewKey(NumberAt(at, referenceSize_));
        if (key == nil) {
            return nil;
        }
        keys.Add(key);
        unsigned below = 0;
        id value = NewObject(NumberAt(at + length / 2, referenceSize_), depth + 1, below);
        if (value == nil) {
            return nil;
        }
        values.Add(value);
        height = std::max(height, below);
    }
    ++height;
    return maker_.NewDictionary(keys, values);
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
