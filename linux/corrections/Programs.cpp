#include "linux/corrections/Programs.h"

#include <fcntl.h>
#include <glib.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

namespace {

constexpr int kNotStarted = 127;

std::vector<char*> Pointers(const Words& words) {
    std::vector<char*> pointers;
    for (const std::string& word : words) {
        pointers.push_back(const_cast<char*>(word.c_str()));
    }
    pointers.push_back(nullptr);
    return pointers;
}

// Posix_spawn, unlike GLib, takes a file that is no program for what it is, and not for a script.
int Spawn(char* const* words, Output output) {
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    if (output == Output::Nowhere) {
        for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
            posix_spawn_file_actions_addopen(&files, standard, "/dev/null", O_RDWR, 0);
        }
    }
    posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    return posix_spawn(nullptr, words[0], &files, &attributes, words, environ);
}

}  // namespace

ProgramResult RunProgram(const Words& words) {
    g_autofree char* output = nullptr;
    g_autofree char* errors = nullptr;
    int status = 0;
    if (!g_spawn_sync(nullptr, Pointers(words).data(), nullptr, G_SPAWN_SEARCH_PATH, nullptr,
                      nullptr, &output, &errors, &status, nullptr)) {
        return {kNotStarted, "", ""};
    }
    return {WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status), output, errors};
}

int StartDetached(const std::string& program, const Words& arguments, Output output) {
    Words words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    const std::vector<char*> pointers = Pointers(words);
    // A process in between ends at once, and the program belongs to the first process of all.
    const pid_t between = fork();
    if (between < 0) {
        return errno;
    }
    if (between == 0) {
        _exit(Spawn(pointers.data(), output));
    }
    int status = 0;
    while (waitpid(between, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : ECHILD;
}
