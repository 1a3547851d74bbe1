#include <gtest/gtest.h>

#include "tests/linux/ErrorChecks.h"

namespace {

std::string Printed(NSError* error) {
    return Text([NSString stringWithFormat:@"%@", error]);
}

TEST(ErrorDescription, TellsDomainAndCodeOfAnErrorWithoutFurtherInformation) {
    @autoreleasepool {
        NSError* error = [NSError errorWithDomain:@"Example" code:-7 userInfo:nil];
        EXPECT_EQ(Text([error localizedDescription]),
                  "The operation couldn’t be completed. (Example error -7.)");
        EXPECT_EQ(Printed(error),
                  "Error Domain=Example Code=-7 \"The operation couldn’t be completed. (Example "
                  "error -7.)\"");
    }
}

TEST(ErrorDescription, TellsTheSystemsTextOfAPosixError) {
    @autoreleasepool {
        NSError* error = [NSError errorWithDomain:NSPOSIXErrorDomain code:2 userInfo:nil];
        EXPECT_EQ(Text([error localizedDescription]),
                  "The operation couldn’t be completed. No such file or directory");
        EXPECT_EQ(Printed(error),
                  "Error Domain=NSPOSIXErrorDomain Code=2 \"No such file or directory\"");
        error = [NSError errorWithDomain:NSPOSIXErrorDomain code:66 userInfo:nil];
        EXPECT_EQ(Printed(error),
                  "Error Domain=NSPOSIXErrorDomain Code=66 \"Directory not empty\"");
    }
}

TEST(ErrorDescription, QuotesWhatIsMeantForProgrammersWhenThereIsSuch) {
    @autoreleasepool {
        NSError* error = [NSError errorWithDomain:@"Example"
                                             code:1
                                         userInfo:@{
                                             @"NSDebugDescription" : @"deep",
                                             NSLocalizedDescriptionKey : @"told"
                                         }];
        EXPECT_EQ(Printed(error),
                  "Error Domain=Example Code=1 \"deep\" UserInfo={NSDebugDescription=deep}");
    }
}

TEST(ErrorDescription, ListsTheUserInfoSortedWithErrorsInBraces) {
    @autoreleasepool {
        NSError* inner = [NSError errorWithDomain:@"Inner"
                                             code:1
                                         userInfo:@{NSLocalizedDescriptionKey : @"50 % of %@"}];
        NSError* error = [NSError errorWithDomain:@"Outer"
                                             code:2
                                         userInfo:@{
                                             @"z" : @"last",
                                             @"a" : @3,
                                             NSUnderlyingErrorKey : inner,
                                             NSLocalizedDescriptionKey : @"told"
                                         }];
        EXPECT_EQ(Printed(error),
                  "Error Domain=Outer Code=2 \"told\" UserInfo={NSUnderlyingError={Error "
                  "Domain=Inner Code=1 \"50 % of %@\"}, a=3, z=last}");
        EXPECT_EQ(Text([error localizedDescription]), "told");
    }
}

TEST(ErrorDescription, OfNoErrorIsNull) {
    @autoreleasepool {
        EXPECT_EQ(Printed(nil), "(null)");
    }
}

}  // namespace
