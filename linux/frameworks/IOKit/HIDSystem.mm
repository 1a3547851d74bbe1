#include "linux/frameworks/IOKit/IdleTime.h"
#include "linux/frameworks/IOKit/Services.h"

namespace {

NSDictionary* Properties() {
    const std::optional<int64_t> idle = IdleNanoseconds();
    return idle ? @{@"HIDIdleTime" : [NSNumber numberWithLongLong:*idle]} : nil;
}

}  // namespace

const Service kHIDSystem = {@"IOHIDSystem", Properties};
