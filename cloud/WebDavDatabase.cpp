#include "cloud/WebDavDatabase.h"

#include <cctype>

#include "library/JsonDecode.h"
#include "platform/Environment.h"

namespace kro {
namespace {

std::string percentEncoded(const std::string& text) {
    std::string encoded;
    static const char* digits = "0123456789ABCDEF";
    for (unsigned char c : text) {
        if (std::isalnum(c) || c == '-' || c == '_' || c == '.' || c == '~' || c == '@') {
            encoded += static_cast<char>(c);
        } else {
            encoded += '%';
            encoded += digits[c >> 4];
            encoded += digits[c & 15];
        }
    }
    return encoded;
}

// What went wrong, in a person's words: the same text goes to the log and to `kro sync`.
std::string statusError(const HttpResponse& response) {
    switch (response.failure) {
        case HttpFailure::unreachable: return "the sync server could not be reached (" + response.error + ")";
        case HttpFailure::timedOut: return "the sync server did not answer in time (" + response.error + ")";
        case HttpFailure::tooLarge: return "the sync server's answer is too large to be a library record";
        case HttpFailure::other: return "the exchange with the sync server failed (" + response.error + ")";
        case HttpFailure::none: break;
    }
    if (response.status == 401) return "the sync server refused the user name or password (HTTP 401)";
    if (response.status == 403) return "the sync server refused this account access to its record (HTTP 403)";
    return "the sync server answered HTTP " + std::to_string(response.status);
}

}  // namespace

WebDavDatabase::WebDavDatabase(WebDavAccount account, HttpTimeouts timeouts)
    : account_(std::move(account)), timeouts_(timeouts) {}

WebDavDatabase::~WebDavDatabase() = default;

std::string WebDavDatabase::recordURL(const std::string& recordName) const {
    std::string url = account_.collectionURL;
    while (!url.empty() && url.back() == '/') url.pop_back();
    return url + "/" + percentEncoded(recordName) + ".json";
}

HttpRequest WebDavDatabase::request(const std::string& method, const std::string& recordName) const {
    HttpRequest request;
    request.method = method;
    request.url = recordURL(recordName);
    request.user = account_.user;
    request.password = account_.password;
    request.timeouts = timeouts_;
    return request;
}

void WebDavDatabase::fetch(const std::string& recordName, std::function<void(CloudFetchResult)> completion) {
    worker_.post([this, recordName, completion = std::move(completion)]() mutable {
        auto result = fetchNow(recordName);
        env().mainQueue->post([result = std::move(result), completion = std::move(completion)]() mutable {
            completion(std::move(result));
        });
    });
}

void WebDavDatabase::save(const CloudRecord& record, std::function<void(CloudSaveResult)> completion) {
    worker_.post([this, record, completion = std::move(completion)]() mutable {
        auto result = saveNow(record);
        env().mainQueue->post([result = std::move(result), completion = std::move(completion)]() mutable {
            completion(std::move(result));
        });
    });
}

CloudFetchResult WebDavDatabase::fetchNow(const std::string& recordName) const {
    const auto response = performHttp(request("GET", recordName));
    CloudFetchResult result;
    if (response.status == 404) {
        result.status = CloudFetchResult::Status::notFound;
        result.error = "the sync server holds no record for this account yet (HTTP 404)";
        return result;
    }
    if (response.status != 200) {
        result.error = statusError(response);
        return result;
    }
    result.status = CloudFetchResult::Status::found;
    if (response.body.empty()) return result;
    try {
        CloudRecord record;
        record.recordName = recordName;
        record.document = parseCloudDocument(response.body);
        if (!response.etag.empty()) record.etag = response.etag;
        result.record = std::move(record);
    } catch (const JsonDecodeError& error) {
        result.status = CloudFetchResult::Status::failed;
        result.error = std::string("the sync server's record is not a library: ") + error.what();
    }
    return result;
}

CloudSaveResult WebDavDatabase::saveNow(const CloudRecord& record) const {
    auto put = request("PUT", record.recordName);
    put.headers.push_back("Content-Type: application/json");
    put.headers.push_back(record.etag ? "If-Match: " + *record.etag : "If-None-Match: *");
    put.body = compactText(record.document);
    const auto response = performHttp(put);
    CloudSaveResult result;
    if (response.status == 200 || response.status == 201 || response.status == 204) {
        result.status = CloudSaveResult::Status::saved;
        return result;
    }
    result.error = statusError(response);
    // A missing parent collection: the account's URL names no folder on the server.
    if (response.status == 404 || response.status == 409) {
        result.error = "the sync server has no folder at " + account_.collectionURL + " (HTTP " +
                       std::to_string(response.status) + ")";
    }
    if (response.status == 412) {
        result.status = CloudSaveResult::Status::conflict;
        result.error = "the record changed on the sync server since it was read (HTTP 412)";
        // Like a database that hands back its own version with the conflict, so the caller can settle it.
        auto current = fetchNow(record.recordName);
        if (current.record) result.serverRecord = std::move(current.record);
    }
    return result;
}

}  // namespace kro
