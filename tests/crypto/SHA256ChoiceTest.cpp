#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "crypto/SHA256Blocks.h"

namespace {

/// What the system says of the processor: the names of the SHA instructions on x86-64.
bool ProcessorHasShaInstructions() {
    std::ifstream file("/proc/cpuinfo");
    for (std::string line; std::getline(file, line);) {
        if (line.rfind("flags", 0) == 0) {
            std::istringstream flags(line);
            for (std::string flag; flags >> flag;) {
                if (flag == "sha_ni") {
                    return true;
                }
            }
        }
    }
    return false;
}

}  // namespace

#if defined(__x86_64__)
TEST(SHA256Choice, TakesTheInstructionsWhereTheProcessorHasThem) {
    EXPECT_EQ(sha256::ProcessBlocksByInstructions() != nullptr, ProcessorHasShaInstructions());
}
#endif
