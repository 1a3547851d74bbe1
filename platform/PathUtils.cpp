#include "platform/PathUtils.h"

#include <algorithm>

#include "platform/PathUtilsBridges.h"

namespace {

constexpr wchar_t kSeparator = L'\\';
constexpr wchar_t kSlash = L'/';
constexpr wchar_t kDot = L'.';
constexpr wchar_t kBlank = L' ';
constexpr const wchar_t* kSeparatorAndBlank = L"\\ ";
constexpr const char* kJoint = "//";

// The path up to its last character that is not among `characters`.
std::wstring WithoutEnding(const std::wstring& path, const std::wstring& characters) {
    return path.substr(0, path.find_last_not_of(characters) + 1);
}

// For both widths of text.
template <typename Text>
bool EndsInSeparator(const Text& path) {
    const size_t last = path.find_last_not_of(static_cast<typename Text::value_type>(kBlank));
    return last != Text::npos && path[last] == static_cast<typename Text::value_type>(kSeparator);
}

// The next separator behind the position `after`; a leading one names no folder.
size_t NextSeparator(const std::wstring& path, size_t after) {
    return path.find(kSeparator, after + 1);
}

}  // namespace

void PathUtils::SetPath(const std::wstring& newPath) {
    storedPath = newPath;
}

const std::wstring& PathUtils::Path() const {
    return storedPath;
}

void PathUtils::Append(const std::wstring& part) {
    storedPath = WithoutEnding(storedPath, kSeparatorAndBlank) + kSeparator + part;
}

std::wstring PathUtils::GetFileName(const std::wstring& path) {
    return path.substr(path.rfind(kSeparator) + 1);
}

std::wstring PathUtils::GetParentFolder(const std::wstring& path) {
    const size_t slash = path.rfind(kSlash);
    return slash == std::wstring::npos ? std::wstring() : path.substr(0, slash);
}

std::wstring PathUtils::ChangeFileExt(const std::wstring& path, const std::wstring& extension) {
    const size_t dot = path.rfind(kDot);
    const size_t separator = path.rfind(kSeparator);
    const bool hasExtension =
        dot != std::wstring::npos && (separator == std::wstring::npos || dot > separator);
    return (hasExtension ? path.substr(0, dot) : path) + extension;
}

std::wstring PathUtils::ChangeSeparator(const std::wstring& path) {
    std::wstring changed = path;
    std::replace(changed.begin(), changed.end(), kSeparator, kSlash);
    return changed;
}

std::wstring PathUtils::RemoveEndingSeparator(const std::wstring& path) {
    return WithoutEnding(WithoutEnding(path, {kBlank}), {kSeparator});
}

bool PathUtils::IsEndingInSeparator(const std::wstring& path) {
    return EndsInSeparator(path);
}

bool PathUtils::IsEndingInSeparator(const std::string& path) {
    return EndsInSeparator(path);
}

std::wstring PathUtils::EnsureIsEndingInSeparator(const std::wstring& path) {
    return path.empty() || IsEndingInSeparator(path) ? path : path + kSeparator;
}

std::string PathUtils::CombinePaths(const std::string& first, const std::string& second) {
    // Meant: tested for a backslash, joined with slashes.
    return IsEndingInSeparator(first) ? first + second : first + kJoint + second;
}

std::wstring PathUtils::FromModuleFileName() {
    return FromModuleFileNameBridge();
}

bool PathUtils::DirectoryExists(const std::wstring& path) {
    return DirectoryExistsBridge(path);
}

bool PathUtils::EnsureFolderExists(const std::wstring& path) {
    const std::wstring whole = RemoveEndingSeparator(path);
    if (whole.empty() || DirectoryExists(whole)) {
        return true;
    }
    size_t end = 0;
    do {
        end = NextSeparator(whole, end);
        const std::wstring folder = whole.substr(0, end);
        if (!DirectoryExists(folder) && !CreateDirectoryBridge(folder)) {
            return false;
        }
    } while (end != std::wstring::npos);
    return true;
}

bool PathUtils::EnsureFolderPath() const {
    bool allExisted = true;
    for (size_t end = NextSeparator(storedPath, 0); end != std::wstring::npos;
         end = NextSeparator(storedPath, end)) {
        allExisted = EnsureFolderPathBridge(storedPath.substr(0, end)) && allExisted;
    }
    return allExisted;
}

std::wstring PathUtils::ExpandPath(const std::wstring& path) {
    return ExpandPathBridge(path);
}

std::vector<std::wstring> PathUtils::EnumAllItemsInFolder(const std::wstring& folder,
                                                          bool foldersOnly) {
    return EnumAllItemsInFolderBridge(folder, foldersOnly);
}

bool PathUtils::FileExists(const std::string& path) {
    return FileExistsBridge(path);
}

bool PathUtils::KSDeleteFile(const std::string& path, long* errorCode) {
    return KSDeleteFileBridge(path, errorCode);
}

bool PathUtils::KSDeleteFolder(const std::string& path) {
    return KSDeleteFolderBridge(path);
}

bool PathUtils::KSCopyFile(const std::string& source, const std::string& destination,
                           bool overwrite) {
    return KSCopyFileBridge(source, destination, overwrite);
}

bool PathUtils::KSMoveFile(const std::string& source, const std::string& destination,
                           bool overwrite) {
    return KSMoveFileBridge(source, destination, overwrite);
}
