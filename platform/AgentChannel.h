#pragma once
// How a second `kro` reaches the running agent: a Unix socket in the runtime folder, one request line
// (JSON) and one reply line. The agent also holds a lock file there, so only one agent runs per session.
#include <optional>
#include <string>

#include "platform/Paths.h"

namespace kro {

std::string agentSocketPath(const Paths& paths);

// Whether an argument of `kro open` is a URL ("kro://…", "kro:…") rather than a file path: a scheme
// before any "/".
bool isURLArgument(const std::string& arg);
std::string agentLockPath(const Paths& paths);

struct AgentReply {
    enum class Status {
        noAgent,   // nothing listens on the socket
        silent,    // an agent took the request but gave no answer in time (stopped, or hung)
        answered,
    };
    Status status;
    std::string line;  // the reply, when answered
};

// Sends one line and waits up to `timeoutSeconds` for the reply line.
AgentReply sendToAgent(const std::string& socketPath, const std::string& line, double timeoutSeconds);

// Takes the agent lock for the life of the process. False when another process holds it.
bool takeAgentLock(const std::string& lockPath);
// True when another process holds the agent lock.
bool agentLockIsHeld(const std::string& lockPath);

}  // namespace kro
