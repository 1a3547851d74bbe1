#include "linux/frameworks/IOKit/IdleTime.h"

#include <X11/extensions/scrnsaver.h>

#include <memory>

namespace {

constexpr int64_t kNanosecondsPerMillisecond = 1'000'000;

}  // namespace

std::optional<int64_t> IdleNanoseconds() {
    const std::unique_ptr<Display, decltype(&XCloseDisplay)> display(XOpenDisplay(nullptr),
                                                                     &XCloseDisplay);
    int firstEvent = 0;
    int firstError = 0;
    if (!display || !XScreenSaverQueryExtension(display.get(), &firstEvent, &firstError)) {
        return std::nullopt;
    }
    XScreenSaverInfo info{};
    if (!XScreenSaverQueryInfo(display.get(), DefaultRootWindow(display.get()), &info)) {
        return std::nullopt;
    }
    return static_cast<int64_t>(info.idle) * kNanosecondsPerMillisecond;
}
