// The log reader on any file, and on what the logger would have written, enciphered by OpenSSL.
#include <fuzzer/FuzzedDataProvider.h>
#include <sys/mman.h>
#include <unistd.h>

#include <iostream>
#include <sstream>

#include "tests/fuzz/OpenSsl.h"
#include "tests/fuzz/Require.h"

/// tools/KSLogReader.cpp, whose `main` bears this name here.
int LogReader(int argc, char** argv);

namespace {

constexpr std::size_t kBlock = 16;
constexpr std::size_t kKey = 32;

/// While it lives, a stream reads from or writes to a text.
class Redirected {
  public:
    explicit Redirected(std::ios& redirected, const std::string& content = "")
        : stream(redirected), text(content), before(stream.rdbuf(text.rdbuf())) {
        stream.clear();
    }
    ~Redirected() { stream.rdbuf(before); }
    std::string Text() const { return text.str(); }

  private:
    std::ios& stream;
    std::stringstream text;
    std::streambuf* before;
};

struct Result {
    int status;
    std::string output;
    std::string errors;
};

Result Read(const std::string& log, const std::string& password) {
    const int file = memfd_create("log", 0);
    REQUIRE(write(file, log.data(), log.size()) == static_cast<ssize_t>(log.size()));
    std::string path = "/proc/self/fd/" + std::to_string(file);
    std::string program = "KSLogReader";
    char* arguments[] = {&program[0], &path[0], nullptr};

    Redirected input(std::cin, password + "\n");
    Redirected output(std::cout);
    Redirected errors(std::cerr);
    const int status = LogReader(2, arguments);
    close(file);
    return {status, output.Text(), errors.Text()};
}

// Line by line, what no line ends in.
std::string WithoutTrailingBlanks(const std::string& text) {
    std::string result;
    std::istringstream lines(text + "\n");
    for (std::string line; std::getline(lines, line);) {
        result += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
    }
    return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const bool isLog = input.ConsumeBool();
    std::string password =
        input.ConsumeBytesAsString(input.ConsumeIntegralInRange<std::size_t>(0, kKey + 4));
    password = password.substr(0, password.find('\n'));
    std::string key = password;
    key.resize(kKey, '\0');

    std::string file = input.ConsumeRemainingBytesAsString();
    if (isLog) {
        file = "\n" + file;
        file.resize((file.size() + kBlock - 1) / kBlock * kBlock, ' ');
        file = openssl::Encipher(key, file);
    }
    const std::string text = openssl::Decipher(key, file.substr(0, file.size() / kBlock * kBlock));
    const bool isReadable = text.empty() || text.front() == '\n';
    const Result result = Read(file, password);
    REQUIRE(isReadable || !isLog);
    REQUIRE(result.status == (isReadable ? 0 : 1));
    REQUIRE(result.output == (isReadable ? WithoutTrailingBlanks(text) : ""));
    REQUIRE(result.errors.empty() == (isReadable && file.size() % kBlock == 0));
    return 0;
}
