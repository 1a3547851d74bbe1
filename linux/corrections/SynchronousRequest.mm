// GNUstep waits for a body after a HEAD request, to the end of its patience when the server keeps
// the connection open; it also starts a daemon, leaves a file of cookies in the home and prints
// what went wrong. Here curl asks: only by http and https, without proxy, cookies or settings of
// its own. Requests carry no body; of the answer's head only the status is kept, of its body what
// stands before a NUL.
#include <Foundation/Foundation.h>

#include <iterator>
#include <sstream>

#include "linux/corrections/Programs.h"

namespace {

// The body goes to standard output, the status to standard error.
constexpr char kCommand[] = "/usr/bin/curl --disable --silent --globoff --noproxy * "
                            "--proto =http,https --location --max-redirs 20 --speed-limit 1 "
                            "--write-out %{stderr}%{http_code}";

ProgramResult Ask(NSURLRequest* request) {
    std::istringstream command(kCommand);
    Words words(std::istream_iterator<std::string>(command), {});
    NSString* address = [[request URL] absoluteString];
    const std::string patience = std::to_string(static_cast<long>([request timeoutInterval]));
    words.insert(words.end(), {"--connect-timeout", patience, "--speed-time", patience});
    words.insert(words.end(), {"--url", address == nil ? "" : [address UTF8String]});
    if ([[request HTTPMethod] isEqual:@"HEAD"]) {
        words.insert(words.end(), {"--head", "--output", "/dev/null"});
    }
    return RunProgram(words);
}

}  // namespace

@implementation NSURLConnection (SynchronousRequest)

+ (NSData*)mac_sendSynchronousRequest:(NSURLRequest*)request
                    returningResponse:(NSURLResponse**)response
                                error:(NSError**)error {
    const ProgramResult answer = Ask(request);
    if (answer.status != 0) {
        if (error != nullptr) {
            *error = [NSError errorWithDomain:NSURLErrorDomain code:NSURLErrorUnknown userInfo:nil];
        }
        return nil;
    }
    if (response != nullptr) {
        *response = [[[NSHTTPURLResponse alloc] initWithURL:[request URL]
                                                 statusCode:std::stoi(answer.errors)
                                                HTTPVersion:@"HTTP/1.1"
                                               headerFields:nil] autorelease];
    }
    return [NSData dataWithBytes:answer.output.data() length:answer.output.size()];
}

@end
