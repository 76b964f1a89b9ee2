#include "cloud/HttpClient.h"

#include <curl/curl.h>

#include <cctype>
#include <memory>
#include <mutex>

namespace kro {
namespace {

// A record is small; anything far larger is not one, and is not read into memory.
constexpr size_t kMaximumBody = 64 * 1024 * 1024;

struct Exchange {
    HttpResponse response;
    bool tooLarge = false;
};

size_t onBody(char* data, size_t size, size_t count, void* context) {
    auto& exchange = *static_cast<Exchange*>(context);
    const size_t bytes = size * count;
    if (exchange.response.body.size() + bytes > kMaximumBody) {
        exchange.tooLarge = true;
        return 0;
    }
    exchange.response.body.append(data, bytes);
    return bytes;
}

std::string trimmed(std::string text) {
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back()))) text.pop_back();
    size_t start = 0;
    while (start < text.size() && std::isspace(static_cast<unsigned char>(text[start]))) ++start;
    return text.substr(start);
}

size_t onHeader(char* data, size_t size, size_t count, void* context) {
    auto& exchange = *static_cast<Exchange*>(context);
    const size_t bytes = size * count;
    const std::string line(data, bytes);
    // A new status line (after a 401 challenge or a redirect) starts a new set of headers.
    if (line.rfind("HTTP/", 0) == 0) exchange.response.etag.clear();
    const auto colon = line.find(':');
    if (colon != std::string::npos) {
        std::string name = line.substr(0, colon);
        for (auto& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        if (name == "etag") exchange.response.etag = trimmed(line.substr(colon + 1));
    }
    return bytes;
}

HttpFailure failureOf(CURLcode code) {
    switch (code) {
        case CURLE_COULDNT_RESOLVE_PROXY:
        case CURLE_COULDNT_RESOLVE_HOST:
        case CURLE_COULDNT_CONNECT: return HttpFailure::unreachable;
        case CURLE_OPERATION_TIMEDOUT: return HttpFailure::timedOut;
        default: return HttpFailure::other;
    }
}

void initializeCurlOnce() {
    static std::once_flag once;
    std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

}  // namespace

HttpResponse performHttp(const HttpRequest& request) {
    initializeCurlOnce();
    Exchange exchange;
    std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> curl(curl_easy_init(), curl_easy_cleanup);
    if (!curl) {
        exchange.response.failure = HttpFailure::other;
        exchange.response.error = "the HTTP client could not start";
        return exchange.response;
    }
    CURL* handle = curl.get();
    char errorBuffer[CURL_ERROR_SIZE] = {};
    curl_slist* headers = nullptr;
    for (const auto& header : request.headers) headers = curl_slist_append(headers, header.c_str());
    std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> headerList(headers, curl_slist_free_all);

    curl_easy_setopt(handle, CURLOPT_URL, request.url.c_str());
    curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(handle, CURLOPT_ERRORBUFFER, errorBuffer);
    curl_easy_setopt(handle, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(request.timeouts.connect.count()));
    curl_easy_setopt(handle, CURLOPT_TIMEOUT_MS, static_cast<long>(request.timeouts.total.count()));
    curl_easy_setopt(handle, CURLOPT_CUSTOMREQUEST, request.method.c_str());
    if (request.method == "GET") {
        curl_easy_setopt(handle, CURLOPT_HTTPGET, 1L);
    } else {
        // The body is in memory, so a second round after an authentication challenge can send it again.
        curl_easy_setopt(handle, CURLOPT_POSTFIELDS, request.body.data());
        curl_easy_setopt(handle, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request.body.size()));
    }
    if (!request.user.empty()) {
        curl_easy_setopt(handle, CURLOPT_USERNAME, request.user.c_str());
        curl_easy_setopt(handle, CURLOPT_PASSWORD, request.password.c_str());
        curl_easy_setopt(handle, CURLOPT_HTTPAUTH, CURLAUTH_BASIC);
    }
    curl_easy_setopt(handle, CURLOPT_HTTPHEADER, headerList.get());
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, onBody);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, &exchange);
    curl_easy_setopt(handle, CURLOPT_HEADERFUNCTION, onHeader);
    curl_easy_setopt(handle, CURLOPT_HEADERDATA, &exchange);

    const CURLcode code = curl_easy_perform(handle);
    if (exchange.tooLarge) {
        exchange.response = {};
        exchange.response.failure = HttpFailure::tooLarge;
        exchange.response.error = "the answer is too large to be a record";
        return exchange.response;
    }
    if (code != CURLE_OK) {
        exchange.response.status = 0;
        exchange.response.failure = failureOf(code);
        exchange.response.error = errorBuffer[0] ? errorBuffer : curl_easy_strerror(code);
        return exchange.response;
    }
    curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &exchange.response.status);
    return exchange.response;
}

}  // namespace kro
