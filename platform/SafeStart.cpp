#include "platform/SafeStart.h"

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

namespace {

void OpenStandardDescriptors() {
    for (int standard = STDIN_FILENO; standard <= STDERR_FILENO; ++standard) {
        if (fcntl(standard, F_GETFD) == -1 && errno == EBADF) {
            open("/dev/null", O_RDWR);  // gets the lowest free number, which is this one
        }
    }
}

void DoNothing(int /*signal*/) {}

void Catch(int signal) {
    struct sigaction action = {};
    action.sa_handler = DoNothing;
    action.sa_flags = SA_RESTART;
    sigaction(signal, &action, nullptr);
}

}  // namespace

SafeStart::SafeStart() {
    OpenStandardDescriptors();
    Catch(SIGPIPE);
    Catch(SIGXFSZ);
}
