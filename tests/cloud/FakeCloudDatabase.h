#pragma once
// A server in memory: records with a version number as their tag, completions on the main queue, and a
// count of every request so a test can see that none was made.
#include <map>

#include "cloud/CloudDatabase.h"
#include "platform/Environment.h"

namespace kro::testing {

class FakeCloudDatabase final : public CloudDatabase {
public:
    struct Stored {
        Json document;
        int version = 1;
    };

    void fetch(const std::string& recordName, std::function<void(CloudFetchResult)> completion) override {
        ++fetches;
        env().mainQueue->post([this, recordName, completion] { completion(fetchNow(recordName)); });
    }

    void save(const CloudRecord& record, std::function<void(CloudSaveResult)> completion) override {
        ++saves;
        env().mainQueue->post([this, record, completion] {
            // Another machine's write arrives between this one's read and its write.
            if (beforeSave) std::exchange(beforeSave, nullptr)();
            completion(saveNow(record));
        });
    }

    CloudFetchResult fetchNow(const std::string& recordName) const {
        CloudFetchResult result;
        if (failure) {
            result.error = *failure;
            return result;
        }
        const auto found = records.find(recordName);
        if (found == records.end()) {
            result.status = CloudFetchResult::Status::notFound;
            return result;
        }
        result.status = CloudFetchResult::Status::found;
        result.record = CloudRecord{recordName, found->second.document, std::to_string(found->second.version)};
        return result;
    }

    CloudSaveResult saveNow(const CloudRecord& record) {
        CloudSaveResult result;
        const auto found = records.find(record.recordName);
        const bool matches = found == records.end() ? !record.etag
                                                    : record.etag == std::to_string(found->second.version);
        if (!matches) {
            result.status = CloudSaveResult::Status::conflict;
            result.error = "conflict";
            result.serverRecord = fetchNow(record.recordName).record;
            return result;
        }
        lastSavedEtag = record.etag;
        const int version = found == records.end() ? 1 : found->second.version + 1;
        records[record.recordName] = {record.document, version};
        result.status = CloudSaveResult::Status::saved;
        return result;
    }

    std::map<std::string, Stored> records;
    std::optional<std::string> failure;
    std::optional<std::string> lastSavedEtag;
    std::function<void()> beforeSave;
    int fetches = 0;
    int saves = 0;
};

}  // namespace kro::testing
