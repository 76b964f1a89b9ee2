#pragma once
// Where the account's record lives. Work happens off the main thread; every completion runs on the main queue.
#include <functional>
#include <optional>
#include <string>

#include "cloud/CloudRecord.h"

namespace kro {

struct CloudFetchResult {
    enum class Status { found, notFound, failed };
    Status status = Status::failed;
    // When found. A record whose body is empty comes back found with no record.
    std::optional<CloudRecord> record;
    std::string error;
};

struct CloudSaveResult {
    enum class Status { saved, conflict, failed };
    Status status = Status::failed;
    std::string error;
    // On a conflict, the record the server holds now, when it could be read.
    std::optional<CloudRecord> serverRecord;
};

class CloudDatabase {
public:
    virtual ~CloudDatabase() = default;
    virtual void fetch(const std::string& recordName, std::function<void(CloudFetchResult)> completion) = 0;
    // A record without an etag is created and must not exist yet; one with an etag replaces that version
    // only. Either way a server holding something else answers with a conflict.
    virtual void save(const CloudRecord& record, std::function<void(CloudSaveResult)> completion) = 0;
};

}  // namespace kro
