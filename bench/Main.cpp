// KS_BENCH_PORTABLE=1 keeps libgcrypt from what the processor has beyond its basic instructions;
// the other libraries take variables of their own.
#include <gcrypt.h>

#include <cstdlib>

#include "bench/Contest.h"

int main(int argc, char** argv) {
    if (std::getenv("KS_BENCH_PORTABLE") != nullptr) {
        gcry_control(GCRYCTL_DISABLE_HWF, "all", nullptr);
    }
    gcry_check_version(nullptr);
    gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);

    EnterCiphers();
    EnterDigests();
    EnterBase64();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    benchmark::RunSpecifiedBenchmarks();
}
