#include "cloud/ConfiguredCloudSession.h"

#include "cloud/CloudAccount.h"
#include "cloud/WebDavDatabase.h"
#include "library/CloudHook.h"
#include "library/Sherlog.h"
#include "platform/Environment.h"

namespace kro {

CloudSessionProvider configuredCloudSession() {
    return configuredCloudSession([] { return makeSecretStore(env().paths); });
}

CloudSessionProvider configuredCloudSession(std::function<std::unique_ptr<SecretStore>()> makeSecrets) {
    struct State {
        std::unique_ptr<SecretStore> secrets;
        std::optional<WebDavAccount> account;
        std::shared_ptr<CloudDatabase> database;
    };
    auto state = std::make_shared<State>();
    return [state, makeSecrets = std::move(makeSecrets)]() -> std::optional<CloudSession> {
        const auto account = loadCloudAccount();
        if (!account) {
            state->database.reset();
            return std::nullopt;
        }
        if (!state->secrets) state->secrets = makeSecrets();
        auto password = state->secrets->password(account->server, account->user);
        if (!password) SHERLOG("No password is stored for " + account->user + "; syncing without one", SherlogLevel::info);
        WebDavAccount webDav{account->server, account->user, password.value_or("")};
        const bool same = state->account && state->account->collectionURL == webDav.collectionURL &&
                          state->account->user == webDav.user && state->account->password == webDav.password;
        if (!same || !state->database) {
            state->account = webDav;
            state->database = std::make_shared<WebDavDatabase>(std::move(webDav));
        }
        return CloudSession{account->user, state->database};
    };
}

void installCloudSync() {
    CloudSync::shared().setSessionProvider(configuredCloudSession());
    setCloudUpdate([](const std::string& file, const std::string& function, int line) {
        CloudSync::shared().updateCloudKit(file, function, line);
    });
}

}  // namespace kro
