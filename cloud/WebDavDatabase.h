#pragma once
// The account's record as one JSON file in a WebDAV collection: "<collection>/<record name>.json".
// A read is a GET (404: no record yet); a new record is a PUT with "If-None-Match: *", a changed one a PUT
// with "If-Match" and the tag of the version read, so that a writer who came in between is detected (412).
// Requests run on the database's own thread, so a server that hangs holds back nothing but later syncs.
#include <memory>
#include <string>

#include "cloud/CloudDatabase.h"
#include "cloud/HttpClient.h"
#include "platform/WorkerQueue.h"

namespace kro {

struct WebDavAccount {
    // The collection that holds the record, "https://host/path/".
    std::string collectionURL;
    std::string user;
    std::string password;
};

class WebDavDatabase final : public CloudDatabase {
public:
    explicit WebDavDatabase(WebDavAccount account, HttpTimeouts timeouts = {});
    // Waits for the request under way, if any; the ones still queued are dropped.
    ~WebDavDatabase() override;

    void fetch(const std::string& recordName, std::function<void(CloudFetchResult)> completion) override;
    void save(const CloudRecord& record, std::function<void(CloudSaveResult)> completion) override;

    std::string recordURL(const std::string& recordName) const;

private:
    CloudFetchResult fetchNow(const std::string& recordName) const;
    CloudSaveResult saveNow(const CloudRecord& record) const;
    HttpRequest request(const std::string& method, const std::string& recordName) const;

    WebDavAccount account_;
    HttpTimeouts timeouts_;
    // Last, so that it stops before the fields its tasks read.
    WorkerQueue worker_;
};

}  // namespace kro
