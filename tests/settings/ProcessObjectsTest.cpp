// The process-wide objects: the order of their birth and of their end, and what lives on.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <time.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include "logging/CLogger.h"
#include "settings/KSEnvironement.h"
#include "tests/support/LogFile.h"
#include "tests/support/SettingsFiles.h"

namespace {

// Set before any object is built; none of them needs a constructor.
int events = 0;
int environmentWasThere = 0;
int logFolderWasMade = 0;
int numbersWereSeeded = 0;

const void* lastEnvironment = nullptr;
int environmentsFreed = 0;

const std::weak_ptr<KSEnvironement>* shared = nullptr;  // at the end: tells whether it lives

}  // namespace

// The logger asks for its folder while it is built.
extern "C" int mkdir(const char* path, mode_t mode) noexcept {
    if (std::strstr(path, "//logs") != nullptr && logFolderWasMade == 0) {
        logFolderWasMade = ++events;
        if (KSEnvironement::DEFAULT_APP_VERSION_NUMBER == "20200101") {
            environmentWasThere = 1;
        }
    }
    static const auto real = reinterpret_cast<decltype(&mkdir)>(dlsym(RTLD_NEXT, "mkdir"));
    return real(path, mode);
}

// The random numbers are seeded by the clock.
std::chrono::system_clock::time_point std::chrono::system_clock::now() noexcept {
    if (numbersWereSeeded == 0) {
        numbersWereSeeded = ++events;
    }
    timespec time = {};
    clock_gettime(CLOCK_REALTIME, &time);
    return time_point(seconds(time.tv_sec) + nanoseconds(time.tv_nsec));
}

extern "C" int fclose(FILE* file) {
    if (shared != nullptr) {
        std::fputs(shared->expired() ? "log after environment\n" : "log before environment\n",
                   stderr);
    }
    static const auto real = reinterpret_cast<decltype(&fclose)>(dlsym(RTLD_NEXT, "fclose"));
    return real(file);
}

void* operator new(size_t size) {
    void* const memory = std::malloc(size != 0 ? size : 1);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    if (size == sizeof(KSEnvironement)) {
        lastEnvironment = memory;
    }
    return memory;
}
void operator delete(void* memory) noexcept {
    if (memory != nullptr && memory == lastEnvironment) {
        lastEnvironment = nullptr;
        ++environmentsFreed;
    }
    std::free(memory);
}
void operator delete(void* memory, size_t /*size*/) noexcept {
    operator delete(memory);
}

namespace {

class ProcessObjects : public SettingsFiles {};

TEST_F(ProcessObjects, AreBuiltEnvironmentFirstThenTheLoggerThenTheRandomNumbers) {
    EXPECT_EQ(environmentWasThere, 1);
    EXPECT_EQ(logFolderWasMade, 1);
    EXPECT_EQ(numbersWereSeeded, 2);
}

TEST_F(ProcessObjects, EndInReverse) {
    const LogFile log;
    EXPECT_EXIT(
        {
            CLogger::m_Logger.InitLogger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo);
            shared = new std::weak_ptr<KSEnvironement>(KSEnvironement::SharedEnvironement());
            std::exit(0);
        },
        testing::ExitedWithCode(0), "^log before environment\n$");
}

TEST_F(ProcessObjects, TheLoggersEnvironmentLivesOnWhileLoggingIsOn) {
    CLogger logger("", "", false, nullptr, 0, CLogger::LevelNone);
    environmentsFreed = 0;
    EXPECT_FALSE(logger.DefaultInitWindows());
    EXPECT_EQ(environmentsFreed, 1);
    WriteXml(file, "{'KSLoggingEnabled': '1'}");
    EXPECT_TRUE(logger.DefaultInitMac());
    EXPECT_EQ(environmentsFreed, 1);
    EXPECT_NE(lastEnvironment, nullptr);
}

// Also after a failure: what was on stays on, and silent.
TEST_F(ProcessObjects, TheLogIsOnFromItsFirstSuccess) {
    const LogFile log;
    CLogger& logger = CLogger::m_Logger;
    EXPECT_FALSE(CLogger::IsEnabled());
    EXPECT_FALSE(CLogger::IsEncryptionEnable());
    EXPECT_FALSE(logger.InitLogger("", "", false, nullptr, 0, CLogger::LevelInfo));
    EXPECT_FALSE(logger.InitLogger("/missing/log", "", false, nullptr, 0, CLogger::LevelInfo));
    EXPECT_FALSE(logger.InitLogger(log.Path(), "", true, nullptr, 0, CLogger::LevelInfo));
    EXPECT_TRUE(logger.InitLogger(log.Path(), "", false, nullptr, 0, CLogger::LevelNone));
    EXPECT_FALSE(CLogger::IsEnabled());
    EXPECT_TRUE(logger.InitLogger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo));
    EXPECT_TRUE(CLogger::IsEnabled());
    EXPECT_TRUE(logger.InitLogger(log.Path(), "", false, nullptr, 0, CLogger::LevelNone));
    EXPECT_FALSE(logger.InitLogger("", "", false, nullptr, 0, CLogger::LevelInfo));
    EXPECT_TRUE(CLogger::IsEnabled());
}

}  // namespace
