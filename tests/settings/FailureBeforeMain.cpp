#include "tests/settings/FailureBeforeMain.h"

namespace {

// Built before the process's globals, which are linked last, and, in a file of its own, after the
// Objective-C classes and selectors of the test are known.
const bool storingFails = MakeStoringFail();

}  // namespace
