#pragma once
// How a command reaches a running agent: the request line goes out, the reply line comes back, or word that no
// agent listens or that the one listening did not answer in time.
#include <functional>
#include <string>

#include "platform/AgentChannel.h"

namespace kro::cli {

AgentReply askAgent(const std::string& request, double timeoutSeconds = 10.0);

// Replaces the channel so that tests run without an agent; nothing puts the real one back.
using AgentSender = std::function<AgentReply(const std::string& request)>;
void setAgentSenderForTesting(AgentSender sender);

}  // namespace kro::cli
