// The rows of property_lists.tsv: an input as Python writes bytes, what is read of it ("no list",
// or the format and the value), and in some rows what other releases of macOS read. Debian's own
// answers are pinned by tests/linux/test_property_lists.py.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <vector>

#include "tests/support/ErrorChecks.h"
#include "tests/support/PropertyListDescription.h"

namespace {

char Unescaped(char letter) {
    switch (letter) {
        case 'n':
            return '\n';
        case 'r':
            return '\r';
        case 't':
            return '\t';
        default:
            return letter;
    }
}

/// The bytes of a literal such as b'a\x00\n'.
std::string Bytes(const std::string& literal) {
    std::string bytes;
    const size_t end = literal.size() - 1;
    for (size_t at = 2; at < end; ++at) {
        if (literal[at] != '\\') {
            bytes += literal[at];
        } else if (literal[++at] == 'x') {
            bytes += static_cast<char>(std::strtol(literal.substr(at + 1, 2).c_str(), nullptr, 16));
            at += 2;
        } else {
            bytes += Unescaped(literal[at]);
        }
    }
    return bytes;
}

std::vector<std::string> Fields(const std::string& row) {
    std::vector<std::string> fields;
    std::istringstream rest(row);
    for (std::string field; std::getline(rest, field, '\t');) {
        fields.push_back(field);
    }
    return fields;
}

std::string Answer(const std::string& bytes) {
    NSPropertyListFormat format = NSPropertyListXMLFormat_v1_0;
    id list = [NSPropertyListSerialization propertyListWithData:[NSData dataWithBytes:bytes.data()
                                                                               length:bytes.size()]
                                                        options:NSPropertyListImmutable
                                                         format:&format
                                                          error:nullptr];
    return list == nil
               ? "no list"
               : std::to_string(static_cast<unsigned>(format)) + " " + DescribePropertyList(list);
}

TEST(PropertyListTable, EveryRowIsReadAsItSays) {
    std::ifstream rows(KS_PROPERTY_LISTS);
    size_t count = 0;
    for (std::string row; std::getline(rows, row); ++count) {
        @autoreleasepool {
            const std::vector<std::string> fields = Fields(row);
            const std::string answer = Answer(Bytes(fields.at(0)));
            if (fields.size() < 3 || answer != fields[2]) {
                EXPECT_EQ(answer, fields.at(1)) << fields[0];
            }
        }
    }
    EXPECT_GT(count, 250U);
}

}  // namespace
