// A message takes no memory from the heap: this program counts what is taken.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>

#include "tests/support/LogFile.h"

namespace {

int allocations = 0;

}  // namespace

#if __has_feature(address_sanitizer)
// AddressSanitizer keeps malloc to itself: what the C library takes is not counted then.
void* operator new(size_t size) {
    ++allocations;
    if (void* const memory = std::malloc(size != 0 ? size : 1)) {
        return memory;
    }
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, size_t) noexcept {
    std::free(memory);
}
#else
extern "C" void* __libc_malloc(size_t size);
extern "C" void* malloc(size_t size) {
    ++allocations;
    return __libc_malloc(size);
}
#endif

namespace {

const std::string kKey = "0123456789abcdef0123456789ABCDEF";

/// The allocations of messages of every length class, without those of the first message: then the
/// console gets its buffer and the time zone is read.
int AllocationsOf(CLogger& log) {
    const std::string longText(10000, 'x');
    Print(log, CLogger::LevelInfo, "first");
    const int before = allocations;
    Print(log, CLogger::LevelInfo, "%s", "");
    Print(log, CLogger::LevelWarning, "number %d of %ld at %s: %g", 1, 2L, "/a/place", 0.5);
    Print(log, CLogger::LevelFailure, "%s", longText.c_str());
    return allocations - before;
}

class LogAllocations : public testing::Test {
  protected:
    LogAllocations() { testing::internal::CaptureStdout(); }
    ~LogAllocations() override { testing::internal::GetCapturedStdout(); }

    const LogFile file;
};

TEST_F(LogAllocations, AreCounted) {
    const int before = allocations;
    int* volatile number = new int;  // the optimiser would leave out what nobody reads
    delete number;
    EXPECT_EQ(allocations, before + 1);
}

TEST_F(LogAllocations, AreNotMadeByAPlainMessage) {
    CLogger log{file.Path(), "", false, nullptr, 0, CLogger::LevelInfo};
    EXPECT_EQ(AllocationsOf(log), 0);
    EXPECT_NE(file.Bytes().find("number 1 of 2 at /a/place: 0.5"), std::string::npos);
}

TEST_F(LogAllocations, AreNotMadeByAnEncipheredMessage) {
    CLogger log{file.Path(), "", true, KeyBytes(kKey), 32, CLogger::LevelInfo};
    EXPECT_EQ(AllocationsOf(log), 0);
    EXPECT_NE(file.Deciphered(kKey).find("number 1 of 2 at /a/place: 0.5"), std::string::npos);
}

}  // namespace
