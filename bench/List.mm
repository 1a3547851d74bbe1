// list FROM TO: reads a property list and writes it back as a binary one, as Safari's lists are.
// Prints the seconds of processor time that this took, and by how many bytes the process grew.
#include <time.h>

#include <fstream>
#include <iostream>

#include "platform/PropertyLists.h"

namespace {

size_t PeakBytes() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == "VmHWM:") {
            size_t kilobytes = 0;
            status >> kilobytes;
            return kilobytes * 1024;
        }
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        return 2;
    }
    @autoreleasepool {
        NSString* from = [NSString stringWithUTF8String:argv[1]];
        NSString* to = [NSString stringWithUTF8String:argv[2]];
        const size_t before = PeakBytes();
        const clock_t start = clock();
        id root = ReadPropertyList(from, NSPropertyListMutableContainersAndLeaves, NULL);
        const BOOL written = WritePropertyList(root, NSPropertyListBinaryFormat_v1_0, to, NULL);
        const clock_t end = clock();
        std::cout << static_cast<double>(end - start) / CLOCKS_PER_SEC << ' '
                  << PeakBytes() - before << '\n';
        return written ? 0 : 1;
    }
}
