#include "cli/OpenCommand.h"

#include <unistd.h>

#include <chrono>
#include <ostream>
#include <thread>

#include "cli/AgentStart.h"
#include "cli/Command.h"
#include "cli/DisplayCheck.h"
#include "platform/AgentChannel.h"
#include "platform/Json.h"

namespace kro::cli {

std::string openRequest(const std::vector<std::string>& args, const std::string& workingFolder) {
    Json list = Json::array();
    for (const auto& arg : args) {
        if (isURLArgument(arg) || arg.empty() || arg[0] == '/') {
            list.push_back(arg);
        } else {
            list.push_back(workingFolder + "/" + arg);
        }
    }
    return compactText(Json{{"open", list}});
}

int runOpen(const std::vector<std::string>& args, const Paths& paths, const std::string& selfPath, std::ostream& err) {
    char cwd[4096];
    const std::string workingFolder = getcwd(cwd, sizeof cwd) ? cwd : ".";
    const auto request = openRequest(args, workingFolder);
    const auto socketPath = agentSocketPath(paths);

    // Ten seconds in all, whether the agent has to be started, is slow, or is stopped and never answers.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    const auto secondsLeft = [&deadline] {
        return std::chrono::duration<double>(deadline - std::chrono::steady_clock::now()).count();
    };
    auto reply = sendToAgent(socketPath, request, secondsLeft());
    if (reply.status == AgentReply::Status::noAgent && !agentLockIsHeld(agentLockPath(paths))) {
        if (const auto problem = missingDisplayMessage()) {
            err << *problem;
            return exitFailed;
        }
        if (!startAgent(selfPath, paths)) {
            err << "kro: the agent could not be started\n";
            return exitFailed;
        }
    }
    // The agent may be starting (ours or another's): it has what is left of the time to listen and answer.
    while (reply.status == AgentReply::Status::noAgent && secondsLeft() > 0.1) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        reply = sendToAgent(socketPath, request, secondsLeft());
    }
    if (reply.status != AgentReply::Status::answered) {
        err << (reply.status == AgentReply::Status::silent
                    ? "kro: the agent did not answer within 10 seconds (is it stopped?)\n"
                    : "kro: no agent was listening within 10 seconds\n");
        return exitFailed;
    }
    const auto answer = Json::parse(reply.line, nullptr, false);
    if (answer.is_object() && answer.contains("ok") && answer["ok"] == true) return exitDone;
    const bool said = answer.is_object() && answer.contains("error") && answer["error"].is_string();
    err << "kro: " << (said ? answer["error"].get<std::string>() : std::string("the agent refused the request")) << "\n";
    return exitFailed;
}

}  // namespace kro::cli
