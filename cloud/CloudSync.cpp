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
    held_.reset();
    observer_ = nullptr;
    inFlight_ = 0;
    idleWaiters_.clear();
    updateGate_.reset();
    fetchGate_.reset();
}

std::optional<CloudSession> CloudSync::session() const {
    if (held_) return held_;
    return provider_ ? provider_() : std::nullopt;
}

void CloudSync::updateCloudKit(const std::string& file, const std::string& function, int line, Completion completion) {
    auto session = this->session();
    if (!session || !canCallUpdateCloudKit()) return finishLater(completion);
    auto log = [this, file, function, line](const std::string& message, SherlogLevel level) {
        note(message, level, file, function, line);
    };
    const std::string id = session->recordName;
    log("Updating CloudKit record with ID: " + id, SherlogLevel::info);
    requestSent();
    session->database->fetch(id, [this, session = *session, log, file, function, line,
                                  completion](CloudFetchResult result) {
        answerCame();
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
    requestSent();
    session.database->save(record, [this, created, file, function, line, completion](CloudSaveResult result) {
        answerCame();
        if (result.status == CloudSaveResult::Status::saved) {
            note(created ? "CloudKit new record saved successfully." : "CloudKit record updated successfully.",
                 SherlogLevel::info, file, function, line);
            return finish(completion);
        }
        note((created ? "CloudKit save failed: " : "CloudKit update failed: ") + result.error, SherlogLevel::error, file,
             function, line);
        // A writer came in between: the server's version is settled by the same rule as a fetched one.
        if (result.serverRecord) settle(*result.serverRecord, file, function, line);
        finish(completion);
    });
}

void CloudSync::whenIdle(Completion completion) {
    idleWaiters_.push_back(std::move(completion));
    env().mainQueue->post([this] { wakeIdleWaiters(); });
}

// Checked on the main queue after the answer's own work, which may have sent the next request.
void CloudSync::answerCame() {
    --inFlight_;
    env().mainQueue->post([this] { wakeIdleWaiters(); });
}

void CloudSync::wakeIdleWaiters() {
    if (inFlight_ > 0 || idleWaiters_.empty()) return;
    auto waiters = std::move(idleWaiters_);
    idleWaiters_.clear();
    for (auto& waiter : waiters) waiter();
}

void CloudSync::note(const std::string& message, SherlogLevel level, const std::string& file,
                     const std::string& function, int line) const {
    Sherlog::print(message, level, file, function, line);
    if (observer_) observer_(message);
}

void CloudSync::settle(const CloudRecord& record, const std::string& file, const std::string& function, int line) {
    const auto result = update(*User::shared(), record, true, true, true, true, file, function, line);
    if (observer_) observer_(describe(result));
}

void CloudSync::fetchCloudKit(const std::string& file, const std::string& function, int line, Completion completion) {
    auto session = this->session();
    if (!session || !canCallFetchCloudKit()) return finishLater(completion);
    requestSent();
    session->database->fetch(session->recordName, [this, id = session->recordName, file, function, line,
                                                   completion](CloudFetchResult result) {
        answerCame();
        if (result.status != CloudFetchResult::Status::found || !result.record) {
            const std::string error = result.record || !result.error.empty() ? result.error : "the record is empty";
            note("CloudKit fetch failed: " + error, SherlogLevel::error, file, function, line);
            return finish(completion);
        }
        note("CloudKit fetch succeeded for record ID: " + id, SherlogLevel::info, file, function, line);
        settle(*result.record, file, function, line);
        finish(completion);
    });
}

}  // namespace kro
