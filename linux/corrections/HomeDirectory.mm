// On a Mac the home folder is the one of the user's record, whatever HOME says; HOME counts only
// for a user without a record. GNUstep looks the record up by LOGNAME's name and answers "/" or
// nothing without one.
#include <Foundation/Foundation.h>
#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

constexpr size_t kFirstRecordSize = 1024;
constexpr size_t kLargestRecordSize = 1024 * 1024;
constexpr char kNoHome[] = "/var/empty";

std::string RecordedHome(uid_t user) {
    for (size_t size = kFirstRecordSize; size <= kLargestRecordSize; size *= 2) {
        std::vector<char> buffer(size);
        passwd record;
        passwd* found = nullptr;
        if (getpwuid_r(user, &record, buffer.data(), buffer.size(), &found) != ERANGE) {
            return found != nullptr && found->pw_dir != nullptr ? found->pw_dir : "";
        }
    }
    return "";
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
