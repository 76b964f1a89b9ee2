#pragma once
// Signing in to the sync server from the preferences: the server is asked for the account's record with
// the password given, and only when it answers as a server that knows the account (the record is there, or
// not made yet) are the password put in the secret store and the account kept. A sign-in that fails keeps
// nothing and says why (not reached, password refused…), in a person's words.
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "cloud/CloudAccount.h"
#include "cloud/CloudDatabase.h"
#include "platform/SecretStore.h"

namespace kro {

class CloudSignIn {
public:
    // Nothing on success, else why it failed. Runs on the main queue.
    using Completion = std::function<void(const std::optional<std::string>& failure)>;
    using SecretsFactory = std::function<std::unique_ptr<SecretStore>()>;

    // Against the account's own WebDAV server.
    CloudSignIn(CloudAccount account, std::string password, SecretsFactory secrets);
    // Against the database given (tests).
    CloudSignIn(CloudAccount account, std::string password, SecretsFactory secrets, std::shared_ptr<CloudDatabase> database);

    // Starts the sign-in. A problem with the URL or the user name fails at once, before any request.
    void start(Completion completion);

private:
    void finish(const CloudFetchResult& result, const Completion& completion);

    CloudAccount account_;
    std::string password_;
    SecretsFactory secrets_;
    std::shared_ptr<CloudDatabase> database_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

// Signs out: the account file and its password go.
bool signOutOfCloud(const CloudSignIn::SecretsFactory& secrets);

}  // namespace kro
