#include "cli/PickCommand.h"

#include <chrono>
#include <cstdlib>
#include <optional>
#include <ostream>
#include <thread>

#include "cli/AgentRequest.h"
#include "cli/AgentStart.h"
#include "cli/DisplayCheck.h"
#include "platform/AgentChannel.h"
#include "platform/Environment.h"
#include "platform/Json.h"

namespace kro::cli {
namespace {

using namespace std::chrono_literals;

// A person may take their time over a pick.
constexpr double kPickWaitSeconds = 24 * 3600;
constexpr auto kAgentStartLimit = 10s;
constexpr int kMaxCount = 10000;

int runPick(CommandContext& context);

const Command& pickCommand() {
    static const Command command{"kro pick [--format NAME | --template TEXT] [--count N]", runPick};
    return command;
}

// Nothing when the command line is wrong.
std::optional<Json> readRequest(const std::vector<std::string>& args) {
    Json body{{"count", 1}};
    for (size_t i = 0; i < args.size(); ++i) {
        const auto& arg = args[i];
        if (i + 1 >= args.size()) return std::nullopt;
        const auto& value = args[++i];
        if (arg == "--format" || arg == "--template") {
            if (body.contains("format") || body.contains("template")) return std::nullopt;
            body[arg.substr(2)] = value;
        } else if (arg == "--count") {
            char* end = nullptr;
            const long count = std::strtol(value.c_str(), &end, 10);
            if (value.empty() || *end != '\0' || count < 1 || count > kMaxCount) return std::nullopt;
            body["count"] = count;
        } else {
            return std::nullopt;
        }
    }
    return Json{{"pick", body}};
}

int runPick(CommandContext& context) {
    const auto request = readRequest(context.args);
    if (!request) return usageError(context, pickCommand());
    const auto line = compactText(*request);

    auto reply = askAgent(line, kPickWaitSeconds);
    if (reply.status == AgentReply::Status::noAgent) {
        const auto& paths = env().paths;
        if (!agentLockIsHeld(agentLockPath(paths))) {
            if (const auto problem = missingDisplayMessage()) {
                context.err << *problem;
                return exitFailed;
            }
            if (!startAgent(selfPath(), paths)) return fail(context, "the agent could not be started");
        }
        // The agent is starting (this one or another's): it takes the request once it listens.
        const auto deadline = std::chrono::steady_clock::now() + kAgentStartLimit;
        while (reply.status == AgentReply::Status::noAgent && std::chrono::steady_clock::now() < deadline) {
            std::this_thread::sleep_for(100ms);
            reply = askAgent(line, kPickWaitSeconds);
        }
    }
    if (reply.status == AgentReply::Status::noAgent) return fail(context, "no agent was listening within 10 seconds");
    if (reply.status == AgentReply::Status::silent) return fail(context, "the agent did not answer");
    const auto answer = Json::parse(reply.line, nullptr, false);
    if (!answer.is_object()) return fail(context, "the agent gave an answer that is not understood");
    if (!answer.value("ok", false)) return fail(context, answer.value("error", std::string("the pick failed")));
    for (const auto& text : answer.value("lines", Json::array())) {
        if (text.is_string()) context.out << text.get<std::string>() << "\n";
    }
    return exitDone;
}

}  // namespace

void registerPickCommand(CommandTable& table) { table["pick"] = pickCommand(); }

}  // namespace kro::cli
