#pragma once
// The session of the configured account: its record on the WebDAV server, with the password from the
// secret store. Read again on each call, so that `kro account set` takes effect in a running agent.
#include "cloud/CloudSync.h"

namespace kro {

CloudSessionProvider configuredCloudSession();

// The agent's sync: the configured account, and the change pipeline's last step.
void installCloudSync();

}  // namespace kro
