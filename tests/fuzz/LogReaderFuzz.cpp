// What the log reader is made of, on any file and on logs as the logger writes them, which OpenSSL
// enciphers.
#include <fuzzer/FuzzedDataProvider.h>
#include <sys/mman.h>
#include <unistd.h>

#include <vector>

#include "crypto/Utf8.h"
#include "tests/fuzz/OpenSsl.h"
#include "tests/fuzz/Require.h"
#include "tools/LogParser.h"
#include "tools/LogPrinter.h"
#include "tools/LogStream.h"

namespace {

constexpr std::size_t kBlock = 16;
constexpr std::size_t kKey = 32;
const std::string kHeader = "\n09:07:02 - WARNING : ";

std::string Padded(std::string text) {
    text.resize((text.size() + kBlock - 1) / kBlock * kBlock, ' ');
    return text;
}

// A file of these bytes, opened as the reader opens it. The text that it gives, or nothing where it
// is no log under this password.
std::string Read(const std::string& bytes, const std::string& password, std::size_t* damaged) {
    const int file = memfd_create("log", 0);
    REQUIRE(write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
    LogStream log;
    REQUIRE(log.Open("/proc/self/fd/" + std::to_string(file)).empty());
    REQUIRE(log.IsEmpty() == bytes.empty());
    std::string text;
    const bool isPlain = log.IsPlain();
    if (isPlain || log.IsEncipheredUnder(password)) {
        for (std::string_view piece = log.Next(); !piece.empty(); piece = log.Next()) {
            text += piece;
        }
        *damaged = log.DamagedBytes();
        REQUIRE(!log.HasFailed());
        REQUIRE(log.IsPadded() == !isPlain);
        REQUIRE(log.CutBytes() == (isPlain ? 0 : bytes.size() % kBlock));
    }
    close(file);
    return text;
}

std::vector<LogMessage> Parsed(const std::vector<std::string>& pieces, bool padded) {
    std::vector<LogMessage> messages;
    LogParser parser(padded, [&](const LogMessage& message) { messages.push_back(message); });
    for (const std::string& piece : pieces) {
        parser.Take(piece);
    }
    parser.Finish();
    return messages;
}

void RequireEqual(const std::vector<LogMessage>& some, const std::vector<LogMessage>& others) {
    REQUIRE(some.size() == others.size());
    for (std::size_t i = 0; i < some.size(); ++i) {
        REQUIRE(some[i].time == others[i].time && some[i].level == others[i].level &&
                some[i].text == others[i].text);
    }
}

// In whatever pieces a text comes, its messages are the same.
void CheckPieces(const std::string& text, std::size_t length, bool padded) {
    std::vector<std::string> pieces;
    for (std::size_t at = 0; at < text.size(); at += length) {
        pieces.push_back(text.substr(at, length));
    }
    RequireEqual(Parsed(pieces, padded), Parsed({text}, padded));
}

void CheckShowing(const LogMessage& message) {
    const std::string safe = SafeForTerminal(message.text);
    REQUIRE(IsUtf8(safe));
    for (const char letter : safe) {
        REQUIRE(letter == '\n' || letter == '\t' || static_cast<unsigned char>(letter) >= ' ');
        REQUIRE(letter != '\x7f');
    }
    const std::string json = LogPrinter(true, false, true).Line("log", message);
    REQUIRE(IsUtf8(json) && json.find_first_of("\n") == json.size() - 1);
    REQUIRE(json.front() == '{' && json[json.size() - 2] == '}');
}

// Any file, plain or not.
void CheckFile(const std::string& bytes, const std::string& password, const std::string& key,
               std::size_t length) {
    std::size_t damaged = 0;
    const std::string text = Read(bytes, password, &damaged);
    if (text.empty()) {
        return;
    }
    const std::string whole = bytes.substr(0, bytes.size() / kBlock * kBlock);
    REQUIRE(text == bytes || text == openssl::Decipher(key, whole));
    std::size_t header = 0;
    REQUIRE(damaged == FindLogHeader(text, 0, &header) && header > 0);
    for (const bool padded : {false, true}) {
        CheckPieces(text, length, padded);
        for (const LogMessage& message : Parsed({text}, padded)) {
            CheckShowing(message);
        }
    }
}

// A log of two messages of that text.
void CheckLog(const std::string& text, const std::string& password, const std::string& key) {
    std::size_t header = 0;
    for (const char* end : {"\n", " "}) {
        if (FindLogHeader("\n" + text + end, 0, &header) != std::string_view::npos) {
            return;  // the text itself looks like messages, or does so with the blanks that follow
        }
    }
    std::size_t damaged = 0;
    const std::string plain = kHeader + text + kHeader + text;
    REQUIRE(Read(plain, password, &damaged) == plain && damaged == 0);
    for (const LogMessage& message : Parsed({plain}, false)) {
        REQUIRE(message.time == "09:07:02" && message.level == "WARNING" && message.text == text);
    }
    const std::string padded = Padded(kHeader) + Padded(text) + Padded(kHeader) + Padded(text);
    REQUIRE(Read(openssl::Encipher(key, padded), password, &damaged) == padded && damaged == 0);
    const std::vector<LogMessage> messages = Parsed({padded}, true);
    REQUIRE(messages.size() == 2);
    for (const LogMessage& message : messages) {
        REQUIRE(Padded(text).compare(0, message.text.size(), message.text) == 0);
        REQUIRE(Padded(text).size() - message.text.size() < kBlock);
        REQUIRE(text.find_last_not_of(' ') + 1 <= message.text.size());
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const bool isEnciphered = input.ConsumeBool();
    const std::size_t length = input.ConsumeIntegralInRange<std::size_t>(1, 80);
    const std::string password =
        input.ConsumeBytesAsString(input.ConsumeIntegralInRange<std::size_t>(0, kKey + 4));
    std::string key = password;
    key.resize(kKey, '\0');

    const std::string bytes = input.ConsumeRemainingBytesAsString();
    CheckFile(isEnciphered ? openssl::Encipher(key, Padded(bytes)) : bytes, password, key, length);
    CheckLog(bytes, password, key);
    return 0;
}
