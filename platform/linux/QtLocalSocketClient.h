#pragma once
// Request and reply lines over local sockets, on the event loop, refusing listeners of another user.
#include "platform/BridgeChannels.h"

namespace kro {

class QtLocalSocketClient final : public LocalSocketClient {
public:
    void exchange(const std::string& socketPath, const std::string& line, Milliseconds timeout, Done done) override;
};

}  // namespace kro
