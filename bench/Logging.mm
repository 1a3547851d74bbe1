// One message, with a number and a name in it, to a file that is current after every message and to
// standard output. spdlog enciphers nothing: it is the peer of the enciphered log too.
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/sinks/stdout_sinks.h>
#include <spdlog/spdlog.h>

#include <cstring>
#include <fstream>
#include <iterator>

#include "bench/Contest.h"
#include "crypto/DecryptionEngine.h"
#include "logging/CLogger.h"
#include "logging/NSLogger.h"

namespace {

// A whole number of cipher blocks, so that the enciphered text ends like the plain one.
constexpr const char* kText = "Extension number 42 of 100 is not at /Applications/Keystrel.app.";
constexpr const char* kPlace = "/Applications/Keystrel.app";
const uint8_t kKey[AesEngine::kKeyBytes] = "a password";

std::string EndOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    const size_t length = std::min(bytes.size(), std::strlen(kText));
    return bytes.substr(bytes.size() - length);
}

std::string Deciphered(std::string text) {
    DecryptionEngine(kKey, sizeof kKey)
        .Decrypt(Data(text), Data(text), static_cast<uint32_t>(text.size()));
    return text;
}

/// @param setup  makes the log at a path
/// @param work   gets what `setup` gave and writes one message
template <typename Setup, typename Work>
void EnterLog(const std::string& row, const std::string& who, Setup setup, Work work) {
    const auto run = [=](benchmark::State& state) {
        const std::string path = "/Users/alex/" + row + "-" + who + ".log";
        auto log = setup(path);
        for (auto turn : state) {
            (void)turn;
            work(log);
        }
        const std::string end = EndOf(path);
        if (end != kText && Deciphered(end) != kText) {
            state.SkipWithError("wrong result");
        }
        state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
    };
    benchmark::RegisterBenchmark((row + "/" + who).c_str(), run);
}

auto OurLog(bool enciphered) {
    return [enciphered](const std::string& path) {
        return CLogger::m_Logger.InitLogger(path, "", enciphered, kKey, sizeof kKey,
                                            CLogger::LevelInfo);
    };
}

void WritePlainly(bool) {
    CLogger::WriteLog(CLogger::LevelInfo, "Extension number %d of %d is not at %s.", 42, 100,
                      kPlace);
}

void WriteThroughCocoa(bool) {
    @autoreleasepool {
        [NSLogger LogInformation:@"Extension number %d of %d is not at %@.", 42, 100,
                                 @"/Applications/Keystrel.app"];
    }
}

void EnterSpdlog(const std::string& row) {
    const auto setup = [](const std::string& path) {
        const spdlog::sinks_init_list sinks = {
            std::make_shared<spdlog::sinks::basic_file_sink_mt>(path),
            std::make_shared<spdlog::sinks::stdout_sink_mt>()};
        auto log = std::make_shared<spdlog::logger>("bench", sinks);
        log->set_formatter(std::make_unique<spdlog::pattern_formatter>(
            "\n%H:%M:%S - INFO : %v", spdlog::pattern_time_type::local, ""));
        log->flush_on(spdlog::level::info);
        return log;
    };
    EnterLog(row, "spdlog", setup, [](const std::shared_ptr<spdlog::logger>& log) {
        log->info("Extension number {} of {} is not at {}.", 42, 100, kPlace);
    });
}

}  // namespace

void EnterLogs() {
    EnterLog("log-plain", "ours", OurLog(false), WritePlainly);
    EnterLog("log-enciphered", "ours", OurLog(true), WritePlainly);
    EnterLog("log-cocoa", "ours", OurLog(false), WriteThroughCocoa);
    for (const char* row : {"log-plain", "log-enciphered", "log-cocoa"}) {
        EnterSpdlog(row);
    }
}
