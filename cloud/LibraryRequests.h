#pragma once
// The snapshot and sync commands, answered the same way by the running agent (over its socket) and by a
// command run when no agent is there. A request is one JSON object:
//   {"snapshot": "list"}, {"snapshot": "create"}, {"snapshot": "restore", "uuid": U}, {"sync": true}
// and its reply is {"ok": bool, "lines": [text...], "error": text}: the lines say what was done, also when
// the request failed partway (a sync that merged, then could not send).
#include <functional>

#include "platform/Json.h"

namespace kro {

bool isLibraryRequest(const Json& request);

// Runs the request on the shared library, snapshots and sync, which must be loaded. The reply comes on the
// main queue: at once, except for a sync, which answers when its requests (and any push a fetch set off)
// have come back.
void handleLibraryRequest(const Json& request, const std::function<void(const Json& reply)>& reply);

}  // namespace kro
