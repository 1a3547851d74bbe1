#pragma once

#include <map>
#include <string>

struct HttpRequest {
    std::string url;
    std::string method;
    std::map<std::string, std::string> headers;
    std::string body;
    double timeout = 60;  ///< seconds without a connection or without progress
};

struct HttpAnswer {
    int failure = 0;          ///< libcurl's code; 0 when a server answered
    std::string failureText;  ///< what that code means
    std::string url;          ///< of the last redirection
    long status = 0;
    std::string version;  ///< "HTTP/1.1"
    std::map<std::string, std::string> headers;
    std::string body;
};

/// Sends a request by libcurl and waits for the whole answer, following redirections. Only http and
/// https; no proxy, no cookies, nothing stored or printed.
HttpAnswer Transfer(const HttpRequest& request);
