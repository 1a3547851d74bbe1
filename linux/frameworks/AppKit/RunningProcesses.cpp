#include "linux/frameworks/AppKit/RunningProcesses.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <sstream>

#include "linux/corrections/Descriptor.h"

namespace {

constexpr char kProcesses[] = "/proc";
constexpr char kInsideBundle[] = ".app/Contents/MacOS/";
constexpr size_t kBundleExtension = sizeof(".app") - 1;

/// An interpreter stands before its script, with at most one argument of its own in between.
constexpr size_t kLastScriptArgument = 2;

std::string ProcessFile(pid_t process, const char* name) {
    return std::string(kProcesses) + '/' + std::to_string(process) + '/' + name;
}

std::string BaseName(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

std::vector<pid_t> Processes() {
    std::vector<pid_t> processes;
    const std::unique_ptr<DIR, decltype(&closedir)> folder(opendir(kProcesses), &closedir);
    if (!folder) {
        return processes;
    }
    while (const dirent* entry = readdir(folder.get())) {
        const int identifier = std::atoi(entry->d_name);
        if (identifier > 0) {
            processes.push_back(identifier);
        }
    }
    std::sort(processes.begin(), processes.end());
    return processes;
}

/// The first arguments of a process. They are read, and not where "exe" points to, because every
/// user may read them.
std::vector<std::string> FirstArguments(pid_t process) {
    std::array<char, 2 * PATH_MAX> buffer;
    const Descriptor file(open(ProcessFile(process, "cmdline").c_str(), O_RDONLY | O_CLOEXEC));
    const ssize_t count = file ? read(file.get(), buffer.data(), buffer.size()) : 0;
    std::vector<std::string> arguments;
    const char* const end = buffer.data() + std::max<ssize_t>(count, 0);
    for (const char* next = buffer.data(); next < end && arguments.size() <= kLastScriptArgument;) {
        const char* const last = std::find(next, end, '\0');
        arguments.emplace_back(next, last);
        next = last + 1;
    }
    return arguments;
}

/// A relative path stands for something below the folder that the process works in; a bare name was
/// looked up somewhere else.
std::string AbsolutePath(const std::string& path, pid_t process) {
    if (path.find('/') == std::string::npos || path.front() == '/') {
        return path;
    }
    char folder[PATH_MAX + 1] = {};
    if (readlink(ProcessFile(process, "cwd").c_str(), folder, PATH_MAX) < 0) {
        return path;
    }
    return std::string(folder) + '/' + path;
}

/// Whether the file's first line names `program` as the interpreter, itself or through env.
bool IsScriptOf(const std::string& path, const std::string& program) {
    std::ifstream file(path);
    std::string line;
    if (!std::getline(file, line) || line.compare(0, 2, "#!") != 0) {
        return false;
    }
    std::istringstream words(line.substr(2));
    const std::vector<std::string> named{std::istream_iterator<std::string>(words), {}};
    return std::any_of(named.begin(), named.end(), [&](const std::string& word) {
        return BaseName(word) == BaseName(program);
    });
}

std::optional<RunningProcess> ProcessOfBundle(pid_t process, const std::string& executable) {
    const size_t inside = executable.rfind(kInsideBundle);
    if (inside == std::string::npos || inside == 0) {
        return std::nullopt;
    }
    return RunningProcess{process, executable, executable.substr(0, inside + kBundleExtension)};
}

std::optional<RunningProcess> ProcessOfBundle(pid_t process) {
    const std::vector<std::string> arguments = FirstArguments(process);
    for (size_t i = 0; i < arguments.size(); ++i) {
        const auto found = ProcessOfBundle(process, AbsolutePath(arguments[i], process));
        if (found && (i == 0 || IsScriptOf(found->executable, arguments[0]))) {
            return found;
        }
    }
    return std::nullopt;
}

}  // namespace

std::vector<RunningProcess> RunningProcessesOfBundles() {
    std::vector<RunningProcess> running;
    for (const pid_t process : Processes()) {
        if (auto found = ProcessOfBundle(process)) {
            running.push_back(*found);
        }
    }
    return running;
}
