// alert_program: asks one question, as a plain executable does, and prints the alert's result and
// for how many milliseconds the machine let the program wait for a processor.
// alert_program then-raise: raises an exception afterwards, which nobody catches.
#include <cstdio>
#include <fstream>
#include <string>

#include "tests/support/Asking.h"

namespace {

/// The second figure of schedstat, in nanoseconds.
long MillisecondsInQueue() {
    long running = 0;
    long waiting = 0;
    std::ifstream("/proc/self/schedstat") >> running >> waiting;
    return waiting / 1000000;
}

}  // namespace

int main(int argc, char** argv) {
    @autoreleasepool {
        const int result = Ask({});
        std::printf("%d %ld\n", result, MillisecondsInQueue());
        if (argc == 2 && std::string(argv[1]) == "then-raise") {
            [NSException raise:NSGenericException format:@"Meant"];
        }
    }
    return 0;
}
