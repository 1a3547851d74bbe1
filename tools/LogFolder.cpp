#include "tools/LogFolder.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace {

struct Closer {
    void operator()(DIR* folder) const { closedir(folder); }
};

bool ReadName(const char* name, std::array<int, 6>* started) {
    std::array<int, 6>& time = *started;
    int length = 0;
    sscanf(name, "%4d_%2d_%2d_%2d_%2d_%2d.log%n", &time[0], &time[1], &time[2], &time[3], &time[4],
           &time[5], &length);
    return length > 0 && name[length] == '\0';
}

}  // namespace

std::vector<LogFile> ListLogs(const std::string& folder, std::string* error) {
    std::vector<LogFile> logs;
    const std::unique_ptr<DIR, Closer> listing(opendir(folder.c_str()));
    if (listing == nullptr) {
        *error = strerror(errno);
        return logs;
    }
    while (const dirent* entry = readdir(listing.get())) {
        LogFile log = {folder + "/" + entry->d_name, {}, 0};
        struct stat found = {};
        if (ReadName(entry->d_name, &log.started) && stat(log.path.c_str(), &found) == 0 &&
            S_ISREG(found.st_mode)) {
            log.bytes = found.st_size;
            logs.push_back(log);
        }
    }
    std::sort(logs.begin(), logs.end(),
              [](const LogFile& one, const LogFile& other) { return one.started < other.started; });
    return logs;
}

std::string StartOf(const LogFile& log) {
    std::array<char, 80> text = {};
    const std::array<int, 6>& time = log.started;
    snprintf(text.data(), text.size(), "%04d-%02d-%02d %02d:%02d:%02d", time[0], time[1], time[2],
             time[3], time[4], time[5]);
    return text.data();
}
