// GNUstep waits for a body after a HEAD request, to the end of its patience when the server keeps
// the connection open; it also starts a daemon, leaves a file of cookies in the home and prints
// what went wrong. Here libcurl asks: http and https, HEAD and GET; no proxy, no cookies, no header
// fields or body of the request's own.
#include <Foundation/Foundation.h>
#include <curl/curl.h>
#include <dlfcn.h>

#include <memory>

#include "linux/corrections/CocoaErrors.h"

namespace {

constexpr char kLibrary[] = "libcurl-gnutls.so.4";
constexpr char kSchemes[] = "http,https";
constexpr long kRedirections = 20;

/// libcurl, loaded when it is first needed: with the libraries that it brings along it would cost
/// every start of a program some milliseconds.
class Curl {
    void* library_ = dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL);

    template <typename Function>
    Function Find(const char* name) const {
        return library_ == nullptr ? nullptr : reinterpret_cast<Function>(dlsym(library_, name));
    }

  public:
    bool IsThere() const { return library_ != nullptr; }

    decltype(&curl_easy_init) init = Find<decltype(init)>("curl_easy_init");
    decltype(&curl_easy_cleanup) cleanup = Find<decltype(cleanup)>("curl_easy_cleanup");
    CURLcode (*set)(CURL*, CURLoption, ...) = Find<decltype(set)>("curl_easy_setopt");
    decltype(&curl_easy_perform) perform = Find<decltype(perform)>("curl_easy_perform");
    CURLcode (*get)(CURL*, CURLINFO, ...) = Find<decltype(get)>("curl_easy_getinfo");
    decltype(&curl_easy_strerror) errorText = Find<decltype(errorText)>("curl_easy_strerror");
};

size_t AppendBody(const char* bytes, size_t size, size_t count, void* data) {
    [static_cast<NSMutableData*>(data) appendBytes:bytes length:size * count];
    return size * count;
}

NSInteger CodeOf(CURLcode failure) {
    switch (failure) {
        case CURLE_COULDNT_RESOLVE_HOST:
            return NSURLErrorCannotFindHost;
        case CURLE_COULDNT_CONNECT:
            return NSURLErrorCannotConnectToHost;
        case CURLE_OPERATION_TIMEDOUT:
            return NSURLErrorTimedOut;
        default:
            return NSURLErrorUnknown;
    }
}

NSData* Failed(NSError** error, NSInteger code, const char* text) {
    NSDictionary* info = @{NSLocalizedDescriptionKey : [NSString stringWithUTF8String:text]};
    Fail(error, [NSError errorWithDomain:NSURLErrorDomain code:code userInfo:info]);
    return nil;
}

}  // namespace

@implementation NSURLConnection (SynchronousRequest)

+ (NSData*)sendSynchronousRequest:(NSURLRequest*)request
                returningResponse:(NSURLResponse**)response
                            error:(NSError**)error {
    static const Curl curl;
    if (!curl.IsThere()) {
        return Failed(error, NSURLErrorUnknown, "libcurl is missing");
    }
    const std::unique_ptr<CURL, decltype(curl.cleanup)> transfer(curl.init(), curl.cleanup);
    CURL* const handle = transfer.get();
    NSMutableData* body = [NSMutableData data];
    const char* url = [[[request URL] absoluteString] UTF8String];
    const NSTimeInterval timeout = [request timeoutInterval];
    curl.set(handle, CURLOPT_URL, url == nullptr ? "" : url);
    curl.set(handle, CURLOPT_NOBODY, [[request HTTPMethod] isEqual:@"HEAD"] ? 1L : 0L);
    curl.set(handle, CURLOPT_PROTOCOLS_STR, kSchemes);
    curl.set(handle, CURLOPT_REDIR_PROTOCOLS_STR, kSchemes);
    curl.set(handle, CURLOPT_FOLLOWLOCATION, 1L);
    curl.set(handle, CURLOPT_MAXREDIRS, kRedirections);
    curl.set(handle, CURLOPT_PROXY, "");
    curl.set(handle, CURLOPT_NOSIGNAL, 1L);
    curl.set(handle, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(timeout * 1000));
    curl.set(handle, CURLOPT_LOW_SPEED_LIMIT, 1L);
    curl.set(handle, CURLOPT_LOW_SPEED_TIME, static_cast<long>(timeout));
    curl.set(handle, CURLOPT_WRITEFUNCTION, AppendBody);
    curl.set(handle, CURLOPT_WRITEDATA, body);
    const CURLcode failure = curl.perform(handle);
    if (failure != CURLE_OK) {
        return Failed(error, CodeOf(failure), curl.errorText(failure));
    }
    if (response != nullptr) {
        long status = 0;
        curl.get(handle, CURLINFO_RESPONSE_CODE, &status);
        curl.get(handle, CURLINFO_EFFECTIVE_URL, &url);
        NSURL* answering = [NSURL URLWithString:[NSString stringWithUTF8String:url]];
        *response = [[[NSHTTPURLResponse alloc] initWithURL:answering
                                                 statusCode:status
                                                HTTPVersion:@"HTTP/1.1"
                                               headerFields:nil] autorelease];
    }
    return body;
}

@end
