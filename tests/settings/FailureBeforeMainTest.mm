// A setting that cannot be stored while the process's logger is being built. The environment that
// the logger builds for itself stores the bundle's version; here the bundle has one, and storing it
// fails.
#include <gtest/gtest.h>

#include <filesystem>

#include "logging/CLogger.h"
#include "settings/KSEnvironement.h"
#include "tests/settings/FailureBeforeMain.h"
#include "tests/support/Files.h"
#include "tests/support/LogFile.h"
#include "tests/support/ReplacedMethod.h"

namespace {

int failures = 0;

id InfoDictionary(id /*bundle*/, SEL /*selector*/) {
    return [NSDictionary dictionaryWithObject:@"20240305" forKey:@"KSVersion"];
}

id Encoded(id /*receiver*/, SEL /*selector*/, id /*list*/, NSPropertyListFormat /*format*/,
           NSUInteger /*options*/, NSError** error) {
    ++failures;
    *error = [NSError errorWithDomain:@"Test" code:1 userInfo:nil];
    return nil;
}

ReplacedMethod* infoDictionary = nullptr;
ReplacedMethod* encoding = nullptr;

}  // namespace

bool MakeStoringFail() {
    infoDictionary =
        new ReplacedMethod(ReplacedMethod::InstanceMethod, [NSBundle class],
                           @selector(infoDictionary), reinterpret_cast<IMP>(InfoDictionary));
    encoding = new ReplacedMethod(ReplacedMethod::ClassMethod, [NSPropertyListSerialization class],
                                  @selector(dataWithPropertyList:format:options:error:),
                                  reinterpret_cast<IMP>(Encoded));
    return true;
}

namespace {

// In one test, because the machine's log and the shared environment have but one beginning.
TEST(FailureBeforeMain, IsSilentWhileTheLoggerIsBuiltAndLoggedFromThenOn) {
    // At least the environment of the log folder and the one of the logging switches.
    EXPECT_GE(failures, 2);

    const LogFile log;
    ASSERT_TRUE(
        CLogger::m_Logger.InitLogger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo));
    KSEnvironement::SharedEnvironement();  // the logger's mutex inside the environment's
    EXPECT_NE(log.Bytes().find("FAILURE : Coudn't save local data with error: "),
              std::string::npos);

    delete encoding;
    delete infoDictionary;
    for (const auto& entry : std::filesystem::directory_iterator("/Users/Shared/Keystrel/logs")) {
        EXPECT_EQ(ReadFile(entry.path()), "") << entry.path();
    }
}

}  // namespace
