// The rows of what needs the whole product; runs in a Mac root.
#include "bench/Contest.h"

int main(int argc, char** argv) {
    EnterLogs();
    EnterSettings();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    benchmark::RunSpecifiedBenchmarks();
}
