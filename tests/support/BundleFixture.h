#pragma once

#include <gtest/gtest.h>

#include "tests/support/AppleBundle.h"
#include "tests/support/ErrorChecks.h"

/// Looks at bundles in a folder of the test's own.
class BundleFixture : public testing::Test {
  protected:
    ~BundleFixture() override { [pool_ release]; }

    NSBundle* At(const std::string& name) { return [NSBundle bundleWithPath:Text(folder_ / name)]; }

    NSAutoreleasePool* const pool_ = [[NSAutoreleasePool alloc] init];
    TemporaryFolder folder_;
};
