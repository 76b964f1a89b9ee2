#pragma once
// How a command reaches a running agent: the request line goes out, the reply line comes back; nothing when
// no agent answers.
#include <functional>
#include <optional>
#include <string>

namespace kro::cli {

std::optional<std::string> askAgent(const std::string& request, double timeoutSeconds = 10.0);

// Replaces the channel so that tests run without an agent; nothing puts the real one back.
using AgentSender = std::function<std::optional<std::string>(const std::string& request)>;
void setAgentSenderForTesting(AgentSender sender);

}  // namespace kro::cli
