// What a program finds when it starts, whatever the environment says.
#include <gtest/gtest.h>
#include <sys/utsname.h>

#include <array>
#include <clocale>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <sstream>
#include <string>

#include "tests/support/AppleBundle.h"
#include "tests/support/Command.h"

namespace {

class Start : public testing::Test {
  protected:
    /// Runs the probe with these variables and arguments alone; its facts, standard error included.
    std::map<std::string, std::string> Probe(const std::string& variables,
                                             const std::string& arguments = "",
                                             const std::string& program = KS_PROBE) {
        const std::string command = "env -i \"LSAN_OPTIONS=$LSAN_OPTIONS\" " + variables + " " +
                                    program + " " + arguments + " 2>&1";
        const std::unique_ptr<FILE, decltype(&pclose)> pipe(popen(command.c_str(), "r"), &pclose);
        std::array<char, 4096> buffer;
        std::string output;
        while (const size_t count = fread(buffer.data(), 1, buffer.size(), pipe.get())) {
            output.append(buffer.data(), count);
        }
        std::map<std::string, std::string> facts;
        std::istringstream lines(output);
        for (std::string line; std::getline(lines, line);) {
            const size_t sign = line.find('=');
            EXPECT_NE(sign, std::string::npos) << "unexpected output: " << line;
            facts[line.substr(0, sign)] = line.substr(std::min(sign + 1, line.size()));
        }
        return facts;
    }
};

TEST_F(Start, TheCLocaleAndTheEncodingAreTheSameUnderAnyLanguage) {
    for (const std::string language :
         {"LANG=C", "LANG=C.UTF-8", "LC_ALL=C.UTF-8", "LANG=de_DE.UTF-8", "LC_ALL=de_DE@euro",
          "LC_NUMERIC=de_DE.UTF-8", "LANG=tr_TR.ISO-8859-9", "LANG=nonsense", "",
          "GNUSTEP_STRING_ENCODING=NSISOLatin1StringEncoding",
          "GNUSTEP_STRING_ENCODING=NSMacOSRomanStringEncoding", "GNUSTEP_PATH_HANDLING=windows"}) {
        auto facts = Probe(language);
        EXPECT_EQ(facts["locale"], "C") << language;
        EXPECT_EQ(facts["wide"], "bytes") << language;
        EXPECT_EQ(facts["narrow"], "bytes") << language;
        EXPECT_EQ(facts["encoding"], "MacOS Roman") << language;
        EXPECT_EQ(facts["c-string"], "√º") << language;
        EXPECT_EQ(facts["file"], "ü") << language;
        EXPECT_EQ(facts["path"], "a\\b:c") << language;
        EXPECT_EQ(facts["number"], "1.5") << language;
    }
}

TEST_F(Start, TheProgramItselfMayStillNameALocale) {
    EXPECT_STREQ(setlocale(LC_CTYPE, ""), "C");
    ASSERT_NE(setlocale(LC_CTYPE, "C.UTF-8"), nullptr) << "glibc brings this locale along";
    EXPECT_STREQ(setlocale(LC_CTYPE, nullptr), "C.UTF-8");
    EXPECT_STREQ(setlocale(LC_CTYPE, "C"), "C");
}

TEST_F(Start, ArgumentsAndEnvironmentArriveUnchanged) {
    auto facts = Probe("LANG=C KS_VARIABLE='ü 50%'", "'a b' -NSx ü --last");
    EXPECT_EQ(facts["process"], "standins_probe");
    EXPECT_EQ(facts["variable"], "ü 50%");
    EXPECT_EQ(facts["arguments"], KS_PROBE "|a b|-NSx|ü|--last");
}

TEST_F(Start, BytesThatAreNotUtf8AreTakenForLatin1) {
    auto facts = Probe("LANG=C KS_VARIABLE=\"$(printf 'a\\377')\"", "\"$(printf '\\377\\376')\" ü");
    EXPECT_EQ(facts["variable"], "aÿ");
    EXPECT_EQ(facts["arguments"], KS_PROBE "|ÿþ|ü");
}

TEST_F(Start, AProgramInABundleFindsTheBundle) {
    const TemporaryFolder folder;
    MakeBundle(folder, "My Tool.app", Entry("CFBundleIdentifier", "example.tool"));
    const std::string program = folder / "My Tool.app/Contents/MacOS/tool";
    std::filesystem::copy(KS_PROBE, program);
    auto facts = Probe("LD_LIBRARY_PATH=" KS_LIBRARIES, "", "'" + program + "'");
    EXPECT_EQ(facts["bundle"], folder / "My Tool.app");
    EXPECT_EQ(facts["identifier"], "example.tool");
    EXPECT_EQ(facts["process"], "tool");
}

TEST_F(Start, APlainProgramHasItsFolderForABundle) {
    auto facts = Probe("");
    EXPECT_EQ(facts["bundle"], KS_LIBRARIES);
    EXPECT_EQ(facts["identifier"], "(nil)");
}

TEST_F(Start, NothingIsLeftInTheHomeAndNothingIsSaid) {
    // Another folder is put in the place of the home, below which the build may lie itself.
    const std::string bind = std::string(" --dev-bind ") + KS_SOURCE + " " + KS_SOURCE +
                             " --dev-bind " + KS_LIBRARIES + " " + KS_LIBRARIES;
    const std::string command =
        "home=$(getent passwd $(id -u) | cut -d: -f6); "
        "bwrap --dev-bind / / --tmpfs \"$home\"" +
        bind +
        " sh -c 'env -i \"LSAN_OPTIONS=$LSAN_OPTIONS\" " KS_PROBE
        " >/dev/null; find \"$0\" -mindepth 1 -path " KS_SOURCE " -prune -o -path " KS_LIBRARIES
        " -prune -o \\( -path \"*GNUstep*\" -o -path \"*Library*\" \\) -print' \"$home\" 2>&1";
    EXPECT_EQ(OutputOf(command), "");
}

TEST_F(Start, TheVersionIsTheKernelsWhereNoMacIs) {
    utsname kernel{};
    ASSERT_EQ(uname(&kernel), 0);
    EXPECT_EQ(Probe("")["version"], kernel.release);
}

}  // namespace
