// An autorelease pool around every test, as an application has one around every event.
#include <Foundation/Foundation.h>
#include <gtest/gtest.h>

namespace {

class PoolPerTest : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo& /*test*/) override {
        pool = [[NSAutoreleasePool alloc] init];
    }
    void OnTestEnd(const testing::TestInfo& /*test*/) override {
        [pool release];
        pool = nil;
    }

    NSAutoreleasePool* pool = nil;
};

const bool installed = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new PoolPerTest);
    return true;
}();

}  // namespace
