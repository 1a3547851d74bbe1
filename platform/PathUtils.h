#pragma once

#include <string>
#include <vector>

/// The path rules of the product's cross-platform code, and its door to the file system.
///
/// The rules hold on this platform too, although its separator is another: a path is split and
/// tested at backslashes, and blanks at its end are ignored when testing for a separator there.
/// Only GetParentFolder splits at "/", CombinePaths joins with "//", and ChangeSeparator turns
/// backslashes into slashes. A path written with slashes alone is one single piece to the rest.
/// Meant: the rules are those of backslashes.
///
/// Nothing throws or logs. Paths are handed to the file system as they are: narrow ones in the
/// default C-string encoding, wide ones through the process's C locale. A path without a form there
/// counts as one at which nothing is and nothing can be made.
class PathUtils {
  public:
    /// The stored path, on which Append and EnsureFolderPath work; empty at first.
    void SetPath(const std::wstring& newPath);
    const std::wstring& Path() const;

    /// Strips backslashes and blanks, in any mix, from the end of the stored path, then adds a
    /// backslash and `part`.
    void Append(const std::wstring& part);

    /// The text after the last backslash; the whole path when there is none.
    static std::wstring GetFileName(const std::wstring& path);

    /// The text before the last "/"; empty when there is none.
    static std::wstring GetParentFolder(const std::wstring& path);

    /// The path without its extension, followed by `extension`, which brings its own dot. The
    /// extension is the text from the last "." on, unless a backslash comes after it.
    static std::wstring ChangeFileExt(const std::wstring& path, const std::wstring& extension);

    /// Every backslash becomes a "/".
    static std::wstring ChangeSeparator(const std::wstring& path);

    /// Strips blanks from the end, then backslashes.
    static std::wstring RemoveEndingSeparator(const std::wstring& path);

    /// Whether the last character that is no blank is a backslash.
    static bool IsEndingInSeparator(const std::wstring& path);
    static bool IsEndingInSeparator(const std::string& path);

    /// The path with a backslash added unless it IsEndingInSeparator; empty for an empty path.
    static std::wstring EnsureIsEndingInSeparator(const std::wstring& path);

    /// The two simply joined when the first IsEndingInSeparator, else joined by "//".
    static std::string CombinePaths(const std::string& first, const std::string& second);

    /// The path of the application's bundle.
    static std::wstring FromModuleFileName();

    /// Whether a folder exists at the path.
    static bool DirectoryExists(const std::wstring& path);

    /// Makes the folder, and the folders above it, where it does not exist. New folders get mode
    /// 0777; an existing one keeps its mode.
    /// @return whether the folder exists now; true for an empty path
    static bool EnsureFolderExists(const std::wstring& path);

    /// Makes, for each backslash after the first character of the stored path, the folder that the
    /// text before it names; the text after the last backslash is left alone.
    /// @return whether every one of these folders existed before (see PathUtils_Mac
    ///         EnsureFolderPath:); true for a path without such a backslash
    bool EnsureFolderPath() const;

    /// The path with a leading "~" replaced by the home folder.
    static std::wstring ExpandPath(const std::wstring& path);

    /// All paths below a folder, at every depth, relative to it, in the platform's order.
    /// @param foldersOnly  whether only folders are listed, links to folders among them
    /// @return empty for a folder that cannot be read; a name without a form in the process's C
    ///         locale is listed as an empty string
    static std::vector<std::wstring> EnumAllItemsInFolder(const std::wstring& folder,
                                                          bool foldersOnly);

    /// Whether something that is no folder exists at the path.
    static bool FileExists(const std::string& path);

    /// Removes a file; a folder or a missing path is left alone.
    /// @param errorCode  gets the platform's error code when the removal itself fails; may be null
    /// @return whether the file was there and is gone
    static bool KSDeleteFile(const std::string& path, long* errorCode);

    /// Removes a folder with all it holds; a file or a missing path is left alone.
    /// @return whether the folder was there and is gone
    static bool KSDeleteFolder(const std::string& path);

    /// Copies a file or a folder. Meant: `overwrite` does not help, as the platform refuses an
    /// existing destination and nobody removes it.
    /// @return whether the source exists and was copied
    static bool KSCopyFile(const std::string& source, const std::string& destination,
                           bool overwrite);

    /// Copies like KSCopyFile, then deletes the source, when it is a file. Meant: even if the copy
    /// failed.
    /// @return whether both succeeded
    static bool KSMoveFile(const std::string& source, const std::string& destination,
                           bool overwrite);

  private:
    std::wstring storedPath;
};
