#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// Apple's binary property lists, version 00. All numbers are big-endian.
//
//   "bplist00"
//   the objects, each a marker byte and its content; containers refer to others by their number
//   the offset table: where each object begins, `offsetSize` bytes apiece
//   the trailer: 6 unused bytes, offsetSize (1), referenceSize (1), the number of objects (8), the
//                number of the root object (8), the offset of the offset table (8)
//
// A marker's high half is the type. Its low half is the length (bytes, UTF-16 units, values or
// entries), 15 when an integer object with the length follows; or, of a number, the power of two
// that is its size.
namespace propertylist {

constexpr std::string_view kBinaryHeader = "bplist00";
/// Every version 0x is laid out like this.
constexpr std::string_view kBinarySignature = "bplist0";
constexpr std::size_t kTrailerSize = 32;

namespace marker {

constexpr std::uint8_t kNull = 0x00;
constexpr std::uint8_t kFalse = 0x08;
constexpr std::uint8_t kTrue = 0x09;
constexpr std::uint8_t kInteger = 0x10;
constexpr std::uint8_t kReal = 0x20;
constexpr std::uint8_t kDate = 0x33;
constexpr std::uint8_t kData = 0x40;
constexpr std::uint8_t kAscii = 0x50;
constexpr std::uint8_t kUtf16 = 0x60;
/// The low half is the number of bytes less one.
constexpr std::uint8_t kUid = 0x80;
constexpr std::uint8_t kArray = 0xA0;
constexpr std::uint8_t kSet = 0xC0;
constexpr std::uint8_t kDictionary = 0xD0;

constexpr std::uint8_t kLongLength = 0x0F;

}  // namespace marker

}  // namespace propertylist
