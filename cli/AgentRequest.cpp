#include "cli/AgentRequest.h"

#include "platform/AgentChannel.h"
#include "platform/Environment.h"

namespace kro::cli {
namespace {

AgentSender& testSender() {
    static AgentSender sender;
    return sender;
}

}  // namespace

AgentReply askAgent(const std::string& request, double timeoutSeconds) {
    if (testSender()) return testSender()(request);
    return sendToAgent(agentSocketPath(env().paths), request, timeoutSeconds);
}

void setAgentSenderForTesting(AgentSender sender) { testSender() = std::move(sender); }

}  // namespace kro::cli
