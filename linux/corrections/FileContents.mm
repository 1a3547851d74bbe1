#include "linux/corrections/FileContents.h"

#include "linux/corrections/CocoaErrors.h"
#include "linux/corrections/FileSystemPath.h"

bool ReadFile(NSString* path, std::string& bytes, NSError** error) {
    std::string file;
    if (!FileSystemPath(path, file)) {
        return Fail(error, FileError(NSFileReadInvalidFileNameError, ReadingFailed(path), path, 0));
    }
    if (const int posixError = ReadFileBytes(file.c_str(), bytes)) {
        return Fail(error,
                    FileError(CocoaReadingCode(posixError), ReadingFailed(path), path, posixError));
    }
    return true;
}

BOOL WriteFile(NSString* path, NSData* bytes, WriteMode mode, NSError** error) {
    std::string file;
    if (!FileSystemPath(path, file)) {
        return Fail(error,
                    FileError(NSFileWriteInvalidFileNameError, WritingFailed(path), path, 0));
    }
    if (const int posixError = WriteFileBytes(file.c_str(), [bytes bytes], [bytes length], mode)) {
        return Fail(error,
                    FileError(CocoaWritingCode(posixError), WritingFailed(path), path, posixError));
    }
    return YES;
}

NSString* ReadingFailed(NSString* path) {
    return [NSString stringWithFormat:@"The file %@ couldn’t be opened", QuotedName(path)];
}

NSString* WritingFailed(NSString* path) {
    return [NSString stringWithFormat:@"The file %@ couldn’t be saved in the folder %@",
                                      QuotedName(path), QuotedFolderName(path)];
}
