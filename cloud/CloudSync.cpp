#include "cloud/CloudSync.h"

#include "cloud/UserUpdate.h"
#include "library/CloudHook.h"
#include "library/Sherlog.h"
#include "library/User.h"
#include "platform/Environment.h"

namespace kro {
namespace {

void finishLater(const CloudSync::Completion& completion) {
    if (completion) env().mainQueue->post(completion);
}

void finish(const CloudSync::Completion& completion) {
    if (completion) completion();
}

}  // namespace

CloudSync& CloudSync::shared() {
    static CloudSync sync;
    return sync;
}

void CloudSync::reset() {
    provider_ = nullptr;
    updateGate_.reset();
    fetchGate_.reset();
}

void CloudSync::updateCloudKit(const std::string& file, const std::string& function, int line, Completion completion) {
    auto session = provider_ ? provider_() : std::nullopt;
    if (!session || !canCallUpdateCloudKit()) return finishLater(completion);
    auto log = [file, function, line](const std::string& message, SherlogLevel level) {
        Sherlog::print(message, level, file, function, line);
    };
    const std::string id = session->recordName;
    log("Updating CloudKit record with ID: " + id, SherlogLevel::info);
    session->database->fetch(id, [this, session = *session, log, file, function, line,
                                  completion](CloudFetchResult result) {
        const auto& user = *User::shared();
        switch (result.status) {
            case CloudFetchResult::Status::notFound: {
                log("CloudKit record not found, creating new record for ID: " + session.recordName, SherlogLevel::info);
                auto record = CloudRecord::make(session.recordName);
                record.writeFields(user);
                return saveRecord(session, record, true, file, function, line, completion);
            }
            case CloudFetchResult::Status::failed:
                log("CloudKit fetch during update failed: " + result.error, SherlogLevel::error);
                return finish(completion);
            case CloudFetchResult::Status::found:
                if (!result.record) {
                    log("CloudKit update returned unexpected nil without error.", SherlogLevel::error);
                    return finish(completion);
                }
                if (result.record->updatedAt() == user.updatedAt) {
                    log("CloudKit record does not need to be updated.", SherlogLevel::info);
                    return finish(completion);
                }
                log("CloudKit record found, updating fields.", SherlogLevel::info);
                result.record->writeFields(user);
                return saveRecord(session, *result.record, false, file, function, line, completion);
        }
    });
}

void CloudSync::saveRecord(const CloudSession& session, const CloudRecord& record, bool created,
                           const std::string& file, const std::string& function, int line, Completion completion) {
    session.database->save(record, [created, file, function, line, completion](CloudSaveResult result) {
        if (result.status == CloudSaveResult::Status::saved) {
            Sherlog::print(created ? "CloudKit new record saved successfully." : "CloudKit record updated successfully.",
                           SherlogLevel::info, file, function, line);
            return finish(completion);
        }
        Sherlog::print((created ? "CloudKit save failed: " : "CloudKit update failed: ") + result.error,
                       SherlogLevel::error, file, function, line);
        // A writer came in between: the server's version is settled by the same rule as a fetched one.
        if (result.serverRecord) update(*User::shared(), *result.serverRecord, true, true, true, true, file, function, line);
        finish(completion);
    });
}

void CloudSync::fetchCloudKit(const std::string& file, const std::string& function, int line, Completion completion) {
    auto session = provider_ ? provider_() : std::nullopt;
    if (!session || !canCallFetchCloudKit()) return finishLater(completion);
    session->database->fetch(session->recordName, [id = session->recordName, file, function, line,
                                                   completion](CloudFetchResult result) {
        if (result.status != CloudFetchResult::Status::found || !result.record) {
            const std::string error = result.record || !result.error.empty() ? result.error : "the record is empty";
            Sherlog::print("CloudKit fetch failed: " + error, SherlogLevel::error, file, function, line);
            return finish(completion);
        }
        Sherlog::print("CloudKit fetch succeeded for record ID: " + id, SherlogLevel::info, file, function, line);
        update(*User::shared(), *result.record, true, true, true, true, file, function, line);
        finish(completion);
    });
}

}  // namespace kro
