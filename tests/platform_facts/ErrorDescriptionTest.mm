// How an error describes itself. The order and the form of its keys vary, and inner errors have an
// address: only what stands before them is looked at.
#include <gtest/gtest.h>

#include "tests/support/ErrorChecks.h"

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

TEST(ErrorDescription, QuotesTheSentenceThatTheErrorBrings) {
    @autoreleasepool {
        NSError* error = [NSError errorWithDomain:@"Outer"
                                             code:2
                                         userInfo:@{NSLocalizedDescriptionKey : @"50 % of %@"}];
        EXPECT_EQ(Printed(error).rfind("Error Domain=Outer Code=2 \"50 % of %@\"", 0), 0U);
        EXPECT_EQ(Text([error localizedDescription]), "50 % of %@");
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
        const std::string printed = Printed(error);
        EXPECT_EQ(printed.rfind("Error Domain=Example Code=1 \"deep\" UserInfo=", 0), 0U);
        EXPECT_NE(printed.find("NSDebugDescription=deep"), std::string::npos);
    }
}

TEST(ErrorDescription, OfNoErrorIsNull) {
    @autoreleasepool {
        EXPECT_EQ(Printed(nil), "(null)");
    }
}

}  // namespace
