// Whole descriptions of errors, as the log shows them: here the keys are sorted and inner errors
// have no address, so that two runs log the same lines.
#include <gtest/gtest.h>

#include "tests/support/ErrorChecks.h"
#include "tests/support/TemporaryFolder.h"

namespace {

class ErrorLines : public testing::Test {
  protected:
    void ExpectLine(const std::string& line) { EXPECT_EQ(Text([error_ description]), line); }

    NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
    NSFileManager* files_ = [NSFileManager defaultManager];
    TemporaryFolder folder_;
    NSError* error_ = nil;

    ~ErrorLines() override { [pool_ release]; }
};

TEST_F(ErrorLines, OfAMissingFile) {
    [NSString stringWithContentsOfFile:Text(folder_ / "missing")
                              encoding:NSUTF8StringEncoding
                                 error:&error_];
    ExpectLine("Error Domain=NSCocoaErrorDomain Code=260 \"The file “missing” couldn’t be opened "
               "because there is no such file.\" UserInfo={NSFilePath=" +
               (folder_ / "missing") +
               ", NSUnderlyingError={Error Domain=NSPOSIXErrorDomain Code=2 \"No such file or "
               "directory\"}}");
}

TEST_F(ErrorLines, OfAFolderThatCannotBeMade) {
    folder_.MakeFolder("closed", 0555);
    const OrdinaryUser user;
    [files_ createDirectoryAtPath:Text(folder_ / "closed/a/b")
        withIntermediateDirectories:YES
                         attributes:nil
                              error:&error_];
    ExpectLine("Error Domain=NSCocoaErrorDomain Code=513 \"You don’t have permission to save "
               "the file “b” in the folder “a”.\" UserInfo={NSFilePath=" +
               (folder_ / "closed/a/b") +
               ", NSUnderlyingError={Error Domain=NSPOSIXErrorDomain Code=13 "
               "\"Permission denied\"}}");
}

TEST_F(ErrorLines, OfAMissingFolder) {
    [files_ contentsOfDirectoryAtPath:Text(folder_ / "missing") error:&error_];
    ExpectLine("Error Domain=NSCocoaErrorDomain Code=260 \"The folder “missing” doesn’t exist.\" "
               "UserInfo={NSFilePath=" +
               (folder_ / "missing") +
               ", NSUnderlyingError={Error Domain=NSOSStatusErrorDomain Code=-43 \"fnfErr: File "
               "not found\"}, NSUserStringVariant=(\n    Folder\n)}");
}

TEST_F(ErrorLines, OfACopyWhoseTargetIsThere) {
    folder_.Write("a.json", "x");
    folder_.MakeFolder("Folder");
    folder_.Write("Folder/a.json", "y");
    [files_ copyItemAtPath:Text(folder_ / "a.json")
                    toPath:Text(folder_ / "Folder/a.json")
                     error:&error_];
    ExpectLine("Error Domain=NSCocoaErrorDomain Code=516 \"“a.json” couldn’t be copied to “Folder” "
               "because an item with the same name already exists.\" UserInfo="
               "{NSDestinationFilePath=" +
               (folder_ / "Folder/a.json") + ", NSFilePath=" + (folder_ / "a.json") +
               ", NSSourceFilePathErrorKey=" + (folder_ / "a.json") +
               ", NSUnderlyingError={Error Domain=NSPOSIXErrorDomain Code=17 \"File exists\"}"
               ", NSUserStringVariant=(\n    Copy\n)}");
}

TEST_F(ErrorLines, ListTheUserInfoSortedWithErrorsInBraces) {
    NSError* inner = [NSError errorWithDomain:@"Inner"
                                         code:1
                                     userInfo:@{NSLocalizedDescriptionKey : @"50 % of %@"}];
    error_ = [NSError errorWithDomain:@"Outer"
                                 code:2
                             userInfo:@{
                                 @"z" : @"last",
                                 @"a" : @3,
                                 NSUnderlyingErrorKey : inner,
                                 NSLocalizedDescriptionKey : @"told"
                             }];
    ExpectLine("Error Domain=Outer Code=2 \"told\" UserInfo={NSUnderlyingError={Error "
               "Domain=Inner Code=1 \"50 % of %@\"}, a=3, z=last}");
}

TEST_F(ErrorLines, LeaveOutTheSentenceAmongTheKeys) {
    error_ = [NSError
        errorWithDomain:@"Example"
                   code:1
               userInfo:@{@"NSDebugDescription" : @"deep", NSLocalizedDescriptionKey : @"told"}];
    ExpectLine("Error Domain=Example Code=1 \"deep\" UserInfo={NSDebugDescription=deep}");
}

}  // namespace
