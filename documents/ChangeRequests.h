#pragma once
// The requests a kro command hands to the running agent, answered the same way there and by a command that
// finds no agent and works on the stores itself:
//   {"import": [absolute path...]}, {"undo": true}, {"redo": true},
//   and the snapshot and sync requests of cloud/LibraryRequests.
// A reply is {"ok": bool, "lines": [text...], "warnings": [text...], "error": text}. The lines say what was
// done; the warnings what a person must know besides (a skipped file, a damaged store put aside). A store save
// that fails while the request runs makes the reply a failure naming the file and the reason, whatever the
// request itself found.
#include <functional>

#include "platform/Json.h"

namespace kro {

bool isChangeRequest(const Json& request);

// Runs the request on the shared stores, which must be loaded. The reply comes at once, except for a sync.
void handleChangeRequest(const Json& request, const std::function<void(const Json& reply)>& reply);

}  // namespace kro
