// The path rules, against regular expressions that say the same.
#include <fuzzer/FuzzedDataProvider.h>

#include <regex>

#include "platform/PathUtils.h"
#include "tests/fuzz/Require.h"

namespace {

constexpr std::size_t kLongest = 24;  // a regular expression takes stack for every letter

// A text of few letters, so that separators meet.
std::wstring Take(FuzzedDataProvider& input) {
    constexpr wchar_t kLetters[] = {L'\\', L'/', L'.', L' ', L'a', L'\0', L'\n', L'\U0001F511'};
    std::wstring text;
    for (const char byte :
         input.ConsumeBytesAsString(input.ConsumeIntegralInRange<std::size_t>(0, kLongest))) {
        text += kLetters[static_cast<unsigned char>(byte) % std::size(kLetters)];
    }
    return text;
}

// Made once: making them takes longer than using them.
const std::wregex kSlash(L"/");
const std::wregex kBackslash(LR"(\\)");
const std::wregex kBeforeName(LR"(^[^]*\\)");
const std::wregex kBehindFolder(LR"(/[^/]*$)");
const std::wregex kEndingSeparators(LR"(\\* *$)");
const std::wregex kEndingSeparator(LR"(\\ *$)");
const std::wregex kEnding(LR"([\\ ]*$)");
const std::wregex kExtension(LR"(\.[^.\\]*$)");

std::wstring Without(const std::wstring& text, const std::wregex& pattern) {
    return std::regex_replace(text, pattern, L"", std::regex_constants::format_first_only);
}

bool Has(const std::wstring& text, const std::wregex& pattern) {
    return std::regex_search(text, pattern);
}

std::string Narrow(const std::wstring& text) {
    return std::string(text.begin(), text.end());
}

void CheckOne(const std::wstring& path) {
    REQUIRE(PathUtils::GetFileName(path) == Without(path, kBeforeName));
    REQUIRE(PathUtils::GetParentFolder(path) ==
            (Has(path, kSlash) ? Without(path, kBehindFolder) : L""));
    REQUIRE(PathUtils::ChangeSeparator(path) == std::regex_replace(path, kBackslash, L"/"));
    REQUIRE(PathUtils::RemoveEndingSeparator(path) == Without(path, kEndingSeparators));
    const bool ends = Has(path, kEndingSeparator);
    REQUIRE(PathUtils::IsEndingInSeparator(path) == ends);
    REQUIRE(PathUtils::IsEndingInSeparator(Narrow(path)) == ends);
    REQUIRE(PathUtils::EnsureIsEndingInSeparator(path) ==
            (path.empty() || ends ? path : path + L"\\"));
}

void CheckTwo(const std::wstring& path, const std::wstring& part) {
    REQUIRE(PathUtils::ChangeFileExt(path, part) == Without(path, kExtension) + part);
    const std::string first = Narrow(path);
    const std::string second = Narrow(part);
    REQUIRE(PathUtils::CombinePaths(first, second) ==
            first + (Has(path, kEndingSeparator) ? "" : "//") + second);
    PathUtils utils;
    utils.SetPath(path);
    utils.Append(part);
    REQUIRE(utils.Path() == Without(path, kEnding) + L"\\" + part);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const std::wstring path = Take(input);
    CheckOne(path);
    CheckTwo(path, Take(input));
    return 0;
}
