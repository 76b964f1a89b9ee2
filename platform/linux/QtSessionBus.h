#pragma once
// The session bus through QtDBus: every call is asynchronous and answers on the event loop.
#include "platform/BridgeChannels.h"

namespace kro {

class QtSessionBus final : public SessionBus {
public:
    void call(const DBusCall& call, Milliseconds timeout, Done done) override;
};

}  // namespace kro
