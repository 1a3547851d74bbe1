// Prints an enciphered log in plain text. The logging password comes on standard input, so that it
// shows in no process list.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <iostream>
#include <memory>
#include <string>

#include "crypto/DecryptionEngine.h"

namespace {

constexpr char kUsage[] =
    "usage: KSLogReader LOG      print an enciphered log in plain text;\n"
    "                            the password is the first line of standard input\n"
    "       KSLogReader --help\n"
    "       KSLogReader --version\n"
    "\n"
    "Status: 0; 1 for a log that cannot be read or is none under this password; 2 for wrong "
    "usage.\n"
    "A log whose name begins with \"-\" is given as ./-NAME.\n";

// False for what cannot be read to its end, such as a folder. Not by a stream of C++: it throws, or
// takes the failure for the end, depending on the library.
bool Read(const char* path, std::string& bytes) {
    const std::unique_ptr<FILE, int (*)(FILE*)> file(fopen(path, "rb"), fclose);
    if (file == nullptr) {
        return false;
    }
    char chunk[65536];
    while (const size_t count = fread(chunk, 1, sizeof chunk, file.get())) {
        bytes.append(chunk, count);
    }
    return ferror(file.get()) == 0;
}

// Headers and texts are padded with blanks to whole blocks: those at the end of a line are no
// content.
void PrintWithoutTrailingBlanks(const std::string& text) {
    std::string blanks;
    for (const char letter : text) {
        if (letter == ' ') {
            blanks += letter;
            continue;
        }
        if (letter != '\n') {
            std::cout << blanks;
        }
        blanks.clear();
        std::cout << letter;
    }
    std::cout << '\n';
}

}  // namespace

int main(int argc, char** argv) {
    const std::string argument = argc == 2 ? argv[1] : "";
    if (argument == "--help") {
        std::cout << kUsage;
        return 0;
    }
    if (argument == "--version") {
        std::cout << "KSLogReader " KS_VERSION "\n";
        return 0;
    }
    if (argument.empty() || argument.front() == '-') {
        std::cerr << kUsage;
        return 2;
    }
    std::string log;
    if (!Read(argv[1], log)) {
        std::cerr << "KSLogReader: cannot read " << argv[1] << '\n';
        return 1;
    }
    if (log.size() % kRijndaelBlockBytes != 0) {
        std::cerr << "KSLogReader: no enciphered log, or one that is cut: the last "
                  << log.size() % kRijndaelBlockBytes << " bytes are left out\n";
        log.resize(log.size() - log.size() % kRijndaelBlockBytes);
    }

    std::string password;
    std::getline(std::cin, password);
    // As the logger takes it: the first 32 bytes, a shorter password followed by zero bytes.
    DecryptionEngine engine(reinterpret_cast<const uint8_t*>(password.data()),
                            static_cast<uint32_t>(std::min(password.size(), AesEngine::kKeyBytes)));
    engine.Decrypt(log);
    if (!log.empty() && log.front() != '\n') {
        std::cerr << "KSLogReader: no log under this password\n";
        return 1;
    }
    PrintWithoutTrailingBlanks(log);
    return 0;
}
