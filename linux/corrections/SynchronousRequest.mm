// GNUstep waits for a body after a HEAD request, to the end of its patience when the server keeps
// the connection open; it also starts a daemon, leaves a file of cookies in the home and prints
// what went wrong. Here libcurl asks: only by http and https, without proxy, cookies or output.
// Requests carry no body, and of the answer's head only the status is kept.
#include <Foundation/Foundation.h>
#include <curl/curl.h>
#include <dlfcn.h>

#include <memory>
#include <string>

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
    static const Curl& Library() {
        static const Curl curl;
        return curl;
    }

    bool IsThere() const { return library_ != nullptr; }

    decltype(&curl_easy_init) init = Find<decltype(init)>("curl_easy_init");
    decltype(&curl_easy_cleanup) cleanup = Find<decltype(cleanup)>("curl_easy_cleanup");
    CURLcode (*set)(CURL*, CURLoption, ...) = Find<decltype(set)>("curl_easy_setopt");
    decltype(&curl_easy_perform) perform = Find<decltype(perform)>("curl_easy_perform");
    CURLcode (*get)(CURL*, CURLINFO, ...) = Find<decltype(get)>("curl_easy_getinfo");
};

size_t AppendBody(const char* bytes, size_t size, size_t count, void* body) {
    [static_cast<NSMutableData*>(body) appendBytes:bytes length:size * count];
    return size * count;
}

/// @return libcurl's code; CURLE_OK when a server answered
CURLcode Transfer(NSURLRequest* request, NSMutableData* body, long& status) {
    const Curl& curl = Curl::Library();
    if (!curl.IsThere()) {
        return CURLE_FAILED_INIT;
    }
    const std::unique_ptr<CURL, decltype(curl.cleanup)> transfer(curl.init(), curl.cleanup);
    CURL* const handle = transfer.get();
    const NSTimeInterval timeout = [request timeoutInterval];
    curl.set(handle, CURLOPT_URL, [[[request URL] absoluteString] UTF8String]);
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
    curl.get(handle, CURLINFO_RESPONSE_CODE, &status);
    return failure;
}

}  // namespace

@implementation NSURLConnection (SynchronousRequest)

+ (NSData*)mac_sendSynchronousRequest:(NSURLRequest*)request
                    returningResponse:(NSURLResponse**)response
                                error:(NSError**)error {
    NSMutableData* body = [NSMutableData data];
    long status = 0;
    if (Transfer(request, body, status) != CURLE_OK) {
        if (error != nullptr) {
            *error = [NSError errorWithDomain:NSURLErrorDomain code:NSURLErrorUnknown userInfo:nil];
        }
        return nil;
    }
    if (response != nullptr) {
        *response = [[[NSHTTPURLResponse alloc] initWithURL:[request URL]
                                                 statusCode:status
                                                HTTPVersion:@"HTTP/1.1"
                                               headerFields:nil] autorelease];
    }
    return body;
}

@end
