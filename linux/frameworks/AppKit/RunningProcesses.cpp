#include "linux/frameworks/AppKit/RunningProcesses.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

namespace fs = std::filesystem;

namespace {

const fs::path kProcesses = "/proc";
constexpr char kInsideBundle[] = ".app/Contents/MacOS/";
constexpr size_t kBundleExtension = sizeof(".app") - 1;

/// An interpreter stands before its script, with at most one argument of its own in between.
constexpr size_t kWords = 3;

/// The first words of a process's command line. They are read, and not where "exe" points to,
/// because every user may read them.
std::vector<std::string> FirstWords(const fs::path& process) {
    std::vector<std::string> words;
    std::ifstream file(process / "cmdline", std::ios::binary);
    for (std::string word; words.size() < kWords && std::getline(file, word, '\0');) {
        words.push_back(word);
    }
    return words;
}

/// A relative path stands for something below the folder that the process works in; a bare name was
/// looked up somewhere else.
std::string AbsolutePath(const std::string& path, const fs::path& process) {
    std::error_code unknown;
    return path.find('/') == std::string::npos
               ? path
               : (fs::read_symlink(process / "cwd", unknown) / path).string();
}

/// Whether the file's first line names `program` as the interpreter, itself or through env.
bool IsScriptOf(const std::string& path, const std::string& program) {
    std::ifstream file(path);
    std::string line;
    if (!std::getline(file, line) || line.compare(0, 2, "#!") != 0) {
        return false;
    }
    std::istringstream named(line.substr(2));
    for (std::string word; named >> word;) {
        if (fs::path(word).filename() == fs::path(program).filename()) {
            return true;
        }
    }
    return false;
}

/// Empty for a process that belongs to none.
std::string BundleOf(const fs::path& process) {
    const std::vector<std::string> words = FirstWords(process);
    for (size_t i = 0; i < words.size(); ++i) {
        const std::string program = AbsolutePath(words[i], process);
        const size_t inside = program.rfind(kInsideBundle);
        if (inside != std::string::npos && inside != 0 &&
            (i == 0 || IsScriptOf(program, words[0]))) {
            return program.substr(0, inside + kBundleExtension);
        }
    }
    return "";
}

}  // namespace

std::vector<std::string> BundlesOfProcesses() {
    std::set<int> processes;
    std::error_code failed;
    for (fs::directory_iterator entry(kProcesses, failed), end; !failed && entry != end;
         entry.increment(failed)) {
        processes.insert(std::atoi(entry->path().filename().c_str()));
    }
    std::vector<std::string> bundles;
    bundles.reserve(processes.size());
    for (const int process : processes) {
        bundles.push_back(BundleOf(kProcesses / std::to_string(process)));
    }
    bundles.erase(std::remove(bundles.begin(), bundles.end(), ""), bundles.end());
    return bundles;
}
