// How the connectivity probe asks, and what it makes of answers that no web server gives.
#include <gtest/gtest.h>

#include "platform/Utils_Mac.h"
#include "tests/support/ReplacedMethod.h"

namespace {

NSURLRequest* sent = nil;
NSURLResponse* answer = nil;

id Send(id /*receiver*/, SEL /*selector*/, NSURLRequest* request, NSURLResponse** response,
        NSError** error) {
    [sent release];
    sent = [request copy];
    *response = answer;
    EXPECT_TRUE(error == nullptr);
    return nil;
}

class ProbeRequest : public testing::Test {
  protected:
    static bool Ask() { return [Utils_Mac areConnected] != NO; }

  private:
    const ReplacedMethod sending {
        ReplacedMethod::ClassMethod, [NSURLConnection class],
            @selector(sendSynchronousRequest:returningResponse:error:), reinterpret_cast<IMP>(Send)
    };
};

TEST_F(ProbeRequest, AsksForTheHeadOfAPlainPageWithThePlatformsDefaults) {
    answer = nil;
    Ask();
    EXPECT_TRUE([[[sent URL] absoluteString] isEqualToString:@"http://www.google.com/"]);
    EXPECT_TRUE([[sent HTTPMethod] isEqualToString:@"HEAD"]);
    EXPECT_EQ([sent timeoutInterval], 60.0);
    EXPECT_EQ([sent cachePolicy], NSURLRequestUseProtocolCachePolicy);
    EXPECT_EQ([sent HTTPBody], nil);
}

TEST_F(ProbeRequest, WithoutAnAnswerThereIsNoConnection) {
    answer = nil;
    EXPECT_FALSE(Ask());
}

TEST_F(ProbeRequest, AnAnswerThatIsNotOfTheWebIsNone) {
    answer = [[[NSURLResponse alloc] initWithURL:[NSURL URLWithString:@"file:///x"]
                                        MIMEType:@"text/plain"
                           expectedContentLength:0
                                textEncodingName:nil] autorelease];
    EXPECT_FALSE(Ask());
}

}  // namespace
