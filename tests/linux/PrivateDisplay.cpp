#include "tests/linux/PrivateDisplay.h"

#include <X11/Xlib.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <system_error>

#include "linux/corrections/Descriptor.h"

namespace {

constexpr char kServer[] = "/usr/bin/Xvfb";

std::string ReadLine(int descriptor) {
    std::string line;
    for (char next = 0; read(descriptor, &next, 1) == 1 && next != '\n';) {
        line += next;
    }
    return line;
}

}  // namespace

PrivateDisplay::PrivateDisplay(const std::vector<std::string>& options) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    const Descriptor reading(ends[0]);
    Descriptor writing(ends[1]);
    std::vector<std::string> arguments{kServer,     "-displayfd", std::to_string(writing.get()),
                                       "-nolisten", "tcp",        "-noreset"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    server_.emplace(kServer, arguments);
    writing.Close();
    const std::string number = ReadLine(reading.get());
    if (number.empty()) {
        throw std::runtime_error("Xvfb did not start");
    }
    if (const char* display = std::getenv("DISPLAY")) {
        previous_ = display;
    }
    setenv("DISPLAY", (":" + number).c_str(), 1);
}

PrivateDisplay::~PrivateDisplay() {
    if (previous_) {
        setenv("DISPLAY", previous_->c_str(), 1);
    } else {
        unsetenv("DISPLAY");
    }
}

void PrivateDisplay::MoveMouse() const {
    const std::unique_ptr<Display, decltype(&XCloseDisplay)> display(XOpenDisplay(nullptr),
                                                                     &XCloseDisplay);
    static int position = 0;
    position = (position + 10) % 100;
    XWarpPointer(display.get(), None, DefaultRootWindow(display.get()), 0, 0, 0, 0, position,
                 position);
    XSync(display.get(), False);
}
