#include <algorithm>
#include <cctype>
#include <fstream>

#include "linux/frameworks/IOKit/Services.h"

namespace {

constexpr char kMachineIdentifier[] = "/etc/machine-id";
constexpr size_t kDigits = 32;
constexpr size_t kPartEnds[] = {8, 12, 16, 20};

std::string MachineIdentifier() {
    std::string identifier;
    std::ifstream(kMachineIdentifier) >> identifier;
    return identifier;
}

bool IsHexadecimal(char digit) {
    return std::isxdigit(static_cast<unsigned char>(digit)) != 0;
}

NSDictionary* Properties() {
    const std::string uuid = PlatformUuid(MachineIdentifier());
    return uuid.empty() ? @{} : @{@"IOPlatformUUID" : [NSString stringWithUTF8String:uuid.c_str()]};
}

}  // namespace

const Service kPlatformExpertDevice = {@"IOPlatformExpertDevice", Properties};

std::string PlatformUuid(const std::string& machineIdentifier) {
    if (machineIdentifier.size() != kDigits ||
        !std::all_of(machineIdentifier.begin(), machineIdentifier.end(), IsHexadecimal)) {
        return "";
    }
    std::string uuid;
    for (size_t i = 0; i < kDigits; ++i) {
        if (std::find(std::begin(kPartEnds), std::end(kPartEnds), i) != std::end(kPartEnds)) {
            uuid += '-';
        }
        uuid += static_cast<char>(std::toupper(static_cast<unsigned char>(machineIdentifier[i])));
    }
    return uuid;
}
