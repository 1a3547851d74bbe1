// Any text through NSLogger into a log, plain or enciphered: formatted twice, cut and padded, and
// nothing else.
#include <fuzzer/FuzzedDataProvider.h>

#include <new>

#include "logging/CLogger.h"
#include "logging/NSLogger.h"
#include "tests/fuzz/OpenSsl.h"
#include "tests/fuzz/Require.h"
#include "tests/fuzz/Units.h"
#include "tests/support/Files.h"

namespace {

const std::string kKey = "0123456789abcdef0123456789ABCDEF";
constexpr std::size_t kLongest = 10239;
constexpr std::size_t kBlock = 16;
constexpr std::size_t kTime = 8;  // "HH:MM:SS"

struct Level {
    const char* word;
    void (*log)(NSString* text);
};
const Level kLevels[] = {
    {"CRITICAL", [](NSString* text) { [NSLogger LogCritical:@"%@", text]; }},
    {"FAILURE", [](NSString* text) { [NSLogger LogFailure:@"%@", text]; }},
    {"WARNING", [](NSString* text) { [NSLogger LogWarning:@"%@", text]; }},
    {"INFO", [](NSString* text) { [NSLogger LogInformation:@"%@", text]; }},
    {"INFO", [](NSString* text) { [NSLogger LogSuccess:@"%@", text]; }},
};

// Appends a code point, or half a surrogate pair, which has no UTF-8.
void Append(std::string& utf8, char16_t unit) {
    if (unit < 0x80) {
        utf8 += static_cast<char>(unit);
    } else if (unit < 0x800) {
        utf8 += static_cast<char>(0xC0 | unit >> 6);
        utf8 += static_cast<char>(0x80 | (unit & 0x3F));
    } else if (unit >= 0xD800 && unit < 0xE000) {
        utf8 += "\xEF\xBF\xBD";
    } else {
        utf8 += static_cast<char>(0xE0 | unit >> 12);
        utf8 += static_cast<char>(0x80 | (unit >> 6 & 0x3F));
        utf8 += static_cast<char>(0x80 | (unit & 0x3F));
    }
}

// What printf makes of the text: a doubled "%" is one, a single one stays.
std::string FormattedAgain(const std::string& text) {
    std::string result = text.substr(0, text.find('\0'));
    for (std::size_t at = 0; (at = result.find("%%", at)) != std::string::npos; ++at) {
        result.erase(at, 1);
    }
    return result.substr(0, kLongest);
}

std::string Padded(std::string piece) {
    piece.resize((piece.size() + kBlock - 1) / kBlock * kBlock, ' ');
    return piece;
}

// Only the high half before it makes a low one whole: such pairs are left to the text's program.
std::u16string Units(const std::string& bytes) {
    std::u16string units;
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        const char16_t unit = static_cast<char16_t>(static_cast<unsigned char>(bytes[at]) << 8 |
                                                    static_cast<unsigned char>(bytes[at + 1]));
        const bool low = (unit & 0xFC00) == 0xDC00;
        const bool behindHigh = !units.empty() && (units.back() & 0xFC00) == 0xD800;
        units += low && behindHigh ? u'%' : unit;
    }
    return units;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    REQUIRE(std::freopen("/dev/null", "w", stdout) != nullptr);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    @autoreleasepool {
        FuzzedDataProvider input(data, size);
        const bool enciphered = input.ConsumeBool();
        const bool isNarrow = input.ConsumeBool();
        const Level level = input.PickValueInArray(kLevels);
        const std::size_t repeat =
            input.ConsumeIntegralInRange<std::size_t>(0, 15) != 15
                ? 0
                : input.ConsumeIntegralInRange<std::size_t>(kLongest - 100, kLongest + 100);
        const std::string bytes = input.ConsumeRemainingBytesAsString();
        std::u16string units = Units(bytes);
        if (isNarrow) {
            units.assign(bytes.begin(), bytes.end());
            for (char16_t& unit : units) {
                unit &= 0xFF;
            }
        }
        std::string text;
        for (const char16_t unit : units) {
            Append(text, unit);
        }
        text.append(repeat, '%');  // beyond what a message holds

        const std::string path = "/private/tmp/log";
        WriteFile(path, "");
        // A new one: a logger that is initialised again leaves its earlier file open.
        CLogger::m_Logger.~CLogger();
        new (&CLogger::m_Logger)
            CLogger(path, "", enciphered, reinterpret_cast<const uint8_t*>(kKey.data()),
                    static_cast<uint32_t>(kKey.size()), CLogger::LevelInfo);
        NSMutableString* logged = TextOf(units);
        [logged appendString:[@"" stringByPaddingToLength:repeat
                                               withString:@"%"
                                          startingAtIndex:0]];
        level.log(logged);
        std::string log = ReadFile(path);
        log = enciphered ? openssl::Decipher(kKey, log) : log;

        const std::string header = std::string("\nHH:MM:SS - ") + level.word + " : ";
        const std::string formatted = FormattedAgain(text);
        log.replace(1, kTime, "HH:MM:SS");
        REQUIRE(log == (enciphered ? Padded(header) + Padded(formatted) : header + formatted));
    }
    return 0;
}
