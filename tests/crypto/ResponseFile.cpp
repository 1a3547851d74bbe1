#include "tests/crypto/ResponseFile.h"

#include <fstream>
#include <stdexcept>

std::vector<ResponseRecord> ReadResponseFile(const std::string& name) {
    std::ifstream file(KS_VECTORS "/" + name);
    if (!file) {
        throw std::runtime_error("cannot read " KS_VECTORS "/" + name);
    }
    std::vector<ResponseRecord> records;
    ResponseRecord record;
    const auto finish = [&] {
        if (!record.empty()) {
            records.push_back(record);
            record.clear();
        }
    };
    for (std::string line; std::getline(file, line);) {
        const size_t equals = line.find(" = ");
        if (line.empty()) {
            finish();
        } else if (line[0] != '#' && line[0] != '[' && equals != std::string::npos) {
            record[line.substr(0, equals)] = line.substr(equals + 3);
        }
    }
    finish();
    return records;
}

std::string FromHex(const std::string& digits) {
    std::string bytes;
    for (size_t at = 0; at < digits.size(); at += 2) {
        size_t used = 0;
        const std::string pair = digits.substr(at, 2);
        bytes += static_cast<char>(std::stoi(pair, &used, 16));
        if (used != 2) {
            throw std::invalid_argument("not hexadecimal: " + pair);
        }
    }
    return bytes;
}

std::string ToHex(const std::string& bytes) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const char c : bytes) {
        text += kDigits[static_cast<uint8_t>(c) >> 4];
        text += kDigits[c & 15];
    }
    return text;
}
