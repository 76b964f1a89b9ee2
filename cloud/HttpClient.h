#pragma once
// One blocking HTTP exchange through libcurl. Called on a worker thread, never on the main one.
#include <chrono>
#include <string>
#include <vector>

namespace kro {

struct HttpTimeouts {
    std::chrono::milliseconds connect{10000};
    // The whole exchange: a server that hangs gives up after this.
    std::chrono::milliseconds total{30000};
};

struct HttpRequest {
    std::string method = "GET";
    std::string url;
    std::vector<std::string> headers;  // "Name: value"
    std::string body;
    std::string user;
    std::string password;
    HttpTimeouts timeouts;
};

// Why no answer came.
enum class HttpFailure { none, unreachable, timedOut, tooLarge, other };

struct HttpResponse {
    // 0 when no answer came (`failure` and the error say why).
    long status = 0;
    HttpFailure failure = HttpFailure::none;
    std::string body;
    std::string etag;
    std::string error;
};

HttpResponse performHttp(const HttpRequest& request);

}  // namespace kro
