// GNUstep waits for a body after a HEAD request, to the end of its patience when the server keeps
// the connection open; it also starts a daemon, leaves a file of cookies in the home and prints
// what went wrong.
#include <Foundation/Foundation.h>
#include <curl/curl.h>

#include "linux/corrections/CocoaErrors.h"
#include "linux/corrections/HttpTransfer.h"

namespace {

std::string Bytes(NSString* text) {
    const char* bytes = [text UTF8String];
    return bytes == nullptr ? "" : bytes;
}

/// What is not UTF-8 is taken for the protocol's old encoding, which knows every byte.
NSString* Text(const std::string& bytes) {
    NSString* text = [NSString stringWithUTF8String:bytes.c_str()];
    return text != nil
               ? text
               : [NSString stringWithCString:bytes.c_str() encoding:NSISOLatin1StringEncoding];
}

HttpRequest RequestOf(NSURLRequest* request) {
    HttpRequest result;
    result.url = Bytes([[request URL] absoluteString]);
    result.method = Bytes([request HTTPMethod]);
    result.timeout = [request timeoutInterval];
    NSData* body = [request HTTPBody];
    result.body.assign(static_cast<const char*>([body bytes]), [body length]);
    NSDictionary* headers = [request allHTTPHeaderFields];
    for (NSString* name in headers) {
        result.headers[Bytes(name)] = Bytes([headers objectForKey:name]);
    }
    return result;
}

NSInteger CodeOf(int failure) {
    switch (failure) {
        case CURLE_URL_MALFORMAT:
            return NSURLErrorBadURL;
        case CURLE_UNSUPPORTED_PROTOCOL:
            return NSURLErrorUnsupportedURL;
        case CURLE_COULDNT_RESOLVE_HOST:
            return NSURLErrorCannotFindHost;
        case CURLE_COULDNT_CONNECT:
            return NSURLErrorCannotConnectToHost;
        case CURLE_OPERATION_TIMEDOUT:
            return NSURLErrorTimedOut;
        case CURLE_TOO_MANY_REDIRECTS:
            return NSURLErrorHTTPTooManyRedirects;
        case CURLE_GOT_NOTHING:
        case CURLE_RECV_ERROR:
        case CURLE_PARTIAL_FILE:
            return NSURLErrorNetworkConnectionLost;
        case CURLE_PEER_FAILED_VERIFICATION:
        case CURLE_SSL_CONNECT_ERROR:
            return NSURLErrorSecureConnectionFailed;
        default:
            return NSURLErrorUnknown;
    }
}

NSError* ErrorOf(const HttpAnswer& answer) {
    return [NSError errorWithDomain:NSURLErrorDomain
                               code:CodeOf(answer.failure)
                           userInfo:@{NSLocalizedDescriptionKey : Text(answer.failureText)}];
}

NSURLResponse* ResponseOf(const HttpAnswer& answer) {
    NSMutableDictionary* headers = [NSMutableDictionary dictionary];
    for (const auto& [name, value] : answer.headers) {
        [headers setObject:Text(value) forKey:Text(name)];
    }
    return [[[NSHTTPURLResponse alloc] initWithURL:[NSURL URLWithString:Text(answer.url)]
                                        statusCode:answer.status
                                       HTTPVersion:Text(answer.version)
                                      headerFields:headers] autorelease];
}

}  // namespace

@implementation NSURLConnection (SynchronousRequest)

+ (NSData*)mac_sendSynchronousRequest:(NSURLRequest*)request
                returningResponse:(NSURLResponse**)response
                            error:(NSError**)error {
    const HttpAnswer answer = Transfer(RequestOf(request));
    if (answer.failure != CURLE_OK) {
        Fail(error, ErrorOf(answer));
        return nil;
    }
    if (response != nullptr) {
        *response = ResponseOf(answer);
    }
    return [NSData dataWithBytes:answer.body.data() length:answer.body.size()];
}

@end
