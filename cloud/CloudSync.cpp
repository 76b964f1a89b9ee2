#include "cloud/CloudSync.h"

#include "cloud/UserUpdate.h"
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
    observers_.clear();
    inFlight_ = 0;
    idleWaiters_.clear();
    updateGate_.reset();
    fetchGate_.reset();
}

int CloudSync::addObserver(Observer observer) {
    observers_.emplace(++nextObserver_, std::move(observer));
    return nextObserver_;
}

std::optional<CloudSession> CloudSync::session() const {
    if (held_) return held_;
    return provider_ ? provider_() : std::nullopt;
}

void CloudSync::updateCloudKit(const std::string& file, const std::string& function, int line, Completion completion) {
    auto session = this->session();
    if (!session) return finishLater(completion);
    if (!canCallUpdateCloudKit()) {
        report(CloudReport::Kind::notSent,
               "The library was not sent: the sync server was asked less than a second ago; the next sync sends it");
        return finishLater(completion);
    }
    const CallSite site{file, function, line};
    const std::string id = session->recordName;
    log("Updating CloudKit record with ID: " + id, SherlogLevel::info, site);
    requestSent();
    session->database->fetch(id, [this, session = *session, site, completion](CloudFetchResult result) {
        answerCame();
        const auto& user = *User::shared();
        switch (result.status) {
            case CloudFetchResult::Status::notFound: {
                log("CloudKit record not found, creating new record for ID: " + session.recordName,
                    SherlogLevel::info, site);
                auto record = CloudRecord::make(session.recordName);
                record.writeFields(user);
                return saveRecord(session, record, true, site, completion);
            }
            case CloudFetchResult::Status::failed:
                log("CloudKit fetch during update failed: " + result.error, SherlogLevel::error, site);
                report(CloudReport::Kind::failed, result.error);
                return finish(completion);
            case CloudFetchResult::Status::found:
                if (!result.record) {
                    log("CloudKit update returned unexpected nil without error.", SherlogLevel::error, site);
                    report(CloudReport::Kind::failed, "the sync server answered with an empty record");
                    return finish(completion);
                }
                if (result.record->updatedAt() == user.updatedAt) {
                    log("CloudKit record does not need to be updated.", SherlogLevel::info, site);
                    report(CloudReport::Kind::done, "The sync server already holds this library");
                    return finish(completion);
                }
                log("CloudKit record found, updating fields.", SherlogLevel::info, site);
                result.record->writeFields(user);
                return saveRecord(session, *result.record, false, site, completion);
        }
    });
}

void CloudSync::saveRecord(const CloudSession& session, const CloudRecord& record, bool created,
                           const CallSite& site, Completion completion) {
    requestSent();
    session.database->save(record, [this, created, site, completion](CloudSaveResult result) {
        answerCame();
        if (result.status == CloudSaveResult::Status::saved) {
            log(created ? "CloudKit new record saved successfully." : "CloudKit record updated successfully.",
                SherlogLevel::info, site);
            report(CloudReport::Kind::done, created ? "Created the account's record on the sync server"
                                                    : "Sent the library to the sync server");
            return finish(completion);
        }
        log((created ? "CloudKit save failed: " : "CloudKit update failed: ") + result.error, SherlogLevel::error, site);
        // A writer came in between: the server's version is settled by the same rule as a fetched one.
        if (result.serverRecord) {
            report(CloudReport::Kind::done, "Another machine changed the record on the sync server meanwhile");
            settle(*result.serverRecord, site, true);
        } else {
            report(CloudReport::Kind::failed, result.error);
        }
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

void CloudSync::log(const std::string& message, SherlogLevel level, const CallSite& site) const {
    Sherlog::print(message, level, site.file, site.function, site.line);
}

void CloudSync::report(CloudReport::Kind kind, const std::string& sentence) const {
    // A copy: an observer may remove itself while it is told.
    const auto observers = observers_;
    for (const auto& [id, observer] : observers) observer({kind, sentence});
}

void CloudSync::settle(const CloudRecord& record, const CallSite& site, bool pushWhenNewer) {
    const auto result = update(*User::shared(), record, true, true, true, pushWhenNewer, site.file, site.function,
                               site.line);
    report(result == SettleResult::undecodable ? CloudReport::Kind::failed : CloudReport::Kind::done,
           describe(result));
}

void CloudSync::fetchCloudKit(const std::string& file, const std::string& function, int line, Completion completion) {
    fetch({file, function, line}, std::move(completion), true);
}

void CloudSync::fetchBeforeChange(const std::string& file, const std::string& function, int line,
                                  Completion completion) {
    fetch({file, function, line}, std::move(completion), false);
}

void CloudSync::fetch(const CallSite& site, Completion completion, bool pushWhenNewer) {
    auto session = this->session();
    if (!session) return finishLater(completion);
    if (!canCallFetchCloudKit()) {
        report(CloudReport::Kind::notSent, "No request was made: the last sync was less than a second ago");
        return finishLater(completion);
    }
    requestSent();
    session->database->fetch(session->recordName, [this, id = session->recordName, site, completion,
                                                   pushWhenNewer](CloudFetchResult result) {
        answerCame();
        if (result.status == CloudFetchResult::Status::notFound) {
            // No record is older than any library that was ever changed: that library goes up as the new
            // record. One never changed (no time) has nothing to offer another machine.
            log("CloudKit fetch failed: " + result.error, SherlogLevel::info, site);
            report(CloudReport::Kind::done, "The sync server holds no record for this account yet");
            if (pushWhenNewer && User::shared()->updatedAt) updateCloudKit(site.file, site.function, site.line);
            return finish(completion);
        }
        if (result.status != CloudFetchResult::Status::found || !result.record) {
            const std::string error = result.record || !result.error.empty()
                                          ? result.error
                                          : "the sync server answered with an empty record";
            log("CloudKit fetch failed: " + error, SherlogLevel::error, site);
            report(CloudReport::Kind::failed, error);
            return finish(completion);
        }
        log("CloudKit fetch succeeded for record ID: " + id, SherlogLevel::info, site);
        settle(*result.record, site, pushWhenNewer);
        finish(completion);
    });
}

}  // namespace kro
