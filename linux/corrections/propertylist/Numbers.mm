#include "linux/corrections/propertylist/Numbers.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace propertylist {

NSNumber* NewInteger(std::string_view text) {
    constexpr std::uint64_t kLowest = 1ULL << 63;
    const bool negative = !text.empty() && text[0] == '-';
    if (negative || (!text.empty() && text[0] == '+')) {
        text.remove_prefix(1);
    }
    const bool isHex = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    const std::string digits(isHex ? text.substr(2) : text);
    const char* allowed = isHex ? "0123456789abcdefABCDEF" : "0123456789";
    if (digits.empty() || digits.find_first_not_of(allowed) != std::string::npos) {
        return nil;
    }
    errno = 0;
    const std::uint64_t number = std::strtoull(digits.c_str(), nullptr, isHex ? 16 : 10);
    if (errno == ERANGE || (negative && number > kLowest)) {
        return nil;
    }
    if (!negative) {
        return [[NSNumber alloc] initWithUnsignedLongLong:number];
    }
    return [[NSNumber alloc] initWithLongLong:static_cast<std::int64_t>(0 - number)];
}

NSNumber* NewReal(std::string_view text) {
    const std::string number(text);
    char* end = nullptr;
    const double real = std::strtod(number.c_str(), &end);
    if (number.empty() || end != number.c_str() + number.size()) {
        return nil;
    }
    return [[NSNumber alloc] initWithDouble:real];
}

}  // namespace propertylist
