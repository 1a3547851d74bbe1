// On a Mac the home folder is the one of the user's record, whatever HOME says; HOME counts only
// for a user without a record. GNUstep looks the record up by LOGNAME's name and answers "/" or
// nothing without one.
#include <Foundation/Foundation.h>
#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <map>
#include <mutex>
#include <string>

namespace {

constexpr char kNoHome[] = "/var/empty";

std::string ReadRecordedHome(uid_t user) {
    std::array<char, 65536> buffer;  // many times any record
    passwd record;
    passwd* found = nullptr;
    getpwuid_r(user, &record, buffer.data(), buffer.size(), &found);
    return found != nullptr && found->pw_dir != nullptr ? found->pw_dir : "";
}

/// Read once a user: a run asks 80 times, and every time the file of users would be read again.
std::string RecordedHome(uid_t user) {
    static std::mutex mutex;
    static auto& homes = *new std::map<uid_t, std::string>;  // also after the end of main
    const std::lock_guard<std::mutex> lock(mutex);
    const auto [home, isNew] = homes.try_emplace(user);
    if (isNew) {
        home->second = ReadRecordedHome(user);
    }
    return home->second;
}

NSString* AbsolutePath(std::string path) {
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
    return path.empty() || path.front() != '/' ? nil : [NSString stringWithUTF8String:path.c_str()];
}

}  // namespace

NSString* NSHomeDirectory() {
    if (NSString* recorded = AbsolutePath(RecordedHome(geteuid()))) {
        return recorded;
    }
    const char* environment = std::getenv("HOME");
    if (NSString* named = AbsolutePath(environment == nullptr ? "" : environment)) {
        return named;
    }
    return [NSString stringWithUTF8String:kNoHome];
}
