#include "cloud/HttpClient.h"

#include <curl/curl.h>

#include <cctype>
#include <memory>
#include <optional>

#include "platform/LoadedLibrary.h"

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

// libcurl's functions, from the library opened (and set up) at the first request.
struct Curl {
    decltype(curl_easy_init)* init;
    decltype(curl_easy_cleanup)* cleanup;
    decltype(curl_easy_setopt)* setopt;
    decltype(curl_easy_perform)* perform;
    decltype(curl_easy_getinfo)* getinfo;
    decltype(curl_easy_strerror)* strerror;
    decltype(curl_slist_append)* append;
    decltype(curl_slist_free_all)* freeList;
};

// Null, with the loader's words, when libcurl cannot be opened.
const Curl* curl(std::string& problem) {
    static const LoadedLibrary library("libcurl.so.4");
    static const auto api = []() -> std::optional<Curl> {
        const auto globalInit = library.function<decltype(curl_global_init)>("curl_global_init");
        Curl made{library.function<decltype(curl_easy_init)>("curl_easy_init"),
                  library.function<decltype(curl_easy_cleanup)>("curl_easy_cleanup"),
                  library.function<decltype(curl_easy_setopt)>("curl_easy_setopt"),
                  library.function<decltype(curl_easy_perform)>("curl_easy_perform"),
                  library.function<decltype(curl_easy_getinfo)>("curl_easy_getinfo"),
                  library.function<decltype(curl_easy_strerror)>("curl_easy_strerror"),
                  library.function<decltype(curl_slist_append)>("curl_slist_append"),
                  library.function<decltype(curl_slist_free_all)>("curl_slist_free_all")};
        if (!globalInit || !made.init || !made.cleanup || !made.setopt || !made.perform || !made.getinfo ||
            !made.strerror || !made.append || !made.freeList || globalInit(CURL_GLOBAL_DEFAULT) != CURLE_OK) {
            return std::nullopt;
        }
        return made;
    }();
    if (!api) problem = library.loaded() ? "libcurl could not be set up" : library.error();
    return api ? &*api : nullptr;
}

}  // namespace

HttpResponse performHttp(const HttpRequest& request) {
    Exchange exchange;
    std::string problem;
    const auto* api = curl(problem);
    std::unique_ptr<CURL, decltype(curl_easy_cleanup)*> easy(api ? api->init() : nullptr, api ? api->cleanup : nullptr);
    if (!easy) {
        exchange.response.failure = HttpFailure::other;
        exchange.response.error = "the HTTP client could not start" + (problem.empty() ? "" : " (" + problem + ")");
        return exchange.response;
    }
    CURL* handle = easy.get();
    const auto setopt = api->setopt;
    char errorBuffer[CURL_ERROR_SIZE] = {};
    curl_slist* headers = nullptr;
    for (const auto& header : request.headers) headers = api->append(headers, header.c_str());
    std::unique_ptr<curl_slist, decltype(curl_slist_free_all)*> headerList(headers, api->freeList);

    setopt(handle, CURLOPT_URL, request.url.c_str());
    setopt(handle, CURLOPT_PROTOCOLS_STR, "http,https");
    setopt(handle, CURLOPT_NOSIGNAL, 1L);
    setopt(handle, CURLOPT_ERRORBUFFER, errorBuffer);
    setopt(handle, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(request.timeouts.connect.count()));
    setopt(handle, CURLOPT_TIMEOUT_MS, static_cast<long>(request.timeouts.total.count()));
    setopt(handle, CURLOPT_CUSTOMREQUEST, request.method.c_str());
    if (request.method == "GET") {
        setopt(handle, CURLOPT_HTTPGET, 1L);
    } else {
        // The body is in memory, so a second round after an authentication challenge can send it again.
        setopt(handle, CURLOPT_POSTFIELDS, request.body.data());
        setopt(handle, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request.body.size()));
    }
    if (!request.user.empty()) {
        setopt(handle, CURLOPT_USERNAME, request.user.c_str());
        setopt(handle, CURLOPT_PASSWORD, request.password.c_str());
        setopt(handle, CURLOPT_HTTPAUTH, CURLAUTH_BASIC);
    }
    setopt(handle, CURLOPT_HTTPHEADER, headerList.get());
    setopt(handle, CURLOPT_WRITEFUNCTION, onBody);
    setopt(handle, CURLOPT_WRITEDATA, &exchange);
    setopt(handle, CURLOPT_HEADERFUNCTION, onHeader);
    setopt(handle, CURLOPT_HEADERDATA, &exchange);

    const CURLcode code = api->perform(handle);
    if (exchange.tooLarge) {
        exchange.response = {};
        exchange.response.failure = HttpFailure::tooLarge;
        exchange.response.error = "the answer is too large to be a record";
        return exchange.response;
    }
    if (code != CURLE_OK) {
        exchange.response.status = 0;
        exchange.response.failure = failureOf(code);
        exchange.response.error = errorBuffer[0] ? errorBuffer : api->strerror(code);
        return exchange.response;
    }
    api->getinfo(handle, CURLINFO_RESPONSE_CODE, &exchange.response.status);
    return exchange.response;
}

}  // namespace kro
