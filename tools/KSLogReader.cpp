// KSLogReader LOG: prints an enciphered log in plain text. The logging password is the first line
// of standard input, so that it shows in no process list.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "crypto/DecryptionEngine.h"

namespace {

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
    if (argc != 2) {
        std::cerr
            << "usage: KSLogReader LOG   (the password is the first line of standard input)\n";
        return 2;
    }
    std::ifstream file(argv[1], std::ios::binary);
    std::string log{std::istreambuf_iterator<char>(file), {}};
    if (!file.is_open() || file.bad()) {
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
