#include <gtest/gtest.h>

#include <chrono>
#include <optional>

#include "tests/support/ChildProcess.h"
#include "tests/support/ErrorChecks.h"

namespace {

class SynchronousRequest : public testing::Test {
  protected:
    SynchronousRequest() {
        Announcement port;
        server_.emplace(KS_WEB_SERVER, std::vector<std::string>{KS_WEB_SERVER, port.ChildEnd()});
        address_ = "http://127.0.0.1:" + port.Read();
        testing::internal::CaptureStderr();
    }

    ~SynchronousRequest() override {
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        [pool_ release];
    }

    NSMutableURLRequest* Request(const std::string& url, NSString* method) {
        NSMutableURLRequest* request =
            [NSMutableURLRequest requestWithURL:[NSURL URLWithString:Text(url)]];
        [request setHTTPMethod:method];
        return request;
    }

    NSData* Send(NSURLRequest* request) {
        response_ = nil;
        error_ = nil;
        return [NSURLConnection sendSynchronousRequest:request
                                     returningResponse:&response_
                                                 error:&error_];
    }

    /// The status of the answer to a HEAD request; -1 without an answer.
    long Head(const std::string& path) {
        NSData* data = Send(Request(address_ + path, @"HEAD"));
        EXPECT_EQ(data == nil, response_ == nil);
        EXPECT_EQ([data length], 0U);
        return response_ == nil ? -1 : [(NSHTTPURLResponse*)response_ statusCode];
    }

    NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
    std::optional<ChildProcess> server_;
    std::string address_;
    NSURLResponse* response_ = nil;
    NSError* error_ = nil;
};

TEST_F(SynchronousRequest, HeadIsAnsweredAtOnceOnAConnectionThatStaysOpen) {
    const auto start = std::chrono::steady_clock::now();
    for (const long status : {200, 204, 404, 500, 304}) {
        EXPECT_EQ(Head("/" + std::to_string(status)), status);
        EXPECT_EQ(error_, nil);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

TEST_F(SynchronousRequest, OtherRequestsGetTheBody) {
    EXPECT_EQ([Send(Request(address_ + "/200", @"GET")) length], 10U);
}

TEST_F(SynchronousRequest, RedirectionsAreFollowed) {
    EXPECT_EQ(Head("/to/to/200"), 200);
    EXPECT_EQ(Head("/to/204"), 204);
    EXPECT_EQ(Head("/301"), 301) << "there is no address to follow";
    EXPECT_EQ(Head("/loop"), -1);
}

TEST_F(SynchronousRequest, ServersThatCannotBeReachedAreErrorsAtOnce) {
    const auto start = std::chrono::steady_clock::now();
    server_.reset();
    EXPECT_EQ(Head("/200"), -1);
    EXPECT_EQ(Text([error_ domain]), "NSURLErrorDomain");
    // No resolver asks anybody for a name that is too long.
    EXPECT_EQ(Send(Request("http://" + std::string(64, 'a') + ".invalid/", @"HEAD")), nil);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

TEST_F(SynchronousRequest, ABrokenAnswerIsAnError) {
    EXPECT_EQ(Head("/close"), -1);
}

TEST_F(SynchronousRequest, ASilentServerIsGivenUpAfterTheRequestsTimeout) {
    NSMutableURLRequest* request = Request(address_ + "/silent", @"HEAD");
    [request setTimeoutInterval:1];
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Send(request), nil);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

TEST_F(SynchronousRequest, OnlyWebAddressesAreAsked) {
    for (const std::string url : {"ftp://127.0.0.1/", "file:///etc/passwd", "bogus", ""}) {
        EXPECT_EQ(Send(Request(url, @"HEAD")), nil) << url;
        EXPECT_NE(error_, nil) << url;
    }
    EXPECT_EQ(Send(nil), nil);
}

TEST_F(SynchronousRequest, ResponseAndErrorAreOptional) {
    EXPECT_NE([NSURLConnection sendSynchronousRequest:Request(address_ + "/200", @"HEAD")
                                    returningResponse:nullptr
                                                error:nullptr],
              nil);
    EXPECT_EQ([NSURLConnection sendSynchronousRequest:Request("http://127.0.0.1:1/", @"HEAD")
                                    returningResponse:nullptr
                                                error:nullptr],
              nil);
}

TEST_F(SynchronousRequest, AProxyOfTheEnvironmentIsNotUsed) {
    setenv("http_proxy", "http://127.0.0.1:1", 1);
    EXPECT_EQ(Head("/200"), 200);
    unsetenv("http_proxy");
}

}  // namespace
