#include "cloud/CloudSignIn.h"

#include "cloud/WebDavDatabase.h"
#include "library/Sherlog.h"
#include "platform/Environment.h"

namespace kro {

CloudSignIn::CloudSignIn(CloudAccount account, std::string password, SecretsFactory secrets)
    : CloudSignIn(account, password, std::move(secrets), nullptr) {
    if (!cloudAccountProblem(account_)) {
        // A person waits on the answer: ten seconds to reach the server, fifteen for the whole exchange.
        database_ = std::make_shared<WebDavDatabase>(WebDavAccount{account_.server, account_.user, password_},
                                                     HttpTimeouts{std::chrono::seconds(10), std::chrono::seconds(15)});
    }
}

CloudSignIn::CloudSignIn(CloudAccount account, std::string password, SecretsFactory secrets,
                         std::shared_ptr<CloudDatabase> database)
    : account_(std::move(account)), password_(std::move(password)), secrets_(std::move(secrets)),
      database_(std::move(database)) {}

void CloudSignIn::start(Completion completion) {
    if (auto problem = cloudAccountProblem(account_)) {
        env().mainQueue->post([completion, problem] { completion(problem); });
        return;
    }
    if (password_.empty()) {
        env().mainQueue->post([completion] { completion(std::string("a password is needed to sign in")); });
        return;
    }
    // The answer may come after the sign-in was dropped (its window closed): then it is let go.
    database_->fetch(account_.user, [this, alive = std::weak_ptr<bool>(alive_), completion](CloudFetchResult result) {
        if (!alive.expired()) finish(result, completion);
    });
}

void CloudSignIn::finish(const CloudFetchResult& result, const Completion& completion) {
    if (result.status == CloudFetchResult::Status::failed) {
        SHERLOG("Sign-in to " + account_.server + " failed: " + result.error, SherlogLevel::info);
        return completion(result.error);
    }
    auto store = secrets_();
    // The password first: an account without its password is never left behind.
    if (!store->setPassword(account_.server, account_.user, password_)) {
        return completion("the password could not be kept in " + store->description());
    }
    const auto previous = loadCloudAccount();
    if (!saveCloudAccount(account_)) {
        store->removePassword(account_.server, account_.user);
        return completion("the account could not be written to " + cloudAccountPath());
    }
    if (previous && !(*previous == account_)) store->removePassword(previous->server, previous->user);
    SHERLOG("Signed in to " + account_.server + " as " + account_.user, SherlogLevel::info);
    completion(std::nullopt);
}

bool signOutOfCloud(const CloudSignIn::SecretsFactory& secrets) {
    const auto account = loadCloudAccount();
    if (!removeCloudAccount()) return false;
    if (account) secrets()->removePassword(account->server, account->user);
    return true;
}

}  // namespace kro
