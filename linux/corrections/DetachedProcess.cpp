#include "linux/corrections/DetachedProcess.h"

#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <linux/close_range.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

std::vector<char*> ArgumentVector(const std::string& program,
                                  const std::vector<std::string>& arguments) {
    std::vector<char*> vector{const_cast<char*>(program.c_str())};
    for (const std::string& argument : arguments) {
        vector.push_back(const_cast<char*>(argument.c_str()));
    }
    vector.push_back(nullptr);
    return vector;
}

void Silence() {
    const int nothing = open("/dev/null", O_RDWR);
    dup2(nothing, STDIN_FILENO);
    dup2(nothing, STDOUT_FILENO);
    dup2(nothing, STDERR_FILENO);
}

// In the child, where only system calls are safe. Becomes the program or returns an errno.
int Become(char* const* arguments, Output output) {
    setsid();
    const pid_t program = fork();
    if (program < 0) {
        return errno;
    }
    if (program > 0) {
        _exit(0);  // the program now belongs to the first process of all
    }
    if (output == Output::Nowhere) {
        Silence();
    }
    close_range(STDERR_FILENO + 1, UINT_MAX, CLOSE_RANGE_CLOEXEC);
    execv(arguments[0], arguments);
    return errno;
}

}  // namespace

int StartDetached(const std::string& program, const std::vector<std::string>& arguments,
                  Output output) {
    const std::vector<char*> vector = ArgumentVector(program, arguments);
    int report[2];
    if (pipe2(report, O_CLOEXEC) != 0) {
        return errno;
    }
    const pid_t child = fork();
    if (child == 0) {
        const int failure = Become(vector.data(), output);
        _exit(write(report[1], &failure, sizeof failure) == sizeof failure ? 0 : 1);
    }
    int failure = child < 0 ? errno : 0;
    close(report[1]);
    // Closed without a word by the program's start.
    while (child > 0 && read(report[0], &failure, sizeof failure) < 0 && errno == EINTR) {
    }
    close(report[0]);
    if (child > 0) {
        while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
    return failure;
}
