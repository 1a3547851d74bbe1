#include "linux/corrections/HttpTransfer.h"

#include <curl/curl.h>
#include <dlfcn.h>

#include <memory>

namespace {

constexpr char kLibrary[] = "libcurl-gnutls.so.4";
constexpr char kSchemes[] = "http,https";
constexpr long kRedirections = 20;

/// libcurl, loaded when it is first needed: with the libraries that it brings along it would cost
/// every start of a program some milliseconds.
class Curl {
    void* library_ = dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL);

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
    decltype(&curl_easy_strerror) errorText = Find<decltype(errorText)>("curl_easy_strerror");
    decltype(&curl_slist_append) append = Find<decltype(append)>("curl_slist_append");
    decltype(&curl_slist_free_all) freeAll = Find<decltype(freeAll)>("curl_slist_free_all");

  private:
    template <typename Function>
    Function Find(const char* name) const {
        return library_ == nullptr ? nullptr : reinterpret_cast<Function>(dlsym(library_, name));
    }
};

size_t AppendBody(const char* bytes, size_t size, size_t count, void* answer) {
    static_cast<HttpAnswer*>(answer)->body.append(bytes, size * count);
    return size * count;
}

std::string Trimmed(const std::string& text) {
    const size_t start = text.find_first_not_of(" \t\r\n");
    const size_t end = text.find_last_not_of(" \t\r\n");
    return start == std::string::npos ? "" : text.substr(start, end - start + 1);
}

/// Every answer of a chain of redirections begins with its status line.
size_t TakeHeader(const char* bytes, size_t size, size_t count, void* context) {
    auto& answer = *static_cast<HttpAnswer*>(context);
    const std::string line(bytes, size * count);
    const size_t colon = line.find(':');
    if (line.rfind("HTTP/", 0) == 0) {
        answer.headers.clear();
        answer.version = line.substr(0, line.find(' '));
    } else if (colon != std::string::npos) {
        answer.headers[line.substr(0, colon)] = Trimmed(line.substr(colon + 1));
    }
    return size * count;
}

}  // namespace

HttpAnswer Transfer(const HttpRequest& request) {
    HttpAnswer answer;
    const Curl& curl = Curl::Library();
    if (!curl.IsThere()) {
        answer.failure = CURLE_FAILED_INIT;
        answer.failureText = std::string(kLibrary) + " is missing";
        return answer;
    }
    const std::unique_ptr<CURL, decltype(curl.cleanup)> transfer(curl.init(), curl.cleanup);
    CURL* const handle = transfer.get();
    std::unique_ptr<curl_slist, decltype(curl.freeAll)> headers(nullptr, curl.freeAll);
    for (const auto& [name, value] : request.headers) {
        headers.reset(curl.append(headers.release(), (name + ": " + value).c_str()));
    }
    curl.set(handle, CURLOPT_URL, request.url.c_str());
    curl.set(handle, CURLOPT_PROTOCOLS_STR, kSchemes);
    curl.set(handle, CURLOPT_REDIR_PROTOCOLS_STR, kSchemes);
    curl.set(handle, CURLOPT_FOLLOWLOCATION, 1L);
    curl.set(handle, CURLOPT_MAXREDIRS, kRedirections);
    curl.set(handle, CURLOPT_PROXY, "");
    curl.set(handle, CURLOPT_NOSIGNAL, 1L);
    curl.set(handle, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(request.timeout * 1000));
    curl.set(handle, CURLOPT_LOW_SPEED_LIMIT, 1L);
    curl.set(handle, CURLOPT_LOW_SPEED_TIME, static_cast<long>(request.timeout));
    curl.set(handle, CURLOPT_HTTPHEADER, headers.get());
    curl.set(handle, CURLOPT_HEADERFUNCTION, TakeHeader);
    curl.set(handle, CURLOPT_HEADERDATA, &answer);
    curl.set(handle, CURLOPT_WRITEFUNCTION, AppendBody);
    curl.set(handle, CURLOPT_WRITEDATA, &answer);
    if (request.method == "HEAD") {
        curl.set(handle, CURLOPT_NOBODY, 1L);
    } else if (request.method != "GET") {
        curl.set(handle, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request.body.size()));
        curl.set(handle, CURLOPT_POSTFIELDS, request.body.data());
        curl.set(handle, CURLOPT_CUSTOMREQUEST, request.method.c_str());
    }
    answer.failure = curl.perform(handle);
    if (answer.failure != CURLE_OK) {
        answer.failureText = curl.errorText(static_cast<CURLcode>(answer.failure));
        return answer;
    }
    const char* url = nullptr;
    curl.get(handle, CURLINFO_EFFECTIVE_URL, &url);
    answer.url = url == nullptr ? request.url : url;
    curl.get(handle, CURLINFO_RESPONSE_CODE, &answer.status);
    return answer;
}
