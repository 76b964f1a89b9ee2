#pragma once
// The session of the configured account: its record on the WebDAV server, with the password from the
// secret store. Read again on each call, so that `kro account set` takes effect in a running agent.
#include <functional>
#include <memory>

#include "cloud/CloudSync.h"
#include "platform/SecretStore.h"

namespace kro {

// The password from the program's secret store (the desktop's service, else the private file).
CloudSessionProvider configuredCloudSession();
// The password from the store `makeSecrets` makes, once, at the first call that finds an account.
CloudSessionProvider configuredCloudSession(std::function<std::unique_ptr<SecretStore>()> makeSecrets);

// The agent's sync: the configured account, and the change pipeline's last step.
void installCloudSync();

}  // namespace kro
