#include "linux/frameworks/AppKit/RunningProcesses.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>

namespace fs = std::filesystem;

namespace {

const fs::path kProcesses = "/proc";
constexpr char kInsideBundle[] = ".app/Contents/MacOS/";
constexpr size_t kBundleExtension = sizeof(".app") - 1;

/// The first word of a process's command line. It is read, and not where "exe" points to, because
/// every user may read it.
std::string FirstWord(const fs::path& process) {
    std::string word;
    std::ifstream file(process / "cmdline", std::ios::binary);
    std::getline(file, word, '\0');
    return word;
}

/// A relative path stands for something below the folder that the process works in; a bare name was
/// looked up somewhere else.
std::string AbsolutePath(const std::string& path, const fs::path& process) {
    std::error_code unknown;
    return path.find('/') == std::string::npos
               ? path
               : (fs::read_symlink(process / "cwd", unknown) / path).string();
}

/// Empty for a process that belongs to none.
std::string BundleOf(const fs::path& process) {
    const std::string program = AbsolutePath(FirstWord(process), process);
    const size_t inside = program.rfind(kInsideBundle);
    return inside == std::string::npos || inside == 0
               ? ""
               : program.substr(0, inside + kBundleExtension);
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
