#include "Security/RunProgram.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>

extern char** environ;

namespace {

constexpr int kNotStarted = 127;

class Pipe {
  public:
    Pipe() { valid = pipe2(ends.data(), O_CLOEXEC) == 0; }
    ~Pipe() {
        CloseReader();
        CloseWriter();
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    bool IsValid() const { return valid; }
    int Reader() const { return ends[0]; }
    int Writer() const { return ends[1]; }
    void CloseReader() { Close(ends[0]); }
    void CloseWriter() { Close(ends[1]); }

  private:
    static void Close(int& end) {
        if (end >= 0) {
            close(end);
            end = -1;
        }
    }

    std::array<int, 2> ends = {-1, -1};
    bool valid = false;
};

// Appends what can be read now; false at the end.
bool ReadSome(int descriptor, std::string& text) {
    std::array<char, 65536> chunk;
    const ssize_t count = read(descriptor, chunk.data(), chunk.size());
    if (count > 0) {
        text.append(chunk.data(), static_cast<size_t>(count));
        return true;
    }
    return count < 0 && errno == EINTR;
}

// Reads both pipes at once, so that a child that fills one of them never waits for us.
void Collect(Pipe& output, Pipe& errors, ProgramResult& result) {
    std::array<pollfd, 2> sources = {{{output.Reader(), POLLIN, 0}, {errors.Reader(), POLLIN, 0}}};
    const std::array<std::string*, 2> texts = {&result.output, &result.errors};
    int open = 2;
    while (open > 0) {
        if (poll(sources.data(), sources.size(), -1) < 0) {
            if (errno != EINTR) {
                return;
            }
            continue;
        }
        for (size_t i = 0; i < sources.size(); ++i) {
            if (sources[i].fd >= 0 && sources[i].revents != 0 &&
                !ReadSome(sources[i].fd, *texts[i])) {
                sources[i].fd = -1;
                --open;
            }
        }
    }
}

int WaitFor(pid_t child) {
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            return kNotStarted;
        }
    }
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace

ProgramResult RunProgram(const std::vector<std::string>& arguments) {
    ProgramResult result = {kNotStarted, "", ""};
    Pipe output;
    Pipe errors;
    if (!output.IsValid() || !errors.IsValid()) {
        return result;
    }
    std::vector<char*> words;
    for (const std::string& argument : arguments) {
        words.push_back(const_cast<char*>(argument.c_str()));
    }
    words.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, output.Writer(), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errors.Writer(), STDERR_FILENO);
    pid_t child = 0;
    const int failure = posix_spawnp(&child, words[0], &actions, nullptr, words.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (failure != 0) {
        return result;
    }
    output.CloseWriter();
    errors.CloseWriter();
    Collect(output, errors, result);
    result.status = WaitFor(child);
    return result;
}
