#include "tests/support/ChildProcess.h"

#include <sched.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace {

struct FileActions : posix_spawn_file_actions_t {
    FileActions() { posix_spawn_file_actions_init(this); }
    ~FileActions() { posix_spawn_file_actions_destroy(this); }
};

std::array<int, 2> Pipe() {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    return ends;
}

/// The kernel lets the parent go on a moment before it shows the new program's arguments.
void WaitForCommandLine(pid_t process) {
    const std::string path = "/proc/" + std::to_string(process) + "/cmdline";
    while (std::ifstream(path, std::ios::binary).peek() == std::ifstream::traits_type::eof()) {
        siginfo_t ended{};
        if (waitid(P_PID, static_cast<id_t>(process), &ended, WEXITED | WNOHANG | WNOWAIT) != 0 ||
            ended.si_pid != 0) {
            return;
        }
        sched_yield();
    }
}

}  // namespace

Announcement::Announcement() : Announcement(Pipe()) {}

Announcement::Announcement(const std::array<int, 2>& ends) : reading_(ends[0]), writing_(ends[1]) {}

std::string Announcement::Read() {
    writing_.Close();
    std::string line;
    for (char next = 0; read(reading_.get(), &next, 1) == 1 && next != '\n';) {
        line += next;
    }
    if (line.empty()) {
        throw std::runtime_error("the program ended without a word");
    }
    return line;
}

ChildProcess::ChildProcess(const std::string& program, const std::vector<std::string>& arguments,
                           const std::string& folder) {
    std::vector<char*> pointers;
    for (const std::string& argument : arguments) {
        pointers.push_back(const_cast<char*>(argument.c_str()));
    }
    pointers.push_back(nullptr);
    FileActions actions;
    if (!folder.empty()) {
        posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
    }
    const int error =
        posix_spawn(&process_, program.c_str(), &actions, nullptr, pointers.data(), environ);
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), program);
    }
    WaitForCommandLine(process_);
}

ChildProcess::~ChildProcess() {
    if (process_ > 0) {
        kill(process_, SIGKILL);
        Wait();
    }
}

int ChildProcess::Wait() {
    int status = 0;
    waitpid(process_, &status, 0);
    process_ = 0;
    return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
}
